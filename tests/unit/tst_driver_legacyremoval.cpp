// SPDX-License-Identifier: MIT
#include "driver.h"
#include "programfolder.h"
#include "uninstaller/ov3uninstaller.h"
#include "unitcase.h"

#include <QLoggingCategory>

#include <utility>

namespace {

int resultOfRemoval = 0;
QString removedList;

} // namespace

// The real removal cannot fail, so what the driver makes of a failure shows only with another one.
int Ov3Uninstaller::deleteOldPlugins(QString listFile)
{
    removedList = std::move(listFile);
    return resultOfRemoval;
}

namespace {

/// The driver makes the application object, of which there may be one only. So this one is gone
/// before.
test::ProgramFolder emptyProgramFolder(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return test::ProgramFolder();
}

/// Runs the driver, which takes the messages and their filter over once a process, and gives both
/// back.
int run(int argc, char *argv[])
{
    const QtMessageHandler before = qInstallMessageHandler(nullptr);
    const int exitCode = runDriver(argc, argv);
    QLoggingCategory::installFilter(nullptr);
    qInstallMessageHandler(before);
    return exitCode;
}

} // namespace

/// What the driver makes of the result of the legacy removal.
class tst_DriverLegacyRemoval : public QObject {
    Q_OBJECT
private slots:
    void onlyAFailureIsReported_data()
    {
        const test::Table<int, QByteArray, QByteArray> table("result", "log", "errors");
        const QByteArray failed = "Removal of old plugins failed, please remove manually.\n";
        table.row("more than zero", 7, "Debug: 7\n", failed);
        table.row("one", 1, "Debug: 1\n", failed);
        table.row("zero", 0, "Debug: 0\n", QByteArray());
        table.row("less than zero", -3, "Debug: -3\n", QByteArray());
    }

    void onlyAFailureIsReported()
    {
        QFETCH(int, result);
        QFETCH(QByteArray, log);
        QFETCH(QByteArray, errors);
        char program[] = "x";
        char word[] = "ov3uninstall";
        char list[] = "/nowhere";
        char *words[] = {program, word, list, nullptr};
        const test::ProgramFolder folder = emptyProgramFolder(1, words);
        const test::Sandbox sandbox;
        const test::WorkingFolder workingFolder(sandbox.path());
        resultOfRemoval = result;

        QCOMPARE(run(3, words), result);
        QCOMPARE(removedList, QString("/nowhere"));
        QCOMPARE(folder.read("plugin.log"), log);
        QCOMPARE(folder.read("pluginError.txt"), errors);
    }
};

DRASK_TEST_WITHOUT_APPLICATION(tst_DriverLegacyRemoval)

#include "tst_driver_legacyremoval.moc"
