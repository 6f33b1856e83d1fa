// SPDX-License-Identifier: MIT
#include "disk/folderlisting.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QMap>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char *nameOf(EntryKind kind)
{
    switch (kind) {
    case EntryKind::File:
        return "file";
    case EntryKind::Folder:
        return "folder";
    case EntryKind::LinkedFolder:
        return "linked folder";
    case EntryKind::LinkedDevice:
        return "linked device";
    }
    return "";
}

/// The entries of \a folder as lines "kind name", in the order of the listing.
QByteArrayList entriesOf(const QString &folder)
{
    QByteArrayList lines;
    visitEntries(QFile::encodeName(folder), [&](const QByteArray &name, EntryKind kind) {
        lines << nameOf(kind) + (' ' + name);
    });
    return lines;
}

} // namespace

/// Which entries of a folder are seen, and as what.
class tst_FolderListing : public QObject {
    Q_OBJECT

private slots:
    void entryIs_data();
    void entryIs();
    void entryIsLeftOut_data();
    void entryIsLeftOut();
    void namesThatAreNoTextHideNoOthers();
    void entriesComeInTheOrderOfTheFileSystem();
    void whatIsNoFolderHasNoEntries_data();
    void whatIsNoFolderHasNoEntries();
};

void tst_FolderListing::entryIs_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QByteArray>("kind");

    QTest::newRow("a file") << "drask.py" << QString() << QByteArray("file");
    QTest::newRow("a folder") << "icons/" << QString() << QByteArray("folder");
    QTest::newRow("a link to a file") << "link" << QString("../other/file") << QByteArray("file");
    QTest::newRow("a link to a hidden file")
        << "link" << QString("../other/.hidden") << QByteArray("file");
    QTest::newRow("a link to a folder")
        << "link" << QString("../other") << QByteArray("linked folder");
    QTest::newRow("a link to its own folder")
        << "link" << QString(".") << QByteArray("linked folder");
    QTest::newRow("a link to a device")
        << "link" << QString("/dev/null") << QByteArray("linked device");
    QTest::newRow("a link to a pipe")
        << "link" << QString("../other/pipe") << QByteArray("linked device");
    QTest::newRow("a name outside ASCII")
        << QString::fromUtf8("\xc3\xa9\xe6\x97\xa5") << QString() << QByteArray("file");
    QTest::newRow("a name that begins with a byte-order mark")
        << QString::fromUtf8("\xef\xbb\xbf") + "bom" << QString() << QByteArray("file");
    QTest::newRow("a name with the sign for what is no text")
        << QString::fromUtf8("\xef\xbf\xbd") << QString() << QByteArray("file");
}

void tst_FolderListing::entryIs()
{
    QFETCH(QString, name);
    QFETCH(QString, target);
    QFETCH(QByteArray, kind);
    const test::Sandbox sandbox;
    sandbox.write("other/file", "a");
    sandbox.write("other/.hidden", "a");
    QCOMPARE(mkfifo(QFile::encodeName(sandbox.path("other/pipe")).constData(), 0600), 0);
    sandbox.makeFolder("folder");
    if (!target.isEmpty()) {
        sandbox.makeLink(target, "folder/" + name);
    } else if (name.endsWith('/')) {
        sandbox.makeFolder("folder/" + name);
        name.chop(1);
    } else {
        sandbox.write("folder/" + name, "a");
    }

    QCOMPARE(entriesOf(sandbox.path("folder")), QByteArrayList({kind + ' ' + name.toUtf8()}));
}

void tst_FolderListing::entryIsLeftOut_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("target");

    QTest::newRow("a hidden file") << QByteArray(".drask.py") << QByteArray();
    QTest::newRow("a hidden link") << QByteArray(".link") << QByteArray("/dev/null");
    QTest::newRow("a dangling link") << QByteArray("link") << QByteArray("/nowhere/at/all");
    QTest::newRow("a link to itself") << QByteArray("link") << QByteArray("link");
    QTest::newRow("a link through a file") << QByteArray("link") << QByteArray("../file/a");
    QTest::newRow("a pipe") << QByteArray("pipe") << QByteArray("pipe!");
#ifdef Q_OS_LINUX
    QTest::newRow("a name that is no UTF-8") << QByteArray("bad\xff.py") << QByteArray();
    QTest::newRow("a name that is cut in a letter") << QByteArray("bad\xc3") << QByteArray();
    QTest::newRow("a name with half a pair") << QByteArray("\xed\xa0\x80") << QByteArray();
    QTest::newRow("such a name with the sign for it")
        << QByteArray("\xef\xbf\xbd\xff") << QByteArray();
#endif
}

void tst_FolderListing::entryIsLeftOut()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, target);
    const test::Sandbox sandbox;
    sandbox.write("file", "a");
    sandbox.write("folder/seen", "a");
    const QByteArray path = QFile::encodeName(sandbox.path("folder/")) + name;
    if (target == "pipe!") {
        QCOMPARE(mkfifo(path.constData(), 0600), 0);
    } else if (!target.isEmpty()) {
        QCOMPARE(symlink(target.constData(), path.constData()), 0);
    } else {
        const int file = open(path.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        if (file < 0) {
            QSKIP("This file system does not take such a name.");
        }
        close(file);
    }

    QCOMPARE(entriesOf(sandbox.path("folder")), QByteArrayList({"file seen"}));
    unlink(path.constData());
}

void tst_FolderListing::namesThatAreNoTextHideNoOthers()
{
    const test::Sandbox sandbox;
    QByteArrayList expected;
    QByteArrayList bad;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        sandbox.write(QString("folder/") + letter, "a");
        expected << QByteArray("file ") + letter;
        bad << QFile::encodeName(sandbox.path("folder/")) + letter + '\xff';
        close(open(bad.last().constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }

    QByteArrayList entries = entriesOf(sandbox.path("folder"));
    std::sort(entries.begin(), entries.end());

    QCOMPARE(entries, expected);
    for (const QByteArray &path : bad) {
        unlink(path.constData());
    }
}

void tst_FolderListing::entriesComeInTheOrderOfTheFileSystem()
{
    const test::Sandbox sandbox;
    for (int number = 0; number < 60; ++number) {
        sandbox.write("folder/" + QString::number(number * 37 % 60), "a");
    }
    QByteArrayList expected;
    const QStringList names = QDir(sandbox.path("folder")).entryList(QDir::Files, QDir::Unsorted);
    for (const QString &name : names) {
        expected << "file " + name.toUtf8();
    }

    QCOMPARE(entriesOf(sandbox.path("folder")), expected);
}

void tst_FolderListing::whatIsNoFolderHasNoEntries_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("nothing") << "nowhere";
    QTest::newRow("a file") << "file";
    QTest::newRow("a dangling link") << "link";
    QTest::newRow("a name too long") << QString(256, 'x');
}

void tst_FolderListing::whatIsNoFolderHasNoEntries()
{
    QFETCH(QString, name);
    const test::Sandbox sandbox;
    sandbox.write("file", "a");
    sandbox.makeLink("/nowhere/at/all", "link");

    QCOMPARE(entriesOf(sandbox.path(name)), QByteArrayList());
}

DRASK_TEST(tst_FolderListing)
#include "tst_folderlisting.moc"
