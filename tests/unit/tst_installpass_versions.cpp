// SPDX-License-Identifier: MIT
#include "installpass.h"

#include "globals.h"
#include "logcapture.h"
#include "passcase.h"
#include "testprogram.h"

#include <QtTest>

using test::alreadyInstalledLine;
using test::hostIn;
using test::installedLine;
using test::linesBefore;
using test::linesOfNewConfig;
using test::plainConfig;
using test::runPass;

/// When the install pass copies a plug-in, and what it does all the same when it does not.
class tst_InstallPassVersions : public QObject {
    Q_OBJECT

private slots:
    void init();
    void onlyTheSameVersionIsInstalled_data();
    void onlyTheSameVersionIsInstalled();
    void installedPluginGetsItsConfigurationAlone_data();
    void installedPluginGetsItsConfigurationAlone();
    void installedCinema4dStillLosesLegacyFiles();
    void reinstallDoesNotReadTheVersion();
    void onlyWriteConfigCopiesNothing();
    void onlyWriteConfigStillRunsTheHostSteps();
};

void tst_InstallPassVersions::init()
{
    username.clear();
    localProjectsFolder.clear();
    onlyWriteConfig = false;
}

void tst_InstallPassVersions::onlyTheSameVersionIsInstalled_data()
{
    QTest::addColumn<QByteArray>("versionFile");
    QTest::addColumn<int>("wanted");
    QTest::addColumn<bool>("isInstalled");

    QTest::newRow("the same version") << QByteArray("7\n") << 7 << true;
    QTest::newRow("an older version") << QByteArray("6") << 7 << false;
    QTest::newRow("a newer version") << QByteArray("8") << 7 << false;
    QTest::newRow("no number") << QByteArray("seven") << 7 << false;
    QTest::newRow("a blank before the number") << QByteArray(" 7") << 7 << false;
    QTest::newRow("no version wanted, none there") << QByteArray("0") << 0 << true;
    QTest::newRow("the version of unknown hosts") << QByteArray("-9999") << -9999 << true;
    QTest::newRow("no number, and minus one wanted") << QByteArray("seven") << -1 << true;
    QTest::newRow("no file, and minus one wanted") << QByteArray() << -1 << true;
}

void tst_InstallPassVersions::onlyTheSameVersionIsInstalled()
{
    QFETCH(QByteArray, versionFile);
    QFETCH(int, wanted);
    QFETCH(bool, isInstalled);
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    PluginPathStruct host = hostIn(sandbox, "modo", "/Scripts/drask");
    host.version = wanted;
    sandbox.write("shipped modo/a.py", "new");
    if (!versionFile.isNull()) {
        sandbox.write("modo/Scripts/drask/version.txt", versionFile);
    }
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 0);

    QCOMPARE(log.lines().contains(alreadyInstalledLine(host.targetFolder())), isInstalled);
    QCOMPARE(log.lines().contains(installedLine(host)), !isInstalled);
    QCOMPARE(sandbox.exists("modo/Scripts/drask/a.py"), !isInstalled);
    QCOMPARE(sandbox.exists("modo/Scripts/drask/uninstall.ini"), !isInstalled);
    QCOMPARE(sandbox.read("modo/Scripts/drask/manager.cfg"), plainConfig(folder));
}

void tst_InstallPassVersions::installedPluginGetsItsConfigurationAlone_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("onlyConfig");

    for (const char *key : {"maya", "rhino", "revit", "houdini"}) {
        QTest::newRow(key) << QString(key) << false;
    }
    QTest::newRow("maya, where no plug-in is to be copied") << QString("maya") << true;
}

void tst_InstallPassVersions::installedPluginGetsItsConfigurationAlone()
{
    QFETCH(QString, key);
    QFETCH(bool, onlyConfig);
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const test::WorkingFolder workingFolder(sandbox.path());
    const PluginPathStruct host = hostIn(sandbox, key, "/plugins/drask");
    const QString target = key + "/plugins/drask/";
    sandbox.write("shipped " + key + "/a.py", "new");
    sandbox.write(target + "version.txt", "7");
    sandbox.write(target + "drask_userSetup.py", "import x\n");
    sandbox.write(target + "manager.cfg", "of another user");
    test::Tree expected = sandbox.tree();
    expected[target + "manager.cfg"] = plainConfig(folder);
    onlyWriteConfig = onlyConfig;
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 0);

    QCOMPARE(log.lines(),
             linesBefore()
                 + QStringList({alreadyInstalledLine(host.targetFolder()),
                                "Debug: 161 write cfg file...", "Debug: 0"}));
    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
}

void tst_InstallPassVersions::installedCinema4dStillLosesLegacyFiles()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = hostIn(sandbox, "c4d", "/plugins/drask");
    sandbox.write("c4d/plugins/drask/version.txt", "7");
    test::Tree expected = sandbox.tree();
    expected["c4d/plugins/drask/manager.cfg"] = plainConfig(folder, "\r\n");
    sandbox.write("c4d/plugins/Grex.cdl", "legacy");
    sandbox.write("c4d/plugins/drask/grex21.xlib", "legacy");
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 0);

    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
}

void tst_InstallPassVersions::reinstallDoesNotReadTheVersion()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = hostIn(sandbox, "houdini", "/Plugins/drask");
    sandbox.write("shipped houdini/a.py", "new");
    sandbox.write("houdini/Plugins/drask/a.py", "old");
    sandbox.write("houdini/Plugins/drask/version.txt", "7");
    test::Tree expected = sandbox.tree();
    expected["houdini/Plugins/drask/a.py"] = "new";
    expected["houdini/Plugins/drask/manager.cfg"] = plainConfig(folder);
    expected["houdini/Plugins/drask/uninstall.ini"] = (host.targetFolder() + "/a.py\n").toUtf8();
    expected["houdini/houdini.env"] = "\n#drask_installed\nHOUDINI_PATH = \";$HOUDINI_PATH\"\n";
    const test::LogCapture log;

    QCOMPARE(runPass({host}, CopyWhen::Always), 0);

    QCOMPARE(log.lines(),
             linesBefore() + QStringList("Debug: open file:  \"\"") + linesOfNewConfig()
                 + QStringList({installedLine(host), "Debug: 0"}));
    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
}

void tst_InstallPassVersions::onlyWriteConfigCopiesNothing()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = hostIn(sandbox, "modo", "/Scripts/drask");
    sandbox.write("shipped modo/a.py", "new");
    sandbox.write("modo/Scripts/drask/a.py", "old");
    test::Tree expected = sandbox.tree();
    expected["modo/Scripts/drask/manager.cfg"] = plainConfig(folder);
    onlyWriteConfig = true;
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 0);

    QCOMPARE(log.lines(),
             linesBefore() + QStringList("Debug: only write config, do not copy files")
                 + linesOfNewConfig() + QStringList({installedLine(host), "Debug: 0"}));
    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
}

void tst_InstallPassVersions::onlyWriteConfigStillRunsTheHostSteps()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct maya = hostIn(sandbox, "maya", "/scripts/drask");
    const PluginPathStruct houdini = hostIn(sandbox, "houdini", "/Plugins/drask");
    sandbox.write("shipped maya/drask_userSetup.py", "import x\n");
    onlyWriteConfig = true;
    const test::LogCapture log;

    // Maya's template was never copied, so its step fails; Houdini needs none.
    QCOMPARE(runPass({maya, houdini}), 3);

    QCOMPARE(folder.read("pluginError.txt"),
             "Could not copy userSetup.py file to: " + maya.targetFolder().toUtf8() + "\n");
    QVERIFY(sandbox.exists("houdini/houdini.env"));
}

DRASK_TEST_IN_OWN_FOLDER(tst_InstallPassVersions)
#include "tst_installpass_versions.moc"
