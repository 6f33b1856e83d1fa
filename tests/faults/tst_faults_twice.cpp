// SPDX-License-Identifier: MIT
#include "faultcampaign.h"

#include "testprogram.h"

#include <QtTest>

#include <chrono>
#include <csignal>
#include <future>

using test::FaultStation;
using test::Harm;
using test::Harms;
using test::RunResult;
using test::Scene;

namespace {

std::future<RunResult> start(const FaultStation &station, const QStringList &arguments,
                             const QStringList &through = {})
{
    return std::async(std::launch::async, [&station, arguments, through] {
        return station.run(arguments, station.options(through));
    });
}

/// Judges what two runs left.
test::Findings judge(const FaultStation &station, const RunResult &one, const RunResult &other)
{
    test::Findings findings = station.findings(one, test::Fault::OtherRun);
    findings.complaints << station.findings(other, test::Fault::OtherRun).complaints;
    findings.complaints << station.repair();
    return findings;
}

/// What a second run may do to the start-up files; see test::Harm.
Harms allowedHarms(Scene scene)
{
    switch (scene) {
    case Scene::FirstInstallation:
        return Harm::AddedTwice;
    case Scene::OldPath:
        return {};
    case Scene::OldBlock:
        return Harm::OnlyPathUpdated;
    }
    return {};
}

} // namespace

/// Installs twice at once on one workstation.
class tst_Faults_Twice : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        test::preferMemoryDisk();
    }

    void startedTogether_data()
    {
        QTest::addColumn<Scene>("scene");
        QTest::addColumn<QStringList>("one");
        QTest::addColumn<QStringList>("other");

        const QStringList install;
        const QStringList reinstall = {"reinstall"};
        for (const Scene scene : test::scenes) {
            const QString name = test::sceneName(scene);
            QTest::addRow("%s: install and install", qPrintable(name))
                << scene << install << install;
            QTest::addRow("%s: install and reinstall", qPrintable(name))
                << scene << install << reinstall;
            QTest::addRow("%s: reinstall and reinstall", qPrintable(name))
                << scene << reinstall << reinstall;
        }
    }

    void startedTogether()
    {
        QFETCH(Scene, scene);
        QFETCH(QStringList, one);
        QFETCH(QStringList, other);
        const FaultStation station(scene);

        for (int round = 0; round < 30; ++round) {
            station.reset();
            std::future<RunResult> first = start(station, one);
            std::future<RunResult> second = start(station, other);
            const test::Findings findings = judge(station, first.get(), second.get());

            QCOMPARE(findings.complaints.join('\n'), QString());
            QCOMPARE(test::harmNames(findings.harms & ~allowedHarms(scene)), QString());
            ++pairs;
        }
    }

    void oneStandsStillWhileTheOtherRuns_data()
    {
        QTest::addColumn<Scene>("scene");
        QTest::addColumn<QByteArray>("call");

        // The calls that change something, and those that open what is read or written.
        for (const Scene scene : test::scenes) {
            for (const char *call : {"openat", "write", "linkat", "unlink", "mkdir", "rename"}) {
                QTest::addRow("%s: before %s", qPrintable(test::sceneName(scene)), call)
                    << scene << QByteArray(call);
            }
        }
        // Only a file that was not there is copied twice.
        QTest::newRow("first installation: before renameat2")
            << Scene::FirstInstallation << QByteArray("renameat2");
    }

    void oneStandsStillWhileTheOtherRuns()
    {
        QFETCH(Scene, scene);
        QFETCH(QByteArray, call);
        TRACE_OR_SKIP();
        const FaultStation station(scene);
        const test::Tracer tracer;
        station.reset();
        station.run({}, station.options(tracer.watch()));
        const test::CallCount count = tracer.calls().value(call);

        for (int number = count.startUp + 1; number <= count.all; ++number) {
            station.reset();
            std::future<RunResult> one = start(station, {}, tracer.standStill(call, number));
            int program = 0;
            while (program == 0
                   && one.wait_for(std::chrono::milliseconds(1)) == std::future_status::timeout) {
                program = tracer.standingProgram();
            }
            QVERIFY2(program > 0, "the run made fewer calls");
            std::future<RunResult> other = start(station, {"reinstall"});
            // It may wait for the lock of Rhino's registration, which the first one may hold.
            other.wait_for(
                std::chrono::milliseconds(scene == Scene::FirstInstallation ? 300 : 60000));
            kill(program, SIGCONT);
            const test::Findings findings = judge(station, one.get(), other.get());

            const QByteArray where = call + " number " + QByteArray::number(number);
            QVERIFY2(findings.complaints.isEmpty(),
                     qPrintable(where + '\n' + findings.complaints.join('\n')));
            QCOMPARE(test::harmNames(findings.harms & ~allowedHarms(scene)), QString());
            ++pairs;
        }
        QVERIFY(count.all > count.startUp);
    }

    void campaignRanPairs()
    {
        qInfo("faults injected: %d pairs of runs at once", pairs);
        QVERIFY(pairs > 0);
    }

private:
    int pairs = 0;
};

DRASK_TEST(tst_Faults_Twice)
#include "tst_faults_twice.moc"
