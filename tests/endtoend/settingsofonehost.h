// SPDX-License-Identifier: MIT
#pragma once

#include "onehostlog.h"
#include "workstation.h"

namespace test {

/// A workstation with one SketchUp in the folder "host", whose plug-in is a version file.
class SettingsOfOneHost : public Workstation {
public:
    SettingsOfOneHost()
    {
        addPlugin("sketchup", {{"version.txt", "3"}});
        write("own.txt", "mine");
        write("work/own.txt", "mine");
    }

    /// "~" stands for the folder of the host.
    void writeSettings(const QByteArray &before, const QByteArray &pathLine = "path=\"~\"") const
    {
        const QByteArray entry = QByteArray(pathLine).replace('~', path("host").toUtf8());
        write("tool/settings.ini",
              before
                  + "[plugins]\nversionSketchup=3\n[pluginpaths]\nsize=1\n1\\application="
                    "sketchup\n1\\"
                  + entry + '\n');
    }

    QByteArray config(const QByteArray &user = "", const QByteArray &projects = "") const
    {
        return configOf(*this, user, projects);
    }

    /// The tree of now with the plug-in in the folder \a host.
    Tree installed(const QByteArray &config, const QString &host = "host") const
    {
        Tree tree = this->tree();
        tree.insert("tool/version.txt", "2.3.10");
        tree.insert(host + '/', "");
        tree.insert(host + "/version.txt", "3");
        tree.insert(host + "/uninstall.ini", path(host + "/version.txt\n").toUtf8());
        tree.insert(host + "/manager.cfg", config);
        return tree;
    }

    /// The log of a first run, and of one behind it, that serves the host.
    QStringList logOfInstall(const QString &projects = "QVariant(Invalid)",
                             const QString &host = "host") const
    {
        const QString folder = escaped(path(host));
        return logOfPass("sketchup", folder, linesOfCopiedPlugin("sketchup", folder), 0, projects);
    }
    QStringList logOfSecondInstall(const QString &projects = "QVariant(Invalid)",
                                   const QString &host = "host") const
    {
        const QString folder = escaped(path(host));
        return logOfPass("sketchup", folder, linesOfKeptPlugin(folder), 0, projects);
    }
};

/// What an install logs about a configuration that it cannot find as it should be.
inline QStringList withConfigWritten(QStringList log)
{
    return log.replaceInStrings("not necessary to write cfg", "161 write cfg file...");
}

} // namespace test
