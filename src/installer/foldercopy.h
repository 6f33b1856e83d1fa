// SPDX-License-Identifier: MIT
#pragma once

#include "literals.h"

#include <QString>

/// \file
/// What the manifest of an installed plug-in lists. PluginInstaller::copyFolder() writes it.

/// False for a copy \a target that an uninstall is to leave: one with "drask_uninstall" in its
/// path.
bool isListed(const QString &target);

/// True if \a source is the folder of Maya's plug-in, or one in it: its manifest also lists the
/// shelf that the plug-in makes for itself, sooner or later.
bool makesShelf(const QString &source);

/// The end of that shelf's path.
inline constexpr QLatin1String shelfFile = "/prefs/shelves/shelf_DraskGrex.mel"_l1;
