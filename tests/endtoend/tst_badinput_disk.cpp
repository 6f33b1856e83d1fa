// SPDX-License-Identifier: MIT
#include "expectedlog.h"
#include "smalldisk.h"
#include "workstation.h"

#include <QtTest>

/// Runs that meet a full disk.
class tst_BadInputDisk : public QObject {
    Q_OBJECT

private slots:
    void fullHostDiskIsServedOnceThereIsRoom();
    void fileTooLargeForTheHostDiskIsLeftOut();
    void hostDiskWithoutRoomForNamesIsReported();
    void fullToolDiskLosesTheLogAlone();
};

namespace {

const char noDisk[] = "Only root may mount a disk, and only on Linux.";

const char target[] = "modo/Scripts/drask";

test::Tree plugin()
{
    return {{"version.txt", "7"}, {"a.py", "import sys\n"}, {"sub/b.py", "pass\n"}};
}

/// A workstation with one host.
class OneHost : public test::Workstation {
public:
    OneHost()
    {
        makeFolder("modo");
        addPlugin("modo", plugin());
        addHost("modo", path("modo"));
        addSetting("plugins", "versionModo=7");
        writeSettings();
    }

    QByteArray config() const
    {
        return "\n\n" + tool("DraskDrop").toUtf8() + "\n2.3.10\n\n1\n1";
    }

    QString shipped(const QString &file) const
    {
        return tool("plugins/modo/" + file);
    }

    QString placed(const QString &file) const
    {
        return path(target) + '/' + file;
    }

    QByteArray manifest(const QStringList &files) const
    {
        QByteArray lines;
        for (const QString &file : files) {
            lines += placed(file).toUtf8() + '\n';
        }
        return lines;
    }

    test::Tree targetTree() const
    {
        return test::readTree(path(target));
    }

    test::Tree completeTree() const
    {
        test::Tree tree = plugin();
        tree["sub/"] = "";
        tree["manager.cfg"] = config();
        tree["uninstall.ini"] = targetTree().value("uninstall.ini");
        return tree;
    }
};

} // namespace

void tst_BadInputDisk::fullHostDiskIsServedOnceThereIsRoom()
{
    const OneHost workstation;
    const test::SmallDisk disk(workstation.path("modo"), "size=64k");
    if (!disk.isMounted()) {
        QSKIP(noDisk);
    }
    disk.fill();

    const test::RunResult full = workstation.run();

    // Files that could not be copied are no failure; they stay behind empty.
    VERIFY_RUN(full, 0);
    QCOMPARE(test::treeDifference(workstation.targetTree(),
                                  {{"version.txt", ""},
                                   {"a.py", ""},
                                   {"sub/", ""},
                                   {"sub/b.py", ""},
                                   {"manager.cfg", ""},
                                   {"uninstall.ini", ""}}),
             QString());
    QCOMPARE(workstation.log().filter("Could not copy file").size(), 3);
    QCOMPARE(workstation.errors(), QByteArray());

    disk.makeRoom();
    const test::RunResult roomy = workstation.run();

    VERIFY_RUN(roomy, 0);
    QCOMPARE(test::treeDifference(workstation.targetTree(), workstation.completeTree()), QString());
    QCOMPARE(workstation.read(QString(target) + "/uninstall.ini").count('\n'), 3);
}

void tst_BadInputDisk::fileTooLargeForTheHostDiskIsLeftOut()
{
    const OneHost workstation;
    const QByteArray large(200000, 'x');
    workstation.addPlugin("modo", {{"sub/large.bin", large}});
    const test::SmallDisk disk(workstation.path("modo"), "size=64k");
    if (!disk.isMounted()) {
        QSKIP(noDisk);
    }

    const test::RunResult small = workstation.run();

    VERIFY_RUN(small, 0);
    test::Tree expected = workstation.completeTree();
    expected["sub/large.bin"] = "";
    QCOMPARE(test::treeDifference(workstation.targetTree(), expected), QString());
    QVERIFY(!expected["uninstall.ini"].contains("large.bin"));
    QVERIFY(workstation.log().contains(
        "Debug: Could not copy file  " + test::quoted(workstation.shipped("sub/large.bin"))
        + "  to  " + test::quoted(workstation.placed("sub/large.bin"))));

    disk.change("size=1m");
    const test::RunResult again = workstation.run({"reinstall"});

    VERIFY_RUN(again, 0);
    QCOMPARE(workstation.read(QString(target) + "/sub/large.bin"), large);
    QCOMPARE(workstation.read(QString(target) + "/uninstall.ini").count('\n'), 4);
}

void tst_BadInputDisk::hostDiskWithoutRoomForNamesIsReported()
{
    const OneHost workstation;
    const test::SmallDisk disk(workstation.path("modo"), "size=64k,nr_inodes=2");
    if (!disk.isMounted()) {
        QSKIP(noDisk);
    }

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, 3);
    const QByteArray folder = workstation.path(target).toUtf8();
    QCOMPARE(workstation.errors(),
             "Could not copy file to: \n" + folder + "\nCould not write config file in: \n" + folder
                 + "manager.cfg\n");
    QCOMPARE(test::readTree(workstation.path("modo")).keys(), QStringList("Scripts/"));
}

void tst_BadInputDisk::fullToolDiskLosesTheLogAlone()
{
    const OneHost workstation;
    const test::Tree tool = test::readTree(workstation.tool());
    const test::SmallDisk disk(workstation.tool(), "size=64m");
    if (!disk.isMounted()) {
        QSKIP(noDisk);
    }
    for (auto file = tool.cbegin(); file != tool.cend(); ++file) {
        if (!file.key().endsWith('/')) {
            workstation.write("tool/" + file.key(), file.value());
        }
    }
    QVERIFY(QFile::setPermissions(workstation.tool("drask-installer"),
                                  QFile::ReadOwner | QFile::ExeOwner));
    disk.fill();

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, 0);
    QCOMPARE(test::treeDifference(workstation.targetTree(), workstation.completeTree()), QString());
    QCOMPARE(workstation.read("tool/plugin.log"), QByteArray(""));
    QCOMPARE(workstation.read("tool/version.txt"), QByteArray(""));
}

QTEST_GUILESS_MAIN(tst_BadInputDisk)
#include "tst_badinput_disk.moc"
