// SPDX-License-Identifier: MIT
#include "plantedplugin.h"

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

namespace {

/// Settings with one SketchUp, whose plug-in goes into the host's folder itself.
void serveSketchUp(const test::PlantedPlugin &plant, const QString &folder)
{
    plant.write("tool/settings.ini",
                "[plugins]\nversionSketchup=3\n[pluginpaths]\nsize=1\n"
                "1\\application=sketchup\n1\\path=\""
                    + folder.toUtf8() + "\"\n");
}

test::Tree notBelow(const test::Tree &tree, const QString &folder)
{
    test::Tree part;
    for (auto entry = tree.cbegin(); entry != tree.cend(); ++entry) {
        if (!entry.key().startsWith(folder)) {
            part.insert(entry.key(), entry.value());
        }
    }
    return part;
}

} // namespace

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

    expected.insert(test::plantedIn + "uninstall.ini",
                    plant.read(test::plantedIn + "uninstall.ini"));
    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), expected), QString());
    QCOMPARE(plant.manifest(), plant.manifestOf(copied));
    QCOMPARE(plant.errors(),
             "Could not copy file to: \n" + plant.path("modo/Scripts/drask\n").toUtf8());
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
    serveSketchUp(plant, plant.path("modo"));
    test::Tree expected = plant.tree();
    expected.insert("modo/version.txt", "2");
    expected.insert("modo/a.rb", "a");
    expected.insert("modo/manager.cfg", plant.config());
    expected.insert("tool/version.txt", "2.3.10");

    const test::RunResult result = plant.run();

    // What the last folder that has room for files meets decides the code.
    VERIFY_RUN(result, result.exitCode == 2 ? 2 : 0);
    test::Tree actual = notBelow(plant.treeWithoutLogs(), "modo/" + link);
    QVERIFY(actual.remove("modo/uninstall.ini") == 1);
    QCOMPARE(test::treeDifference(actual, expected), QString());
    // The host's files are placed in the host again, as often as there is room for a path.
    const QString again = "modo/" + link + '/' + link + '/' + link;
    QCOMPARE(plant.read(again + "/own.txt"), QByteArray("mine"));
    QCOMPARE(plant.read(again + "/a.rb"), QByteArray("a"));
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

    VERIFY_RUN(plant.run(), 0);
    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), expected), QString());

    VERIFY_RUN(plant.uninstall(), 0);
    for (const char *name : {"version.txt", "uninstall.ini@", "manager.cfg@"}) {
        QCOMPARE(expected.remove(test::plantedIn + name), 1);
    }
    expected.remove("outside/deep/b.py");
    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), expected), QString());
}

void tst_HostileLinks::linkToNowhereInTheHostsPlaceIsReported()
{
    const test::PlantedPlugin plant;
    plant.remove("modo");
    plant.makeLink(plant.path("missing"), "modo");
    test::Tree expected = plant.tree();
    expected.insert("tool/version.txt", "2.3.10");

    VERIFY_RUN(plant.run(), 3);

    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), expected), QString());
    const QByteArray target = plant.path("modo/Scripts/drask").toUtf8();
    QCOMPARE(plant.errors(),
             "Could not copy file to: \n" + target + "\nCould not write config file in: \n" + target
                 + "manager.cfg\n");
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
    const test::Tree before = plant.tree();
    test::Tree expected = before;
    expected.insert(target + "version.txt", "7");
    expected.insert(target + "uninstall.ini",
                    plant.path(test::plantedIn + "version.txt\n").toUtf8());
    expected.insert(target + "manager.cfg", plant.config());
    expected.insert("tool/version.txt", "2.3.10");

    VERIFY_RUN(plant.run(), 0);
    QCOMPARE(plant.log(), plant.logOfInstall());
    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), test::withFolders(expected)), QString());

    VERIFY_RUN(plant.uninstall(), 0);
    test::Tree rest = test::withFolders(expected);
    for (const char *name : {"version.txt", "uninstall.ini", "manager.cfg"}) {
        rest.remove(target + name);
    }
    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), rest), QString());
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
    serveSketchUp(plant, plant.path(host));
    test::Tree expected = plant.tree();
    if (emptied) {
        for (const QString &name : names) {
            expected.insert("tool/plugins/sketchup/" + name, "");
        }
        expected.insert("tool/plugins/sketchup/uninstall.ini", "");
    }
    expected.insert("tool/plugins/sketchup/manager.cfg", plant.config());
    expected.insert("tool/version.txt", "2.3.10");

    VERIFY_RUN(plant.run(arguments), 0);

    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), expected), QString());
    QVERIFY(plant.errors().isNull());
    QCOMPARE(plant.log().filter("Debug: Could not copy file ").size(), emptied ? names.size() : 0);
}

void tst_HostileLinks::hostInsideItsPluginEndsAtTheLongestPath()
{
    const test::PlantedPlugin plant;
    const QString folder(200, 'h');
    const QString host = "tool/plugins/sketchup/" + folder;
    plant.addPlugin("sketchup", {{"version.txt", "2"}, {"a.rb", "a"}});
    serveSketchUp(plant, plant.path(host));
    test::Tree expected = plant.tree();
    expected.insert("tool/version.txt", "2.3.10");

    for (int run = 0; run < 2; ++run) {
        const test::RunResult result = plant.run();

        VERIFY_RUN(result, result.exitCode == 2 ? 2 : 0);
        QCOMPARE(test::treeDifference(notBelow(plant.treeWithoutLogs(), host), expected),
                 QString());
        QCOMPARE(plant.read(host + "/a.rb"), QByteArray("a"));
        QCOMPARE(plant.read(host + '/' + folder + '/' + folder + "/a.rb"), QByteArray("a"));
    }
}

void tst_HostileLinks::programsFolderMayBeAHost()
{
    const test::PlantedPlugin plant;
    plant.addPlugin("sketchup", {{"version.txt", "3"}, {"sub/b.rb", "b"}});
    serveSketchUp(plant, plant.tool());
    plant.write("tool/sub/b.rb", "the manager's");
    const test::Tree before = plant.tree();
    test::Tree expected = before;
    expected.insert("tool/sub/b.rb", "b");
    expected.insert("tool/manager.cfg", plant.config());
    expected.insert("tool/uninstall.ini",
                    (plant.tool("version.txt\n") + plant.tool("sub/b.rb\n")).toUtf8());
    // The program's version takes the place of the plug-in's, so each run copies anew.
    expected.insert("tool/version.txt", "2.3.10");

    for (int run = 0; run < 2; ++run) {
        VERIFY_RUN(plant.run(), 0);
        QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), expected), QString());
        QVERIFY(plant.log().contains(test::installedLine("sketchup", plant.tool())));
    }

    VERIFY_RUN(plant.run({"uninstallPlugin", "(sketchup) " + plant.tool()}), 0);
    test::Tree rest = before;
    rest.remove("tool/sub/b.rb");
    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), rest), QString());
}

void tst_HostileLinks::folderOfAllPluginsMayBeAHost()
{
    const test::PlantedPlugin plant;
    plant.addPlugin("sketchup", {{"version.txt", "3"}});
    // The plug-in of another host is what this one puts files into.
    plant.addPlugin("sketchup", {{"modo/version.txt", "8"}});
    serveSketchUp(plant, plant.tool("plugins"));
    test::Tree expected = plant.tree();
    expected.insert("tool/plugins/version.txt", "3");
    expected.insert("tool/plugins/modo/version.txt", "8");
    expected.insert("tool/plugins/manager.cfg", plant.config());
    expected.insert(
        "tool/plugins/uninstall.ini",
        (plant.tool("plugins/version.txt\n") + plant.tool("plugins/modo/version.txt\n")).toUtf8());
    expected.insert("tool/version.txt", "2.3.10");

    for (int run = 0; run < 2; ++run) {
        VERIFY_RUN(plant.run(), 0);
        QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), expected), QString());
    }
}

QTEST_GUILESS_MAIN(tst_HostileLinks)
#include "tst_hostile_links.moc"
