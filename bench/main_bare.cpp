// SPDX-License-Identifier: MIT
#include "bareloops.h"

#include <QCoreApplication>
#include <QStringList>

namespace {

/// Streams on files that a backup has closed complain, as they do in the program's log.
void beSilent(QtMsgType /*type*/, const QMessageLogContext & /*context*/, const QString & /*text*/)
{
}

} // namespace

/// Runs one bare loop, as "NAME ARGUMENT…".
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    qInstallMessageHandler(beSilent);
    const QStringList words = QCoreApplication::arguments();
    const QString name = words.value(1);
    if (name == "copy") {
        copyLoop(words.value(2), words.value(3));
    } else if (name == "idle") {
        idleLoop(words.value(2), words.value(3).toInt(), words.value(4));
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
