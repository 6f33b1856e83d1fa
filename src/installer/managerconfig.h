// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// \file
/// The text of manager.cfg.

/// What manager.cfg tells an installed plug-in.
struct ManagerConfig {
    QString userName;         ///< empty for a user who is logged out
    QString projectsFolder;   ///< the user's local projects folder, as the settings give it
    QString appDirPath;       ///< the tool's own folder, without a trailing slash
    QString version;          ///< the tool's own version
    QByteArray cpuType;       ///< as "cputype" printed it
    bool copyTexFiles = true; ///< whether the user sends textures along
};

/// The index of the line that says the CPU type.
inline constexpr int cpuTypeLine = 4;

/// The seven lines of \a config, without line ends.
QStringList managerConfigLines(const ManagerConfig &config);

/// True when a file with the lines \a present begins with \a lines; a line that it lacks counts as
/// empty.
bool saysAlready(QStringList present, const QStringList &lines);

/// What stands between the lines of a manager.cfg.
enum class LineEnd { LineFeed, CarriageReturnLineFeed };

/// The text of a new file: \a lines with \a lineEnd between them.
QString managerConfigText(const QStringList &lines, LineEnd lineEnd);
