// SPDX-License-Identifier: MIT
#include "relocated.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

namespace test {

namespace {

/// Set in the environment of the relocated program.
constexpr char marker[] = "DRASK_TEST_RELOCATED";

} // namespace

int runRelocated(int argc, char *argv[], int (*runTests)(int argc, char *argv[]))
{
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

ProgramFolder::ProgramFolder()
    : Folder(QCoreApplication::applicationDirPath())
{
    if (!qEnvironmentVariableIsSet(marker)) {
        qFatal("Only a relocated program has a folder of its own");
    }
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    const QStringList names = QDir(path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                                     | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        if (name != program) {
            remove(name);
        }
    }
}

Tree ProgramFolder::tree() const
{
    Tree everything = Folder::tree();
    everything.remove(QFileInfo(QCoreApplication::applicationFilePath()).fileName());
    return everything;
}

} // namespace test
