// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>
#include <QTextStream>

#include <functional>

/// \file
/// What every text file of this program needs, whoever reads or writes it.

/// A text stream over a device that reads and writes UTF-8 without a byte-order mark.
class Utf8Stream : public QTextStream {
public:
    /// \a device is open already and outlives the stream, which flushes into it when it goes away.
    explicit Utf8Stream(QIODevice *device);
};

/// The bytes of \a text as UTF-8, without a byte-order mark. Half a surrogate becomes "?", and an
/// unfinished one at the end goes.
QByteArray toUtf8(const QString &text);

/// The text that readWholeText() makes of the bytes of a file.
QString textOf(const QByteArray &bytes);

/// Opens the file \a path read-only in text mode (which drops every carriage return) and reads its
/// whole text into \a text. Returns false for a file that is missing, cannot be opened or cannot be
/// read to its end; \a text is then as before, and \a reason, if given, becomes Qt's words for what
/// failed. Logs nothing.
bool readWholeText(const QString &path, QString &text, QString *reason = nullptr);

/// The text that readWholeText() reads, or an empty one where that fails.
QString readText(const QString &path);

/// Reads the next line of \a stream into \a line, without its line end. Returns false at the end,
/// and where the file under the stream cannot be read on: half a line is not taken for a line, and
/// what lies behind the gap is not read at another try. Logs nothing.
bool readWholeLine(QTextStream &stream, QString &line);

/// Reads the file \a path, in text mode, line by line and hands each line (without its line end) to
/// \a visit, until that returns false or the file ends. A file that is missing or cannot be opened
/// has no lines. Returns whether all that was asked for could be read. Logs nothing.
bool visitLines(const QString &path, const std::function<bool(const QString &)> &visit);
