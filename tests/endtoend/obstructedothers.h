// SPDX-License-Identifier: MIT
#pragma once

#include "expectedpass.h"
#include "workstation.h"

/// \file
/// Hosts with something in the way of their own files, and hosts of which several are served.

namespace test {

/// All that the plug-in of an OtherHost ships, in its only file.
const char startUpLine[] = "#drask_installed\n";

/// A host in the folder "host", of a kind that has files of its own. It is served behind another
/// one, whose version file says that it is installed.
class OtherHost {
public:
    OtherHost(const Workstation &station, const QString &hostKey, const QString &subFolder,
              const QString &obstacle)
        : workstation(station)
        , key(hostKey)
        , target("host" + subFolder)
        , isBarred(obstacle == "host/plugins")
        , isScriptBarred(obstacle == "host/scripts/userSetup.py/")
    {
    }

    /// The tree that a first run makes of \a before.
    Tree served(Tree before) const
    {
        if (!isBarred) {
            put(before, target,
                {{"drask_userSetup.py", startUpLine},
                 {"uninstall.ini", manifest()},
                 {"manager.cfg", config()}});
        }
        if (key == "maya" && !isScriptBarred) {
            put(before, "host/scripts", {{"userSetup.py", startUpLine}});
        }
        if (key == "rhino") {
            put(before, "tool",
                {{"HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\5.0x64\\Plug-ins",
                  registration()}});
        }
        return before;
    }

    QStringList linesOfFirstRun(const QString &manifestBefore) const
    {
        return lines(manifestBefore, linesOfNewConfig());
    }

    /// The other host is not copied any more, so there is no manifest before this one's.
    QStringList linesOfSecondRun() const
    {
        return lines(QString(), isBarred ? linesOfNewConfig() : linesOfKeptConfig());
    }

    QByteArray errors() const
    {
        const QString folder = workstation.path(target);
        if (isScriptBarred) {
            return "Could not copy userSetup.py file to: " + folder.toUtf8() + '\n';
        }
        return isBarred ? copyMessage(folder) + configMessage(folder) : QByteArray();
    }

private:
    QByteArray manifest() const
    {
        const QByteArray plugin = workstation.path(target).toUtf8() + "/drask_userSetup.py\n";
        return key == "maya"
            ? plugin + workstation.path("host").toUtf8() + "/prefs/shelves/shelf_DraskGrex.mel\n"
            : plugin;
    }

    QByteArray config() const
    {
        return configOf(workstation).replace("\n", key == "c4d" ? "\r\n" : "\n");
    }

    /// A settings store without a codec of its own escapes letters beyond ASCII.
    QByteArray registration() const
    {
        const QByteArray file = (workstation.path(target) + "/Drask.rhp").toUtf8();
        return "[5f0c2a71-9e3d-4b68-a2c4-7d81e6b39f20]\nFileName="
            + QByteArray(file).replace("\xc3\xa9", "\\xe9") + "\nName=Drask\n";
    }

    QStringList lines(const QString &manifestBefore, const QStringList &configLines) const
    {
        const QString folder = workstation.path(target);
        QStringList all = linesOfCopy(manifestBefore);
        if (isBarred) {
            all << manifestNotOpenedLine(folder);
        }
        all += configLines;
        if (isScriptBarred) {
            all << "Debug: Could not open target file \"Is a directory\"";
        }
        return all + linesOfInstalled(key, folder);
    }

    const Workstation &workstation;
    QString key;
    QString target;
    bool isBarred;
    bool isScriptBarred;
};

/// A host with a plug-in of the file a.py alone. Folders may stand in the places of the manifest
/// and of manager.cfg.
class PlainHost {
public:
    PlainHost(const Workstation &station, const QString &hostFolder)
        : workstation(station)
        , host(hostFolder)
        , target(hostFolder + "/Scripts/drask")
        , isCopied(!workstation.exists(target + "/uninstall.ini"))
        , isConfigured(!workstation.exists(target + "/manager.cfg"))
    {
    }

    QString manifest() const
    {
        return workstation.path(target + "/uninstall.ini");
    }

    QStringList lookUp() const
    {
        return linesOfLookUp("modo", workstation.path(host));
    }

    /// The tree that a run makes of \a before.
    Tree served(Tree before) const
    {
        const QString file = workstation.path(target + "/a.py");
        if (isCopied) {
            put(before, target, {{"a.py", "a"}, {"uninstall.ini", file.toUtf8() + '\n'}});
        }
        if (isConfigured) {
            put(before, target, {{"manager.cfg", configOf(workstation)}});
        }
        return before;
    }

    QStringList lines(const QString &manifestBefore, bool isFirstRun) const
    {
        const QString folder = workstation.path(target);
        QStringList all = linesOfCopy(manifestBefore);
        if (!isCopied) {
            all << manifestNotOpenedLine(folder);
        }
        all += isFirstRun || !isConfigured ? linesOfNewConfig() : linesOfKeptConfig();
        return all + linesOfInstalled("modo", folder);
    }

    QByteArray errors() const
    {
        const QString folder = workstation.path(target);
        return (isCopied ? QByteArray() : copyMessage(folder))
            + (isConfigured ? QByteArray() : configMessage(folder));
    }

private:
    const Workstation &workstation;
    QString host;
    QString target;
    bool isCopied;
    bool isConfigured;
};

/// The log of a pass over the hosts \a one and \a two.
inline QStringList logOfTwoHosts(const PlainHost &one, const PlainHost &two, bool isFirstRun,
                                 int code)
{
    return logOfPass(one.lookUp() + two.lookUp(),
                     one.lines(QString(), isFirstRun) + two.lines(one.manifest(), isFirstRun),
                     code);
}

} // namespace test
