// SPDX-License-Identifier: MIT
#pragma once

#include "expectedlog.h"
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
        for (int slash = name.indexOf('/'); slash >= 0; slash = name.indexOf('/', slash + 1)) {
            tree.insert(name.left(slash + 1), "");
        }
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
        return "\n\n" + tool("DraskDrop").toUtf8() + "\n2.3.10\n\n1\n1";
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

    QStringList logOfInstall() const
    {
        QStringList lines = startLines();
        lines << "Debug: open file:  \"\"";
        lines += linesOfNewConfig();
        return lines << installedLine("modo", path("modo/Scripts/drask")) << "Debug: 0";
    }

    QStringList logOfSecondInstall() const
    {
        return startLines() << alreadyInstalledLine(path("modo/Scripts/drask"))
                            << "Debug: not necessary to write cfg"
                            << "Debug: 0";
    }

    /// Removes the plug-in. The working folder is "work".
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

private:
    static QStringList sorted(QStringList lines)
    {
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    QStringList startLines() const
    {
        return QStringList("Debug: settings loaded") + linesOfLookUp("modo", path("modo"))
            + QStringList({"Debug: !!!settings local:  QVariant(Invalid)", "Debug: version:  24"});
    }
};

/// Installs what was planted, wants exactly \a copied to be in the host, installs again without a
/// change, and removes all of it.
inline void verifyLifeOf(const PlantedPlugin &plant, const Tree &copied)
{
    const Tree expected = plant.installed(plant.tree(), copied);
    const auto withoutManifest = [&plant] {
        Tree tree = plant.treeWithoutLogs();
        tree.remove(plantedIn + "uninstall.ini");
        return tree;
    };

    VERIFY_RUN(plant.run(), 0);
    QCOMPARE(plant.log(), plant.logOfInstall());
    QVERIFY(plant.errors().isNull());
    QCOMPARE(treeDifference(withoutManifest(), expected), QString());
    QCOMPARE(plant.manifest(), plant.manifestOf(copied));

    const Tree afterInstall = plant.treeWithoutLogs();
    VERIFY_RUN(plant.run(), 0);
    QCOMPARE(plant.log(), plant.logOfSecondInstall());
    QCOMPARE(treeDifference(plant.treeWithoutLogs(), afterInstall), QString());

    VERIFY_RUN(plant.uninstall(), 0);
    QCOMPARE(treeDifference(plant.treeWithoutLogs(), PlantedPlugin::withoutPlugin(afterInstall)),
             QString());
}

} // namespace test
