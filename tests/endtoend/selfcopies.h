// SPDX-License-Identifier: MIT
#pragma once

#include "plantedplugin.h"

#include <QtTest>

#include <algorithm>
#include <functional>

/// \file
/// A SketchUp, whose plug-in goes into the host's folder itself, and what a run says when that
/// folder is the plug-in or leads back to it.

namespace test {

/// Settings with one SketchUp, whose plug-in goes into the host's folder itself.
inline void serveSketchUp(const PlantedPlugin &plant, const QString &folder)
{
    plant.write("tool/settings.ini",
                "[plugins]\nversionSketchup=3\n[pluginpaths]\nsize=1\n"
                "1\\application=sketchup\n1\\path=\""
                    + folder.toUtf8() + "\"\n");
}

inline Tree notBelow(const Tree &tree, const QString &folder)
{
    Tree part;
    for (auto entry = tree.cbegin(); entry != tree.cend(); ++entry) {
        if (!entry.key().startsWith(folder)) {
            part.insert(entry.key(), entry.value());
        }
    }
    return part;
}

/// Runs twice a pass over a SketchUp in \a folder that copies as long as there is room for a path,
/// which depends on the length of the sandbox's own. So does what the last folder meets, which
/// decides the code, how many files are left out, and what is deep down in the tree: \a verifyTree
/// looks at the rest.
inline void verifyCopiesWithoutEnd(const PlantedPlugin &plant, const QString &folder,
                                   const std::function<void()> &verifyTree)
{
    for (const QStringList &steps :
         {linesOfCopiedPlugin("sketchup", folder), linesOfReplacedPlugin("sketchup", folder)}) {
        const RunResult result = plant.run();
        const int code = result.exitCode == 2 ? 2 : 0;
        VERIFY_RUN(result, code);
        QStringList lines = plant.log();
        const auto isAboutAFile = [](const QString &line) {
            return line.startsWith("Debug: Could not copy file ")
                || line.startsWith("Debug: exist check failed - rights problem ");
        };
        lines.erase(std::remove_if(lines.begin(), lines.end(), isAboutAFile), lines.end());
        QCOMPARE(lines, logOfPass("sketchup", folder, steps, code));
        QCOMPARE(plant.errors(),
                 code == 0 ? QByteArray() : "Could not copy file to: \n" + folder.toUtf8() + '\n');
        QCOMPARE(plant.errors().isNull(), code == 0);
        verifyTree();
    }
}

/// \a log with what it says of single files in the order of their names.
inline QStringList withSortedCopies(QStringList log)
{
    const auto isAboutAFile = [](const QString &line) {
        return line.startsWith("Debug: Could not copy file ");
    };
    const auto begin = std::find_if(log.begin(), log.end(), isAboutAFile);
    std::sort(begin, std::find_if_not(begin, log.end(), isAboutAFile));
    return log;
}

/// The steps of a run that copies the plug-in, which consists of \a names, onto itself in \a host.
inline QStringList linesOfEmptying(const PlantedPlugin &plant, const QString &host,
                                   QStringList names, int run)
{
    const QString target = plant.path(host);
    QStringList lines = linesOfCopiedPlugin("sketchup", target);
    if (run == 2) {
        // What the first run made is part of the plug-in now.
        names << "uninstall.ini"
              << "manager.cfg";
        lines.removeAll("Debug: cannot read config file, create new");
    }
    for (const QString &name : qAsConst(names)) {
        lines.insert(1,
                     "Debug: Could not copy file  " + quoted(plant.tool("plugins/sketchup/" + name))
                         + "  to  " + quoted(target + '/' + name));
    }
    return lines;
}

/// The steps of a run that finds the shipped plug-in in \a host installed.
inline QStringList linesOfOwnPlugin(const PlantedPlugin &plant, const QString &host, int run)
{
    const QString target = plant.path(host);
    return run == 2 ? linesOfKeptPlugin(target)
                    : QStringList(alreadyInstalledLine(target)) + linesOfNewConfig();
}

/// The log of a run with \a arguments, with sorted copies.
inline QStringList logOf(const PlantedPlugin &plant, const QString &host,
                         const QStringList &arguments, const QStringList &steps)
{
    const QString target = plant.path(host);
    QStringList log = logOfPass("sketchup", target, steps, 0);
    if (arguments.contains("reinstall")) {
        const QStringList removal = linesWithoutManifest("(sketchup) " + target);
        log = QStringList("Debug: forceReinstall") + log.mid(0, 3) + removal + log.mid(3);
    }
    return withSortedCopies(log);
}

} // namespace test
