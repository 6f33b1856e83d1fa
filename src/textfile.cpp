// SPDX-License-Identifier: MIT
#include "textfile.h"

#include <QFile>
#include <QTextCodec>

Utf8Stream::Utf8Stream(QIODevice *device)
    : QTextStream(device)
{
    // Looked up once: every line of the log makes a stream.
    static QTextCodec *const utf8 = QTextCodec::codecForName("UTF-8");
    setCodec(utf8);
}

QString readText(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return {};
    }
    const QString text = Utf8Stream(&file).readAll();
    return file.error() == QFileDevice::NoError ? text : QString();
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
