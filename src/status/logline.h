// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// \file
/// One line of plugin.log, taken apart.

/// Reads the items of a debug line from left to right: labels stand as they are, texts in quotes
/// with escapes, numbers bare; one blank follows each.
class LogLine {
public:
    /// \a line is one line of the log, without its line end.
    explicit LogLine(const QString &line);

    /// True for a debug line; no other has items.
    bool isDebug() const;

    /// Steps over the next item if it is \a label; otherwise returns false and stays where it is.
    bool takeLabel(const char *label);
    /// The same for a text in quotes, which \a text becomes.
    bool takeText(QString &text);
    /// The same for a number, which \a number becomes.
    bool takeNumber(int &number);

    /// True when nothing is left.
    bool isAtEnd() const;

private:
    QString items;
    int position = 0;
    bool debug = false;
};
