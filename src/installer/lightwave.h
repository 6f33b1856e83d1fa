// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// \file
/// The texts that go into LightWave's configuration files.

/// LightWave Layout's default menu with the plug-in's entry in it: 811 lines, each ended by "\r\n".
QString defaultLightwaveMenu();

/// The block that names the plug-in's module to LightWave. \a module is written with every
/// backslash doubled. What belongs into the extension file; no operation writes it there.
QString lightwaveExtensionEntry(const QString &module);

/// Returns the menu configuration \a menu with the plug-in's entry: as the first line under the
/// first "Options" sub-menu; or, without such a sub-menu, with the default menu put in at the
/// window group "_". Returns a null text when nothing is to be changed: the plug-in is mentioned
/// already, in any letter case, or neither place was found.
QString withLightwaveMenuEntry(const QString &menu);
