// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The QtCore calls that an operation cannot do without, in a row, with nothing around them: no
/// settings, no log, no messages, no decisions. They are the limit that the program is held
/// against.

/// Copies, removes and copies again each file of \a source into \a target, opens it for the rights
/// check, and lists it.
void copyLoop(const QString &source, const QString &target);

/// Asks the file \a settings for each of \a hosts and, in an object of its own, for its version;
/// finds the same in the host's version file, and its configuration there. Appends to \a log the
/// four lines that a host gets, each by itself.
void idleLoop(const QString &settings, int hosts, const QString &log);

/// Deletes each file that \a manifest names, if it exists, and \a manifest itself.
void removeLoop(const QString &manifest);

/// Walks \a folder and deletes what has one of the legacy names.
void legacyLoop(const QString &folder);

/// Reads \a script by lines, then writes it anew by lines, each flushed, with \a oldLine replaced.
void rewriteLoop(const QString &script, const QString &oldLine, const QString &newLine);

/// Reads the menu file in \a folder, looks for the anchor in its lower-cased text, backs it up, and
/// builds and writes the new text; then reads and backs up the extension file.
void menuLoop(const QString &folder);
