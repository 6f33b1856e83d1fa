// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// \file
/// The version file of an installed plug-in. The plug-in brings it along; this program only reads
/// it.

/// Reads the version of an installed plug-in: the first line of \a folder + "/version.txt" as a
/// whole decimal number. \a folder has no trailing slash.
///
/// Returns the number, or -1 when the file is missing or cannot be read, or when its first line is
/// anything else, surrounding white space included. Logs nothing.
int readVersionTxt(const QString &folder);
