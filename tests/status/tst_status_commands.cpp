// SPDX-License-Identifier: MIT
#include "ordinaryuser.h"
#include "statusrun.h"
#include "testprogram.h"

#include <QDir>
#include <QJsonArray>
#include <QtTest>

namespace {

/// A Maya, a Houdini and a Modo whose plug-ins are shipped in the version that is wanted.
class Station : public test::Workstation {
public:
    Station()
    {
        addSetting("UserData", "username=Ann");
        addSetting("plugins", "versionMaya=41\nversionHoudini=6\nversionModo=7");
        addPlugin("maya", {{"version.txt", "41"}, {"drask_userSetup.py", test::mayaTemplate}});
        addPlugin("houdini", {{"version.txt", "6"}, {"otl/a.otl", "a"}});
        addPlugin("modo",
                  {{"version.txt", "7\n"},
                   {"a.py", "print(1)\n"},
                   {"sub/b.py", "print(2)\n"},
                   {"drask_uninstall.sh", "#!/bin/sh\n"}});
        for (const char *key : {"maya", "houdini", "modo"}) {
            makeFolder(QString("hosts/") + key);
            addHost(key, path(QString("hosts/") + key));
        }
        addCpuType("printf x86\n");
        writeSettings();
    }

    void install() const
    {
        VERIFY_RUN(run(), 0);
    }
};

} // namespace

class tst_status_commands : public QObject {
    Q_OBJECT

private slots:
    void installedPluginsAreWhole();
    void damageIsNamed_data();
    void damageIsNamed();
    void missingPluginIsNoDamage();
    void otherVersionIsNoDamage();
    void twoHostsInOneFolderAreNamed();
    void leftOverIsNamed();
    void planSaysWhatIsNew();
    void planCoversTheModes();
    void planFindsWhatTheVersionHides();
    void onlyTheWantedHostsAreTold();
    void nothingToLookAtIsSaid_data();
    void nothingToLookAtIsSaid();
    void doctorNamesTheTrouble_data();
    void doctorNamesTheTrouble();
    void reportTellsOfARun();
    void unreadableFilesAreNamedToOthers();
    void outputIsTheSameForPeopleAndMachines();
};

void tst_status_commands::installedPluginsAreWhole()
{
    const Station station;
    station.install();
    for (const char *command : {"verify", "plan", "report", "doctor"}) {
        const test::StatusRun run = test::runStatus(station, {command, "--json"});
        QVERIFY2(run.exitCode == 0, run.output);
        QCOMPARE(run.json["result"].toString(), QString("nothing"));
        QCOMPARE(run.json["hosts"].toArray().size(), 3);
    }
}

void tst_status_commands::damageIsNamed_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("kind");
    const QString modo = "hosts/modo/Scripts/drask/";
    const QString maya = "hosts/maya/scripts/";
    const QString houdini = "hosts/houdini/";
    const std::vector<std::tuple<QString, QString, QString, QString, QString>> files{
        // file, deleted, emptied, changed, unreadable
        {modo + "a.py", "fileMissing", "fileEmpty", "fileDiffers", "fileUnreadable"},
        {modo + "manager.cfg", "configMissing", "configDiffers", "configDiffers",
         "configUnreadable"},
        {maya + "userSetup.py", "userSetupMissing", "userSetupWithoutBlock",
         "userSetupWithoutBlock", "userSetupUnreadable"},
        {houdini + "houdini.env", "houdiniEnvMissing", "houdiniEnvWithoutAssignment",
         "houdiniEnvWithoutAssignment", "houdiniEnvUnreadable"},
    };
    for (const auto &[file, deleted, emptied, changed, unreadable] : files) {
        QTest::addRow("%s deleted", qPrintable(file)) << file << deleted;
        QTest::addRow("%s emptied", qPrintable(file)) << file << emptied;
        QTest::addRow("%s changed", qPrintable(file)) << file << changed;
        QTest::addRow("%s unreadable", qPrintable(file)) << file << unreadable;
    }
}

void tst_status_commands::damageIsNamed()
{
    QFETCH(QString, file);
    QFETCH(QString, kind);
    const Station station;
    station.install();
    const QByteArray row = QTest::currentDataTag();
    if (row.endsWith("deleted")) {
        station.remove(file);
    } else if (row.endsWith("emptied")) {
        station.write(file, "");
    } else if (row.endsWith("changed")) {
        station.write(file, "# " + station.read(file).left(9));
    } else {
        QFile::setPermissions(station.path(file), {});
    }
    const test::StatusRun run = test::runStatus(station, {"verify", "--json"});
    QFile::setPermissions(station.path(file), QFile::ReadOwner | QFile::WriteOwner);
    QCOMPARE(run.exitCode, 3);
    const QStringList paths = run.pathsOf(kind);
    QVERIFY2(paths.size() == 1 && QDir::cleanPath(paths.first()) == station.path(file), run.output);
}

void tst_status_commands::missingPluginIsNoDamage()
{
    const Station station;
    const test::StatusRun run = test::runStatus(station, {"verify", "--json"});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.host()["state"].toString(), QString("notInstalled"));
    QVERIFY(run.host()["installed"].isNull());
}

void tst_status_commands::otherVersionIsNoDamage()
{
    const Station station;
    station.install();
    station.addPlugin("modo", {{"version.txt", "8\n"}, {"a.py", "print(8)\n"}});
    const QByteArray settings = station.read("tool/settings.ini");
    station.write("tool/settings.ini",
                  QByteArray(settings).replace("versionModo=7", "versionModo=8"));
    const test::StatusRun run = test::runStatus(station, {"verify", "--json", "--host", "modo"});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.kinds(), QStringList("modo: otherVersion"));
    QCOMPARE(run.host()["installed"].toInt(), 7);
    QCOMPARE(run.host()["wanted"].toInt(), 8);
}

void tst_status_commands::twoHostsInOneFolderAreNamed()
{
    test::Workstation station;
    station.addSetting("plugins", "versionBlender=1\nversionBlender28=1");
    station.addPlugin("Blender", {{"version.txt", "1"}});
    station.addPlugin("Blender28", {{"version.txt", "1"}});
    station.addHost("blender", station.path("hosts/blender"));
    station.addHost("blender28", station.path("hosts/blender"));
    station.writeSettings();
    VERIFY_RUN(station.run(), 0);
    for (const char *command : {"verify", "plan", "doctor"}) {
        const test::StatusRun run = test::runStatus(station, {command, "--json"});
        QCOMPARE(run.exitCode, 3);
        QCOMPARE(run.pathsOf("sharedFolder").size(), 2);
    }
}

void tst_status_commands::leftOverIsNamed()
{
    const Station station;
    station.install();
    station.write("hosts/modo/Scripts/drask/sub/qt_temp.AbCdEf", "half");
    station.write("hosts/maya/scripts/.drask-unfinished", "half");
    const test::StatusRun run = test::runStatus(station, {"verify", "--json"});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.kinds(), QStringList({"maya: leftOver", "modo: leftOver"}));
}

void tst_status_commands::planSaysWhatIsNew()
{
    const Station station;
    const test::StatusRun run = test::runStatus(station, {"plan", "--json", "--host", "modo"});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.json["run"]["mode"].toString(), QString("install"));
    QCOMPARE(run.json["run"]["exitCode"].toInt(), 0);
    QCOMPARE(run.host()["state"].toString(), QString("install"));
    QStringList changes;
    const QJsonArray all = run.host()["changes"].toArray();
    for (const QJsonValue &change : all) {
        changes << change["action"].toString() + ' '
                + QString(change["path"].toString()).remove(station.path("hosts/modo/"));
    }
    changes.sort();
    QCOMPARE(changes,
             QStringList({"make Scripts/drask/a.py", "make Scripts/drask/drask_uninstall.sh",
                          "make Scripts/drask/manager.cfg", "make Scripts/drask/sub/b.py",
                          "make Scripts/drask/uninstall.ini", "make Scripts/drask/version.txt",
                          "makeFolder Scripts", "makeFolder Scripts/drask",
                          "makeFolder Scripts/drask/sub"}));
}

void tst_status_commands::planCoversTheModes()
{
    const Station station;
    station.install();
    const auto stateIn = [&station](const QString &mode) {
        const test::StatusRun run = test::runStatus(
            station, {"plan", "--json", "--mode", mode, "--host", "modo"});
        return QString::number(run.exitCode) + ' ' + run.host()["state"].toString();
    };
    QCOMPARE(stateIn("install"), QString("0 upToDate"));
    QCOMPARE(stateIn("reinstall"), QString("2 copyAgain"));
    QCOMPARE(stateIn("onlyWriteConfig"), QString("0 upToDate"));
    station.write("hosts/modo/Scripts/drask/version.txt", "6\n");
    QCOMPARE(stateIn("install"), QString("2 update"));
    QCOMPARE(stateIn("onlyWriteConfig"), QString("3 fails"));
    station.write("hosts/modo/Scripts/drask/version.txt", "7\n");
    station.write("hosts/modo/Scripts/drask/manager.cfg", "Bob\n");
    QCOMPARE(stateIn("install"), QString("2 configuration"));
}

void tst_status_commands::planFindsWhatTheVersionHides()
{
    const Station station;
    station.install();
    station.remove("hosts/modo/Scripts/drask/sub/b.py");
    const test::StatusRun run = test::runStatus(station, {"plan", "--json"});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.kinds(), QStringList({"cpuTypeUnknown", "modo: fileMissing"}));
    QCOMPARE(test::runStatus(station, {"plan", "--mode", "reinstall"}).exitCode, 2);
}

void tst_status_commands::onlyTheWantedHostsAreTold()
{
    const Station station;
    station.install();
    station.remove("hosts/modo/Scripts/drask/a.py");
    const test::StatusRun none = test::runStatus(station, {"verify", "--json", "--host", "Maya"});
    QCOMPARE(none.exitCode, 1);
    QCOMPARE(none.kinds(), QStringList("hostNotListed"));
    for (const char *command : {"plan", "verify", "report", "doctor"}) {
        const test::StatusRun run = test::runStatus(
            station, {command, "--json", "--host", "maya", "--host", "houdini"});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.json["hosts"].toArray().size(), 2);
    }
}

void tst_status_commands::nothingToLookAtIsSaid_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("kind");
    QTest::newRow("plan") << "plan"
                          << "settingsMissing";
    QTest::newRow("verify") << "verify"
                            << "settingsMissing";
    QTest::newRow("doctor") << "doctor"
                            << "settingsMissing";
    QTest::newRow("report") << "report"
                            << "logMissing";
}

void tst_status_commands::nothingToLookAtIsSaid()
{
    QFETCH(QString, command);
    QFETCH(QString, kind);
    const test::Workstation empty;
    const test::StatusRun run = test::runStatus(empty, {command, "--json"});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.json["result"].toString(), QString("unknown"));
    QVERIFY(run.kinds().contains(kind));
}

void tst_status_commands::doctorNamesTheTrouble_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("exitCode");
    const QByteArray none;
    QTest::newRow("shipped plug-in missing")
        << "tool/plugins/modo" << none << "modo: pluginMissing" << 3;
    QTest::newRow("file in the folder's place")
        << "hosts/modo/Scripts" << QByteArray("x") << "modo: folderNotWritable" << 3;
    QTest::newRow("lines of the plug-in not complete")
        << "hosts/maya/scripts/userSetup.py" << QByteArray("#drask_installed\n")
        << "maya: userSetupUnrecognised" << 2;
    QTest::newRow("cputype missing") << "tool/cputype" << none << "cpuTypeMissing" << 2;
    QTest::newRow("host's folder missing") << "hosts/modo" << none << "modo: pathMissing" << 2;
}

void tst_status_commands::doctorNamesTheTrouble()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, kind);
    const Station station;
    if (content.isNull()) {
        station.remove(file);
    } else {
        station.write(file, content);
    }
    const test::StatusRun run = test::runStatus(station, {"doctor", "--json"});
    QVERIFY2(run.kinds().contains(kind), run.output);
    QTEST(run.exitCode, "exitCode");
}

void tst_status_commands::reportTellsOfARun()
{
    const Station station;
    station.remove("tool/plugins/maya/drask_userSetup.py");
    VERIFY_RUN(station.run(), 3);
    const test::StatusRun run = test::runStatus(station, {"report", "--json"});
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.kinds(), QStringList("maya: userSetupNotWritten"));
    QCOMPARE(run.host(2)["state"].toString(), QString("copied"));
    QCOMPARE(run.json["run"]["exitCode"].toInt(), 3);
    station.write("tool/plugin.log", station.read("tool/plugin.log").chopped(9));
    QCOMPARE(test::runStatus(station, {"report", "--host", "modo"}).exitCode, 2);
}

void tst_status_commands::unreadableFilesAreNamedToOthers()
{
    if (test::OrdinaryUser user; QFileInfo("/").isWritable()) {
        QSKIP("This user cannot become another");
    }
    const Station station;
    station.install();
    test::giveToOrdinaryUser(station.path());
    const QString file = station.path("hosts/modo/Scripts/drask/a.py");
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    QCOMPARE(test::runStatus(station, {"verify", "--json"}).exitCode, 0);
    test::RunOptions other;
    other.asOrdinaryUser = true;
    const test::StatusRun run = test::runStatus(station, {"verify", "--json"}, other);
    QCOMPARE(run.exitCode, 3);
    QCOMPARE(run.pathsOf("fileUnreadable"), QStringList(file));
}

void tst_status_commands::outputIsTheSameForPeopleAndMachines()
{
    const Station station;
    station.install();
    station.remove("hosts/modo/Scripts/drask/a.py");
    const test::StatusRun people = test::runStatus(station, {"verify"});
    const test::StatusRun machines = test::runStatus(station, {"verify", "--json"});
    QCOMPARE(people.exitCode, machines.exitCode);
    QVERIFY2(people.output.contains("2 whole, 1 damaged\n"), people.output);
    QVERIFY2(people.output.contains("  The file is missing: a.py\n"), people.output);
    QCOMPARE(people.errors + machines.errors, QByteArray());
}

DRASK_TEST(tst_status_commands)
#include "tst_status_commands.moc"
