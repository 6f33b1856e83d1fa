// SPDX-License-Identifier: MIT
#pragma once

#include "installer/scriptedit.h"

/// \file
/// The text that goes into Clarisse's start-up script.

/// What is to become of the start-up script with the text \a script, which is empty when there is
/// none: the line "import drask" is added unless it mentions that already.
ScriptEdit clarisseEdit(const QString &script);
