// SPDX-License-Identifier: MIT
#include "installer/scriptedit.h"

#include "disk/wholefile.h"
#include "messages.h"
#include "results.h"
#include "textfile.h"

#include <QDebug>
#include <QTextStream>

namespace {

int writeScript(const QString &path, QIODevice::OpenMode mode, const QString &text,
                const char *message)
{
    QString reason;
    if (!writeWhole(path, mode, toUtf8(text), &reason)) {
        qDebug() << message << reason;
        return Result::scriptNotInstalled;
    }
    return 0;
}

} // namespace

QString editedLines(QString text, const std::function<QString(const QString &)> &edit)
{
    QTextStream lines(&text);
    QString line;
    QString edited;
    while (lines.readLineInto(&line)) {
        edited += edit(line) + QLatin1Char('\n');
    }
    return edited;
}

ScriptEdit lineUpdate(const QString &text, const QString &oldLine, const QString &newLine)
{
    if (oldLine == newLine) {
        return {};
    }
    return {ScriptEdit::Kind::Rewrite, editedLines(text, [&](const QString &line) {
                return QString(line).replace(oldLine, newLine);
            })};
}

int rewriteScript(const QString &path, const QString &text, const char *message)
{
    return writeScript(path, QIODevice::WriteOnly | QIODevice::Text, text, message);
}

int extendScript(const QString &path, const QString &text)
{
    return writeScript(path, QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text, text,
                       Message::targetNotOpened);
}

int extendReadableScript(const QString &path, const QString &text)
{
    const QIODevice::OpenMode mode = QIODevice::ReadWrite | QIODevice::Append | QIODevice::Text;
    return writeWhole(path, mode, toUtf8(text)) ? 0 : Result::scriptNotInstalled;
}
