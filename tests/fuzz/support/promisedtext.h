// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace fuzz {

/// What the bytes of a file say, computed without text streams and devices.

/// The text of a file in UTF-8, or in the UTF-16 or UTF-32 that its byte-order mark announces. The
/// mark and an unfinished character at the end go.
QString textOf(const QByteArray &content);

/// The bytes of \a text in the encoding that the file \a content has, without a byte-order mark.
QByteArray encodedLike(const QByteArray &content, const QString &text);

/// The bytes of a file that says \a text, without the unfinished half of a character at the end.
QByteArray utf8Of(const QString &text);

/// The text of a file that is read in text mode: every carriage return goes.
QString textModeTextOf(const QByteArray &content);

/// The lines of such a file, without their ends.
QStringList linesOf(const QByteArray &content);

/// Lines as the program writes them: UTF-8, each ended by "\n".
QByteArray written(const QStringList &lines);

/// True for a file that is not read as UTF-8, because it begins with another byte-order mark. What
/// is appended to it in UTF-8 cannot be recognised later.
bool hasForeignByteOrderMark(const QByteArray &content);

/// Replaces in \a path every ".." that would climb above the folder in which the path begins.
QString withoutClimbing(const QString &path);

} // namespace fuzz
