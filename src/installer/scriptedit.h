// SPDX-License-Identifier: MIT
#pragma once

#include "literals.h"
#include "messages.h"

#include <QLatin1String>
#include <QString>

#include <functional>

/// \file
/// What the edits of hosts' start-up files and scripts share.

/// The comment line by which an earlier addition is recognised.
inline constexpr QLatin1String installedMarker = "#drask_installed"_l1;

/// What is to become of a start-up file.
struct ScriptEdit {
    /// How the file changes.
    enum class Kind {
        Leave,   ///< the file is as it should be
        Append,  ///< the text comes behind what is there; a missing file is made
        Rewrite, ///< the text is the file's new content
    };
    Kind kind = Kind::Leave; ///< how the file changes
    QString text;            ///< for Append and Rewrite
};

/// The lines of \a text, each changed by \a edit and ended by "\n". Their own line ends, "\n" or
/// "\r\n", fall away.
QString editedLines(QString text, const std::function<QString(const QString &)> &edit);

/// Brings the line \a oldLine, which an earlier run added to the file with the text \a text, up to
/// date: \a newLine wherever it stands, and "\n" line ends. Leaves a file that has \a newLine.
ScriptEdit lineUpdate(const QString &text, const QString &oldLine, const QString &newLine);

/// Makes \a text, as UTF-8, the content of the file \a path. Returns 0, or 1 when the file cannot
/// be opened or written, and is as before; that logs \a message and the reason.
int rewriteScript(const QString &path, const QString &text,
                  const char *message = Message::targetNotOpened);

/// Adds \a text to the file \a path, or makes it. Returns and logs what rewriteScript() does.
int extendScript(const QString &path, const QString &text);

/// The same for a file that must be readable as well; logs nothing.
int extendReadableScript(const QString &path, const QString &text);
