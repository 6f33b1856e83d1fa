// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariant>

#include <optional>

/// \file
/// Whole numbers in texts, read by one rule whatever Qt's own is: it changed with Qt 6.

/// Reads \a text as a whole decimal number of at most 64 bits. White space of any kind may stand
/// around it; "+", "-" or U+2212 may stand in front of its digits, which are those of ASCII.
/// Returns nothing for anything else. Logs nothing.
std::optional<qint64> wholeNumber(const QString &text);

/// The number that a value of the settings stands for, as QVariant::toInt() gives it: the lowest 32
/// bits of a text that is a number, and 0 for any other text. Logs nothing.
int numberOfSetting(const QVariant &value);
