// SPDX-License-Identifier: MIT
#include "status/foretolddisk.h"

#include "sandbox.h"
#include "testprogram.h"

#include <QtTest>

namespace {

constexpr QIODevice::OpenMode anew = QIODevice::WriteOnly | QIODevice::Text;

/// A disk over a sandbox with a file, a link to it, a link to itself and a folder.
class Imagined : public test::Sandbox {
public:
    Imagined()
    {
        write("file", "old");
        makeFolder("folder");
        makeLink(path("file"), "link");
        makeLink(path("round"), "round");
    }

    ForetoldDisk disk{path(), "cpu"};

    /// "replace file" and so on, a word more where nothing differs.
    QStringList changes() const
    {
        QStringList lines;
        const QList<Change> all = disk.changes();
        for (const Change &change : all) {
            lines << actionName(change.action) + ' ' + change.path.mid(path().size() + 1)
                    + (change.differs ? "" : " same");
        }
        return lines;
    }
};

} // namespace

class tst_ForetoldDisk : public QObject {
    Q_OBJECT

private slots:
    void nothingIsWritten();
    void changesAreToldOnce();
    void linksAreFollowed();
    void obstaclesStop();
    void leftoversGo();
};

void tst_ForetoldDisk::nothingIsWritten()
{
    Imagined world;
    const test::Tree before = world.tree();
    QVERIFY(world.disk.writeWhole(world.path("file"), anew, "new"));
    QVERIFY(world.disk.makePath(world.path("a/b")));
    QVERIFY(world.disk.removeFile(world.path("link")));
    QVERIFY(world.disk.appendTo(world.path("log"), "line\n"));
    QVERIFY(world.tree() == before);
}

void tst_ForetoldDisk::changesAreToldOnce()
{
    Imagined world;
    const QString copy = world.path("folder/copy");
    QVERIFY(world.disk.copyFile(world.path("file"), copy));
    QVERIFY(!world.disk.copyFile(world.path("file"), copy));
    QVERIFY(world.disk.removeFile(copy));
    QVERIFY(!world.disk.exists(copy));
    QVERIFY(world.disk.makePath(world.path("new/deep")));
    QVERIFY(world.disk.writeWhole(world.path("file"), anew, "old"));
    QVERIFY(world.disk.appendTo(world.path("new/log"), "a"));
    QVERIFY(world.disk.appendTo(world.path("new/log"), "b"));
    QCOMPARE(world.changes(),
             QStringList(
                 {"makeFolder new", "makeFolder new/deep", "replace file same", "make new/log"}));
    QByteArray bytes;
    QVERIFY(world.disk.readBytes(world.path("new/log"), bytes));
    QCOMPARE(bytes, QByteArray("ab"));
}

void tst_ForetoldDisk::linksAreFollowed()
{
    Imagined world;
    QVERIFY(world.disk.writeWhole(world.path("folder/../link"), anew, "new"));
    QVERIFY(world.disk.removeFile(world.path("link")));
    QCOMPARE(world.changes(), QStringList({"replace file", "remove link"}));
}

void tst_ForetoldDisk::obstaclesStop()
{
    Imagined world;
    const QString long256(256, 'a');
    for (const char *name : {"folder", "file/below", "missing/below", "round", "folder/"}) {
        QVERIFY2(!world.disk.writeWhole(world.path(name), anew, "new"), name);
    }
    QVERIFY(!world.disk.writeWhole(world.path(long256), anew, "new"));
    QVERIFY(!world.disk.makePath(world.path("file/below")));
    QVERIFY(!world.disk.removeFile(world.path("folder")));
    QVERIFY(!world.disk.copyFile(world.path("folder"), world.path("copy")));
    QCOMPARE(world.changes(), QStringList());
}

void tst_ForetoldDisk::leftoversGo()
{
    Imagined world;
    world.write("folder/.drask-unfinished", "half");
    world.write("folder/.drask-unfinished-2", "half");
    world.disk.clearUnfinished(world.path("folder/manager.cfg"));
    QCOMPARE(world.changes(),
             QStringList({"remove folder/.drask-unfinished", "remove folder/.drask-unfinished-2"}));
}

DRASK_TEST(tst_ForetoldDisk)
#include "tst_foretolddisk.moc"
