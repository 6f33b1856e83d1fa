// SPDX-License-Identifier: MIT
#include "installpass.h"

#include "passcase.h"
#include "unitcase.h"

using test::hostIn;
using test::installedLine;
using test::linesBefore;
using test::linesOfNewConfig;
using test::plainConfig;
using test::quoted;
using test::runPass;

class tst_InstallPass : public QObject {
    Q_OBJECT
private slots:
    void programsVersionFileIsReplaced()
    {
        const test::PassCase pass;
        pass.program.write("version.txt", "a much longer text than the version\n");
        QCOMPARE(runPass({}), 0);
        QCOMPARE(pass.program.read("version.txt"), QByteArray(DRASK_VERSION));
    }

    void unwritableVersionFileIsNoFailure()
    {
        const test::PassCase pass;
        pass.program.makeFolder("version.txt");
        PluginPathStruct host;
        host.applicationName = "maya";

        QCOMPARE(runPass({host}), 0);
        QCOMPARE(
            pass.log.lines(),
            linesBefore()
                + QStringList({"Debug: nothing to copy for  \"maya\"",
                               "Debug: error writing version file:  " + quoted(pass.program.path()),
                               "Debug: 0"}));
        VERIFY_TREE(pass.program, {{"version.txt/", ""}});
    }

    void projectsFolderIsLoggedAsStored_data()
    {
        const test::Table<QByteArray, QString> table("line", "shown");
        table.row("missing", "", "QVariant(Invalid)");
        table.row("empty", "localProjectsFolder=\n", "QVariant(QString, \"\")");
        table.row("a folder", "localProjectsFolder=/p r/\xc3\xb6\n",
                  "QVariant(QString, \"/p r/\xc3\xb6\")");
        table.row("a list", "localProjectsFolder=a, b\n", "QVariant(QStringList, (\"a\", \"b\"))");
    }

    void projectsFolderIsLoggedAsStored()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, shown);
        const test::PassCase pass;
        pass.program.write("settings.ini", "[PathOptions]\n" + line);
        // The line shows what the settings say, not what the program made of it.
        localProjectsFolder = "/elsewhere";

        QCOMPARE(runPass({}), 0);
        QCOMPARE(pass.log.lines(), linesBefore(shown) + QStringList("Debug: 0"));
        QCOMPARE(pass.program.read("version.txt"), QByteArray(DRASK_VERSION));
    }

    void stepsRunInOrder()
    {
        const test::PassCase pass;
        const PluginPathStruct host = hostIn(pass, "maya", "/scripts/drask");
        pass.write("shipped maya/drask_userSetup.py", "import x\n");
        test::Tree expected = pass.tree();
        expected.insert("maya/", "");
        expected.insert("maya/scripts/", "");
        expected.insert("maya/scripts/drask/", "");
        expected["maya/scripts/userSetup.py"] = "import x\n";
        expected["maya/scripts/drask/drask_userSetup.py"] = "import x\n";
        expected["maya/scripts/drask/manager.cfg"] = plainConfig(pass.program);
        expected["maya/scripts/drask/uninstall.ini"] =
            (host.targetFolder() + "/drask_userSetup.py\n").toUtf8();

        QCOMPARE(runPass({host}), 0);
        QCOMPARE(pass.log.lines(),
                 linesBefore()
                     + QStringList(
                         {"Debug: open file:  \"\"", "Debug: cannot read config file, create new",
                          "Debug: 161 write cfg file...", installedLine(host), "Debug: 0"}));
        VERIFY_TREE(pass, expected);
        VERIFY_TREE(pass.program, {{"version.txt", DRASK_VERSION}});
    }

    void oldFilesOfCinema4dGoAfterTheConfiguration()
    {
        const test::PassCase pass;
        const PluginPathStruct host = hostIn(pass, "c4d", "/plugins/drask");
        pass.makeFolder("shipped c4d");
        pass.makeFolder("c4d/plugins/drask");
        // Written first, it lands in the old file, and goes with it.
        pass.makeLink("../Grex.cdl", "c4d/plugins/drask/manager.cfg");
        QCOMPARE(runPass({host}), 0);
        QVERIFY(!pass.exists("c4d/plugins/Grex.cdl"));
    }

    void hostsAreServedInListOrder()
    {
        const test::PassCase pass;
        const PluginPathStruct first = hostIn(pass, "xsi", "/Application/Plugins/drask");
        const PluginPathStruct second = hostIn(pass, "clarisse", "/drask");
        pass.makeFolder("shipped xsi");
        pass.makeFolder("shipped clarisse");

        QCOMPARE(runPass({first, second, first}), 0);

        // One installer serves all: each copy names the manifest of the host before.
        QStringList expected = linesBefore();
        expected << "Debug: open file:  \"\"" << linesOfNewConfig() << installedLine(first);
        expected << "Debug: open file:  " + quoted(first.targetFolder() + "/uninstall.ini")
                 << linesOfNewConfig() << installedLine(second);
        expected << "Debug: open file:  " + quoted(second.targetFolder() + "/uninstall.ini")
                 << "Debug: not necessary to write cfg" << installedLine(first) << "Debug: 0";
        QCOMPARE(pass.log.lines(), expected);
    }

    void configurationHoldsTheGlobals()
    {
        const test::PassCase pass;
        const PluginPathStruct host = hostIn(pass, "modo", "/Scripts/drask");
        pass.makeFolder("shipped modo");
        // What the settings say of the user is for the driver to judge.
        pass.program.write("settings.ini",
                           "[UserData]\nusername=Bob\n[PathOptions]\nlocalProjectsFolder=/bob\n");
        username = QString::fromUtf8("Änn");
        localProjectsFolder = "/p r";

        QCOMPARE(runPass({host}), 0);
        QCOMPARE(pass.read("modo/Scripts/drask/manager.cfg"),
                 "\xc3\x84nn\n/p r\n" + pass.program.path("DraskDrop").toUtf8()
                     + "\n" DRASK_VERSION "\n\n1\n1");
    }

    void texturesAreCopiedUnlessSwitchedOff_data()
    {
        const test::Table<QByteArray, QByteArray> table("line", "flag");
        table.row("missing", "", "1");
        table.row("true", "copyTexFiles=true\n", "1");
        table.row("one", "copyTexFiles=1\n", "1");
        table.row("false", "copyTexFiles=false\n", "0");
        table.row("false in capital letters", "copyTexFiles=FALSE\n\n", "0");
        table.row("zero", "copyTexFiles=0 \n", "0");
        table.row("empty", "copyTexFiles=\n", "0");
        table.row("present, but invalid", "copyTexFiles=@Invalid()\n", "0");
        table.row("another word counts as true", "copyTexFiles=off\n", "1");
    }

    void texturesAreCopiedUnlessSwitchedOff()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, flag);
        const test::PassCase pass;
        const PluginPathStruct host = hostIn(pass, "modo", "/Scripts/drask");
        pass.makeFolder("shipped modo");
        pass.program.write("settings.ini", "[Settings]\n" + line);

        QCOMPARE(runPass({host}), 0);

        const QList<QByteArray> lines = pass.read("modo/Scripts/drask/manager.cfg").split('\n');
        QCOMPARE(lines.size(), 7);
        QCOMPARE(lines.at(6), flag);
    }

    void cpuTypeIsAskedOnce()
    {
        const test::PassCase pass;
        const PluginPathStruct first = hostIn(pass, "modo", "/Scripts/drask");
        const PluginPathStruct second = hostIn(pass, "xsi", "/Application/Plugins/drask");
        pass.makeFolder("shipped modo");
        pass.makeFolder("shipped xsi");
        pass.program.write("cputype",
                           "#!/bin/sh\necho asked >> \"" + pass.program.path("asked").toUtf8()
                               + "\"\nprintf 'x86>>>'\n");
        QVERIFY(QFile::setPermissions(pass.program.path("cputype"),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));

        QCOMPARE(runPass({first, second}), 0);
        QCOMPARE(pass.program.read("asked"), QByteArray("asked\n"));
        for (const char *name :
             {"modo/Scripts/drask/manager.cfg", "xsi/Application/Plugins/drask/manager.cfg"}) {
            QCOMPARE(pass.read(name).split('\n').value(4), QByteArray("eDg2Pj4-"));
        }
    }

    void lineEndsFollowTheHost_data()
    {
        const test::Table<QString, QByteArray> table("key", "lineEnd");
        for (const char *key : {"c4d", "c4d14", "c4d21"}) {
            table.row(key, QString(key), "\r\n");
        }
        for (const char *key : {"blender", "blender28", "xsi", "lightwave", "modo", "sketchup",
                                "clarisse", "3dsmax", "C4D", "c4d15", "c4", "c4d ", "unknown"}) {
            table.row(key, QString(key), "\n");
        }
    }

    void lineEndsFollowTheHost()
    {
        QFETCH(QString, key);
        QFETCH(QByteArray, lineEnd);
        const test::PassCase pass;
        const PluginPathStruct host = hostIn(pass, key, "");
        pass.makeFolder("shipped " + key);
        QCOMPARE(runPass({host}), 0);
        QCOMPARE(pass.read(key + "/manager.cfg"), plainConfig(pass.program, lineEnd));
    }

    void hostFolderWithoutSlashIsPassedOver_data()
    {
        const test::Table<QString> table("path");
        table.row("an empty name", "");
        table.row("a folder of the working directory", "host");
        table.row("backslashes", "C:\\host");
    }

    void hostFolderWithoutSlashIsPassedOver()
    {
        QFETCH(QString, path);
        const test::PassCase pass;
        const test::WorkingFolder workingFolder(pass.path());
        PluginPathStruct host = hostIn(pass, "c4d", "/plugins/drask");
        host.path = path;
        pass.write("shipped c4d/a.py", "a");
        pass.write("host/plugins/Grex.cdl", "kept");
        const PluginPathStruct next = hostIn(pass, "modo", "/Scripts/drask");
        pass.makeFolder("shipped modo");
        test::Tree expected = pass.tree();
        expected.insert("modo/", "");
        expected.insert("modo/Scripts/", "");
        expected.insert("modo/Scripts/drask/", "");
        expected["modo/Scripts/drask/manager.cfg"] = plainConfig(pass.program);
        expected["modo/Scripts/drask/uninstall.ini"] = "";

        QCOMPARE(runPass({host, next}, CopyWhen::Always), 0);
        QCOMPARE(pass.log.lines().value(2), QString("Debug: nothing to copy for  \"c4d\""));
        QCOMPARE(pass.log.lines().value(3), QString("Debug: open file:  \"\""));
        VERIFY_TREE(pass, expected);
    }

    void unfinishedFilesAreClearedWhereNothingIsToDo_data()
    {
        const test::Table<QString, QString, QString> table("key", "subFolder", "folder");
        table.row("beside manager.cfg", "modo", "/Scripts/drask", "modo/Scripts/drask");
        table.row("beside userSetup.py", "maya", "/scripts/drask", "maya/scripts");
        table.row("beside houdini.env", "houdini", "/Plugins/drask", "houdini");
    }

    void unfinishedFilesAreClearedWhereNothingIsToDo()
    {
        QFETCH(QString, key);
        QFETCH(QString, subFolder);
        QFETCH(QString, folder);
        const test::PassCase pass;
        pass.write(key + subFolder + "/version.txt", "7");
        pass.write(key + subFolder + "/manager.cfg", plainConfig(pass.program));
        pass.write(folder + "/.drask-unfinished", "ha");

        QCOMPARE(runPass({hostIn(pass, key, subFolder)}), 0);
        QVERIFY(!pass.exists(folder + "/.drask-unfinished"));
    }
};

DRASK_TEST_IN_OWN_FOLDER(tst_InstallPass)
#include "tst_installpass.moc"
