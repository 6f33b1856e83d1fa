// SPDX-License-Identifier: MIT
#pragma once

#include "commandline.h"
#include "expectedlog.h"
#include "workstation.h"

/// \file
/// What an install pass over a few hosts leaves: the lines of its log, and its files.

namespace test {

enum class Run { First, Second };

inline bool installs(RunMode mode)
{
    return mode == RunMode::Install || mode == RunMode::OnlyWriteConfig
        || mode == RunMode::Reinstall;
}

/// A manager.cfg that needed no change the second time.
inline QStringList linesOfConfig(Run run)
{
    return run == Run::First ? linesOfNewConfig()
                             : QStringList("Debug: not necessary to write cfg");
}

/// Before it sets the name of a manifest, a copy logs the one that it finishes; of the first copy
/// of a run there is none.
inline QString openFileLine(const QString &manifestBefore = QString())
{
    return "Debug: open file:  " + quoted(manifestBefore);
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

/// The folders above \a name, and the file or (with a slash behind it) folder itself.
inline void addWithFolders(Tree &tree, const QString &name, const QByteArray &content = "")
{
    for (int slash = name.indexOf('/'); slash >= 0; slash = name.indexOf('/', slash + 1)) {
        tree.insert(name.left(slash + 1), "");
    }
    tree.insert(name, content);
}

/// The manager.cfg that the settings of \a workstation ask for.
inline QByteArray configOf(const Workstation &workstation, const QByteArray &user = "",
                           const QByteArray &projects = "", const QByteArray &textures = "1")
{
    return user + '\n' + projects + '\n' + workstation.tool("DraskDrop").toUtf8()
        + "\n2.3.10\n\n1\n" + textures;
}

} // namespace test
