// SPDX-License-Identifier: MIT
#include "installpass.h"

#include "globals.h"
#include "logcapture.h"
#include "passcase.h"
#include "testprogram.h"

#include <QtTest>

using test::hostIn;
using test::installedLine;
using test::linesBefore;
using test::linesOfNewConfig;
using test::plainConfig;
using test::runPass;

/// What the install pass tells the user and the manager of steps that failed.
class tst_InstallPassFailures : public QObject {
    Q_OBJECT

private slots:
    void init();
    void failedCopyIsReported();
    void failedConfigurationIsReported();
    void unmakeableTargetFailsTwice();
    void unknownHostIsReported();
    void lastFailureDecides_data();
    void lastFailureDecides();
    void carriedExitCodeIsKeptOrOverwritten_data();
    void carriedExitCodeIsKeptOrOverwritten();
    void unwritableErrorFileChangesNothing();
};

namespace {

QByteArray copyMessage(const PluginPathStruct &host)
{
    return "Could not copy file to: \n" + host.targetFolder().toUtf8() + "\n";
}

/// No slash before the file's name.
QByteArray configMessage(const PluginPathStruct &host)
{
    return "Could not write config file in: \n" + host.targetFolder().toUtf8() + "manager.cfg\n";
}

QByteArray mayaMessage(const PluginPathStruct &host)
{
    return "Could not copy userSetup.py file to: " + host.targetFolder().toUtf8() + "\n";
}

/// A host whose shipped plug-in is missing.
PluginPathStruct withoutSource(const test::Sandbox &sandbox, const QString &key)
{
    return hostIn(sandbox, key, "/plugins/drask");
}

/// A host in which a folder stands in the place of manager.cfg.
PluginPathStruct withoutConfig(const test::Sandbox &sandbox, const QString &key)
{
    sandbox.makeFolder("shipped " + key);
    sandbox.makeFolder(key + "/plugins/drask/manager.cfg");
    return hostIn(sandbox, key, "/plugins/drask");
}

PluginPathStruct inOrder(const test::Sandbox &sandbox, const QString &key)
{
    sandbox.makeFolder("shipped " + key);
    return hostIn(sandbox, key, "/plugins/drask");
}

} // namespace

void tst_InstallPassFailures::init()
{
    username.clear();
    localProjectsFolder.clear();
    onlyWriteConfig = false;
}

void tst_InstallPassFailures::failedCopyIsReported()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = withoutSource(sandbox, "houdini");
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 2);

    // The steps behind the copy run all the same.
    QCOMPARE(log.lines(),
             linesBefore() + linesOfNewConfig() + QStringList({installedLine(host), "Debug: 2"}));
    QCOMPARE(test::treeDifference(
                 folder.tree(),
                 {{"version.txt", DRASK_VERSION}, {"pluginError.txt", copyMessage(host)}}),
             QString());
    QCOMPARE(sandbox.read("houdini/plugins/drask/manager.cfg"), plainConfig(folder));
    QVERIFY(sandbox.exists("houdini/houdini.env"));
}

void tst_InstallPassFailures::failedConfigurationIsReported()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = withoutConfig(sandbox, "c4d");
    sandbox.write("c4d/plugins/Grex.cdl", "legacy");
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 3);

    QCOMPARE(log.lines(),
             linesBefore() + QStringList("Debug: open file:  \"\"") + linesOfNewConfig()
                 + QStringList({installedLine(host), "Debug: 3"}));
    QCOMPARE(folder.read("pluginError.txt"), configMessage(host));
    QVERIFY(!sandbox.exists("c4d/plugins/Grex.cdl"));
}

void tst_InstallPassFailures::unmakeableTargetFailsTwice()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = inOrder(sandbox, "modo");
    const PluginPathStruct next = inOrder(sandbox, "xsi");
    sandbox.write("modo/plugins", "a file in a folder's place");
    const test::LogCapture log;

    QCOMPARE(runPass({host, next}), 3);

    QCOMPARE(folder.read("pluginError.txt"), copyMessage(host) + configMessage(host));
    QCOMPARE(sandbox.read("modo/plugins"), QByteArray("a file in a folder's place"));
    QCOMPARE(sandbox.read("xsi/plugins/drask/manager.cfg"), plainConfig(folder));
}

void tst_InstallPassFailures::unknownHostIsReported()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    sandbox.write("here/sub/a.py", "somebody's");
    // A source without a name is not the working directory.
    const test::WorkingFolder workingFolder(sandbox.path("here"));
    const PluginPathStruct host = test::hostAt(sandbox.path("nuke"), "nuke", "");
    test::Tree expected = sandbox.tree();
    expected["nuke/"] = "";
    expected["nuke/manager.cfg"] = plainConfig(folder);
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 2);

    QCOMPARE(log.lines(),
             linesBefore() + linesOfNewConfig() + QStringList({installedLine(host), "Debug: 2"}));
    QCOMPARE(folder.read("pluginError.txt"), copyMessage(host));
    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
}

void tst_InstallPassFailures::lastFailureDecides_data()
{
    QTest::addColumn<QStringList>("failures");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("a copy, then a configuration") << QStringList({"copy", "config"}) << 3;
    QTest::newRow("a configuration, then a copy") << QStringList({"config", "copy"}) << 2;
    QTest::newRow("a copy, then nothing") << QStringList({"copy", "none"}) << 2;
    QTest::newRow("a configuration, then nothing") << QStringList({"config", "none"}) << 3;
    QTest::newRow("nothing, then a copy") << QStringList({"none", "copy"}) << 2;
    QTest::newRow("a Maya script, then a copy") << QStringList({"maya", "copy"}) << 2;
    QTest::newRow("a copy, then a Maya script") << QStringList({"copy", "maya"}) << 3;
    QTest::newRow("three in a row") << QStringList({"copy", "config", "copy"}) << 2;
    QTest::newRow("nothing at all") << QStringList({"none", "none"}) << 0;
}

void tst_InstallPassFailures::lastFailureDecides()
{
    QFETCH(QStringList, failures);
    QFETCH(int, exitCode);
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    QList<PluginPathStruct> hosts;
    QByteArray messages;
    for (const QString &failure : failures) {
        const QString key = QStringLiteral("host%1").arg(hosts.size());
        if (failure == "copy") {
            hosts << withoutSource(sandbox, key);
            messages += copyMessage(hosts.last());
        } else if (failure == "config") {
            hosts << withoutConfig(sandbox, key);
            messages += configMessage(hosts.last());
        } else if (failure == "maya") {
            hosts << inOrder(sandbox, "maya");
            messages += mayaMessage(hosts.last());
        } else {
            hosts << inOrder(sandbox, key);
        }
    }
    const test::LogCapture log;

    QCOMPARE(runPass(hosts), exitCode);

    QCOMPARE(folder.read("pluginError.txt"), messages);
    QCOMPARE(log.lines().last(), QStringLiteral("Debug: %1").arg(exitCode));
}

void tst_InstallPassFailures::carriedExitCodeIsKeptOrOverwritten_data()
{
    QTest::addColumn<bool>("fails");
    QTest::addColumn<int>("carried");
    QTest::addColumn<int>("exitCode");

    QTest::newRow("kept when all is well") << false << 5 << 5;
    QTest::newRow("overwritten by a failure") << true << 5 << 2;
    QTest::newRow("overwritten although it is larger") << true << 3 << 2;
}

void tst_InstallPassFailures::carriedExitCodeIsKeptOrOverwritten()
{
    QFETCH(bool, fails);
    QFETCH(int, carried);
    QFETCH(int, exitCode);
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = fails ? withoutSource(sandbox, "modo") : inOrder(sandbox, "modo");
    const test::LogCapture log;

    QCOMPARE(runPass({host}, CopyWhen::Always, carried), exitCode);

    QCOMPARE(log.lines().last(), QStringLiteral("Debug: %1").arg(exitCode));
}

void tst_InstallPassFailures::unwritableErrorFileChangesNothing()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    folder.makeFolder("pluginError.txt");
    const PluginPathStruct host = withoutSource(sandbox, "modo");
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 2);

    QCOMPARE(log.lines(),
             linesBefore() + linesOfNewConfig() + QStringList({installedLine(host), "Debug: 2"}));
    QCOMPARE(sandbox.read("modo/plugins/drask/manager.cfg"), plainConfig(folder));
}

DRASK_TEST_IN_OWN_FOLDER(tst_InstallPassFailures)
#include "tst_installpass_failures.moc"
