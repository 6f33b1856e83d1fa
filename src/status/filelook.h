// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// \file
/// Looking at files without touching them.

/// How a path was found.
enum class Found { Nothing, File, NoFile, Unreadable };

/// Says what is at \a path, links followed: File only if it can be read. A file that not even its
/// owner may read is Unreadable to root too. NoFile is a folder, a device or the like.
Found lookAt(const QString &path);

/// The text of the file \a path, UTF-8, with all line ends as they are; empty if it is no readable
/// file.
QString wholeText(const QString &path);

/// Whether two files hold the same bytes.
enum class Sameness { Same, Different, CannotTell };

/// Compares the content of the files \a first and \a second.
Sameness compareFiles(const QString &first, const QString &second);
