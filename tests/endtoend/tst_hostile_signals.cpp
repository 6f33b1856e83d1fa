// SPDX-License-Identifier: MIT
#include "plantedplugin.h"

#include <QtTest>

#include <csignal>

/// A process hands down which signals are blocked and ignored to the programs that it starts.
class tst_Hostile_Signals : public QObject {
    Q_OBJECT

private slots:
    void companionIsWaitedForWhateverIsHandedDown_data();
    void companionIsWaitedForWhateverIsHandedDown();
};

namespace {

using Preparation = void (*)();

void blockTheEndOfChildren()
{
    sigset_t mask;
    sigemptyset(&mask);
    sigaddset(&mask, SIGCHLD);
    sigprocmask(SIG_BLOCK, &mask, nullptr);
}

void blockAll()
{
    sigset_t mask;
    sigfillset(&mask);
    sigprocmask(SIG_BLOCK, &mask, nullptr);
}

void ignoreTheEndOfChildren()
{
    std::signal(SIGCHLD, SIG_IGN);
}

void ignoreWhatCanBeIgnored()
{
    for (const int number :
         {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGALRM, SIGTERM, SIGUSR1, SIGCHLD}) {
        std::signal(number, SIG_IGN);
    }
}

} // namespace

Q_DECLARE_METATYPE(Preparation)

void tst_Hostile_Signals::companionIsWaitedForWhateverIsHandedDown_data()
{
    QTest::addColumn<Preparation>("preparation");

    QTest::addRow("SIGCHLD is blocked") << Preparation(blockTheEndOfChildren);
    QTest::addRow("every signal is blocked") << Preparation(blockAll);
    QTest::addRow("SIGCHLD is ignored") << Preparation(ignoreTheEndOfChildren);
    QTest::addRow("everything is ignored") << Preparation(ignoreWhatCanBeIgnored);
}

void tst_Hostile_Signals::companionIsWaitedForWhateverIsHandedDown()
{
#ifndef Q_OS_LINUX
    QSKIP("Here, Qt learns of the end of a process by the signal.");
#endif
    QFETCH(Preparation, preparation);
    const test::PlantedPlugin workstation;
    workstation.addCpuType("printf Xeon\n");
    const QString target = workstation.path("modo/Scripts/drask");
    const QByteArray manifest = target.toUtf8() + "/version.txt\n";
    test::Tree expected = workstation.installed(
        workstation.tree(), {{"version.txt", "7"}, {"uninstall.ini", manifest}});
    expected[test::plantedIn + "manager.cfg"].replace("\n\n1\n", "\nWGVvbg==\n1\n");
    test::RunOptions options;
    options.prepareProcess = preparation;

    const test::RunResult first = workstation.run({}, options);

    VERIFY_RUN(first, 0);
    const QStringList begin = QStringList("Debug: settings loaded")
        + test::linesOfLookUp("modo", workstation.path("modo"))
        + QStringList({"Debug: !!!settings local:  QVariant(Invalid)", "Debug: version:  24"});
    VERIFY_LEFT(workstation, expected,
                begin + QStringList("Debug: open file:  \"\"") + test::linesOfNewConfig()
                    + QStringList({test::installedLine("modo", target), "Debug: 0"}),
                QByteArray());

    const test::RunResult second = workstation.run({}, options);

    VERIFY_RUN(second, 0);
    VERIFY_LEFT(workstation, expected,
                begin
                    + QStringList({test::alreadyInstalledLine(target),
                                   "Debug: not necessary to write cfg", "Debug: 0"}),
                QByteArray());
}

QTEST_GUILESS_MAIN(tst_Hostile_Signals)
#include "tst_hostile_signals.moc"
