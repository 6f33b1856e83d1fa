// SPDX-License-Identifier: MIT
#include "installpass.h"

#include "passcase.h"
#include "unitcase.h"

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
    void onlyTheSameVersionIsInstalled_data()
    {
        const test::Table<QByteArray, int, bool> table("versionFile", "wanted", "isInstalled");
        table.row("the same version", "7\n", 7, true);
        table.row("an older version", "6", 7, false);
        table.row("a newer version", "8", 7, false);
        table.row("no number", "seven", 7, false);
        table.row("a blank before the number", " 7", 7, false);
        table.row("no version wanted, none there", "0", 0, true);
        table.row("the version of unknown hosts", "-9999", -9999, true);
        table.row("no number, and minus one wanted", "seven", -1, true);
        table.row("no file, and minus one wanted", QByteArray(), -1, true);
    }

    void onlyTheSameVersionIsInstalled()
    {
        QFETCH(QByteArray, versionFile);
        QFETCH(int, wanted);
        QFETCH(bool, isInstalled);
        const test::PassCase pass;
        PluginPathStruct host = hostIn(pass, "modo", "/Scripts/drask");
        host.version = wanted;
        pass.write("shipped modo/a.py", "new");
        if (!versionFile.isNull()) {
            pass.write("modo/Scripts/drask/version.txt", versionFile);
        }

        QCOMPARE(runPass({host}), 0);
        QCOMPARE(pass.log.lines().contains(alreadyInstalledLine(host.targetFolder())), isInstalled);
        QCOMPARE(pass.log.lines().contains(installedLine(host)), !isInstalled);
        QCOMPARE(pass.exists("modo/Scripts/drask/a.py"), !isInstalled);
        QCOMPARE(pass.exists("modo/Scripts/drask/uninstall.ini"), !isInstalled);
        QCOMPARE(pass.read("modo/Scripts/drask/manager.cfg"), plainConfig(pass.program));
    }

    void installedPluginGetsItsConfigurationAlone_data()
    {
        const test::Table<QString, bool> table("key", "onlyConfig");
        for (const char *key : {"maya", "rhino", "revit", "houdini"}) {
            table.row(key, QString(key), false);
        }
        table.row("maya, where no plug-in is to be copied", "maya", true);
    }

    void installedPluginGetsItsConfigurationAlone()
    {
        QFETCH(QString, key);
        QFETCH(bool, onlyConfig);
        const test::PassCase pass;
        const test::WorkingFolder workingFolder(pass.path());
        const PluginPathStruct host = hostIn(pass, key, "/plugins/drask");
        const QString target = key + "/plugins/drask/";
        pass.write("shipped " + key + "/a.py", "new");
        pass.write(target + "version.txt", "7");
        pass.write(target + "drask_userSetup.py", "import x\n");
        pass.write(target + "manager.cfg", "of another user");
        test::Tree expected = pass.tree();
        expected[target + "manager.cfg"] = plainConfig(pass.program);
        onlyWriteConfig = onlyConfig;

        QCOMPARE(runPass({host}), 0);
        QCOMPARE(pass.log.lines(),
                 linesBefore()
                     + QStringList({alreadyInstalledLine(host.targetFolder()),
                                    "Debug: 161 write cfg file...", "Debug: 0"}));
        VERIFY_TREE(pass, expected);
    }

    void installedCinema4dStillLosesLegacyFiles()
    {
        const test::PassCase pass;
        const PluginPathStruct host = hostIn(pass, "c4d", "/plugins/drask");
        pass.write("c4d/plugins/drask/version.txt", "7");
        test::Tree expected = pass.tree();
        expected["c4d/plugins/drask/manager.cfg"] = plainConfig(pass.program, "\r\n");
        pass.write("c4d/plugins/Grex.cdl", "legacy");
        pass.write("c4d/plugins/drask/grex21.xlib", "legacy");

        QCOMPARE(runPass({host}), 0);
        VERIFY_TREE(pass, expected);
    }

    void reinstallDoesNotReadTheVersion()
    {
        const test::PassCase pass;
        const PluginPathStruct host = hostIn(pass, "houdini", "/Plugins/drask");
        pass.write("shipped houdini/a.py", "new");
        pass.write("houdini/Plugins/drask/a.py", "old");
        pass.write("houdini/Plugins/drask/version.txt", "7");
        test::Tree expected = pass.tree();
        expected["houdini/Plugins/drask/a.py"] = "new";
        expected["houdini/Plugins/drask/manager.cfg"] = plainConfig(pass.program);
        expected["houdini/Plugins/drask/uninstall.ini"] = (host.targetFolder() + "/a.py\n")
                                                              .toUtf8();
        expected["houdini/houdini.env"] = "\n#drask_installed\nHOUDINI_PATH = \";$HOUDINI_PATH\"\n";

        QCOMPARE(runPass({host}, CopyWhen::Always), 0);
        QCOMPARE(pass.log.lines(),
                 linesBefore() + QStringList("Debug: open file:  \"\"") + linesOfNewConfig()
                     + QStringList({installedLine(host), "Debug: 0"}));
        VERIFY_TREE(pass, expected);
    }

    void onlyWriteConfigCopiesNothing()
    {
        const test::PassCase pass;
        const PluginPathStruct host = hostIn(pass, "modo", "/Scripts/drask");
        pass.write("shipped modo/a.py", "new");
        pass.write("modo/Scripts/drask/a.py", "old");
        test::Tree expected = pass.tree();
        expected["modo/Scripts/drask/manager.cfg"] = plainConfig(pass.program);
        onlyWriteConfig = true;

        QCOMPARE(runPass({host}), 0);
        QCOMPARE(pass.log.lines(),
                 linesBefore() + QStringList("Debug: only write config, do not copy files")
                     + linesOfNewConfig() + QStringList({installedLine(host), "Debug: 0"}));
        VERIFY_TREE(pass, expected);
    }

    void onlyWriteConfigStillRunsTheHostSteps()
    {
        const test::PassCase pass;
        const PluginPathStruct maya = hostIn(pass, "maya", "/scripts/drask");
        const PluginPathStruct houdini = hostIn(pass, "houdini", "/Plugins/drask");
        pass.write("shipped maya/drask_userSetup.py", "import x\n");
        onlyWriteConfig = true;

        // Maya's template was never copied, so its step fails; Houdini needs none.
        QCOMPARE(runPass({maya, houdini}), 3);
        QCOMPARE(pass.program.read("pluginError.txt"),
                 "Could not copy userSetup.py file to: " + maya.targetFolder().toUtf8() + "\n");
        QVERIFY(pass.exists("houdini/houdini.env"));
    }
};

DRASK_TEST_IN_OWN_FOLDER(tst_InstallPassVersions)
#include "tst_installpass_versions.moc"
