// SPDX-License-Identifier: MIT
#pragma once

#include "hostcatalogue.h"

class ManagerSettings;

/// \file
/// The pass over all hosts that installs, updates and reconfigures.

/// Which plug-ins a pass copies.
enum class CopyWhen {
    VersionDiffers, ///< those of which the host does not have the wanted version
    Always,         ///< all
};

/// Installs, updates or reconfigures the plug-ins of all \a hosts, one after the other, and writes
/// the program's own version file. A failure is reported to the user (pluginError.txt) and does not
/// stop the pass. A host whose folder holds no "/" is passed over.
///
/// \a settings say where the projects lie and whether textures are sent along. \a copyWhen
/// says which plug-ins are copied. \a exitCode is the code so far.
///
/// Returns it, or the last failure's: 2 for plug-in files that could not be copied, 3 for a
/// manager.cfg or a Maya start-up script that could not be written. Logs the projects folder, what
/// is done for each host, and at last the code.
int runInstallPass(const QList<PluginPathStruct> &hosts, const ManagerSettings &settings,
                   CopyWhen copyWhen, int exitCode);
