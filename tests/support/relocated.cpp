// SPDX-License-Identifier: MIT
#include "relocated.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

namespace test {

int runRelocated(int argc, char *argv[], int (*runTests)(int argc, char *argv[]))
{
    const char marker[] = "DRASK_TEST_RELOCATED";
    if (qEnvironmentVariableIsSet(marker)) {
        return runTests(argc, argv);
    }
    const QCoreApplication application(argc, argv);
    QTemporaryDir folder(QDir::tempPath() + "/drask hömé XXXXXX");
    const QString program = folder.filePath(
        QFileInfo(QCoreApplication::applicationFilePath()).fileName());
    if (!QFile::copy(QCoreApplication::applicationFilePath(), program)) {
        qFatal("The test program could not be copied to %s", qPrintable(program));
    }
    qputenv(marker, "1");
    const int result = QProcess::execute(program, QCoreApplication::arguments().mid(1));
    if (result != 0) {
        folder.setAutoRemove(false);
        qInfo("The folder stays: %s", qPrintable(folder.path()));
    }
    return result;
}

} // namespace test
