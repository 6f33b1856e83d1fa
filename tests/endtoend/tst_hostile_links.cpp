// SPDX-License-Identifier: MIT
#include "selfcopies.h"

#include "testprogram.h"

#include <QtTest>

/// Links in plug-ins and hosts, and hosts that lie in plug-ins.
class tst_HostileLinks : public QObject {
    Q_OBJECT

private slots:
    void linksOfAPluginAreFollowed();
    void linksThatLeadNowhereAreLeftOut();
    void linkToADeviceIsAnEmptyFileAndAMissingFolder();
    void linkToItsOwnFolderIsFollowedUntilTheSystemStops();
    void linkToTheHostEndsAtTheLongestPath();
    void pluginThatIsALinkIsFollowed();
    void linksInTheHostAreReplacedFollowedOrWrittenThrough();
    void linkToNowhereInTheHostsPlaceIsReported();
    void linkInAFoldersPlaceIsFollowed_data();
    void linkInAFoldersPlaceIsFollowed();

    void pluginThatIsItsOwnTargetIsEmptied_data();
    void pluginThatIsItsOwnTargetIsEmptied();
    void hostInsideItsPluginEndsAtTheLongestPath();
    void programsFolderMayBeAHost();
    void folderOfAllPluginsMayBeAHost();
};

void tst_HostileLinks::linksOfAPluginAreFollowed()
{
    const test::PlantedPlugin plant;
    plant.makeLink(plant.path("own.txt"), "tool/plugins/modo/file");
    plant.makeLink(plant.path("outside"), "tool/plugins/modo/folder");
    plant.makeLink("file", "tool/plugins/modo/another");

    test::verifyLifeOf(plant,
                       test::withFolders({{"version.txt", "7"},
                                          {"file", "mine"},
                                          {"another", "mine"},
                                          {"folder/own.txt", "mine"},
                                          {"folder/deep/own.txt", "mine"}}));
}

void tst_HostileLinks::linksThatLeadNowhereAreLeftOut()
{
    const test::PlantedPlugin plant;
    plant.makeLink(plant.path("missing"), "tool/plugins/modo/dangling");
    plant.makeLink("self", "tool/plugins/modo/self");
    plant.makeLink("tick", "tool/plugins/modo/tack");
    plant.makeLink("tack", "tool/plugins/modo/tick");
    plant.makeLink("version.txt/x", "tool/plugins/modo/through a file");

    test::verifyLifeOf(plant, {{"version.txt", "7"}});
}

void tst_HostileLinks::linkToADeviceIsAnEmptyFileAndAMissingFolder()
{
    const test::PlantedPlugin plant;
    plant.makeLink("/dev/null", "tool/plugins/modo/null");
    const test::Tree copied = {{"version.txt", "7"}, {"null", ""}};
    test::Tree expected = plant.installed(plant.tree(), copied);

    // Qt lists it among the files and among the folders, and a folder it is not.
    VERIFY_RUN(plant.run(), 2);
    QCOMPARE(plant.manifest(), plant.manifestOf(copied));
    expected = plant.withManifest(expected);
    QStringList log = plant.logOfInstall();
    log.last() = "Debug: 2";
    VERIFY_LEFT(plant, expected, log,
                "Could not copy file to: \n" + plant.path("modo/Scripts/drask\n").toUtf8());

    // The version that arrived makes it an installed plug-in.
    VERIFY_RUN(plant.run(), 0);
    VERIFY_LEFT(plant, expected, plant.logOfSecondInstall(), QByteArray());
}

void tst_HostileLinks::linkToItsOwnFolderIsFollowedUntilTheSystemStops()
{
    const test::PlantedPlugin plant;
    plant.makeLink(".", "tool/plugins/modo/loop");
    test::Tree copied;
    for (QString level; plant.exists("tool/plugins/modo/" + level); level += "loop/") {
        copied.insert(level + "version.txt", "7");
    }
    QVERIFY(copied.size() > 8);

    test::verifyLifeOf(plant, test::withFolders(copied));
}

void tst_HostileLinks::linkToTheHostEndsAtTheLongestPath()
{
    const test::PlantedPlugin plant;
    const QString link(200, 'l');
    plant.addPlugin("sketchup", {{"version.txt", "2"}, {"a.rb", "a"}});
    plant.makeLink(plant.path("modo"), "tool/plugins/sketchup/" + link);
    test::serveSketchUp(plant, plant.path("modo"));
    test::Tree expected = plant.tree();
    expected.insert("modo/version.txt", "2");
    expected.insert("modo/a.rb", "a");
    expected.insert("modo/manager.cfg", plant.config());
    expected.insert("tool/version.txt", "2.3.10");

    // The host's files are placed in the host again, as often as there is room for a path.
    const QString again = "modo/" + link + '/' + link + '/' + link;
    test::verifyCopiesWithoutEnd(plant, plant.path("modo"), [&] {
        test::Tree actual = test::notBelow(plant.treeWithoutLogs(), "modo/" + link);
        QVERIFY(actual.take("modo/uninstall.ini").contains(plant.path("modo/a.rb\n").toUtf8()));
        QCOMPARE(test::treeDifference(actual, expected), QString());
        QCOMPARE(plant.read(again + "/own.txt"), QByteArray("mine"));
        QCOMPARE(plant.read(again + "/a.rb"), QByteArray("a"));
    });
}

void tst_HostileLinks::pluginThatIsALinkIsFollowed()
{
    const test::PlantedPlugin plant;
    plant.remove("tool/plugins/modo");
    plant.write("outside/version.txt", "7");
    plant.makeLink(plant.path("outside"), "tool/plugins/modo");

    test::verifyLifeOf(
        plant,
        test::withFolders({{"version.txt", "7"}, {"own.txt", "mine"}, {"deep/own.txt", "mine"}}));
}

void tst_HostileLinks::linksInTheHostAreReplacedFollowedOrWrittenThrough()
{
    const test::PlantedPlugin plant;
    plant.addPlugin("modo", {{"sub/b.py", "b"}});
    plant.write("outside/list.txt", "mine");
    plant.write("outside/config.txt", "mine");
    plant.makeLink(plant.path("own.txt"), test::plantedIn + "version.txt");
    plant.makeLink(plant.path("outside/deep"), test::plantedIn + "sub");
    plant.makeLink(plant.path("outside/list.txt"), test::plantedIn + "uninstall.ini");
    plant.makeLink(plant.path("outside/config.txt"), test::plantedIn + "manager.cfg");
    test::Tree expected = plant.tree();
    expected.remove(test::plantedIn + "version.txt@");
    expected.insert(test::plantedIn + "version.txt", "7");
    expected.insert("outside/deep/b.py", "b");
    expected.insert("outside/list.txt",
                    plant.path(test::plantedIn + "version.txt\n").toUtf8()
                        + plant.path(test::plantedIn + "sub/b.py\n").toUtf8());
    expected.insert("outside/config.txt", plant.config());
    expected.insert("tool/version.txt", "2.3.10");

    // There is a configuration, behind its link.
    QStringList log = plant.logOfInstall();
    QCOMPARE(log.removeAll("Debug: cannot read config file, create new"), 1);

    for (const QStringList &lines : {log, plant.logOfSecondInstall()}) {
        VERIFY_RUN(plant.run(), 0);
        VERIFY_LEFT(plant, expected, lines, QByteArray());
    }

    VERIFY_RUN(plant.uninstall(), 0);
    for (const char *name : {"version.txt", "uninstall.ini@", "manager.cfg@"}) {
        QCOMPARE(expected.remove(test::plantedIn + name), 1);
    }
    expected.remove("outside/deep/b.py");
    VERIFY_LEFT(plant, expected, plant.logOfSecondInstall() + plant.logOfRemoval(), QByteArray());
}

void tst_HostileLinks::linkToNowhereInTheHostsPlaceIsReported()
{
    const test::PlantedPlugin plant;
    plant.remove("modo");
    plant.makeLink(plant.path("missing"), "modo");
    test::Tree expected = plant.tree();
    expected.insert("tool/version.txt", "2.3.10");
    const QString target = plant.path("modo/Scripts/drask");

    for (int run = 0; run < 2; ++run) {
        VERIFY_RUN(plant.run(), 3);
        VERIFY_LEFT(plant, expected,
                    test::logOfPass("modo", plant.path("modo"),
                                    test::linesOfMissingTarget("modo", target), 3),
                    test::messagesOfMissingTarget(target));
    }
}

void tst_HostileLinks::linkInAFoldersPlaceIsFollowed_data()
{
    QTest::addColumn<QString>("link");

    QTest::newRow("the host") << "modo";
    QTest::newRow("a folder in the host") << "modo/Scripts";
    QTest::newRow("the plug-in's folder") << "modo/Scripts/drask";
}

void tst_HostileLinks::linkInAFoldersPlaceIsFollowed()
{
    QFETCH(QString, link);
    const test::PlantedPlugin plant;
    plant.remove("modo");
    plant.write("elsewhere/own.txt", "mine");
    plant.makeLink(plant.path("elsewhere"), link);
    const QString target = "elsewhere" + QString(test::plantedIn).mid(link.size());
    test::Tree expected = plant.tree();
    expected.insert(target + "version.txt", "7");
    expected.insert(target + "uninstall.ini",
                    plant.path(test::plantedIn + "version.txt\n").toUtf8());
    expected.insert(target + "manager.cfg", plant.config());
    expected.insert("tool/version.txt", "2.3.10");
    expected = test::withFolders(expected);

    for (const QStringList &log : {plant.logOfInstall(), plant.logOfSecondInstall()}) {
        VERIFY_RUN(plant.run(), 0);
        VERIFY_LEFT(plant, expected, log, QByteArray());
    }

    VERIFY_RUN(plant.uninstall(), 0);
    for (const char *name : {"version.txt", "uninstall.ini", "manager.cfg"}) {
        expected.remove(target + name);
    }
    VERIFY_LEFT(plant, expected, plant.logOfSecondInstall() + plant.logOfRemoval(), QByteArray());
}

void tst_HostileLinks::pluginThatIsItsOwnTargetIsEmptied_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<QString>("host");
    QTest::addColumn<bool>("emptied");

    const QString plugin = "tool/plugins/sketchup";
    QTest::newRow("another version") << QStringList() << QByteArray("2") << plugin << true;
    QTest::newRow("the wanted version, forced")
        << QStringList("reinstall") << QByteArray("3") << plugin << true;
    QTest::newRow("the wanted version") << QStringList() << QByteArray("3") << plugin << false;
    QTest::newRow("through a link") << QStringList() << QByteArray("2") << "linked" << true;
    QTest::newRow("through dots") << QStringList() << QByteArray("2")
                                  << "tool/plugins/../plugins/./sketchup" << true;
}

void tst_HostileLinks::pluginThatIsItsOwnTargetIsEmptied()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, version);
    QFETCH(QString, host);
    QFETCH(bool, emptied);
    const test::PlantedPlugin plant;
    const QStringList names{"version.txt", "a.rb", "drask_uninstall.sh", "sub/b.rb"};
    plant.addPlugin("sketchup", {{"a.rb", "a"}, {"drask_uninstall.sh", "d"}, {"sub/b.rb", "b"}});
    plant.addPlugin("sketchup", {{"version.txt", version}});
    plant.makeLink(plant.tool("plugins/sketchup"), "linked");
    test::serveSketchUp(plant, plant.path(host));
    test::Tree expected = plant.tree();
    if (emptied) {
        for (const QString &name : names) {
            expected.insert("tool/plugins/sketchup/" + name, "");
        }
        expected.insert("tool/plugins/sketchup/uninstall.ini", "");
    }
    expected.insert("tool/plugins/sketchup/manager.cfg", plant.config());
    expected.insert("tool/version.txt", "2.3.10");

    for (int run = 1; run <= 2; ++run) {
        const QStringList steps = emptied ? test::linesOfEmptying(plant, host, names, run)
                                          : test::linesOfOwnPlugin(plant, host, run);
        VERIFY_RUN(plant.run(arguments), 0);
        QCOMPARE(test::withSortedCopies(plant.log()), test::logOf(plant, host, arguments, steps));
        VERIFY_LEFT(plant, expected, plant.log(), QByteArray());
    }
}

void tst_HostileLinks::hostInsideItsPluginEndsAtTheLongestPath()
{
    const test::PlantedPlugin plant;
    const QString folder(200, 'h');
    const QString host = "tool/plugins/sketchup/" + folder;
    plant.addPlugin("sketchup", {{"version.txt", "2"}, {"a.rb", "a"}});
    test::serveSketchUp(plant, plant.path(host));
    test::Tree expected = plant.tree();
    expected.insert("tool/version.txt", "2.3.10");

    test::verifyCopiesWithoutEnd(plant, plant.path(host), [&] {
        QCOMPARE(test::treeDifference(test::notBelow(plant.treeWithoutLogs(), host), expected),
                 QString());
        QCOMPARE(plant.read(host + "/a.rb"), QByteArray("a"));
        QCOMPARE(plant.read(host + '/' + folder + '/' + folder + "/a.rb"), QByteArray("a"));
    });
}

void tst_HostileLinks::programsFolderMayBeAHost()
{
    const test::PlantedPlugin plant;
    plant.addPlugin("sketchup", {{"version.txt", "3"}, {"sub/b.rb", "b"}});
    test::serveSketchUp(plant, plant.tool());
    plant.write("tool/sub/b.rb", "the manager's");
    test::Tree rest = plant.tree();
    test::Tree expected = rest;
    expected.insert("tool/sub/b.rb", "b");
    expected.insert("tool/manager.cfg", plant.config());
    expected.insert("tool/uninstall.ini",
                    (plant.tool("version.txt\n") + plant.tool("sub/b.rb\n")).toUtf8());
    // The program's version takes the place of the plug-in's, so each run copies anew.
    expected.insert("tool/version.txt", "2.3.10");
    const QString tool = plant.tool();

    for (const QStringList &steps : {test::linesOfCopiedPlugin("sketchup", tool),
                                     test::linesOfReplacedPlugin("sketchup", tool)}) {
        VERIFY_RUN(plant.run(), 0);
        VERIFY_LEFT(plant, expected, test::logOfPass("sketchup", tool, steps, 0), QByteArray());
    }

    VERIFY_RUN(plant.run({"uninstallPlugin", "(sketchup) " + tool}), 0);
    rest.remove("tool/sub/b.rb");
    VERIFY_LEFT(plant, rest, test::logOfRemoval("sketchup", tool, tool), QByteArray());
}

void tst_HostileLinks::folderOfAllPluginsMayBeAHost()
{
    const test::PlantedPlugin plant;
    plant.addPlugin("sketchup", {{"version.txt", "3"}});
    // The plug-in of another host is what this one puts files into.
    plant.addPlugin("sketchup", {{"modo/version.txt", "8"}});
    test::serveSketchUp(plant, plant.tool("plugins"));
    test::Tree expected = plant.tree();
    expected.insert("tool/plugins/version.txt", "3");
    expected.insert("tool/plugins/modo/version.txt", "8");
    expected.insert("tool/plugins/manager.cfg", plant.config());
    expected.insert(
        "tool/plugins/uninstall.ini",
        (plant.tool("plugins/version.txt\n") + plant.tool("plugins/modo/version.txt\n")).toUtf8());
    expected.insert("tool/version.txt", "2.3.10");

    const QString host = plant.tool("plugins");

    for (const QStringList &steps :
         {test::linesOfCopiedPlugin("sketchup", host), test::linesOfKeptPlugin(host)}) {
        VERIFY_RUN(plant.run(), 0);
        VERIFY_LEFT(plant, expected, test::logOfPass("sketchup", host, steps, 0), QByteArray());
    }
}

DRASK_TEST(tst_HostileLinks)
#include "tst_hostile_links.moc"
