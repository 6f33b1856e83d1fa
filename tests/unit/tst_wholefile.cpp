// SPDX-License-Identifier: MIT
#include "disk/wholefile.h"

#include "filelooks.h"
#include "smalldisk.h"
#include "unitcase.h"

#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr QIODevice::OpenMode rewriting = QIODevice::WriteOnly | QIODevice::Text;
constexpr QIODevice::OpenMode adding = rewriting | QIODevice::Append;
constexpr QIODevice::OpenMode addingToReadable = adding | QIODevice::ReadOnly;

constexpr unsigned someUser = 4321;
constexpr unsigned someGroup = 1234;

/// What a file may be like, so that another in its place can be told from it.
enum class Kind {
    Usual,
    OfAnotherUser,
    ReadOnlyForTheGroup,
    WithAttributes,
    BehindALink,
    WithTwoNames,
};

/// Makes "file" so; false where this disk has no such files.
bool makeFile(const test::Folder &folder, Kind kind, const QByteArray &content)
{
    const QString path = folder.path("file");
    folder.write(kind == Kind::BehindALink ? "elsewhere" : "file", content);
    switch (kind) {
    case Kind::Usual:
        return true;
    case Kind::OfAnotherUser:
        test::giveTo(path, someUser, someGroup);
        return true;
    case Kind::ReadOnlyForTheGroup:
        test::setRights(path, 0640);
        return true;
    case Kind::WithAttributes:
        return test::setAttribute(path, "user.colour", "blue") && test::setAccessList(path);
    case Kind::BehindALink:
        folder.makeLink("elsewhere", "file");
        return true;
    case Kind::WithTwoNames:
        test::addName(path, folder.path("other name"));
        return true;
    }
    return false;
}

const QByteArray large(30000, 'x');

} // namespace

Q_DECLARE_METATYPE(QIODevice::OpenMode)
Q_DECLARE_METATYPE(Kind)

class tst_WholeFile : public QObject {
    Q_OBJECT
private slots:
    void contentIsWritten_data()
    {
        QTest::addColumn<QIODevice::OpenMode>("mode");
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");

        for (const QByteArray &before : {QByteArray(), QByteArray("old\n"), large}) {
            const int size = static_cast<int>(before.size());
            QTest::addRow("%d bytes are rewritten", size)
                << rewriting << before << QByteArray("new");
            QTest::addRow("%d bytes are added to", size) << adding << before << before + "new";
            QTest::addRow("%d readable bytes are added to", size)
                << addingToReadable << before << before + "new";
        }
        QTest::newRow("what is there is added")
            << adding << QByteArray("new") << QByteArray("newnew");
    }

    void contentIsWritten()
    {
        QFETCH(QIODevice::OpenMode, mode);
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        const test::Sandbox sandbox;
        if (!before.isNull()) {
            sandbox.write("file", before);
        }
        QString reason = "as it was";

        QVERIFY(writeWhole(sandbox.path("file"), mode, "new", &reason));
        VERIFY_TREE(sandbox, {{"file", after}});
        QCOMPARE(reason, QString("as it was"));
    }

    void fileThatCannotBeOpenedIsRefusedInQtsWords_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QIODevice::OpenMode>("mode");

        for (const QIODevice::OpenMode mode : {rewriting, adding, addingToReadable}) {
            QTest::addRow("a folder, mode %d", int(mode)) << "folder" << mode;
            QTest::addRow("a missing folder, mode %d", int(mode)) << "missing/file" << mode;
            QTest::addRow("below a file, mode %d", int(mode)) << "file/file" << mode;
            QTest::addRow("a name too long, mode %d", int(mode)) << QString(300, 'x') << mode;
            QTest::addRow("a link in a circle, mode %d", int(mode)) << "circle" << mode;
            QTest::addRow("a link to a missing folder, mode %d", int(mode)) << "dangling" << mode;
            QTest::addRow("a link to a name too long, mode %d", int(mode)) << "long" << mode;
        }
    }

    void fileThatCannotBeOpenedIsRefusedInQtsWords()
    {
        QFETCH(QString, name);
        QFETCH(QIODevice::OpenMode, mode);
        const test::Sandbox sandbox;
        sandbox.makeFolder("folder");
        sandbox.write("file", "old\n");
        sandbox.makeLink("circle", "circle");
        sandbox.makeLink("missing/file", "dangling");
        sandbox.makeLink(QString(300, 'x'), "long");
        const test::Tree before = sandbox.tree();
        QFile plain(sandbox.path(name));
        QVERIFY(!plain.open(mode));
        QString reason;

        QVERIFY(!writeWhole(sandbox.path(name), mode, "new", &reason));
        QVERIFY(!writeWhole(sandbox.path(name), mode, "new"));
        QCOMPARE(reason, plain.errorString());
        VERIFY_TREE(sandbox, before);
    }

    void fileStaysWhatItIs_data()
    {
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QIODevice::OpenMode>("mode");

        const auto add = [](const char *name, Kind kind) {
            QTest::addRow("%s, rewritten", name) << kind << rewriting;
            QTest::addRow("%s, added to", name) << kind << adding;
        };
        add("the usual", Kind::Usual);
        if (geteuid() == 0) {
            add("of another user", Kind::OfAnotherUser);
        }
        add("read-only for the group", Kind::ReadOnlyForTheGroup);
        add("with attributes", Kind::WithAttributes);
        add("behind a link", Kind::BehindALink);
        add("with two names", Kind::WithTwoNames);
    }

    void fileStaysWhatItIs()
    {
        QFETCH(Kind, kind);
        QFETCH(QIODevice::OpenMode, mode);
        const test::Sandbox sandbox;
        if (!makeFile(sandbox, kind, large)) {
            QSKIP("the disk has no extended attributes or access lists");
        }
        const QString looks = test::looksOf(sandbox.path("file"));
        const QByteArray after = mode.testFlag(QIODevice::Append) ? large + "new" : "new";
        test::Tree expected = sandbox.tree();
        for (QByteArray &content : expected) {
            content = content == large ? after : content;
        }

        QVERIFY(writeWhole(sandbox.path("file"), mode, "new"));
        VERIFY_TREE(sandbox, expected);
        QCOMPARE(test::looksOf(sandbox.path("file")), looks);
    }

    void anotherFileTakesThePlace()
    {
        const test::Sandbox sandbox;
        sandbox.write("file", "old");
        QFile old(sandbox.path("file"));
        QVERIFY(old.open(QIODevice::ReadOnly));
        QVERIFY(writeWhole(sandbox.path("file"), rewriting, "new"));
        QCOMPARE(old.readAll(), QByteArray("old"));
    }

    void newFileIsLikeAnyOther()
    {
        const test::Sandbox sandbox;
        for (const mode_t mask : {0022U, 0077U, 0002U}) {
            const mode_t before = umask(mask);
            sandbox.write("usual", "");
            const bool isWritten = writeWhole(sandbox.path("file"), rewriting, "new");
            umask(before);

            QVERIFY(isWritten);
            QCOMPARE(test::looksOf(sandbox.path("file")), test::looksOf(sandbox.path("usual")));
            sandbox.remove("usual");
            sandbox.remove("file");
        }
    }

    void newFileFollowsTheAccessListOfItsFolder()
    {
        const test::Sandbox sandbox;
        if (!test::setAccessListOfNewFiles(sandbox.path())) {
            QSKIP("the disk has no access lists");
        }
        sandbox.write("usual", "old");
        const QString looks = test::looksOf(sandbox.path("usual"));

        QVERIFY(writeWhole(sandbox.path("file"), rewriting, "new"));
        QVERIFY(writeWhole(sandbox.path("usual"), rewriting, "new"));
        QCOMPARE(test::looksOf(sandbox.path("file")), looks);
        QCOMPARE(test::looksOf(sandbox.path("usual")), looks);
    }

    void linkToNothingLeadsToTheNewFile()
    {
        const test::Sandbox sandbox;
        sandbox.makeFolder("elsewhere");
        sandbox.makeLink("elsewhere/file", "link");
        QVERIFY(writeWhole(sandbox.path("link"), adding, "new"));
        QCOMPARE(sandbox.read("elsewhere/file"), QByteArray("new"));
        QVERIFY(QFileInfo(sandbox.path("link")).isSymLink());
    }

    void equalContentIsOnlyTouched()
    {
        const test::Sandbox sandbox;
        sandbox.write("file", "same");
        sandbox.age("file");
        QFile old(sandbox.path("file"));
        QVERIFY(old.open(QIODevice::ReadWrite));
        QVERIFY(writeWhole(sandbox.path("file"), rewriting, "same"));
        QVERIFY(!sandbox.isAged("file"));
        QVERIFY(old.resize(0));
        QCOMPARE(sandbox.read("file"), QByteArray(""));
    }

    void fullDiskLeavesTheOldContent_data()
    {
        fileStaysWhatItIs_data();
    }

    void fullDiskLeavesTheOldContent()
    {
        QFETCH(Kind, kind);
        QFETCH(QIODevice::OpenMode, mode);
        const test::Sandbox sandbox;
        const test::SmallDisk disk(sandbox.path(), "size=64k");
        if (!disk.isMounted()) {
            QSKIP("no disk of its own can be mounted here");
        }
        QVERIFY(makeFile(sandbox, kind, large));
        // Some room is left, so that the disk fills up in the middle.
        sandbox.write("room", QByteArray(8192, 'r'));
        disk.fill();
        sandbox.remove("room");
        const test::Tree before = sandbox.tree();
        const QString looks = test::looksOf(sandbox.path("file"));
        QString reason;

        QVERIFY(!writeWhole(sandbox.path("file"), mode, QByteArray(60000, 'y'), &reason));
        QCOMPARE(reason, QString("No space left on device"));
        VERIFY_TREE(sandbox, before);
        QCOMPARE(test::looksOf(sandbox.path("file")), looks);
    }

    void additionFitsWhereTheWholeTextDoesNot()
    {
        const test::Sandbox sandbox;
        const test::SmallDisk disk(sandbox.path(), "size=64k");
        if (!disk.isMounted()) {
            QSKIP("no disk of its own can be mounted here");
        }
        sandbox.write("file", large);
        sandbox.write("room", QByteArray(8192, 'r'));
        disk.fill();
        sandbox.remove("room");
        QVERIFY(writeWhole(sandbox.path("file"), adding, QByteArray(4096, 'y'), nullptr));
        QCOMPARE(sandbox.read("file"), large + QByteArray(4096, 'y'));
    }

    void fileThatIsMountedByItselfIsWrittenInPlace()
    {
        const test::Sandbox sandbox;
        const test::SmallDisk disk(sandbox.path(), "size=64k");
        sandbox.write("file", "old");
        if (!disk.isMounted() || !disk.mountByItself("file")) {
            QSKIP("no disk of its own can be mounted here");
        }
        QVERIFY(writeWhole(sandbox.path("file"), rewriting, "new", nullptr));
        VERIFY_TREE(sandbox, {{"file", "new"}});
    }

    void fullDiskLeavesNoNewFile_data()
    {
        const test::Table<bool> table("isBesideImpossible");
        table.row("beside", false);
        table.row("in place", true);
    }

    void fullDiskLeavesNoNewFile()
    {
        QFETCH(bool, isBesideImpossible);
        const test::Sandbox sandbox;
        const test::SmallDisk disk(sandbox.path(), "size=64k");
        if (!disk.isMounted()) {
            QSKIP("no disk of its own can be mounted here");
        }
        sandbox.makeLink("elsewhere", "link");
        if (isBesideImpossible) {
            sandbox.makeFolder(".drask-unfinished");
            sandbox.makeFolder(".drask-unfinished-2");
        }
        disk.fill();
        const test::Tree before = sandbox.tree();

        for (const char *name : {"file", "link"}) {
            QString reason;
            QVERIFY(!writeWhole(sandbox.path(name), rewriting, "new", &reason));
            QCOMPARE(reason, QString("No space left on device"));
        }
        VERIFY_TREE(sandbox, before);
    }

    void deviceIsWrittenTo()
    {
        const test::Sandbox sandbox;
        sandbox.makeLink("/dev/null", "nothing");
        sandbox.makeLink("/dev/full", "full");
        QString reason;
        QVERIFY(writeWhole(sandbox.path("nothing"), rewriting, "new"));
        QVERIFY(!writeWhole(sandbox.path("full"), rewriting, "new", &reason));
        QCOMPARE(reason, QString("No space left on device"));
    }

    void pipeIsWrittenTo()
    {
        const test::Sandbox sandbox;
        const QString pipe = sandbox.path("pipe");
        QVERIFY(mkfifo(QFile::encodeName(pipe).constData(), 0600) == 0);
        QByteArray received;
        std::thread reader([&pipe, &received] {
            QFile file(pipe);
            file.open(QIODevice::ReadOnly);
            received = file.readAll();
        });

        const bool isWritten = writeWhole(pipe, rewriting, "new");
        reader.join();

        QVERIFY(isWritten);
        QCOMPARE(received, QByteArray("new"));
    }

    void leftoverOfAKilledRunIsCleared()
    {
        for (const char *content : {"old", "new"}) {
            const test::Sandbox sandbox;
            sandbox.write("file", content);
            sandbox.write(".drask-unfinished", "ha");
            QVERIFY(writeWhole(sandbox.path("file"), rewriting, "new"));
            VERIFY_TREE(sandbox, {{"file", "new"}});
        }
    }
};

DRASK_TEST(tst_WholeFile)
#include "tst_wholefile.moc"
