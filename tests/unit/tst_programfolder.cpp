// SPDX-License-Identifier: MIT
#include "programfolder.h"

#include "sandbox.h"
#include "testprogram.h"

#include <QProcess>
#include <QtTest>

#include <sys/resource.h>

/// A test program clears the folder that it lies in only when the folder is its own for sure.
class tst_ProgramFolder : public QObject {
    Q_OBJECT

private slots:
    void ownFolderIsCleared();
    void otherFolderIsLeftAsItIs_data();
    void otherFolderIsLeftAsItIs();
};

namespace {

/// What this program is started by to clear the folder that it lies in.
constexpr char clearingName[] = "clearing of tst_programfolder";

int clearFolder(int argc, char *argv[])
{
    // The abort that is asked for leaves no core file behind.
    const rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    const QCoreApplication application(argc, argv);
    const test::ProgramFolder folder;
    return 0;
}

} // namespace

void tst_ProgramFolder::ownFolderIsCleared()
{
    const test::ProgramFolder before;
    before.write("below/file", "text");

    const test::ProgramFolder after;

    QCOMPARE(test::treeDifference(after.tree(), {}), QString());
}

void tst_ProgramFolder::otherFolderIsLeftAsItIs_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QByteArray>("secret");

    const QString option = "-in-own-folder";
    QTest::newRow("nothing speaks for it") << QStringList() << QByteArray();
    QTest::newRow("a secret that lies nowhere") << QStringList{option, "secret"} << QByteArray();
    QTest::newRow("another secret") << QStringList{option, "secret"} << QByteArray("other");
    QTest::newRow("an empty secret") << QStringList{option, ""} << QByteArray("");
}

void tst_ProgramFolder::otherFolderIsLeftAsItIs()
{
    QFETCH(QStringList, words);
    QFETCH(QByteArray, secret);
    const test::Sandbox sandbox;
    sandbox.write("build/precious", "text");
    if (!secret.isNull()) {
        sandbox.write("secret", secret);
    }
    const QString program = sandbox.path("build/program");
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
    const test::Tree before = sandbox.tree();
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DRASK_TEST_RELOCATED", "1");
    process.setProcessEnvironment(environment);

    process.start(program, words + QStringList(clearingName));
    QVERIFY(process.waitForFinished());

    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

static const test::Registration clearingRegistration(clearingName, clearFolder);
DRASK_TEST_IN_OWN_FOLDER(tst_ProgramFolder)

#include "tst_programfolder.moc"
