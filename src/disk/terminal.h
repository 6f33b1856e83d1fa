// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>

/// \file
/// Whether somebody is watching.

/// True when \a stream is a terminal.
bool isTerminal(std::FILE *stream);
