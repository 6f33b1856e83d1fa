// SPDX-License-Identifier: MIT
#include "faultcampaign.h"
#include "smalldisk.h"
#include "testprogram.h"

#include <QtTest>

#include <sys/statvfs.h>

using test::Harms;
using test::Scene;

namespace {

/// What of a disk there is only so much of.
enum class Room { Blocks, Files };

/// An addition needs little room and no new file; the copy of the user's script may fail.
Harms allowedHarms(Scene scene)
{
    return scene == Scene::FirstInstallation ? test::Harm::BackupMissing : Harms();
}

/// A small disk with a workstation on it, which can be made to have room for just so much more.
class StationDisk {
public:
    StationDisk()
        : disk(folder.path(), "size=64m")
    {
    }

    bool isMounted() const
    {
        return disk.isMounted();
    }

    std::unique_ptr<test::FaultStation> makeStation(Scene scene) const
    {
        const QByteArray before = qgetenv("TMPDIR");
        qputenv("TMPDIR", QFile::encodeName(folder.path()));
        auto station = std::make_unique<test::FaultStation>(scene);
        before.isEmpty() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
        return station;
    }

    void leave(Room kind, quint64 count) const
    {
        struct statvfs now = {};
        if (statvfs(QFile::encodeName(folder.path()).constData(), &now) != 0) {
            qFatal("The disk cannot be measured");
        }
        const quint64 blocks = quint64(now.f_blocks - now.f_bfree) + count;
        const quint64 files = quint64(now.f_files - now.f_ffree) + count;
        disk.change(kind == Room::Blocks ? "size=" + QByteArray::number(blocks * now.f_bsize)
                                         : "nr_inodes=" + QByteArray::number(files));
    }

    void leavePlenty() const
    {
        disk.change("size=64m,nr_inodes=100k");
    }

private:
    QTemporaryDir folder;
    test::SmallDisk disk;
};

} // namespace

Q_DECLARE_METATYPE(Room)

/// Installs on disks that are full and on disks that cannot be written.
class tst_Faults_Disk : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        test::preferMemoryDisk();
    }

    void roomFor_data()
    {
        QTest::addColumn<Scene>("scene");
        QTest::addColumn<Room>("kind");

        for (const Scene scene : test::scenes) {
            const QString name = test::sceneName(scene);
            QTest::addRow("%s: only so many blocks", qPrintable(name)) << scene << Room::Blocks;
            QTest::addRow("%s: only so many files", qPrintable(name)) << scene << Room::Files;
        }
    }

    void roomFor()
    {
        QFETCH(Scene, scene);
        QFETCH(Room, kind);
        const StationDisk disk;
        if (!disk.isMounted()) {
            QSKIP("no disk of its own can be mounted here");
        }
        const std::unique_ptr<test::FaultStation> station = disk.makeStation(scene);

        bool isEnough = false;
        Harms harms;
        for (quint64 room = 0; !isEnough && room < 200; ++room) {
            station->reset();
            disk.leave(kind, room);
            const test::RunResult result = station->run({}, station->options());
            disk.leavePlenty();

            const test::Findings findings = station->findings(result, test::Fault::LastingError);
            QCOMPARE(findings.complaints.join('\n'), QString());
            harms |= findings.harms;
            isEnough = station->isInstalled();
            fullDisks += isEnough ? 0 : 1;
            QCOMPARE(station->repair().join('\n'), QString());
        }
        QVERIFY(isEnough);
        QCOMPARE(test::harmNames(harms), test::harmNames(allowedHarms(scene)));
    }

    void fullFromThenOn_data()
    {
        test::addScenes();
    }

    void fullFromThenOn()
    {
        QFETCH(Scene, scene);
        TRACE_OR_SKIP();

        // Copies that cannot be left to the system are written like everything else.
        const test::Disturbance fullDisk = {"write", "error=ENOSPC", true, "sendfile"};
        const test::CampaignReport report = campaigns.of(scene).disturbEach(fullDisk, {});

        QVERIFY2(report.complaints.isEmpty(), qPrintable(report.complaints.join('\n')));
        QVERIFY(report.faults > 0);
    }

    void copyThatDoesNotReachTheDiskIsLogged()
    {
        TRACE_OR_SKIP();
        const test::FaultStation station(Scene::FirstInstallation);
        const test::Tracer tracer;
        const test::Disturbance badDisk = {"fsync", "error=EIO"};
        station.reset();

        station.run({}, station.options(tracer.disturb(badDisk, 1)));

        QVERIFY(!tracer.hit(badDisk).isEmpty());
        QVERIFY(station.log().join('\n').contains("Could not write file to the disk"));
    }

    void namesOfCopiesAreBroughtToTheDisk()
    {
        TRACE_OR_SKIP();
        const test::FaultStation station(Scene::FirstInstallation);
        const test::Tracer tracer;
        test::Disturbance onFolder = {"fsync", "error=EIO"};
        onFolder.file = station.path("home/Cinema 4D R19/plugins/drask");
        station.reset();

        const test::RunResult result = station.run({},
                                                   station.options(tracer.disturb(onFolder, 1)));

        QVERIFY(!tracer.hit(onFolder).isEmpty());
        // Not all disks have this for folders.
        VERIFY_RUN(result, 0);
        QVERIFY(station.isInstalled());
    }

    void readOnlyHost_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("plugin");
        QTest::addColumn<QByteArray>("lastMessage");

        QTest::addRow("Cinema 4D") << "home/Cinema 4D R19"
                                   << "/plugins/drask" << QByteArray();
        QTest::addRow("Maya") << "home/maya 2020"
                              << "/scripts/drask"
                              << QByteArray("Could not copy userSetup.py file to: %1\n");
        QTest::addRow("Houdini") << "home/houdini18.0"
                                 << "/Plugins/drask" << QByteArray();
        QTest::addRow("Blender") << "home/blender-2.79"
                                 << "/scripts/startup/adrask" << QByteArray();
        QTest::addRow("Rhino") << "home/Rhinoceros 5"
                               << "/Plug-ins/Drask" << QByteArray();
    }

    void readOnlyHost()
    {
        QFETCH(QString, host);
        QFETCH(QString, plugin);
        QFETCH(QByteArray, lastMessage);
        const test::FaultStation station(Scene::FirstInstallation);
        station.reset();
        const test::Tree before = test::readTree(station.path(host));
        {
            const test::ReadOnlyFolder folder(station.path(host));
            if (!folder.isMounted()) {
                QSKIP("nothing can be mounted here");
            }
            const test::RunResult result = station.run({}, station.options());

            VERIFY_RUN(result, 3);
            const test::Findings findings = station.findings(result, test::Fault::Error);
            QCOMPARE(findings.complaints.join('\n'), QString());
            QCOMPARE(test::harmNames(findings.harms), QString());
        }
        const QByteArray target = station.path(host + plugin).toUtf8();
        QCOMPARE(station.errors(),
                 "Could not copy file to: \n" + target + "\nCould not write config file in: \n"
                     + target + "manager.cfg\n" + lastMessage.replace("%1", target));
        QCOMPARE(test::treeDifference(test::readTree(station.path(host)), before), QString());
        QCOMPARE(station.repair().join('\n'), QString());
        ++readOnlyFolders;
    }

    void readOnlyTool()
    {
        const test::FaultStation station(Scene::FirstInstallation);
        station.reset();
        const test::Tree before = test::readTree(station.tool());
        {
            const test::ReadOnlyFolder folder(station.tool());
            if (!folder.isMounted()) {
                QSKIP("nothing can be mounted here");
            }
            const test::RunResult result = station.run({}, station.options());

            VERIFY_RUN(result, 0);
            const test::Findings findings = station.findings(result, test::Fault::Error);
            QCOMPARE(findings.complaints.join('\n'), QString());
            QCOMPARE(test::harmNames(findings.harms), QString());
        }
        QCOMPARE(test::treeDifference(test::readTree(station.tool()), before), QString());
        QCOMPARE(station.repair().join('\n'), QString());
        ++readOnlyFolders;
    }

    void readOnlyEverything()
    {
        const test::FaultStation station(Scene::FirstInstallation);
        station.reset();
        const test::Tree before = station.tree();
        {
            const test::ReadOnlyFolder folder(station.path());
            if (!folder.isMounted()) {
                QSKIP("nothing can be mounted here");
            }
            VERIFY_RUN(station.run({}, station.options()), 3);
        }
        QCOMPARE(test::treeDifference(station.tree(), before), QString());
        QCOMPARE(station.repair().join('\n'), QString());
        ++readOnlyFolders;
    }

    void campaignInjectedFaults()
    {
        qInfo("faults injected: %d (too little room %d, full from some write on %d, read-only %d)",
              fullDisks + campaigns.faults() + readOnlyFolders, fullDisks, campaigns.faults(),
              readOnlyFolders);
        const bool mayMount = StationDisk().isMounted();
        const bool mayTrace = test::Tracer::obstacle().isEmpty();
        if (!mayMount && !mayTrace) {
            QSKIP("neither mounting nor tracing is possible here");
        }
        QCOMPARE(fullDisks > 0, mayMount);
        QCOMPARE(readOnlyFolders > 0, mayMount);
        QCOMPARE(campaigns.faults() > 0, mayTrace);
    }

private:
    test::FaultCampaigns campaigns;
    int fullDisks = 0;
    int readOnlyFolders = 0;
};

DRASK_TEST(tst_Faults_Disk)
#include "tst_faults_disk.moc"
