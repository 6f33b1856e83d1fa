// SPDX-License-Identifier: MIT
#include "disk/wholefile.h"

#include "filelooks.h"
#include "smalldisk.h"
#include "unitcase.h"

namespace {

constexpr QIODevice::OpenMode rewriting = QIODevice::WriteOnly | QIODevice::Text;
constexpr QIODevice::OpenMode adding = rewriting | QIODevice::Append;

const QByteArray large(30000, 'x');

/// Gives an ordinary user the sandbox, and in it a file with these rights.
void writeOfOrdinaryUser(const test::Sandbox &sandbox, unsigned rights)
{
    sandbox.write("file", "old");
    test::giveToOrdinaryUser(sandbox.path());
    test::giveToOrdinaryUser(sandbox.path("file"));
    test::setRights(sandbox.path("file"), rights);
}

} // namespace

Q_DECLARE_METATYPE(QIODevice::OpenMode)

/// What an ordinary user may write.
class tst_WholeFileRights : public QObject {
    Q_OBJECT

private slots:
    void readOnlyFileIsRefused_data()
    {
        const test::Table<QIODevice::OpenMode> table("mode");
        table.row("to be rewritten", rewriting);
        table.row("to be added to", adding);
    }

    void readOnlyFileIsRefused()
    {
        QFETCH(QIODevice::OpenMode, mode);
        const test::Sandbox sandbox;
        writeOfOrdinaryUser(sandbox, 0444);
        QString reason;
        {
            BECOME_ORDINARY_USER_OR_SKIP();
            QVERIFY(!writeWhole(sandbox.path("file"), mode, "new", &reason));
        }

        QCOMPARE(reason, QString("Permission denied"));
        VERIFY_TREE(sandbox, {{"file", "old"}});
    }

    void writableFileInAReadOnlyFolder_data()
    {
        readOnlyFileIsRefused_data();
    }

    void writableFileInAReadOnlyFolder()
    {
        QFETCH(QIODevice::OpenMode, mode);
        const test::Sandbox sandbox;
        const test::SmallDisk disk(sandbox.path(), "size=64k");
        if (!disk.isMounted()) {
            QSKIP("no disk of its own can be mounted here");
        }
        sandbox.write("file", large);
        test::giveToOrdinaryUser(sandbox.path("file"));
        test::setRights(sandbox.path(), 0555);
        const QString looks = test::looksOf(sandbox.path("file"));
        bool isWritten = false;
        bool isTooMuchWritten = true;
        {
            BECOME_ORDINARY_USER_OR_SKIP();
            isWritten = writeWhole(sandbox.path("file"), mode, "new");
            isTooMuchWritten = writeWhole(sandbox.path("file"), mode, QByteArray(90000, 'y'));
        }

        QVERIFY(isWritten);
        QVERIFY(!isTooMuchWritten);
        const QByteArray after = mode.testFlag(QIODevice::Append) ? large + "new" : "new";
        VERIFY_TREE(sandbox, {{"file", after}});
        QCOMPARE(test::looksOf(sandbox.path("file")), looks);
    }

    void fileOfAnotherIsWrittenInPlace()
    {
        const test::Sandbox sandbox;
        sandbox.write("file", "old");
        test::setRights(sandbox.path(), 0777);
        test::setRights(sandbox.path("file"), 0666);
        const QString looks = test::looksOf(sandbox.path("file"));
        bool isWritten = false;
        {
            BECOME_ORDINARY_USER_OR_SKIP();
            isWritten = writeWhole(sandbox.path("file"), rewriting, "new")
                && writeWhole(sandbox.path("file"), adding, "er");
        }

        QVERIFY(isWritten);
        VERIFY_TREE(sandbox, {{"file", "newer"}});
        QCOMPARE(test::looksOf(sandbox.path("file")), looks);
    }

    void fileThatMayNotBeReadIsWritten_data()
    {
        readOnlyFileIsRefused_data();
    }

    void fileThatMayNotBeReadIsWritten()
    {
        QFETCH(QIODevice::OpenMode, mode);
        const test::Sandbox sandbox;
        writeOfOrdinaryUser(sandbox, 0200);
        bool isWritten = false;
        {
            BECOME_ORDINARY_USER_OR_SKIP();
            isWritten = writeWhole(sandbox.path("file"), mode, "new");
        }

        QVERIFY(isWritten);
        QVERIFY(test::looksOf(sandbox.path("file")).startsWith("100200 "));
        test::setRights(sandbox.path("file"), 0600);
        QCOMPARE(sandbox.read("file"),
                 mode.testFlag(QIODevice::Append) ? QByteArray("oldnew") : QByteArray("new"));
    }

    void newFileInAReadOnlyFolderIsRefused()
    {
        const test::Sandbox sandbox;
        test::setRights(sandbox.path(), 0555);
        QString reason;
        {
            BECOME_ORDINARY_USER_OR_SKIP();
            QVERIFY(!writeWhole(sandbox.path("file"), rewriting, "new", &reason));
        }

        QCOMPARE(reason, QString("Permission denied"));
        VERIFY_TREE(sandbox, {});
    }
};

DRASK_TEST(tst_WholeFileRights)
#include "tst_wholefile_rights.moc"
