// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Runs the program: clears the log of the previous run from the working directory, reads the
/// command line, runs the mode that it asks for, and returns the exit code. \a argc and \a argv are
/// those of main(). Nothing is printed.
///
/// Returns 0 for success; 2 or 3 for the last failure of an install pass (see runInstallPass()); or
/// the last positive result of an uninstallation (see uninstallPluginFunction()).
int runDriver(int argc, char *argv[]);

/// Uninstalls the plug-in in \a folder (used exactly as given, without a trailing slash). Returns
/// the result of PluginUninstaller::uninstallPlugin(), which it logs; or 0 for a text without any
/// "/", which is no folder: that logs "nothing to uninstall for ".
int uninstallPluginFunction(const QString &folder);
