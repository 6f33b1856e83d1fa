// SPDX-License-Identifier: MIT
#pragma once

#include "literals.h"

#include <QIODevice>
#include <QLatin1String>
#include <QString>
#include <QTextStream>

#include <functional>

/// \file
/// The steps that the edits of hosts' start-up files share.

/// The comment line by which an earlier addition is recognised.
inline constexpr QLatin1String installedMarker = "#drask_installed"_l1;

/// What a walk through a start-up file found out.
struct ScriptScan {
    QString content;         ///< every line read, each ended by "\r\n"
    bool markerSeen = false; ///< a line with installedMarker was among them
    QString oldLine; ///< the line that an earlier run added, to be brought up to date; or empty

    /// True when an earlier run's line was recognised.
    bool hasOldLine() const;
};

/// Writes every line of \a source, changed by \a edit and ended by "\n", to the file \a path, each
/// flushed by itself. The file is opened with \a mode just before the first line, so a source
/// without lines leaves it alone. Returns 0, or 1 when the file cannot be opened, which logs
/// "Could not open target file" and the reason.
int writeLines(QTextStream &source, const QString &path, QIODevice::OpenMode mode,
               const std::function<QString(const QString &)> &edit);

/// Brings the line that \a scan found in the file \a path up to date: rewrites the file from the
/// scanned lines, with \a newLine wherever the old line stands, and "\n" line ends. A file that has
/// \a newLine already is not touched. Returns and logs what writeLines() does.
int replaceOldLine(const QString &path, ScriptScan &scan, const QString &newLine);

/// Appends \a text to the file \a path, creating it when there is none. Returns 0, or 1 when the
/// file cannot be opened for reading and appending. Logs nothing.
int appendText(const QString &path, const QString &text);
