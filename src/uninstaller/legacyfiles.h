// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>

/// \file
/// The names by which files of earlier plug-ins are known.

/// The names of the files that plug-ins of an earlier generation left behind, as one
/// comma-separated text of 105 entries.
extern const QLatin1String legacyFileList;
