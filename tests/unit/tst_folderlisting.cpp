// SPDX-License-Identifier: MIT
#include "disk/folderlisting.h"
#include "unitcase.h"

#include <QMap>

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
    void entryIs_data()
    {
        const test::Table<QString, QString, QByteArray> table("name", "target", "kind");
        table.row("a file", "drask.py", QString(), "file");
        table.row("a folder", "icons/", QString(), "folder");
        table.row("a link to a file", "link", "../other/file", "file");
        table.row("a link to a hidden file", "link", "../other/.hidden", "file");
        table.row("a link to a folder", "link", "../other", "linked folder");
        table.row("a link to its own folder", "link", ".", "linked folder");
        table.row("a link to a device", "link", "/dev/null", "linked device");
        table.row("a link to a pipe", "link", "../other/pipe", "linked device");
        table.row("a name outside ASCII", "\xc3\xa9\xe6\x97\xa5", QString(), "file");
        table.row("a name that begins with a byte-order mark",
                  QString::fromUtf8("\xef\xbb\xbf") + "bom", QString(), "file");
        table.row("a name with the sign for what is no text", "\xef\xbf\xbd", QString(), "file");
    }

    void entryIs()
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

    void entryIsLeftOut_data()
    {
        const test::Table<QByteArray, QByteArray> table("name", "target");
        table.row("a hidden file", ".drask.py", QByteArray());
        table.row("a hidden link", ".link", "/dev/null");
        table.row("a dangling link", "link", "/nowhere/at/all");
        table.row("a link to itself", "link", "link");
        table.row("a link through a file", "link", "../file/a");
        table.row("a pipe", "pipe", "pipe!");
#ifdef Q_OS_LINUX
        table.row("a name that is no UTF-8", "bad\xff.py", QByteArray());
        table.row("a name that is cut in a letter", "bad\xc3", QByteArray());
        table.row("a name with half a pair", "\xed\xa0\x80", QByteArray());
        table.row("such a name with the sign for it", "\xef\xbf\xbd\xff", QByteArray());
#endif
    }

    void entryIsLeftOut()
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

    void namesThatAreNoTextHideNoOthers()
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

    void entriesComeInTheOrderOfTheFileSystem()
    {
        const test::Sandbox sandbox;
        for (int number = 0; number < 60; ++number) {
            sandbox.write("folder/" + QString::number(number * 37 % 60), "a");
        }
        QByteArrayList expected;
        const QStringList names = QDir(sandbox.path("folder"))
                                      .entryList(QDir::Files, QDir::Unsorted);
        for (const QString &name : names) {
            expected << "file " + name.toUtf8();
        }

        QCOMPARE(entriesOf(sandbox.path("folder")), expected);
    }

    void whatIsNoFolderHasNoEntries_data()
    {
        const test::Table<QString> table("name");
        table.row("nothing", "nowhere");
        table.row("a file", "file");
        table.row("a dangling link", "link");
        table.row("a name too long", QString(256, 'x'));
    }

    void whatIsNoFolderHasNoEntries()
    {
        QFETCH(QString, name);
        const test::Sandbox sandbox;
        sandbox.write("file", "a");
        sandbox.makeLink("/nowhere/at/all", "link");
        QCOMPARE(entriesOf(sandbox.path(name)), QByteArrayList());
    }
};

DRASK_TEST(tst_FolderListing)
#include "tst_folderlisting.moc"
