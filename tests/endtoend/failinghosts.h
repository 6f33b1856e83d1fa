// SPDX-License-Identifier: MIT
#pragma once

#include "expectedpass.h"

/// \file
/// A workstation whose hosts fail in chosen ways, and what a run is to make of it.

namespace test {

/// A host and what will fail of it: "copy", "config", "maya", "unknown" or "none".
struct FailingHost {
    QString failure;
    QString key;
    QString name;      ///< the host's folder in the sandbox
    QString subFolder; ///< of the plug-in

    bool isCopied() const
    {
        return failure != "copy" && failure != "unknown";
    }
};

/// A workstation whose hosts fail as they are told to.
class FailingHosts : public Workstation {
public:
    explicit FailingHosts(const QStringList &failures);

    QByteArray expectedErrors() const;
    Tree expectedTree() const;
    QStringList expectedLog(Run run, int exitCode) const;

private:
    QString target(const FailingHost &host) const
    {
        return path(host.name + host.subFolder);
    }

    QByteArray messageOf(const FailingHost &host) const;

    QList<FailingHost> failing;
};

inline FailingHosts::FailingHosts(const QStringList &failures)
{
    addPlugin("modo", {});
    addPlugin("maya", {});
    for (const QString &failure : failures) {
        FailingHost host{failure, "modo", QStringLiteral("host %1").arg(failing.size()),
                         "/Scripts/drask"};
        if (failure == "copy") {
            host.key = "clarisse";
            host.subFolder = "/drask";
        } else if (failure == "maya") {
            host.key = "maya";
            host.subFolder = "/scripts/drask";
        } else if (failure == "unknown") {
            host.key = "nuke";
            host.subFolder.clear();
        }
        failing << host;
        addHost(host.key, path(host.name));
        makeFolder(host.name);
        if (failure == "config") {
            makeFolder(host.name + host.subFolder + "/manager.cfg");
        }
    }
    writeSettings();
}

inline QByteArray FailingHosts::messageOf(const FailingHost &host) const
{
    const QByteArray folder = target(host).toUtf8();
    if (host.failure == "config") {
        return "Could not write config file in: \n" + folder + "manager.cfg\n";
    }
    if (host.failure == "maya") {
        return "Could not copy userSetup.py file to: " + folder + '\n';
    }
    return host.isCopied() ? QByteArray() : "Could not copy file to: \n" + folder + '\n';
}

/// Null when there is nothing to tell.
inline QByteArray FailingHosts::expectedErrors() const
{
    QByteArray messages;
    for (const FailingHost &host : failing) {
        messages += messageOf(host);
    }
    return messages;
}

inline Tree FailingHosts::expectedTree() const
{
    Tree expected = tree();
    expected["tool/version.txt"] = "2.3.10";
    for (const FailingHost &host : failing) {
        const QString place = host.name + host.subFolder + '/';
        addWithFolders(expected, place);
        if (host.failure != "config") {
            expected[place + "manager.cfg"] = configOf(*this);
        }
        if (host.isCopied()) {
            const QByteArray shelf = path(host.name + "/prefs/shelves/shelf_DraskGrex.mel")
                                         .toUtf8();
            expected[place + "uninstall.ini"] = host.key == "maya" ? shelf + '\n' : QByteArray("");
        }
    }
    return expected;
}

inline QStringList FailingHosts::expectedLog(Run run, int exitCode) const
{
    QStringList lookUps;
    QStringList pass;
    QString manifest;
    for (const FailingHost &host : failing) {
        lookUps += linesOfLookUp(host.key, path(host.name));
        if (host.isCopied()) {
            pass << openFileLine(manifest);
            manifest = target(host) + "/uninstall.ini";
        }
        pass += host.failure == "config" ? linesOfNewConfig() : linesOfConfig(run);
        if (host.failure == "maya") {
            pass << "Debug: 1635 error  " + quoted(target(host) + "/drask_userSetup.py");
        }
        pass << installedLine(host.key, target(host));
    }
    return linesOfRun(RunMode::Install, lookUps, {},
                      pass << QStringLiteral("Debug: %1").arg(exitCode));
}

} // namespace test
