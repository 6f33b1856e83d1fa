// SPDX-License-Identifier: MIT
#pragma once

#include "commandline.h"
#include "expectedlog.h"
#include "workstation.h"

#include <QtTest>

/// \file
/// What an install pass over a few hosts leaves: the lines of its log, its messages and its files.

Q_DECLARE_METATYPE(RunMode)

namespace test {

enum class Run { First, Second };

inline bool installs(RunMode mode)
{
    return mode == RunMode::Install || mode == RunMode::OnlyWriteConfig
        || mode == RunMode::Reinstall;
}

/// Rows for the modes that serve the hosts of the settings: the words, and what they mean.
inline void addModesOfListedHosts()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<RunMode>("mode");

    QTest::newRow("install") << QStringList() << RunMode::Install;
    QTest::newRow("only write config")
        << QStringList("onlyWriteConfig") << RunMode::OnlyWriteConfig;
    QTest::newRow("reinstall") << QStringList("reinstall") << RunMode::Reinstall;
    QTest::newRow("uninstall all plug-ins")
        << QStringList("uninstallAllPlugins") << RunMode::UninstallAll;
}

/// A manager.cfg was written in the place of another one.
inline QStringList linesOfChangedConfig()
{
    return {"Debug: 161 write cfg file..."};
}

inline QStringList linesOfKeptConfig()
{
    return {"Debug: not necessary to write cfg"};
}

inline QStringList linesOfConfig(Run run)
{
    return run == Run::First ? linesOfNewConfig() : linesOfKeptConfig();
}

/// Before it sets the name of a manifest, a copy logs the one that it finishes; of the first copy
/// of a run there is none.
inline QString openFileLine(const QString &manifestBefore = QString())
{
    return "Debug: open file:  " + quoted(manifestBefore);
}

/// A copy began; \a manifestBefore is the manifest of the one before it.
inline QStringList linesOfCopy(const QString &manifestBefore = QString())
{
    return {openFileLine(manifestBefore)};
}

inline QString manifestNotOpenedLine(const QString &folder)
{
    return "Debug: cannot open  " + quoted(folder + "/uninstall.ini") + "  for writing";
}

inline QString notCopiedLine(const QString &source, const QString &target)
{
    return "Debug: Could not copy file  " + quoted(source) + "  to  " + quoted(target);
}

inline QString notRemovedLine(const QString &target)
{
    return "Debug: Could not remove file " + quoted(target);
}

inline QString rightsProblemLine(const QString &target)
{
    return "Debug: exist check failed - rights problem " + quoted(target);
}

inline QStringList linesOfInstalled(const QString &key, const QString &target)
{
    return {installedLine(key, target)};
}

inline QStringList linesOfAlreadyInstalled(const QString &target)
{
    return {alreadyInstalledLine(target)};
}

inline QStringList linesOfSettings(RunMode mode)
{
    QStringList lines;
    if (mode == RunMode::OnlyWriteConfig) {
        lines << "Debug: only write config";
    } else if (mode == RunMode::Reinstall) {
        lines << "Debug: forceReinstall";
    }
    return lines << "Debug: settings loaded";
}

inline QStringList linesOfPassStart(const QString &projectsFolder = "QVariant(Invalid)")
{
    return {"Debug: !!!settings local:  " + projectsFolder, "Debug: version:  24"};
}

/// A run that reads the settings: it looks its hosts up, and then removes, installs, or both. The
/// start of the pass is not part of \a pass.
inline QStringList linesOfRun(RunMode mode, const QStringList &lookUps, const QStringList &removals,
                              const QStringList &pass)
{
    QStringList lines = linesOfSettings(mode) + lookUps;
    if (mode == RunMode::Reinstall || mode == RunMode::UninstallAll) {
        lines += removals;
    }
    return installs(mode) ? lines + linesOfPassStart() + pass : lines;
}

/// The whole log of a pass: \a lookedUp is what was logged before it, \a served what the hosts were
/// served with.
inline QStringList logOfPass(const QStringList &lookedUp, const QStringList &served, int code,
                             const QString &projects = "QVariant(Invalid)")
{
    return linesOfSettings(RunMode::Install) + lookedUp + linesOfPassStart(projects) + served
        + QStringList(QStringLiteral("Debug: %1").arg(code));
}

inline QByteArray copyMessage(const QString &folder)
{
    return "Could not copy file to: \n" + folder.toUtf8() + '\n';
}

inline QByteArray configMessage(const QString &folder)
{
    return "Could not write config file in: \n" + folder.toUtf8() + "manager.cfg\n";
}

/// The folders above \a name, and the file or (with a slash behind it) folder itself.
inline void addWithFolders(Tree &tree, const QString &name, const QByteArray &content = "")
{
    for (int slash = name.indexOf('/'); slash >= 0; slash = name.indexOf('/', slash + 1)) {
        tree.insert(name.left(slash + 1), "");
    }
    tree.insert(name, content);
}

/// Adds files to \a tree, below \a folder and with all folders above them.
inline void put(Tree &tree, const QString &folder, const Tree &files)
{
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        addWithFolders(tree, folder + '/' + file.key(), file.value());
    }
}

/// The manager.cfg that the settings of \a workstation ask for; \a cpuType is what it printed, in
/// base64.
inline QByteArray configOf(const Workstation &workstation, const QByteArray &user = "",
                           const QByteArray &projects = "", const QByteArray &textures = "1",
                           const QByteArray &cpuType = "")
{
    return user + '\n' + projects + '\n' + workstation.tool("DraskDrop").toUtf8() + "\n2.3.10\n"
        + cpuType + "\n1\n" + textures;
}

/// The manifest of the plug-in \a source in the folder \a target, without the files \a missing.
inline QByteArray manifestOf(const QString &source, const QString &target,
                             const QStringList &missing = {})
{
    QByteArray lines;
    const QStringList files = filesInCopyOrder(source);
    for (const QString &file : files) {
        if (!missing.contains(file)) {
            lines += (target + '/' + file).toUtf8() + '\n';
        }
    }
    return lines;
}

} // namespace test
