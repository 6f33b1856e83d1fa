// SPDX-License-Identifier: MIT
#include "textfile.h"

#include "qtversions.h"

#include <QFile>

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

bool readWholeText(const QString &path, QString &text, QString *reason)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        const QString whole = Utf8Stream(&file).readAll();
        if (file.error() == QFileDevice::NoError) {
            text = whole;
            return true;
        }
    }
    if (reason != nullptr) {
        *reason = file.errorString();
    }
    return false;
}

QString readText(const QString &path)
{
    QString text;
    static_cast<void>(readWholeText(path, text));
    return text;
}

bool readWholeLine(QTextStream &stream, QString &line)
{
    const auto *const file = qobject_cast<const QFileDevice *>(stream.device());
    return stream.readLineInto(&line) && (file == nullptr || file->error() == QFileDevice::NoError);
}

bool visitLines(const QString &path, const std::function<bool(const QString &)> &visit)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return false;
    }
    Utf8Stream stream(&file);
    QString line;
    while (readWholeLine(stream, line) && visit(line)) { }
    return file.error() == QFileDevice::NoError;
}
