// SPDX-License-Identifier: MIT
#pragma once

#include "hostcatalogue.h"

/// \file
/// What single hosts need beyond the copy of their plug-in and its manager.cfg.

/// True for the keys "c4d", "c4d14" and "c4d21", the hosts whose manager.cfg has "\r\n" line ends.
bool isCinema4d(const PluginPathStruct &host);

/// For the key "c4d" alone: removes the plug-in files of earlier versions from the host's plug-in
/// folders. What is missing or cannot be removed is passed over silently. Logs nothing.
void removeLegacyCinema4dFiles(const PluginPathStruct &host);

/// Takes away what a killed run left beside the user's file that the steps of \a host edit. Logs
/// nothing.
void clearUnfinishedStartUpFile(const PluginPathStruct &host);

/// Runs the steps that \a host has of its own (Maya, Rhino, Revit, Houdini) after its plug-in was
/// copied, and logs that the host is done: the key with " plugin installed in: ", and the target
/// folder. Returns 0, or 3 when Maya's start-up script could not be installed, which was reported
/// to the user. Whatever fails for the other hosts is passed over silently.
int runHostSteps(const PluginPathStruct &host);
