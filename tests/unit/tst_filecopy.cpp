// SPDX-License-Identifier: MIT
#include "disk/filecopy.h"
#include "disk/files.h"
#include "ordinaryuser.h"
#include "unitcase.h"

#include <QScopeGuard>

#include <sys/resource.h>
#include <sys/stat.h>

namespace {

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    static_cast<void>(lstat(QFile::encodeName(path).constData(), &status));
    return status;
}

/// The permission bits of \a path, those beyond reading, writing and running included.
unsigned int bitsOf(const QString &path)
{
    return statusOf(path).st_mode & 07777U;
}

int openFiles()
{
    return static_cast<int>(
        QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System).size());
}

} // namespace

/// How a copied file comes onto the disk.
class tst_FileCopy : public QObject {
    Q_OBJECT
private slots:
    void copyHasTheContent_data()
    {
        const test::Table<int> table("size");
        table.row("no byte", 0);
        table.row("one byte", 1);
        table.row("a page and a byte", 4097);
        table.row("a block less one byte", 65535);
        table.row("some megabytes", 3000000);
    }

    void copyHasTheContent()
    {
        QFETCH(int, size);
        const test::Sandbox sandbox;
        QByteArray content(size, 'x');
        for (int index = 0; index < size; index += 1000) {
            content[index] = static_cast<char>(index / 1000);
        }
        sandbox.write("a", content);

        QVERIFY(FileCopier(sandbox.path("a")).copyTo(sandbox.path("b")));
        QVERIFY(sandbox.read("b") == content);
    }

    void copyHasThePermissionBits_data()
    {
        const test::Table<unsigned int, unsigned int> table("bits", "copied");
        table.row("a file of the owner's", 0600U, 0600U);
        table.row("a program", 0755U, 0755U);
        table.row("what the mask of new files forbids", 0666U, 0666U);
        table.row("read-only", 0444U, 0444U);
        table.row("a program that runs as its owner", 04755U, 0755U);
        table.row("with the sticky bit", 01644U, 0644U);
    }

    void copyHasThePermissionBits()
    {
        QFETCH(unsigned int, bits);
        const test::Sandbox sandbox;
        sandbox.write("a", "a");
        QCOMPARE(chmod(QFile::encodeName(sandbox.path("a")).constData(), bits), 0);
        QVERIFY(FileCopier(sandbox.path("a")).copyTo(sandbox.path("b")));
        QTEST(bitsOf(sandbox.path("b")), "copied");
    }

    void secondCopyIsWholeToo()
    {
        const test::Sandbox sandbox;
        sandbox.write("a", "some text");
        FileCopier copier(sandbox.path("a"));
        QVERIFY(copier.copyTo(sandbox.path("b")));
        QVERIFY(copier.copyTo(sandbox.path("c")));
        QCOMPARE(sandbox.read("b"), QByteArray("some text"));
        QCOMPARE(sandbox.read("c"), QByteArray("some text"));
    }

    void copyThatWasRemovedIsPlacedAgain_data()
    {
        const test::Table<QString, bool> table("spareFolder", "isTheFirst");
        table.row("the folder", "", true);
        table.row("another folder", "/folder", true);
        table.row("a folder in which the name is taken", "/taken", false);
        table.row("a missing folder", "/nowhere", false);
    }

    void copyThatWasRemovedIsPlacedAgain()
    {
#ifndef Q_OS_LINUX
        QSKIP("Only Linux has files without a name.");
#endif
        QFETCH(QString, spareFolder);
        const test::Sandbox sandbox;
        sandbox.write("a", "some text");
        sandbox.makeFolder("folder");
        sandbox.write("taken/.drask-unfinished", "another run's");
        const test::Tree before = sandbox.tree();
        {
            FileCopier copier(sandbox.path("a"), sandbox.path() + spareFolder);
            QVERIFY(copier.copyTo(sandbox.path("b")));
            // As long as it is open, no other file gets its number.
            QFile first(sandbox.path("b"));
            QVERIFY(first.open(QIODevice::ReadOnly));
            const auto number = statusOf(sandbox.path("b")).st_ino;
            QVERIFY(QFile::remove(sandbox.path("b")));
            QVERIFY(copier.copyTo(sandbox.path("b")));
            QCOMPARE(sandbox.read("b"), QByteArray("some text"));
            QTEST(statusOf(sandbox.path("b")).st_ino == number, "isTheFirst");
        }
        QVERIFY(QFile::remove(sandbox.path("b")));
        QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
    }

    void secondNameIsTakenAwayInTheEnd()
    {
        const test::Sandbox sandbox;
        sandbox.write("a", "some text");
        {
            FileCopier copier(sandbox.path("a"), sandbox.path());
            QVERIFY(copier.copyTo(sandbox.path("b")));
            QVERIFY(!copier.copyTo(sandbox.path("b")));
        }
        FileCopier(sandbox.path("a"), sandbox.path()).copyTo(sandbox.path("c"));
        QVERIFY(!sandbox.exists(".drask-unfinished"));
    }

    void outcomeIsThatOfQt_data()
    {
        const test::Table<QString, QString> table("source", "target");
        table.row("a file", "@/file", "new");
        table.row("a link to a file", "@/link", "new");
        table.row("a file of the system's that has no size", "/proc/version", "new");
        table.row("a device", "/dev/null", "new");
        table.row("a folder", "@/folder", "new");
        table.row("a missing file", "@/nowhere", "new");
        table.row("a dangling link", "@/dangling", "new");
        table.row("onto a file", "@/file", "other");
        table.row("onto itself", "@/file", "file");
        table.row("onto a folder", "@/file", "folder");
        table.row("onto a link to a file", "@/file", "link");
        table.row("into a missing folder", "@/file", "nowhere/new");
        table.row("into a file", "@/file", "other/new");
        table.row("to a name too long", "@/file", QString(256, 'x'));
    }

    void outcomeIsThatOfQt()
    {
        QFETCH(QString, source);
        QFETCH(QString, target);
        const test::Sandbox sandbox;
        sandbox.write("shared", "a");
        bool results[2];
        test::Tree trees[2];
        for (int way = 0; way < 2; ++way) {
            const test::Folder folder(sandbox.path(QString::number(way)));
            folder.write("file", "a");
            folder.write("other", "b");
            folder.makeFolder("folder");
            folder.makeLink(sandbox.path("shared"), "link");
            folder.makeLink("/nowhere/at/all", "dangling");
            const QString from = QString(source).replace('@', folder.path());
            const QString to = folder.path(target);
            results[way] = way == 0 ? QFile::copy(from, to) : FileCopier(from).copyTo(to);
            trees[way] = folder.tree();
        }

        QCOMPARE(results[1], results[0]);
        QCOMPARE(test::treeDifference(trees[1], trees[0]), QString());
    }

    void whatIsThereStays_data()
    {
        const test::Table<QString> table("target");
        table.row("a file", "old");
        table.row("a link", "link");
        table.row("a dangling link", "dangling");
    }

    void whatIsThereStays()
    {
        QFETCH(QString, target);
        const test::Sandbox sandbox;
        sandbox.write("a", "new");
        sandbox.write("old", "old");
        sandbox.makeLink("old", "link");
        sandbox.makeLink("missing", "dangling");
        const test::Tree before = sandbox.tree();
        sandbox.age("old");

        QVERIFY(!FileCopier(sandbox.path("a")).copyTo(sandbox.path(target)));
        QVERIFY(!copyFile(sandbox.path("a"), sandbox.path(target)));
        QVERIFY(sandbox.isAged("old"));
        VERIFY_TREE(sandbox, before);
    }

    void fileThatTakesItsOwnPlaceIsGone()
    {
        const test::Sandbox sandbox;
        sandbox.write("a", "a");
        FileCopier copier(sandbox.path("a"));
        QVERIFY(QFile::remove(sandbox.path("a")));
        QVERIFY(!copier.copyTo(sandbox.path("a")));
        QVERIFY(!sandbox.exists("a"));
    }

    void placedFileIsOpenedForReadingAndWriting()
    {
        const test::Sandbox sandbox;
        sandbox.write("a", "a");
        sandbox.age("a");
        PlacedFiles placed;
        QVERIFY(placed.open(sandbox.path("a")));
        QCOMPARE(placed.bringToDisk(), QStringList());
        QVERIFY(sandbox.isAged("a"));
    }

    void missingFileIsMadeEmpty()
    {
        const test::Sandbox sandbox;
        PlacedFiles placed;
        QVERIFY(placed.open(sandbox.path("a")));
        QVERIFY(sandbox.exists("a"));
        QCOMPARE(sandbox.read("a"), QByteArray());
    }

    void folderIsNoPlacedFile()
    {
        const test::Sandbox sandbox;
        sandbox.makeFolder("folder");
        sandbox.write("file", "a");
        PlacedFiles placed;
        QVERIFY(!placed.open(sandbox.path("folder")));
        QVERIFY(!placed.open(sandbox.path("file/a")));
        QVERIFY(!placed.open(sandbox.path("nowhere/a")));
    }

    void fileThatMayOnlyBeReadIsWaitedForToo()
    {
        const test::Sandbox sandbox;
        sandbox.write("a", "a");
        QVERIFY(QFile::setPermissions(sandbox.path("a"), QFile::ReadOwner | QFile::ReadOther));
        test::giveToOrdinaryUser(sandbox.path());
        BECOME_ORDINARY_USER_OR_SKIP();
        PlacedFiles placed;
        const int before = openFiles();
        QVERIFY(!placed.open(sandbox.path("a")));
        QCOMPARE(openFiles(), before + 1);
    }

    void fewFilesAreOpenAtOnce_data()
    {
        const test::Table<unsigned int, int> table("allowed", "most");
        table.row("where many may be", 1024U, 63);
        table.row("where few may be", 40U, 9);
    }

    void fewFilesAreOpenAtOnce()
    {
        QFETCH(unsigned int, allowed);
        rlimit limit = {};
        QCOMPARE(getrlimit(RLIMIT_NOFILE, &limit), 0);
        const rlimit small = {allowed, limit.rlim_max};
        QCOMPARE(setrlimit(RLIMIT_NOFILE, &small), 0);
        const auto restore = qScopeGuard([&] { setrlimit(RLIMIT_NOFILE, &limit); });
        if (!QFileInfo::exists("/proc/self/fd")) {
            QSKIP("The open files are looked up in /proc.");
        }
        const test::Sandbox sandbox;
        const int before = openFiles();
        int most = 0;
        {
            PlacedFiles placed;
            for (int number = 0; number < 1000; ++number) {
                QVERIFY(placed.open(sandbox.path(QString::number(number))));
                most = qMax(most, openFiles());
            }
        }

        QTEST(most - before, "most");
        QCOMPARE(openFiles(), before);
    }

    void placedPipeIsNotLost()
    {
        const test::Sandbox sandbox;
        QCOMPARE(mkfifo(QFile::encodeName(sandbox.path("pipe")).constData(), 0600), 0);
        PlacedFiles placed;
        QVERIFY(placed.open(sandbox.path("pipe")));
        QCOMPARE(placed.bringToDisk(), QStringList());
    }
};

DRASK_TEST(tst_FileCopy)
#include "tst_filecopy.moc"
