// SPDX-License-Identifier: MIT
#include "installer/scriptedit.h"

#include "results.h"
#include "textfile.h"

#include <QDebug>
#include <QFile>

bool ScriptScan::hasOldLine() const
{
    return markerSeen && !oldLine.isEmpty();
}

int writeLines(QTextStream &source, const QString &path, QIODevice::OpenMode mode,
               const std::function<QString(const QString &)> &edit)
{
    QFile target(path);
    Utf8Stream stream(&target);
    QString line;
    while (readWholeLine(source, line)) {
        if (!target.isOpen() && !target.open(mode)) {
            qDebug() << "Could not open target file" << target.errorString();
            return Result::scriptNotInstalled;
        }
        stream << edit(line) << Qt::endl;
        // Each line is written for itself: one that met a full disk does not silence the rest.
        stream.resetStatus();
    }
    return 0;
}

int replaceOldLine(const QString &path, ScriptScan &scan, const QString &newLine)
{
    if (scan.oldLine == newLine) {
        return 0;
    }
    QTextStream lines(&scan.content);
    return writeLines(lines, path, QIODevice::WriteOnly | QIODevice::Text,
                      [&scan, &newLine](const QString &line) {
                          return QString(line).replace(scan.oldLine, newLine);
                      });
}

int appendText(const QString &path, const QString &text)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::Text)) {
        return Result::scriptNotInstalled;
    }
    Utf8Stream(&file) << text;
    return 0;
}
