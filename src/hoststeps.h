// SPDX-License-Identifier: MIT
#pragma once

#include "hostcatalogue.h"

/// What single hosts need beyond the copy of their plug-in and its manager.cfg.

/// True for the hosts whose manager.cfg has "\r\n" line ends.
bool isCinema4d(const PluginPathStruct &host);

/// For the key "c4d" alone: removes the plug-in files of earlier versions from the host's plug-in
/// folders. What is missing or cannot be removed is passed over silently.
void removeLegacyCinema4dFiles(const PluginPathStruct &host);

/// Runs the steps that \a host has of its own (Maya, Rhino, Revit, Houdini) after its plug-in was
/// copied, and logs that the host is done. Returns 0 or the exit code of what failed, which was
/// reported to the user.
int runHostSteps(const PluginPathStruct &host);
