// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

namespace fuzz {

/// Files by the system's own calls: a fuzzer does this thousands of times a second, and each
/// allocation is watched over. What fails ends the process.

/// A folder with all that is in it: relative path -> content. Folders end in "/" and have an empty
/// content; links end in "@" and have their target as content.
using Tree = QMap<QString, QByteArray>;

/// The name of a file that is overlooked everywhere: the fuzzer itself, when it lies in the
/// sandbox.
inline constexpr char overlookedName[] = "fuzz-program";

/// Ends the process and says \a what went wrong, and the system's reason, unless \a done.
void require(bool done, const char *what);

Tree readTree(const QByteArray &folder);

/// Removes everything from \a folder.
void emptyFolder(const QByteArray &folder);

/// Makes \a folder and all that is missing above it.
void makeFolders(const QByteArray &folder);

/// Returns the content of a file; a null array when there is none.
QByteArray readFile(const QByteArray &path);
void writeFile(const QByteArray &path, const QByteArray &content);

} // namespace fuzz
