// SPDX-License-Identifier: MIT
#include "programfolder.h"
#include "unitcase.h"

#include <QProcess>

#include <sys/resource.h>

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

/// A test program clears the folder that it lies in only when the folder is its own for sure.
class tst_ProgramFolder : public QObject {
    Q_OBJECT
private slots:
    void ownFolderIsCleared()
    {
        const test::ProgramFolder before;
        before.write("below/file", "text");
        const test::ProgramFolder after;
        VERIFY_TREE(after, {});
    }

    void otherFolderIsLeftAsItIs_data()
    {
        const test::Table<QStringList, QByteArray> table("words", "secret");
        const QString option = "-in-own-folder";
        table.row("nothing speaks for it", QStringList(), QByteArray());
        table.row("a secret that lies nowhere", QStringList{option, "secret"}, QByteArray());
        table.row("another secret", QStringList{option, "secret"}, "other");
        table.row("an empty secret", QStringList{option, ""}, "");
    }

    void otherFolderIsLeftAsItIs()
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
        VERIFY_TREE(sandbox, before);
    }
};

static const test::Registration clearingRegistration(clearingName, clearFolder);
DRASK_TEST_IN_OWN_FOLDER(tst_ProgramFolder)

#include "tst_programfolder.moc"
