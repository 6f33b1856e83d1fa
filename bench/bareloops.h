// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The QtCore calls that an operation cannot do without, in a row, with nothing around them: no
/// settings, no log, no messages, no decisions. They are the limit that the program is held
/// against.

/// Copies, removes and copies again each file of \a source into \a target, opens it for the rights
/// check, and lists it.
void copyLoop(const QString &source, const QString &target);

/// Deletes each file that \a manifest names, if it exists, and \a manifest itself.
void removeLoop(const QString &manifest);

/// Walks \a folder and deletes what has one of the legacy names.
void legacyLoop(const QString &folder);

/// Reads \a script by lines, then writes it anew by lines, each flushed, with \a oldLine replaced.
void rewriteLoop(const QString &script, const QString &oldLine, const QString &newLine);

/// Reads the menu file in \a folder, looks for the anchor in its lower-cased text, backs it up, and
/// builds and writes the new text; then reads and backs up the extension file.
void menuLoop(const QString &folder);
