// SPDX-License-Identifier: MIT
#include "tracer.h"

#include <QtTest>

/// Lets the disk fail in the middle of the lists that say which files are to be deleted.
class tst_Faults_Reading : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void halfANameInAManifestIsNotDeleted();
};

namespace {

const QString pluginFolder = "modo/Scripts/drask";

/// As much as the system is asked for at once.
constexpr int pieceSize = 16384;

/// A manifest whose first piece ends behind the user's "keep": the whole line goes on.
QByteArray manifestThatBreaksBehind(const QByteArray &keep)
{
    QByteArray manifest;
    const QByteArray filler = keep + ".not there ";
    const int missing = pieceSize - keep.size();
    while (manifest.size() + 2 * filler.size() < missing) {
        manifest += filler + '\n';
    }
    manifest += filler.leftJustified(missing - manifest.size() - 1, '.') + '\n' + keep;
    return manifest + ".plugin\n";
}

} // namespace

void tst_Faults_Reading::initTestCase()
{
    const QString obstacle = test::Tracer::obstacle();
    if (!obstacle.isEmpty()) {
        QSKIP(qPrintable(obstacle));
    }
}

void tst_Faults_Reading::halfANameInAManifestIsNotDeleted()
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
    options.through = tracer.watch();
    prepare();
    VERIFY_RUN(workstation.run(words, options), 0);
    QVERIFY(!workstation.exists(keep + ".plugin"));
    const test::CallCount reads = tracer.calls().value("read");

    int broken = 0;
    for (int number = reads.startUp + 1; number <= reads.all; ++number) {
        prepare();
        options.through = tracer.disturb({"read", "error=EIO"}, number);
        VERIFY_RUN(workstation.run(words, options), 0);
        QCOMPARE(workstation.read(keep), QByteArray("the user's"));
        broken += workstation.exists(keep + ".plugin") ? 1 : 0;
    }
    // The first piece and the second.
    QCOMPARE(broken, 2);
}

QTEST_GUILESS_MAIN(tst_Faults_Reading)
#include "tst_faults_reading.moc"
