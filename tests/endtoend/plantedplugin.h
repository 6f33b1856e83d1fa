// SPDX-License-Identifier: MIT
#pragma once

#include "onehostlog.h"
#include "workstation.h"

#include <QtTest>

#include <algorithm>

/// \file
/// A workstation for plug-ins that a case plants: one host, and files of others all around.

namespace test {

/// The host's plug-in folder, with the slash behind it.
const QString plantedIn = QStringLiteral("modo/Scripts/drask/");

/// The folders above each entry of \a tree, added to it.
inline Tree withFolders(Tree tree)
{
    const QStringList names = tree.keys();
    for (const QString &name : names) {
        addWithFolders(tree, name, tree.value(name));
    }
    return tree;
}

class PlantedPlugin : public Workstation {
public:
    PlantedPlugin()
    {
        for (const char *name : {"own.txt", "outside/own.txt", "outside/deep/own.txt",
                                 "modo/own.txt", "modo/Scripts/own.txt", "work/own.txt"}) {
            write(name, "mine");
        }
        addPlugin("modo", {{"version.txt", "7"}});
        addHost("modo", path("modo"));
        addSetting("plugins", "versionModo=7");
        writeSettings();
    }

    QByteArray config() const
    {
        return configOf(*this, user, "", "1", cpuTypeInBase64);
    }

    /// The tree that an installation of exactly the files \a copied makes of \a before.
    Tree installed(const Tree &before, const Tree &copied) const
    {
        Tree tree = before;
        for (auto file = copied.cbegin(); file != copied.cend(); ++file) {
            tree.insert(plantedIn + file.key(), file.value());
        }
        tree.insert(plantedIn + "manager.cfg", config());
        tree.insert("tool/version.txt", "2.3.10");
        return withFolders(tree);
    }

    /// The lines of the manifest, in an order of their own.
    QStringList manifest() const
    {
        return sorted(QString::fromUtf8(read(plantedIn + "uninstall.ini")).split('\n'));
    }

    /// The lines of a manifest of \a copied and of \a further.
    QStringList manifestOf(const Tree &copied, const QStringList &further = {}) const
    {
        QStringList lines = further + QStringList(QString());
        for (auto file = copied.cbegin(); file != copied.cend(); ++file) {
            if (!file.key().endsWith('/')) {
                lines << path(plantedIn + file.key());
            }
        }
        return sorted(lines);
    }

    /// \a tree with the manifest as it is, which manifest() tells more of: its order is that of
    /// the file system.
    Tree withManifest(Tree tree) const
    {
        tree.insert(plantedIn + "uninstall.ini", read(plantedIn + "uninstall.ini"));
        return tree;
    }

    QStringList logOfInstall() const
    {
        return logOfPass("modo", path("modo"),
                         linesOfCopiedPlugin("modo", path("modo/Scripts/drask")), 0);
    }

    QStringList logOfSecondInstall() const
    {
        return logOfPass("modo", path("modo"), linesOfKeptPlugin(path("modo/Scripts/drask")), 0);
    }

    QStringList logOfRemoval() const
    {
        return test::logOfRemoval("modo", path("modo"), path("modo/Scripts/drask"));
    }

    /// Removes the plug-in. The working folder is "work", so that the log of before stays.
    RunResult uninstall() const
    {
        RunOptions options;
        options.workingFolder = path("work");
        return run({"uninstallPlugin", "(modo) " + path("modo")}, options);
    }

    /// The tree without the files (not the folders) of the plug-in folder.
    static Tree withoutPlugin(const Tree &tree)
    {
        Tree rest;
        for (auto entry = tree.cbegin(); entry != tree.cend(); ++entry) {
            if (!entry.key().startsWith(plantedIn) || entry.key().endsWith('/')) {
                rest.insert(entry.key(), entry.value());
            }
        }
        return rest;
    }

protected:
    QByteArray user; ///< as the configuration has it
    QByteArray cpuTypeInBase64;

private:
    static QStringList sorted(QStringList lines)
    {
        std::sort(lines.begin(), lines.end());
        return lines;
    }
};

/// Installs what was planted, wants exactly \a copied to be in the host and \a manifest to list it,
/// and installs again without a change.
inline void verifyInstallOf(const PlantedPlugin &plant, const Tree &copied,
                            const QStringList &manifest, const RunOptions &options = {})
{
    const Tree installed = plant.installed(plant.tree(), copied);

    VERIFY_RUN(plant.run({}, options), 0);
    QCOMPARE(plant.manifest(), manifest);
    const Tree expected = plant.withManifest(installed);
    VERIFY_LEFT(plant, expected, plant.logOfInstall(), QByteArray());

    VERIFY_RUN(plant.run({}, options), 0);
    VERIFY_LEFT(plant, expected, plant.logOfSecondInstall(), QByteArray());
}

/// Installs what was planted twice as above, and removes all of it.
inline void verifyLifeOf(const PlantedPlugin &plant, const Tree &copied)
{
    verifyInstallOf(plant, copied, plant.manifestOf(copied));
    const Tree rest = PlantedPlugin::withoutPlugin(plant.treeWithoutLogs());

    VERIFY_RUN(plant.uninstall(), 0);
    VERIFY_LEFT(plant, rest, plant.logOfSecondInstall() + plant.logOfRemoval(), QByteArray());
}

} // namespace test
