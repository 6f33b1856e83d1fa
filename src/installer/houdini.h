// SPDX-License-Identifier: MIT
#pragma once

#include "installer/scriptedit.h"

/// \file
/// The text that goes into Houdini's environment file.

/// What is to become of the environment file with the text \a environment, which is empty when
/// there is none, so that \a folder (as it stands) is on Houdini's search path: an assignment is
/// added behind the marker, or the line behind an earlier marker is brought up to date. An update
/// drops the lines behind that line.
ScriptEdit houdiniEdit(const QString &environment, const QString &folder);
