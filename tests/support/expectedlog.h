// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// Lines of the log as they are expected, word for word. Values that the program streams are
/// quoted, and a blank separates them from a text that itself ends with one.
namespace test {

inline QString quoted(const QString &text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

inline QString alreadyInstalledLine(const QString &target)
{
    return "Debug: version already installed:  " + quoted(target);
}

/// A manager.cfg was written where there was none.
inline QStringList linesOfNewConfig()
{
    return {"Debug: cannot read config file, create new", "Debug: 161 write cfg file..."};
}

inline QString installedLine(const QString &key, const QString &target)
{
    return "Debug: " + quoted(key + " plugin installed in: ") + ' ' + quoted(target);
}

/// A plug-in with manifest and manager.cfg was uninstalled.
inline QStringList linesOfUninstall(const QString &folder, int result)
{
    return {"Debug: begin uninstall", "Debug: " + quoted(folder + "/uninstall.ini"),
            QStringLiteral("Debug: uninstallPlugin  %1").arg(result)};
}

/// A folder with neither manifest nor manager.cfg was to be uninstalled.
inline QStringList linesWithoutManifest(const QString &folder)
{
    const QString manifest = quoted(folder + "/uninstall.ini");
    return {"Debug: begin uninstall",
            "Debug: cannot open  " + manifest + "  for reading, ignore",
            "Debug: " + manifest,
            "Debug: could not delete  " + manifest,
            "Debug: could not delete  " + quoted(folder + "/manager.cfg"),
            "Debug: uninstallPlugin  0"};
}

} // namespace test
