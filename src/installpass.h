// SPDX-License-Identifier: MIT
#pragma once

#include "hostcatalogue.h"

class ManagerSettings;

/// Installs, updates or reconfigures the plug-ins of all \a hosts, one after the other, and writes
/// the program's own version file. A failure is reported to the user (pluginError.txt) and does not
/// stop the pass.
///
/// With \a forceReinstall plug-ins are copied even when the wanted version is there already.
/// \a exitCode is the code so far. Returns it, or the last failure's: 2 for plug-in files that
/// could not be copied, 3 for a manager.cfg or a Maya start-up script that could not be written.
int runInstallPass(const QList<PluginPathStruct> &hosts, const ManagerSettings &settings,
                   bool forceReinstall, int exitCode);
