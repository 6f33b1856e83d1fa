// SPDX-License-Identifier: MIT
#include "textfile.h"

#include "disk/files.h"
#include "qtversions.h"

#include <QBuffer>
#include <QFile>

namespace {

/// False when \a device is a file that could not be read on.
bool isSound(const QIODevice *device)
{
    const auto *const file = qobject_cast<const QFileDevice *>(device);
    return file == nullptr || file->error() == QFileDevice::NoError;
}

/// All that \a device has. A stream that is asked for everything at once holds it twice.
QString readPieces(QIODevice *device)
{
    constexpr int size = 65536;
    Utf8Stream stream(device);
    QString text;
    QString piece;
    do {
        piece = stream.read(size);
        text += piece;
    } while (piece.size() == size);
    return text;
}

} // namespace

Utf8Stream::Utf8Stream(QIODevice *device)
    : QTextStream(device)
{
    useUtf8(*this);
}

QByteArray toUtf8(const QString &text)
{
    // Not by a stream: what becomes of half a surrogate differs between those of Qt 5 and Qt 6.
    const bool isUnfinished = !text.isEmpty() && text.back().isHighSurrogate();
    return (isUnfinished ? text.chopped(1) : text).toUtf8();
}

QString textOf(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    static_cast<void>(buffer.open(QIODevice::ReadOnly | QIODevice::Text));
    return Utf8Stream(&buffer).readAll();
}

bool readWholeText(const QString &path, QString &text, QString *reason)
{
    const auto file = openToRead(path, QIODevice::ReadOnly | QIODevice::Text, reason);
    if (!file) {
        return false;
    }
    const QString whole = readPieces(file.get());
    if (!isSound(file.get())) {
        if (reason != nullptr) {
            *reason = file->errorString();
        }
        return false;
    }
    text = whole;
    return true;
}

QString readText(const QString &path)
{
    QString text;
    static_cast<void>(readWholeText(path, text));
    return text;
}

bool readWholeLine(QTextStream &stream, QString &line)
{
    return stream.readLineInto(&line) && isSound(stream.device());
}

bool visitLines(const QString &path, const std::function<bool(const QString &)> &visit)
{
    const auto file = openToRead(path, QIODevice::ReadOnly | QIODevice::Text);
    if (!file) {
        return false;
    }
    Utf8Stream stream(file.get());
    QString line;
    while (readWholeLine(stream, line) && visit(line)) { }
    return isSound(file.get());
}
