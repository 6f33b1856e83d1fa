// SPDX-License-Identifier: MIT
#include "testprogram.h"
#include "tracer.h"

#include <QtTest>

namespace {

const QString pluginFolder = "modo/Scripts/drask";

/// As much as the system is asked for at once.
constexpr int pieceSize = 16384;

/// A manifest whose first piece ends behind the user's "keep": the whole line goes on.
QByteArray manifestThatBreaksBehind(const QByteArray &keep)
{
    QByteArray manifest;
    const QByteArray filler = keep + ".not there ";
    const int missing = pieceSize - static_cast<int>(keep.size());
    while (manifest.size() + 2 * filler.size() < missing) {
        manifest += filler + '\n';
    }
    manifest += filler.leftJustified(missing - manifest.size() - 1, '.') + '\n' + keep;
    return manifest + ".plugin\n";
}

} // namespace

/// Lets the disk fail in the middle of the files that are read.
class tst_Faults_Reading : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        TRACE_OR_SKIP();
    }

    void halfANameInAManifestIsNotDeleted()
    {
        const test::Workstation workstation;
        const QString keep = pluginFolder + "/keep";
        const QByteArray manifest = manifestThatBreaksBehind(workstation.path(keep).toUtf8());
        const auto prepare = [&] {
            workstation.write(keep, "the user's");
            workstation.write(keep + ".plugin", "the plug-in's");
            workstation.write(pluginFolder + "/uninstall.ini", manifest);
        };
        const QStringList words = {"uninstallPlugin", "(modo) " + workstation.path("modo")};
        const test::Tracer tracer;
        test::RunOptions options;
        options.environment = test::Tracer::environment();
        // The reads of other files are not counted: sanitizers make some, a different number each
        // time.
        test::Disturbance badSector = {"read", "error=EIO"};
        badSector.file = workstation.path(pluginFolder + "/uninstall.ini");

        QStringList fates;
        do {
            prepare();
            options.through = tracer.disturb(badSector, static_cast<int>(fates.size()) + 1);
            VERIFY_RUN(workstation.run(words, options), 0);
            QCOMPARE(workstation.read(keep), QByteArray("the user's"));
            fates << (workstation.exists(keep + ".plugin") ? "spared" : "deleted");
        } while (!tracer.hit(badSector).isEmpty());
        // The first piece and the second; behind them the end of the file is read, and last comes a
        // run without a fault.
        QCOMPARE(fates.mid(0, 2), QStringList({"spared", "spared"}));
        QVERIFY(fates.size() > 2);
        QCOMPARE(fates.mid(2).count("deleted"), fates.size() - 2);
    }

    void whatDoesNotCountIsNotRead_data()
    {
        QTest::addColumn<QString>("file");

        QTest::addRow("after the seventh line") << "houdini/Plugins/drask/manager.cfg";
        QTest::addRow("after the assignment") << "houdini/houdini.env";
    }

    void whatDoesNotCountIsNotRead()
    {
        QFETCH(QString, file);
        test::Workstation workstation;
        workstation.addPlugin("houdini", {{"a.py", "a"}});
        workstation.addHost("houdini", workstation.path("houdini"));
        workstation.writeSettings();
        VERIFY_RUN(workstation.run(), 0);
        const QByteArray content = workstation.read(file) + '\n' + QByteArray(2 * pieceSize, 'x');
        workstation.write(file, content);
        const test::Tracer tracer;
        test::Disturbance badSector = {"read", "error=EIO"};
        badSector.file = workstation.path(file);
        test::RunOptions options;
        options.environment = test::Tracer::environment();
        options.through = tracer.disturb(badSector, 2);

        VERIFY_RUN(workstation.run({"reinstall"}, options), 0);

        QCOMPARE(tracer.hit(badSector), QByteArray());
        QCOMPARE(workstation.read(file), content);
    }
};

DRASK_TEST(tst_Faults_Reading)
#include "tst_faults_reading.moc"
