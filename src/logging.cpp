// SPDX-License-Identifier: MIT
#include "logging.h"

#include "literals.h"
#include "textfile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <cstdlib>

namespace {

void appendLine(QLatin1String fileName, const QString &line)
{
    QFile file(QCoreApplication::applicationDirPath() + fileName);
    // Qt would complain on the console about a device or a pipe in the file's place, and about a
    // stream on a closed file.
    const QFileInfo present(file);
    if (!present.isFile() && present.exists()) {
        return;
    }
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

QLoggingCategory::CategoryFilter rulesOfTheMachine = nullptr;

void keepDefaultCategory(QLoggingCategory *category)
{
    // Categories that are known already have been through the rules.
    if (rulesOfTheMachine != nullptr) {
        rulesOfTheMachine(category);
    }
    if (qstrcmp(category->categoryName(), "default") == 0) {
        for (const QtMsgType type : {QtDebugMsg, QtInfoMsg, QtWarningMsg, QtCriticalMsg}) {
            category->setEnabled(type, true);
        }
    }
}

} // namespace

void myMessageOutput(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    appendLine("/plugin.log"_l1, logLine(type, message));
}

void keepEveryMessage()
{
    const QLoggingCategory::CategoryFilter before = QLoggingCategory::installFilter(
        keepDefaultCategory);
    // Asked for a second time, the filter is its own predecessor.
    if (before != keepDefaultCategory) {
        rulesOfTheMachine = before;
    }
}

void writeErrorFile(const QString &message)
{
    appendLine("/pluginError.txt"_l1, message);
}
