// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The QtCore calls that an operation cannot do without, in a row, with no decisions and no checks
/// of their own. They are the limit that the program is held against.

/// A run that serves the hosts of the file \a settings, with a line of the log for each thing that
/// the program tells of a host. Asks for each host and, in an object of its own, for its version. A
/// host that has this version keeps its files; any other gets those of the folder \a source: each
/// is copied, removed, copied again, listed, and opened for the rights check. manager.cfg is read,
/// and written where there is none; so is, at the end, the file \a programVersion.
void installLoop(const QString &settings, const QString &source, const QString &programVersion);

/// Deletes each file that \a manifest names, if it exists, and \a manifest itself.
void removeLoop(const QString &manifest);

/// Walks \a folder and deletes what has one of the legacy names.
void legacyLoop(const QString &folder);

/// Reads \a script by lines, then writes it anew by lines, each flushed, with \a oldLine replaced.
void rewriteLoop(const QString &script, const QString &oldLine, const QString &newLine);

/// Reads the menu file in \a folder, looks for the anchor in its lower-cased text, backs it up, and
/// builds and writes the new text; then reads and backs up the extension file.
void menuLoop(const QString &folder);
