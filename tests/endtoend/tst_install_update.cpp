// SPDX-License-Identifier: MIT
#include "expectedlog.h"
#include "studio.h"

#include <QtTest>

/// What later runs change on a workstation where everything is installed.
class tst_InstallUpdate : public QObject {
    Q_OBJECT

private slots:
    void otherVersionReplacesOnePluginAlone_data();
    void otherVersionReplacesOnePluginAlone();
    void fileThatAVersionDropsStaysUnlisted();
    void versionThatThePluginDoesNotHoldIsCopiedEachTime();
    void otherUserChangesTheConfigurationsAlone();
    void loggedOutUserIsTakenOutOfTheConfigurations();

    void reinstallCopiesEverythingAnew();
    void reinstallRepairsWhatWasBroken();
    void reinstallOnFreshHostsIsAnInstallation();

    void onlyWriteConfigWritesConfigurationsAlone();
    void onlyWriteConfigOnFreshHostsCopiesNoPlugin();
};

namespace {

/// The manager.cfg files of all hosts, relative to the sandbox.
QStringList configurations()
{
    QStringList names;
    for (const test::StudioHost &host : test::Studio::hosts()) {
        const QStringList folders = host.targets();
        for (const QString &folder : folders) {
            names << folder + "/manager.cfg";
        }
    }
    names.sort();
    return names;
}

} // namespace

void tst_InstallUpdate::otherVersionReplacesOnePluginAlone_data()
{
    QTest::addColumn<int>("version");

    QTest::newRow("a newer version") << 8;
    QTest::newRow("an older version") << 6;
}

void tst_InstallUpdate::otherVersionReplacesOnePluginAlone()
{
    QFETCH(int, version);
    const test::Studio studio;
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    studio.ageHosts();
    studio.ship("modo", version, {{"drask.py", "changed"}, {"lib/new.py", "new"}});
    test::Tree expected = studio.treeWithoutLogs();
    const QString target = test::Studio::host("modo").targets().first();
    expected[target + "/drask.py"] = "changed";
    expected[target + "/lib/"] = "";
    expected[target + "/lib/new.py"] = "new";
    expected[target + "/version.txt"] = QByteArray::number(version) + '\n';
    expected[target + "/uninstall.ini"] = studio.manifestOf("modo", studio.path(target));

    const test::RunResult update = studio.run();

    VERIFY_RUN(update, 0);
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), expected), QString());
    const QStringList written = studio.writtenFiles();
    QCOMPARE(written.filter(target), written);
    QVERIFY(!written.contains(target + "/manager.cfg"));
    QStringList log = studio.logOfLaterRun();
    log[log.indexOf(test::alreadyInstalledLine(studio.path(target)))] = "Debug: open file:  \"\"";
    log.insert(log.lastIndexOf("Debug: open file:  \"\"") + 2,
               test::installedLine("modo", studio.path(target)));
    QCOMPARE(studio.log(), log);
}

void tst_InstallUpdate::fileThatAVersionDropsStaysUnlisted()
{
    const test::Studio studio;
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    studio.remove("tool/plugins/modo/drask.py");
    studio.ship("modo", 8);

    const test::RunResult update = studio.run();

    VERIFY_RUN(update, 0);
    QVERIFY(QFile::exists(studio.target("modo", "drask.py")));
    const QByteArray manifest = studio.read(test::Studio::host("modo").targets().first()
                                            + "/uninstall.ini");
    QCOMPARE(manifest, studio.manifestOf("modo", studio.target("modo")));
    QVERIFY(!manifest.contains("drask.py"));
}

void tst_InstallUpdate::versionThatThePluginDoesNotHoldIsCopiedEachTime()
{
    const test::Studio studio;
    studio.changeSetting("versionModo=7", "versionModo=99");
    const QString line = test::installedLine("modo", studio.target("modo"));

    for (int run = 0; run < 2; ++run) {
        const test::RunResult result = studio.run();
        VERIFY_RUN(result, 0);
        QVERIFY(studio.log().contains(line));
    }
}

void tst_InstallUpdate::otherUserChangesTheConfigurationsAlone()
{
    const test::Studio studio;
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    studio.ageHosts();
    test::Tree expected = studio.treeWithoutLogs();
    const QStringList names = configurations();
    for (const QString &name : names) {
        expected[name].replace("Ann L\xc3\xb6we", "bob");
    }
    studio.changeSetting("username=Ann L\xc3\xb6we", "username=bob");
    expected["tool/settings.ini"] = studio.read("tool/settings.ini");

    const test::RunResult second = studio.run();

    VERIFY_RUN(second, 0);
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), expected), QString());
    QCOMPARE(studio.writtenFiles(), names);
}

void tst_InstallUpdate::loggedOutUserIsTakenOutOfTheConfigurations()
{
    const test::Studio studio;
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    studio.changeSetting("username=Ann L\xc3\xb6we", "username=Ann L\xc3\xb6we\nloggedOut=true");

    const test::RunResult second = studio.run();

    VERIFY_RUN(second, 0);
    const QStringList names = configurations();
    for (const QString &name : names) {
        QVERIFY2(!studio.read(name).contains("Ann"), qPrintable(name));
    }
}

void tst_InstallUpdate::reinstallCopiesEverythingAnew()
{
    const test::Studio studio;
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    const test::Tree installed = studio.treeWithoutLogs();
    studio.ageHosts();

    const test::RunResult second = studio.run({"reinstall"});

    VERIFY_RUN(second, 0);
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), installed), QString());
    QCOMPARE(studio.log().constFirst(), QString("Debug: forceReinstall"));
    QStringList written = studio.writtenFiles();
    for (const test::StudioHost &host : test::Studio::hosts()) {
        const QStringList folders = host.targets();
        for (const QString &folder : folders) {
            QVERIFY(written.removeOne(folder + "/uninstall.ini"));
            const QStringList shipped = test::readTree(studio.tool("plugins/" + host.plugin))
                                            .keys();
            for (const QString &file : shipped) {
                const QString name = folder + '/' + file;
                QVERIFY2(name.endsWith('/') || name.endsWith("R19/plugins/drask/grex21.xlib")
                             || written.removeOne(name),
                         qPrintable(name));
            }
        }
    }
    QCOMPARE(written, QStringList());
}

void tst_InstallUpdate::reinstallRepairsWhatWasBroken()
{
    const test::Studio studio;
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    const test::Tree installed = studio.treeWithoutLogs();
    const QString target = test::Studio::host("modo").targets().first();
    studio.write(target + "/drask.py", "broken by a crash");
    studio.remove(target + "/icons");
    studio.remove(target + "/uninstall.ini");

    const test::RunResult later = studio.run();
    VERIFY_RUN(later, 0);
    QCOMPARE(studio.read(target + "/drask.py"), QByteArray("broken by a crash"));
    const test::RunResult repair = studio.run({"reinstall"});

    VERIFY_RUN(repair, 0);
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), installed), QString());
}

void tst_InstallUpdate::reinstallOnFreshHostsIsAnInstallation()
{
#ifndef Q_OS_LINUX
    QSKIP("Rhino's registry has another form on this platform.");
#endif
    const test::Studio studio;
    const test::Tree before = studio.tree();

    const test::RunResult result = studio.run({"reinstall"});

    VERIFY_RUN(result, 0);
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), studio.installed(before)), QString());
}

void tst_InstallUpdate::onlyWriteConfigWritesConfigurationsAlone()
{
    const test::Studio studio;
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    studio.ageHosts();
    studio.changeSetting("username=Ann L\xc3\xb6we", "username=bob");

    const test::RunResult second = studio.run({"onlyWriteConfig"});

    VERIFY_RUN(second, 0);
    QCOMPARE(studio.log().constFirst(), QString("Debug: only write config"));
    QCOMPARE(studio.writtenFiles(), configurations());
}

void tst_InstallUpdate::onlyWriteConfigOnFreshHostsCopiesNoPlugin()
{
#ifndef Q_OS_LINUX
    QSKIP("Rhino's registry has another form on this platform.");
#endif
    const test::Studio studio;
    const test::Tree before = studio.tree();

    const test::RunResult result = studio.run({"onlyWriteConfig"});

    // The lines for Maya's start-up script would come with the plug-in.
    VERIFY_RUN(result, 3);
    QCOMPARE(studio.errors(),
             "Could not copy userSetup.py file to: " + studio.target("maya").toUtf8() + '\n');
    test::Tree expected = studio.installed(before);
    for (const test::StudioHost &host : test::Studio::hosts()) {
        const QStringList folders = host.targets();
        for (const QString &folder : folders) {
            const QStringList shipped = test::readTree(studio.tool("plugins/" + host.plugin))
                                            .keys();
            for (const QString &file : shipped) {
                expected.remove(folder + '/' + file);
            }
            expected.remove(folder + "/uninstall.ini");
        }
    }
    const QString userSetup = "hosts/maya 2020/scripts/userSetup.py";
    expected[userSetup] = before[userSetup];
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), expected), QString());
}

QTEST_GUILESS_MAIN(tst_InstallUpdate)
#include "tst_install_update.moc"
