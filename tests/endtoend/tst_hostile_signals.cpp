// SPDX-License-Identifier: MIT
#include "plantedplugin.h"

#include "testprogram.h"

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

class PluginWithCompanion : public test::PlantedPlugin {
public:
    PluginWithCompanion()
    {
        addCpuType("printf Xeon\n");
        cpuTypeInBase64 = "WGVvbg==";
    }
};

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
    const PluginWithCompanion plant;
    const QByteArray manifest = plant.path(test::plantedIn + "version.txt\n").toUtf8();
    const test::Tree expected = plant.installed(
        plant.tree(), {{"version.txt", "7"}, {"uninstall.ini", manifest}});
    test::RunOptions options;
    options.prepareProcess = preparation;

    VERIFY_RUN(plant.run({}, options), 0);
    VERIFY_LEFT(plant, expected, plant.logOfInstall(), QByteArray());

    VERIFY_RUN(plant.run({}, options), 0);
    VERIFY_LEFT(plant, expected, plant.logOfSecondInstall(), QByteArray());
}

DRASK_TEST(tst_Hostile_Signals)
#include "tst_hostile_signals.moc"
