// SPDX-License-Identifier: MIT
#pragma once

#include "hostcatalogue.h"
#include "literals.h"

#include <QStringList>

/// \file
/// What single hosts need beyond the copy of their plug-in and its manager.cfg.

/// The folder that extra files of hosts come from and that Houdini is to search.
/// Deliberate (empty-extra-files-folder): the files come from the root of the file system.
inline constexpr QLatin1String extraFilesFolder = ""_l1;

/// True for the keys "c4d", "c4d14" and "c4d21", the hosts whose manager.cfg has "\r\n" line ends.
bool isCinema4d(const PluginPathStruct &host);

/// The plug-in files of earlier versions that \a host must not have, with their full names, whether
/// they are there or not; none for any key but "c4d".
QStringList legacyCinema4dFiles(const PluginPathStruct &host);

/// Removes the legacyCinema4dFiles() of \a host. What is missing or cannot be removed is passed
/// over silently. Logs nothing.
void removeLegacyCinema4dFiles(const PluginPathStruct &host);

/// The name of the template of Maya's start-up script in a plug-in, after the folder.
inline constexpr QLatin1String mayaTemplateFile = "/drask_userSetup.py"_l1;

/// The user's file that the steps of \a host edit, whether it is there or not; empty for a host
/// without one.
QString startUpFileOf(const PluginPathStruct &host);

/// Takes away what a killed run left beside the user's file that the steps of \a host edit. Logs
/// nothing.
void clearUnfinishedStartUpFile(const PluginPathStruct &host);

/// Runs the steps that \a host has of its own (Maya, Rhino, Revit, Houdini) after its plug-in was
/// copied, and logs that the host is done: the key with " plugin installed in: ", and the target
/// folder. Returns 0, or 3 when Maya's start-up script could not be installed, which was reported
/// to the user. Whatever fails for the other hosts is passed over silently.
int runHostSteps(const PluginPathStruct &host);
