// SPDX-License-Identifier: MIT
#include "logging.h"

#include "disk/files.h"
#include "disk/otherdisk.h"
#include "disk/wholefile.h"
#include "literals.h"
#include "textfile.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <cstdlib>

namespace {

constexpr QLatin1String errorFileName = "/pluginError.txt"_l1;

/// A file beside the program that lines are added to.
class LineFile {
public:
    /// \a name begins with a slash.
    explicit LineFile(QLatin1String name)
        : path(toolFolder() + name)
    {
        // Qt would complain on the console about a device or a pipe in the file's place. Whoever
        // puts one there does so before the first line, so that the others need not ask.
        const QFileInfo present(path);
        isLost = present.exists() && !present.isFile() && !present.isDir();
    }

    void append(const QString &line) const
    {
        QFile file(path);
        // A stream on a closed file would complain as well.
        if (!isLost && file.open(QIODevice::WriteOnly | QIODevice::Append)) {
            Utf8Stream(&file) << line << Qt::endl;
        }
    }

private:
    const QString path;
    bool isLost = false;
};

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
        // Deliberate (fatal-message): it is not written.
        std::abort();
    case QtInfoMsg:
        break;
    }
    return {};
}

void myMessageOutput(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    static const LineFile log("/plugin.log"_l1);
    log.append(logLine(type, message));
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
    if (OtherDisk::inPlace() != nullptr) {
        static_cast<void>(writeWhole(toolFolder() + errorFileName,
                                     QIODevice::WriteOnly | QIODevice::Append,
                                     toUtf8(message + QLatin1Char('\n'))));
        return;
    }
    static const LineFile errors(errorFileName);
    errors.append(message);
}
