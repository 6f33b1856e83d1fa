// SPDX-License-Identifier: MIT
#pragma once

#include "status/options.h"

#include <QString>

struct Answer;

/// \file
/// An answer for people.

/// Whether escape sequences for colours are put around the states.
enum class Paint { Plain, Coloured };

/// \a answer as a text that reads well in 80 columns: counts, a table with a host a row, then the
/// details of those that have any. Lists stop after ten entries of a kind unless \a listing says
/// All.
QString toText(const Answer &answer, Listing listing, Paint paint);
