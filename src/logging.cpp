// SPDX-License-Identifier: MIT
#include "logging.h"

#include "disk/appendtofile.h"
#include "disk/files.h"
#include "literals.h"
#include "qtversions.h"

#include <QDebug>
#include <QFileInfo>
#include <QLoggingCategory>

#include <cstdlib>

namespace {

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
        if (!isLost) {
            static_cast<void>(appendToFile(path, (line + QLatin1Char('\n')).toUtf8()));
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

/// Qt 6 puts a name before a list, which managers in the field do not know.
QString withoutListNames(const QString &text)
{
    const QLatin1String name = "QList"_l1;
    QString rest;
    bool isQuoted = false;
    for (TextPosition at = 0; at < text.size(); ++at) {
        const QChar letter = text.at(at);
        if (isQuoted && letter == QLatin1Char('\\')) {
            rest += letter;
            ++at;
        } else if (letter == QLatin1Char('"')) {
            isQuoted = !isQuoted;
        } else if (!isQuoted && QStringView(text).mid(at).startsWith(name)) {
            at += name.size();
        }
        rest += text.at(at);
    }
    return rest;
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

QString loggedForm(const QVariant &value)
{
    QString text;
    QDebug(&text).nospace() << value;
    return withoutListNames(text);
}

void writeErrorFile(const QString &message)
{
    static const LineFile errors("/pluginError.txt"_l1);
    errors.append(message);
}
