// SPDX-License-Identifier: MIT
#include "bareloops.h"

#include "qtversions.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>
#include <QTextStream>

namespace {

/// A line of the log is a file opened, extended and closed.
void appendToLog(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString &text)
{
    QFile log("plugin.log");
    log.open(QIODevice::WriteOnly | QIODevice::Append);
    QTextStream stream(&log);
    useUtf8(stream);
    stream << "Debug: " << text << Qt::endl;
}

} // namespace

/// Runs one bare loop, as "NAME ARGUMENT…", with its log in the working folder.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QFile::remove("plugin.log");
    qInstallMessageHandler(appendToLog);
    const QStringList words = QCoreApplication::arguments();
    const QString name = words.value(1);
    if (name == "install") {
        installLoop(words.value(2), words.value(3), words.value(4));
    } else if (name == "remove") {
        removeLoop(words.value(2));
    } else if (name == "legacy") {
        legacyLoop(words.value(2));
    } else if (name == "maya") {
        rewriteLoop(words.value(2), words.value(3), words.value(4));
    } else if (name == "lightwave") {
        menuLoop(words.value(2));
    } else {
        return 2;
    }
    return 0;
}
