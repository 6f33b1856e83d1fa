// SPDX-License-Identifier: MIT
#include "testprogram.h"
#include "tracer.h"

#include <QProcess>
#include <QtTest>

#include <thread>
#include <vector>

namespace {

const QStringList ownProcesses = {"unshare", "--pid", "--fork", "--kill-child", "--mount-proc"};

/// Runs the words after it, and says so when another process of the user's is gone afterwards.
const QStringList besideAnother = {"sh", "-c",
                                   "sleep 1000 & \"$@\"; code=$?;"
                                   " kill -0 $! || echo 'another process was ended';"
                                   " exit $code",
                                   "sh"};

struct ForkRun {
    test::RunResult result;
    QByteArray hit;
    QByteArray configuration;
};

ForkRun runWithFailingFork(const QByteArray &error)
{
    test::Workstation workstation;
    workstation.addCpuType("printf Xeon\n");
    workstation.addPlugin("Blender", {{"__init__.py", ""}});
    workstation.addHost("blender", workstation.path("home"));
    workstation.writeSettings();

    const test::Tracer tracer;
    const test::Disturbance disturbance = {"clone", "error=" + error};
    test::RunOptions options;
    options.through = ownProcesses + besideAnother + tracer.disturb(disturbance, 1);
    options.environment = test::Tracer::environment();
    options.timeoutMs = 120000;
    const test::RunResult result = workstation.run({}, options);
    return {result, tracer.hit(disturbance),
            workstation.read("home/scripts/startup/adrask/manager.cfg")};
}

} // namespace

/// Starts the companion program where the system has no process left to give. Whoever takes the
/// answer for a process number ends more than itself, so each run gets a process table of its own.
class tst_Faults_Fork : public QObject {
    Q_OBJECT
private slots:
    void initTestCase()
    {
        TRACE_OR_SKIP();
        if (QProcess::execute(ownProcesses.first(), ownProcesses.mid(1) + QStringList("true"))
            != 0) {
            QSKIP("no process table of its own can be had here");
        }
    }

    void companionCannotBeStarted_data()
    {
        QTest::addColumn<QByteArray>("error");

        QTest::addRow("too many processes") << QByteArray("EAGAIN");
        QTest::addRow("too many open files") << QByteArray("EMFILE");
        QTest::addRow("no memory") << QByteArray("ENOMEM");
    }

    void companionCannotBeStarted()
    {
        QFETCH(QByteArray, error);

        // What a run does with the answer depends on what was in its memory before: one is no
        // proof.
        std::vector<ForkRun> runs(6);
        std::vector<std::thread> threads;
        for (ForkRun &run : runs) {
            threads.emplace_back([&run, &error] { run = runWithFailingFork(error); });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }

        for (const ForkRun &run : runs) {
            VERIFY_RUN(run.result, 0);
            QVERIFY2(!run.hit.isEmpty(), "the program starts processes in another way here");
            QCOMPARE(run.configuration.split('\n').value(4, "no such line"), QByteArray());
        }
    }
};

DRASK_TEST(tst_Faults_Fork)
#include "tst_faults_fork.moc"
