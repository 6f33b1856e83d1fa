// SPDX-License-Identifier: MIT
#include "ordinaryuser.h"
#include "workstation.h"

#include <QtTest>

/// Files where folders should be, folders where files should be, and what may not be written.
class tst_BadInputObstacles : public QObject {
    Q_OBJECT

private slots:
    void obstacleOnTheWayOfAPlugin_data();
    void obstacleOnTheWayOfAPlugin();
    void obstacleOnTheWayOfAHostsOwnFile_data();
    void obstacleOnTheWayOfAHostsOwnFile();
    void obstacleInTheToolsFolder_data();
    void obstacleInTheToolsFolder();
    void folderThatBecomesTooLongIsReported();
    void lastFailureDecides_data();
    void lastFailureDecides();

    void readOnlyHostIsReported();
    void readOnlyPluginFolderIsReported();
    void readOnlyToolFolderKeepsNobodyFromBeingServed();
};

namespace {

QString target()
{
    return "modo/Scripts/drask";
}

/// A workstation with one host.
class OneHost : public test::Workstation {
public:
    OneHost()
    {
        addPlugin("modo", {{"version.txt", "7"}, {"a.py", "a"}, {"sub/b.py", "b"}});
        addHost("modo", path("modo"));
        addSetting("plugins", "versionModo=7");
        writeSettings();
    }

    /// Puts a file, or (with a "/" at its end) a folder with a file in it, in the way.
    void putInTheWay(const QString &obstacle) const
    {
        write(obstacle.endsWith('/') ? obstacle + "own.txt" : obstacle, "mine");
    }

    bool isStillThere(const QString &obstacle) const
    {
        return read(obstacle.endsWith('/') ? obstacle + "own.txt" : obstacle) == "mine";
    }

    QByteArray copyMessage() const
    {
        return "Could not copy file to: \n" + path(target()).toUtf8() + '\n';
    }

    QByteArray configMessage() const
    {
        return "Could not write config file in: \n" + path(target()).toUtf8() + "manager.cfg\n";
    }
};

/// What of the two messages for the user is expected.
enum Messages { None = 0, Copy = 1, Config = 2 };

QByteArray expectedMessages(const OneHost &workstation, int messages)
{
    return ((messages & Copy) != 0 ? workstation.copyMessage() : QByteArray())
        + ((messages & Config) != 0 ? workstation.configMessage() : QByteArray());
}

} // namespace

void tst_BadInputObstacles::obstacleOnTheWayOfAPlugin_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("messages");

    QTest::newRow("a file in the host's place") << "modo" << 3 << (Copy | Config);
    QTest::newRow("a file above the plug-in folder") << "modo/Scripts" << 3 << (Copy | Config);
    QTest::newRow("a file in the plug-in folder's place") << target() << 3 << (Copy | Config);
    QTest::newRow("a folder in the manifest's place") << target() + "/uninstall.ini/" << 2 << +Copy;
    QTest::newRow("a folder in manager.cfg's place") << target() + "/manager.cfg/" << 3 << +Config;
    QTest::newRow("a file in a subfolder's place") << target() + "/sub" << 2 << +Copy;
    QTest::newRow("a folder in the place of a subfolder's file")
        << target() + "/sub/b.py/" << 2 << +Copy;
    // What the files of a folder with subfolders met is forgotten.
    QTest::newRow("a folder in a file's place") << target() + "/a.py/" << 0 << +None;
    QTest::newRow("a folder in the version file's place")
        << target() + "/version.txt/" << 0 << +None;
    QTest::newRow("a file in the shipped plug-ins' place") << "tool/plugins" << 2 << +Copy;
    QTest::newRow("a file in the shipped plug-in's place") << "tool/plugins/modo" << 2 << +Copy;
}

void tst_BadInputObstacles::obstacleOnTheWayOfAPlugin()
{
    QFETCH(QString, obstacle);
    QFETCH(int, code);
    QFETCH(int, messages);
    const OneHost workstation;
    if (workstation.exists(obstacle)) {
        workstation.remove(obstacle);
    }
    workstation.putInTheWay(obstacle);

    const test::RunResult first = workstation.run();

    VERIFY_RUN(first, code);
    QCOMPARE(workstation.errors(), expectedMessages(workstation, messages));
    QVERIFY(workstation.isStillThere(obstacle));
    QCOMPARE(workstation.log().constLast(), QStringLiteral("Debug: %1").arg(code));
    const test::Tree after = workstation.treeWithoutLogs();

    const test::RunResult second = workstation.run();

    QVERIFY(second.ended && !second.crashed);
    QCOMPARE(second.console, QByteArray());
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), after), QString());
}

void tst_BadInputObstacles::obstacleOnTheWayOfAHostsOwnFile_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("subFolder");
    QTest::addColumn<QString>("obstacle");
    QTest::addColumn<int>("code");

    QTest::newRow("a folder in the place of Maya's start-up script")
        << "maya"
        << "/scripts/drask"
        << "host/scripts/userSetup.py/" << 3;
    QTest::newRow("a folder in the place of its backup")
        << "maya"
        << "/scripts/drask"
        << "host/scripts/drask/userSetup.py.draskbackup/" << 0;
    QTest::newRow("a folder in the place of Houdini's environment") << "houdini"
                                                                    << "/Plugins/drask"
                                                                    << "host/houdini.env/" << 0;
    QTest::newRow("a folder in the place of an old Cinema 4D file")
        << "c4d"
        << "/plugins/drask"
        << "host/plugins/Grex.cdl/" << 0;
    QTest::newRow("a file in the place of Cinema 4D's plug-ins") << "c4d"
                                                                 << "/plugins/drask"
                                                                 << "host/plugins" << 3;
    QTest::newRow("a folder in the place of Rhino's registration")
        << "rhino"
        << "/Plug-ins/Drask"
        << "tool/HKEY_CURRENT_USER\\Software\\McNeel\\Rhinoceros\\5.0x64\\Plug-ins/" << 0;
}

void tst_BadInputObstacles::obstacleOnTheWayOfAHostsOwnFile()
{
    QFETCH(QString, key);
    QFETCH(QString, subFolder);
    QFETCH(QString, obstacle);
    QFETCH(int, code);
    OneHost workstation;
    for (const char *plugin : {"maya", "houdini", "Cinema4D", "rhino"}) {
        workstation.addPlugin(plugin, {{"drask_userSetup.py", "#drask_installed\n"}});
    }
    workstation.addHost(key, workstation.path("host"));
    workstation.writeSettings();
    workstation.putInTheWay(obstacle);

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, code);
    QVERIFY(workstation.isStillThere(obstacle));
    QVERIFY(workstation.exists(target() + "/sub/b.py"));
    const QByteArray folder = workstation.path("host" + subFolder).toUtf8();
    if (key == "maya" && code != 0) {
        QCOMPARE(workstation.errors(), "Could not copy userSetup.py file to: " + folder + '\n');
    } else if (code == 0) {
        QCOMPARE(workstation.errors(), QByteArray());
    }
}

void tst_BadInputObstacles::obstacleInTheToolsFolder_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::addColumn<QString>("line");

    QTest::newRow("a folder in the version file's place") << "version.txt/"
                                                          << "error writing version file: ";
    QTest::newRow("a folder in the log's place") << "plugin.log/" << QString();
    QTest::newRow("a folder in the error file's place") << "pluginError.txt/" << QString();
}

void tst_BadInputObstacles::obstacleInTheToolsFolder()
{
    QFETCH(QString, obstacle);
    QFETCH(QString, line);
    OneHost workstation;
    workstation.addHost("unknown", workstation.path("unknown"));
    workstation.writeSettings();
    workstation.putInTheWay("tool/" + obstacle);

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, 2);
    QVERIFY(workstation.isStillThere("tool/" + obstacle));
    QVERIFY(workstation.exists(target() + "/sub/b.py"));
    QVERIFY(workstation.exists("unknown/manager.cfg"));
    if (!line.isNull()) {
        QVERIFY(workstation.log().contains("Debug: " + line + " \"" + workstation.tool() + '"'));
    }
}

void tst_BadInputObstacles::folderThatBecomesTooLongIsReported()
{
    test::Workstation workstation;
    QString folder = workstation.path("modo");
    while (folder.toUtf8().size() < 4090) {
        folder += '/' + QString(100, 'x');
    }
    workstation.addPlugin("modo", {{"a.py", "a"}});
    workstation.addHost("modo", folder);
    workstation.writeSettings();

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, 3);
    const QByteArray place = folder.toUtf8() + "/Scripts/drask";
    QCOMPARE(workstation.errors(),
             "Could not copy file to: \n" + place + "\nCould not write config file in: \n" + place
                 + "manager.cfg\n");
}

void tst_BadInputObstacles::lastFailureDecides_data()
{
    QTest::addColumn<QStringList>("obstacles");
    QTest::addColumn<int>("code");

    QTest::newRow("first a copy, then a configuration")
        << QStringList({"one/Scripts/drask/uninstall.ini/", "two/Scripts/drask/manager.cfg/"}) << 3;
    QTest::newRow("first a configuration, then a copy")
        << QStringList({"one/Scripts/drask/manager.cfg/", "two/Scripts/drask/uninstall.ini/"}) << 2;
    QTest::newRow("a copy, then nothing more")
        << QStringList({"one/Scripts/drask/uninstall.ini/", "elsewhere/"}) << 2;
}

void tst_BadInputObstacles::lastFailureDecides()
{
    QFETCH(QStringList, obstacles);
    QFETCH(int, code);
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"a.py", "a"}});
    workstation.addHost("modo", workstation.path("one"));
    workstation.addHost("modo", workstation.path("two"));
    workstation.writeSettings();
    for (const QString &obstacle : qAsConst(obstacles)) {
        workstation.makeFolder(obstacle);
    }

    const test::RunResult result = workstation.run();

    VERIFY_RUN(result, code);
}

void tst_BadInputObstacles::readOnlyHostIsReported()
{
    const OneHost workstation;
    workstation.write("modo/own.txt", "mine");
    test::giveToOrdinaryUser(workstation.tool());
    const test::ReadOnly readOnly(workstation.path("modo"));
    test::RunOptions options;
    options.asOrdinaryUser = true;

    const test::RunResult result = workstation.run({}, options);

    VERIFY_RUN(result, 3);
    QCOMPARE(workstation.errors(), workstation.copyMessage() + workstation.configMessage());
    QCOMPARE(test::readTree(workstation.path("modo")).keys(), QStringList("own.txt"));
    QCOMPARE(workstation.read("tool/version.txt"), QByteArray("2.3.10"));
}

void tst_BadInputObstacles::readOnlyPluginFolderIsReported()
{
    const OneHost workstation;
    workstation.write(target() + "/version.txt", "6");
    workstation.write(target() + "/uninstall.ini", "");
    workstation.write(target() + "/manager.cfg", "of an earlier run");
    const test::Tree before = test::readTree(workstation.path("modo"));
    for (const char *file : {"uninstall.ini", "manager.cfg", "version.txt"}) {
        test::giveToOrdinaryUser(workstation.path(target() + '/' + file));
    }
    test::giveToOrdinaryUser(workstation.tool());
    const test::ReadOnly readOnly(workstation.path(target()));
    test::RunOptions options;
    options.asOrdinaryUser = true;

    const test::RunResult result = workstation.run({}, options);

    // The files themselves may be written, so the configuration is; nothing can be added.
    VERIFY_RUN(result, 2);
    QCOMPARE(workstation.errors(), workstation.copyMessage());
    test::Tree expected = before;
    expected["Scripts/drask/manager.cfg"] = "\n\n" + workstation.tool("DraskDrop").toUtf8()
        + "\n2.3.10\n\n1\n1";
    QCOMPARE(test::treeDifference(test::readTree(workstation.path("modo")), expected), QString());
}

void tst_BadInputObstacles::readOnlyToolFolderKeepsNobodyFromBeingServed()
{
    const OneHost workstation;
    workstation.makeFolder("modo");
    test::giveToOrdinaryUser(workstation.path("modo"));
    const test::Tree tool = test::readTree(workstation.tool());
    const test::ReadOnly readOnly(workstation.tool());
    test::RunOptions options;
    options.asOrdinaryUser = true;

    const test::RunResult result = workstation.run({}, options);

    VERIFY_RUN(result, 0);
    QVERIFY(workstation.exists(target() + "/manager.cfg"));
    QCOMPARE(test::treeDifference(test::readTree(workstation.tool()), tool), QString());
}

QTEST_GUILESS_MAIN(tst_BadInputObstacles)
#include "tst_badinput_obstacles.moc"
