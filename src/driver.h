// SPDX-License-Identifier: MIT
#pragma once

#include "commandline.h"

#include <QString>

/// \file
/// From the command line to the exit code: what main() calls, and the removal of one plug-in.

/// Runs the program: clears the log of the previous run from the working directory, reads the
/// command line, runs the mode that it asks for, and returns the exit code. \a argc and \a argv are
/// those of main(). Nothing is printed.
///
/// Returns 0 for success; 2 or 3 for the last failure of an install pass (see runInstallPass()); or
/// the last positive result of an uninstallation (see uninstallPluginFunction()).
int runDriver(int argc, char *argv[]);

/// Removes plugin.log and pluginError.txt from the working directory. What cannot be removed stays.
void removePreviousLogs();

/// Runs the mode that \a commandLine asks for and returns the exit code. The core application
/// object and the message handler are in place already.
int runMode(const CommandLine &commandLine);

/// Uninstalls the plug-in in \a folder, which is used exactly as given, has no trailing slash and
/// ends with the plug-in's own sub-folder.
///
/// Returns the result of PluginUninstaller::uninstallPlugin(), which it logs behind
/// "uninstallPlugin "; or 0 for a text without any "/", which is no folder: that logs "nothing to
/// uninstall for " and the text.
int uninstallPluginFunction(const QString &folder);
