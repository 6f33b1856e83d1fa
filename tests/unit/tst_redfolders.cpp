// SPDX-License-Identifier: MIT
#include "redfolders.h"

#include "sandbox.h"
#include "testprogram.h"

#include <QDir>
#include <QProcess>
#include <QtTest>

#include <memory>

/// What stays of red cases, and for how long.
class tst_RedFolders : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void tenthRedFolderStaysAndTheEleventhMakesTheOldestGo();
    void folderOfAnEndedProcessIsKept();
    void folderOfALivingProcessIsLeftAlone();

private:
    QByteArray temporaryFolder;
    std::unique_ptr<test::Sandbox> sandbox;
};

/// Cases have a folder for temporary files of their own.
void tst_RedFolders::init()
{
    temporaryFolder = qgetenv("TMPDIR");
    sandbox = std::make_unique<test::Sandbox>();
    qputenv("TMPDIR", QFile::encodeName(sandbox->path()));
}

void tst_RedFolders::cleanup()
{
    if (temporaryFolder.isNull()) {
        qunsetenv("TMPDIR");
    } else {
        qputenv("TMPDIR", temporaryFolder);
    }
    sandbox.reset();
}

void tst_RedFolders::tenthRedFolderStaysAndTheEleventhMakesTheOldestGo()
{
    for (int number = 0; number < 10; ++number) {
        const QString name = QStringLiteral("red %1").arg(number);
        sandbox->write(name + "/file", "text");
        if (number == 0) {
            QCOMPARE(QProcess::execute("touch", {"-t", "200102030405", sandbox->path(name)}), 0);
        }
        QCOMPARE(test::keepRedFolder(sandbox->path(name)), sandbox->path("drask-red/" + name));
    }
    QVERIFY(sandbox->exists("drask-red/red 0/file"));
    sandbox->write("red 10/file", "text");

    test::keepRedFolder(sandbox->path("red 10"));

    QVERIFY(!sandbox->exists("drask-red/red 0"));
    QVERIFY(sandbox->exists("drask-red/red 1/file"));
    QVERIFY(sandbox->exists("drask-red/red 10/file"));
}

void tst_RedFolders::folderOfAnEndedProcessIsKept()
{
    QProcess process;
    process.start("sleep", {"0"});
    QVERIFY(process.waitForStarted());
    const QString name = QStringLiteral("drask tést %1 abcdef").arg(process.processId());
    QVERIFY(process.waitForFinished());
    sandbox->write(name + "/file", "text");

    test::keepFoldersOfEndedProcesses();

    QVERIFY(!sandbox->exists(name));
    QCOMPARE(sandbox->read("drask-red/" + name + "/file"), QByteArray("text"));
}

void tst_RedFolders::folderOfALivingProcessIsLeftAlone()
{
    const QString folder = test::makeTemporaryFolder("drask tést");
    sandbox->makeFolder("drask of a user's own");

    test::keepFoldersOfEndedProcesses();

    QCOMPARE(QFileInfo(folder).path(), sandbox->path());
    QVERIFY(QFileInfo::exists(folder));
    QVERIFY(sandbox->exists("drask of a user's own"));
    QVERIFY(!sandbox->exists("drask-red"));
}

DRASK_TEST(tst_RedFolders)

#include "tst_redfolders.moc"
