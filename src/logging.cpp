// SPDX-License-Identifier: MIT
#include "logging.h"

#include "literals.h"
#include "textfile.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdlib>

namespace {

void appendLine(QLatin1String fileName, const QString &line)
{
    QFile file(QCoreApplication::applicationDirPath() + fileName);
    // A stream on a closed file would make Qt complain on the console.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) {
        return;
    }
    Utf8Stream(&file) << line << Qt::endl;
}

QString logLine(QtMsgType type, const QString &message)
{
    switch (type) {
    case QtDebugMsg:
        return QStringLiteral("Debug: %1").arg(message);
    case QtWarningMsg:
        return QStringLiteral("Warning: %1").arg(message);
    case QtCriticalMsg:
        return QStringLiteral("Critical: %1").arg(message);
    case QtFatalMsg:
        // Deliberate: the manager takes a log that stops short as the sign of a crash.
        std::abort();
    case QtInfoMsg:
        break;
    }
    return {};
}

} // namespace

void myMessageOutput(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    appendLine("/plugin.log"_l1, logLine(type, message));
}

void writeErrorFile(const QString &message)
{
    appendLine("/pluginError.txt"_l1, message);
}
