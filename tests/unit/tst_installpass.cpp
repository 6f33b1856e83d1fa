// SPDX-License-Identifier: MIT
#include "installpass.h"

#include "globals.h"
#include "logcapture.h"
#include "passcase.h"
#include "testprogram.h"

#include <QtTest>

class tst_InstallPass : public QObject {
    Q_OBJECT

private slots:
    void init();
    void programsVersionFileIsReplaced();
    void unwritableVersionFileIsNoFailure();
    void projectsFolderIsLoggedAsStored_data();
    void projectsFolderIsLoggedAsStored();
    void stepsRunInOrder();
    void hostsAreServedInListOrder();
    void configurationHoldsTheGlobals();
    void texturesAreCopiedUnlessSwitchedOff_data();
    void texturesAreCopiedUnlessSwitchedOff();
    void cpuTypeIsAskedOnce();
    void lineEndsFollowTheHost_data();
    void lineEndsFollowTheHost();
    void hostFolderWithoutSlashIsPassedOver_data();
    void hostFolderWithoutSlashIsPassedOver();
    void unfinishedFilesAreClearedWhereNothingIsToDo_data();
    void unfinishedFilesAreClearedWhereNothingIsToDo();
};

using test::hostIn;
using test::installedLine;
using test::linesBefore;
using test::linesOfNewConfig;
using test::plainConfig;
using test::quoted;
using test::runPass;

void tst_InstallPass::init()
{
    username.clear();
    localProjectsFolder.clear();
    onlyWriteConfig = false;
}

void tst_InstallPass::programsVersionFileIsReplaced()
{
    const test::ProgramFolder folder;
    folder.write("version.txt", "a much longer text than the version\n");
    const test::LogCapture log;

    QCOMPARE(runPass({}), 0);

    QCOMPARE(folder.read("version.txt"), QByteArray(DRASK_VERSION));
}

void tst_InstallPass::unwritableVersionFileIsNoFailure()
{
    const test::ProgramFolder folder;
    folder.makeFolder("version.txt");
    PluginPathStruct host;
    host.applicationName = "maya";
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 0);

    QCOMPARE(log.lines(),
             linesBefore()
                 + QStringList({"Debug: nothing to copy for  \"maya\"",
                                "Debug: error writing version file:  " + quoted(folder.path()),
                                "Debug: 0"}));
    QCOMPARE(test::treeDifference(folder.tree(), {{"version.txt/", ""}}), QString());
}

void tst_InstallPass::projectsFolderIsLoggedAsStored_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("shown");

    QTest::newRow("missing") << QByteArray("") << QString("QVariant(Invalid)");
    QTest::newRow("empty") << QByteArray("localProjectsFolder=\n")
                           << QString("QVariant(QString, \"\")");
    QTest::newRow("a folder") << QByteArray("localProjectsFolder=/p r/\xc3\xb6\n")
                              << QString::fromUtf8("QVariant(QString, \"/p r/\xc3\xb6\")");
    QTest::newRow("a list") << QByteArray("localProjectsFolder=a, b\n")
                            << QString("QVariant(QStringList, (\"a\", \"b\"))");
}

void tst_InstallPass::projectsFolderIsLoggedAsStored()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, shown);
    const test::ProgramFolder folder;
    folder.write("settings.ini", "[PathOptions]\n" + line);
    // The line shows what the settings say, not what the program made of it.
    localProjectsFolder = "/elsewhere";
    const test::LogCapture log;

    QCOMPARE(runPass({}), 0);

    QCOMPARE(log.lines(), linesBefore(shown) + QStringList("Debug: 0"));
    QCOMPARE(folder.read("version.txt"), QByteArray(DRASK_VERSION));
}

void tst_InstallPass::stepsRunInOrder()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = hostIn(sandbox, "maya", "/scripts/drask");
    sandbox.write("shipped maya/drask_userSetup.py", "import x\n");
    test::Tree expected = sandbox.tree();
    expected.insert("maya/", "");
    expected.insert("maya/scripts/", "");
    expected.insert("maya/scripts/drask/", "");
    expected["maya/scripts/userSetup.py"] = "import x\n";
    expected["maya/scripts/drask/drask_userSetup.py"] = "import x\n";
    expected["maya/scripts/drask/manager.cfg"] = plainConfig(folder);
    expected["maya/scripts/drask/uninstall.ini"] = (host.targetFolder() + "/drask_userSetup.py\n")
                                                       .toUtf8();
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 0);

    QCOMPARE(
        log.lines(),
        linesBefore()
            + QStringList({"Debug: open file:  \"\"", "Debug: cannot read config file, create new",
                           "Debug: 161 write cfg file...", installedLine(host), "Debug: 0"}));
    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
    QCOMPARE(test::treeDifference(folder.tree(), {{"version.txt", DRASK_VERSION}}), QString());
}

void tst_InstallPass::hostsAreServedInListOrder()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct first = hostIn(sandbox, "xsi", "/Application/Plugins/drask");
    const PluginPathStruct second = hostIn(sandbox, "clarisse", "/drask");
    sandbox.makeFolder("shipped xsi");
    sandbox.makeFolder("shipped clarisse");
    const test::LogCapture log;

    QCOMPARE(runPass({first, second, first}), 0);

    // One installer serves all: each copy names the manifest of the host before.
    QStringList expected = linesBefore();
    expected << "Debug: open file:  \"\"" << linesOfNewConfig() << installedLine(first);
    expected << "Debug: open file:  " + quoted(first.targetFolder() + "/uninstall.ini")
             << linesOfNewConfig() << installedLine(second);
    expected << "Debug: open file:  " + quoted(second.targetFolder() + "/uninstall.ini")
             << "Debug: not necessary to write cfg" << installedLine(first) << "Debug: 0";
    QCOMPARE(log.lines(), expected);
}

void tst_InstallPass::configurationHoldsTheGlobals()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = hostIn(sandbox, "modo", "/Scripts/drask");
    sandbox.makeFolder("shipped modo");
    // What the settings say of the user is for the driver to judge.
    folder.write("settings.ini",
                 "[UserData]\nusername=Bob\n[PathOptions]\nlocalProjectsFolder=/bob\n");
    username = QString::fromUtf8("Änn");
    localProjectsFolder = "/p r";
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 0);

    QCOMPARE(sandbox.read("modo/Scripts/drask/manager.cfg"),
             "\xc3\x84nn\n/p r\n" + folder.path("DraskDrop").toUtf8()
                 + "\n" DRASK_VERSION "\n\n1\n1");
}

void tst_InstallPass::texturesAreCopiedUnlessSwitchedOff_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("flag");

    QTest::newRow("missing") << QByteArray("") << QByteArray("1");
    QTest::newRow("true") << QByteArray("copyTexFiles=true\n") << QByteArray("1");
    QTest::newRow("one") << QByteArray("copyTexFiles=1\n") << QByteArray("1");
    QTest::newRow("false") << QByteArray("copyTexFiles=false\n") << QByteArray("0");
    QTest::newRow("false in capital letters")
        << QByteArray("copyTexFiles=FALSE\n\n") << QByteArray("0");
    QTest::newRow("zero") << QByteArray("copyTexFiles=0 \n") << QByteArray("0");
    QTest::newRow("empty") << QByteArray("copyTexFiles=\n") << QByteArray("0");
    QTest::newRow("present, but invalid")
        << QByteArray("copyTexFiles=@Invalid()\n") << QByteArray("0");
    QTest::newRow("another word counts as true")
        << QByteArray("copyTexFiles=off\n") << QByteArray("1");
}

void tst_InstallPass::texturesAreCopiedUnlessSwitchedOff()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, flag);
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = hostIn(sandbox, "modo", "/Scripts/drask");
    sandbox.makeFolder("shipped modo");
    folder.write("settings.ini", "[Settings]\n" + line);
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 0);

    const QList<QByteArray> lines = sandbox.read("modo/Scripts/drask/manager.cfg").split('\n');
    QCOMPARE(lines.size(), 7);
    QCOMPARE(lines.at(6), flag);
}

void tst_InstallPass::cpuTypeIsAskedOnce()
{
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct first = hostIn(sandbox, "modo", "/Scripts/drask");
    const PluginPathStruct second = hostIn(sandbox, "xsi", "/Application/Plugins/drask");
    sandbox.makeFolder("shipped modo");
    sandbox.makeFolder("shipped xsi");
    folder.write("cputype",
                 "#!/bin/sh\necho asked >> \"" + folder.path("asked").toUtf8()
                     + "\"\nprintf 'x86>>>'\n");
    QVERIFY(QFile::setPermissions(folder.path("cputype"),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const test::LogCapture log;

    QCOMPARE(runPass({first, second}), 0);

    QCOMPARE(folder.read("asked"), QByteArray("asked\n"));
    for (const char *name :
         {"modo/Scripts/drask/manager.cfg", "xsi/Application/Plugins/drask/manager.cfg"}) {
        QCOMPARE(sandbox.read(name).split('\n').value(4), QByteArray("eDg2Pj4-"));
    }
}

void tst_InstallPass::lineEndsFollowTheHost_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("lineEnd");

    for (const char *key : {"c4d", "c4d14", "c4d21"}) {
        QTest::newRow(key) << QString(key) << QByteArray("\r\n");
    }
    for (const char *key : {"blender", "blender28", "xsi", "lightwave", "modo", "sketchup",
                            "clarisse", "3dsmax", "C4D", "c4d15", "c4", "c4d ", "unknown"}) {
        QTest::newRow(key) << QString(key) << QByteArray("\n");
    }
}

void tst_InstallPass::lineEndsFollowTheHost()
{
    QFETCH(QString, key);
    QFETCH(QByteArray, lineEnd);
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = hostIn(sandbox, key, "");
    sandbox.makeFolder("shipped " + key);
    const test::LogCapture log;

    QCOMPARE(runPass({host}), 0);

    QCOMPARE(sandbox.read(key + "/manager.cfg"), plainConfig(folder, lineEnd));
}

void tst_InstallPass::hostFolderWithoutSlashIsPassedOver_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("an empty name") << QString("");
    QTest::newRow("a folder of the working directory") << QString("host");
    QTest::newRow("backslashes") << QString("C:\\host");
}

void tst_InstallPass::hostFolderWithoutSlashIsPassedOver()
{
    QFETCH(QString, path);
    const test::ProgramFolder folder;
    const test::Sandbox sandbox;
    const test::WorkingFolder workingFolder(sandbox.path());
    PluginPathStruct host = hostIn(sandbox, "c4d", "/plugins/drask");
    host.path = path;
    sandbox.write("shipped c4d/a.py", "a");
    sandbox.write("host/plugins/Grex.cdl", "kept");
    const PluginPathStruct next = hostIn(sandbox, "modo", "/Scripts/drask");
    sandbox.makeFolder("shipped modo");
    test::Tree expected = sandbox.tree();
    expected.insert("modo/", "");
    expected.insert("modo/Scripts/", "");
    expected.insert("modo/Scripts/drask/", "");
    expected["modo/Scripts/drask/manager.cfg"] = plainConfig(folder);
    expected["modo/Scripts/drask/uninstall.ini"] = "";
    const test::LogCapture log;

    QCOMPARE(runPass({host, next}, CopyWhen::Always), 0);

    QCOMPARE(log.lines().value(2), QString("Debug: nothing to copy for  \"c4d\""));
    QCOMPARE(log.lines().value(3), QString("Debug: open file:  \"\""));
    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
}

void tst_InstallPass::unfinishedFilesAreClearedWhereNothingIsToDo_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("subFolder");
    QTest::addColumn<QString>("folder");

    QTest::addRow("beside manager.cfg") << "modo"
                                        << "/Scripts/drask"
                                        << "modo/Scripts/drask";
    QTest::addRow("beside userSetup.py") << "maya"
                                         << "/scripts/drask"
                                         << "maya/scripts";
    QTest::addRow("beside houdini.env") << "houdini"
                                        << "/Plugins/drask"
                                        << "houdini";
}

void tst_InstallPass::unfinishedFilesAreClearedWhereNothingIsToDo()
{
    QFETCH(QString, key);
    QFETCH(QString, subFolder);
    QFETCH(QString, folder);
    const test::Sandbox sandbox;
    const test::ProgramFolder programFolder;
    sandbox.write(key + subFolder + "/version.txt", "7");
    sandbox.write(key + subFolder + "/manager.cfg", plainConfig(programFolder));
    sandbox.write(folder + "/.drask-unfinished", "ha");
    const test::LogCapture log;

    QCOMPARE(runPass({hostIn(sandbox, key, subFolder)}), 0);

    QVERIFY(!sandbox.exists(folder + "/.drask-unfinished"));
}

DRASK_TEST_IN_OWN_FOLDER(tst_InstallPass)
#include "tst_installpass.moc"
