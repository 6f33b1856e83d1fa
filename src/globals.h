// SPDX-License-Identifier: MIT
#pragma once

#include "installerversion.h"
#include "literals.h"

#include <QLatin1String>
#include <QString>

/// \file
/// The values that the whole run shares. They are defined in driver.cpp, which alone sets them.

/// The user named by the manager's settings; empty until the settings are loaded, and empty again
/// for a user who is logged out.
extern QString username;

/// The user's local projects folder as the manager's settings give it, without a trailing slash.
extern QString localProjectsFolder;

/// True in the mode "onlyWriteConfig": plug-in files stay as they are.
extern bool onlyWriteConfig;

/// The plug-in generation. It is only logged, and has nothing to do with installerVersion.
extern const int pluginVersion;

/// The installer's own version text: line 4 of every manager.cfg, and all of the version.txt that
/// the installer keeps beside itself.
inline constexpr QLatin1String installerVersion(installerVersionText,
                                                sizeof installerVersionText - 1);
