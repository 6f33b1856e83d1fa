// SPDX-License-Identifier: MIT
#include "obstructedhost.h"
#include "obstructedothers.h"
#include "ordinaryuser.h"
#include "testprogram.h"

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

using test::Copying;
using OneHost = test::ObstructedHost;

const QString &target = test::obstructedTarget;

/// What of the two messages for the user is expected.
enum Messages { None = 0, Copy = 1, Config = 2 };

/// Null when there is none: then there is no error file either.
QByteArray expectedMessages(const QString &folder, int messages)
{
    return ((messages & Copy) != 0 ? test::copyMessage(folder) : QByteArray())
        + ((messages & Config) != 0 ? test::configMessage(folder) : QByteArray());
}

QStringList logWithUnknownHost(const OneHost &workstation, const QStringList &served,
                               const QString &lineOfToolsFolder)
{
    const QString unknown = workstation.path("unknown");
    QStringList lines = served + test::linesOfInstalled("unknown", unknown);
    if (!lineOfToolsFolder.isEmpty()) {
        lines << lineOfToolsFolder + test::quoted(workstation.tool());
    }
    return test::logOfPass(workstation.lookUp() + test::linesOfLookUp("unknown", unknown), lines,
                           2);
}

} // namespace

void tst_BadInputObstacles::obstacleOnTheWayOfAPlugin_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("messages");
    QTest::addColumn<Copying>("copying");
    QTest::addColumn<QString>("file");

    QTest::newRow("a file in the host's place")
        << "modo" << 3 << (Copy | Config) << Copying::ManifestNotOpened << "";
    QTest::newRow("a file above the plug-in folder")
        << "modo/Scripts" << 3 << (Copy | Config) << Copying::ManifestNotOpened << "";
    QTest::newRow("a file in the plug-in folder's place")
        << target << 3 << (Copy | Config) << Copying::ManifestNotOpened << "";
    QTest::newRow("a folder in the manifest's place")
        << target + "/uninstall.ini/" << 2 << +Copy << Copying::ManifestNotOpened << "";
    QTest::newRow("a folder in manager.cfg's place")
        << target + "/manager.cfg/" << 3 << +Config << Copying::Smooth << "";
    QTest::newRow("a file in a subfolder's place")
        << target + "/sub" << 2 << +Copy << Copying::FileNotCopied << "sub/b.py";
    QTest::newRow("a folder in the place of a subfolder's file")
        << target + "/sub/b.py/" << 2 << +Copy << Copying::FileNotReplaced << "sub/b.py";
    // What the files of a folder with subfolders met is forgotten.
    QTest::newRow("a folder in a file's place")
        << target + "/a.py/" << 0 << +None << Copying::FileNotReplaced << "a.py";
    QTest::newRow("a folder in the version file's place")
        << target + "/version.txt/" << 0 << +None << Copying::FileNotReplaced << "version.txt";
    QTest::newRow("a file in the shipped plug-ins' place")
        << "tool/plugins" << 2 << +Copy << Copying::SourceMissing << "";
    QTest::newRow("a file in the shipped plug-in's place")
        << "tool/plugins/modo" << 2 << +Copy << Copying::SourceMissing << "";
}

void tst_BadInputObstacles::obstacleOnTheWayOfAPlugin()
{
    QFETCH(QString, obstacle);
    QFETCH(int, code);
    QFETCH(int, messages);
    QFETCH(Copying, copying);
    QFETCH(QString, file);
    const OneHost workstation;
    if (workstation.exists(obstacle)) {
        workstation.remove(obstacle);
    }
    workstation.putInTheWay(obstacle);
    const test::Trouble trouble{copying, file, (messages & Config) != 0};
    const test::Tree expected = workstation.served(workstation.tree(), trouble);

    const test::RunResult first = workstation.run();

    VERIFY_RUN(first, code);
    VERIFY_LEFT(workstation, expected,
                test::logOfPass(workstation.lookUp(), workstation.linesOfFirstCopy(trouble), code),
                expectedMessages(workstation.placed(), messages));

    // A version file that arrived has the plug-in count as installed, whatever else did not arrive.
    const bool isInstalled = expected.contains(target + "/version.txt");
    const int codeOfConfig = trouble.configFails ? 3 : 0;
    const int laterCode = isInstalled ? codeOfConfig : code;
    const int laterMessages = isInstalled ? messages & Config : messages;
    const test::RunResult second = workstation.run();

    VERIFY_RUN(second, laterCode);
    VERIFY_LEFT(workstation, expected,
                test::logOfPass(workstation.lookUp(),
                                isInstalled ? workstation.linesOfNoCopy(trouble)
                                            : workstation.linesOfLaterCopy(trouble),
                                laterCode),
                expectedMessages(workstation.placed(), laterMessages));
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
        workstation.addPlugin(plugin, {{"drask_userSetup.py", test::startUpLine}});
    }
    workstation.addHost(key, workstation.path("host"));
    workstation.writeSettings();
    workstation.putInTheWay(obstacle);
    const test::OtherHost host(workstation, key, subFolder, obstacle);
    test::Tree expected = host.served(workstation.served(workstation.tree()));
    const QStringList lookUps = workstation.lookUp()
        + test::linesOfLookUp(key, workstation.path("host"));

    const test::RunResult first = workstation.run();

    VERIFY_RUN(first, code);
    VERIFY_LEFT(workstation, expected,
                test::logOfPass(lookUps,
                                workstation.linesOfFirstCopy()
                                    + host.linesOfFirstRun(workstation.placed("uninstall.ini")),
                                code),
                host.errors());

    const test::RunResult second = workstation.run();

    // A marker without a path line is not recognised, and added again.
    if (expected.contains("host/scripts/userSetup.py")) {
        expected["host/scripts/userSetup.py"] += test::startUpLine;
    }
    VERIFY_RUN(second, code);
    VERIFY_LEFT(
        workstation, expected,
        test::logOfPass(lookUps, workstation.linesOfNoCopy() + host.linesOfSecondRun(), code),
        host.errors());
}

void tst_BadInputObstacles::obstacleInTheToolsFolder_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::addColumn<QString>("line");

    QTest::newRow("a folder in the version file's place") << "version.txt/"
                                                          << "Debug: error writing version file:  ";
    QTest::newRow("a folder in the log's place") << "plugin.log/" << QString();
    QTest::newRow("a folder in the error file's place") << "pluginError.txt/" << QString();
}

void tst_BadInputObstacles::obstacleInTheToolsFolder()
{
    QFETCH(QString, obstacle);
    QFETCH(QString, line);
    OneHost workstation;
    const QString unknown = workstation.path("unknown");
    workstation.addHost("unknown", unknown);
    workstation.writeSettings();
    workstation.putInTheWay("tool/" + obstacle);
    test::Tree expected = workstation.served(workstation.tree());
    test::put(expected, "unknown", {{"manager.cfg", test::configOf(workstation)}});
    if (obstacle == "version.txt/") {
        expected.remove("tool/version.txt");
    }
    const QByteArray errors = obstacle == "pluginError.txt/" ? QByteArray()
                                                             : test::copyMessage(unknown);
    const bool isLogged = obstacle != "plugin.log/";

    const test::RunResult first = workstation.run();

    VERIFY_RUN(first, 2);
    const QStringList served = workstation.linesOfFirstCopy() + test::linesOfNewConfig();
    VERIFY_LEFT(workstation, expected,
                isLogged ? logWithUnknownHost(workstation, served, line) : QStringList(), errors);

    const test::RunResult second = workstation.run();

    VERIFY_RUN(second, 2);
    const QStringList kept = workstation.linesOfNoCopy() + test::linesOfKeptConfig();
    VERIFY_LEFT(workstation, expected,
                isLogged ? logWithUnknownHost(workstation, kept, line) : QStringList(), errors);
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

    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";
    const QString place = folder + "/Scripts/drask";
    const QStringList log = test::logOfPass(
        test::linesOfLookUp("modo", folder),
        test::linesOfCopy() << test::manifestNotOpenedLine(place) << test::linesOfNewConfig()
                            << test::linesOfInstalled("modo", place),
        3);

    for (int run = 0; run < 2; ++run) {
        const test::RunResult result = workstation.run();

        VERIFY_RUN(result, 3);
        VERIFY_LEFT(workstation, expected, log, expectedMessages(place, Copy | Config));
    }
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

    const test::PlainHost one(workstation, "one");
    const test::PlainHost two(workstation, "two");
    test::Tree expected = two.served(one.served(workstation.tree()));
    expected["tool/version.txt"] = "2.3.10";
    const QByteArray errors = one.errors() + two.errors();

    const test::RunResult first = workstation.run();

    VERIFY_RUN(first, code);
    VERIFY_LEFT(workstation, expected, test::logOfTwoHosts(one, two, true, code), errors);

    const test::RunResult second = workstation.run();

    VERIFY_RUN(second, code);
    VERIFY_LEFT(workstation, expected, test::logOfTwoHosts(one, two, false, code), errors);
}

void tst_BadInputObstacles::readOnlyHostIsReported()
{
    const OneHost workstation;
    workstation.write("modo/own.txt", "mine");
    test::giveToOrdinaryUser(workstation.tool());
    const test::ReadOnly readOnly(workstation.path("modo"));
    test::RunOptions options;
    options.asOrdinaryUser = true;

    const test::Trouble trouble{Copying::ManifestNotOpened, QString(), true};
    const test::Tree expected = workstation.served(workstation.tree(), trouble);
    const QStringList log = test::logOfPass(workstation.lookUp(),
                                            workstation.linesOfFirstCopy(trouble), 3);

    for (int run = 0; run < 2; ++run) {
        const test::RunResult result = workstation.run({}, options);

        VERIFY_RUN(result, 3);
        VERIFY_LEFT(workstation, expected, log,
                    expectedMessages(workstation.placed(), Copy | Config));
    }
}

void tst_BadInputObstacles::readOnlyPluginFolderIsReported()
{
    const OneHost workstation;
    workstation.write(target + "/version.txt", "6");
    workstation.write(target + "/uninstall.ini", "");
    workstation.write(target + "/manager.cfg", "of an earlier run");
    test::Tree expected = workstation.tree();
    expected["tool/version.txt"] = "2.3.10";
    expected[target + "/manager.cfg"] = test::configOf(workstation);
    for (const char *file : {"uninstall.ini", "manager.cfg", "version.txt"}) {
        test::giveToOrdinaryUser(workstation.path(target + '/' + file));
    }
    test::giveToOrdinaryUser(workstation.tool());
    const test::ReadOnly readOnly(workstation.path(target));
    test::RunOptions options;
    options.asOrdinaryUser = true;

    // The files themselves may be written, so the configuration is; nothing can be added.
    const QStringList installed = test::linesOfInstalled("modo", workstation.placed());
    for (const QStringList &config : {test::linesOfChangedConfig(), test::linesOfKeptConfig()}) {
        const test::RunResult result = workstation.run({}, options);

        VERIFY_RUN(result, 2);
        VERIFY_LEFT(workstation, expected,
                    test::logOfPass(workstation.lookUp(),
                                    workstation.linesOfReadOnlyCopy() + config + installed, 2),
                    test::copyMessage(workstation.placed()));
    }
}

void tst_BadInputObstacles::readOnlyToolFolderKeepsNobodyFromBeingServed()
{
    const OneHost workstation;
    workstation.makeFolder("modo");
    test::giveToOrdinaryUser(workstation.path("modo"));
    test::Tree expected = workstation.served(workstation.tree());
    expected.remove("tool/version.txt");
    const test::ReadOnly readOnly(workstation.tool());
    test::RunOptions options;
    options.asOrdinaryUser = true;

    for (int run = 0; run < 2; ++run) {
        const test::RunResult result = workstation.run({}, options);

        VERIFY_RUN(result, 0);
        VERIFY_LEFT(workstation, expected, QStringList(), QByteArray());
        QVERIFY(!workstation.exists("tool/plugin.log"));
    }
}

DRASK_TEST(tst_BadInputObstacles)
#include "tst_badinput_obstacles.moc"
