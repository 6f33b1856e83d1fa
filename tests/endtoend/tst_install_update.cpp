// SPDX-License-Identifier: MIT
#include "expectedlog.h"
#include "studio.h"
#include "testprogram.h"

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

using test::Served;

namespace {

/// The log of an install that finds all plug-ins installed for another user.
QStringList logOfOtherUser(const test::Studio &studio)
{
    return studio.logOfInstall({Served::FoundInstalled, Served::ConfigChanged});
}

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

/// \a tree after Ann gave way to \a user in all configurations.
test::Tree withUser(const test::Tree &tree, const QByteArray &user)
{
    test::Tree changed = tree;
    const QStringList names = configurations();
    for (const QString &name : names) {
        changed[name].replace("Ann L\xc3\xb6we", user);
    }
    return changed;
}

/// The files that a copy of the plug-in of \a host writes, without those that go again.
QStringList copiedFilesOf(const test::Studio &studio, const test::StudioHost &host)
{
    QStringList names;
    const QStringList shipped = test::readTree(studio.tool("plugins/" + host.plugin)).keys();
    const QStringList folders = host.targets();
    for (const QString &folder : folders) {
        names << folder + "/uninstall.ini";
        for (const QString &file : shipped) {
            const QString name = folder + '/' + file;
            if (!name.endsWith('/') && !name.endsWith("R19/plugins/drask/grex21.xlib")) {
                names << name;
            }
        }
    }
    names.sort();
    return names;
}

QStringList copiedFiles(const test::Studio &studio)
{
    QStringList names;
    for (const test::StudioHost &host : test::Studio::hosts()) {
        names += copiedFilesOf(studio, host);
    }
    names.sort();
    return names;
}

QStringList filesOfModo(const test::Studio &studio)
{
    return copiedFilesOf(studio, test::Studio::host("modo"));
}

/// The log of a run that copies the plug-in of Modo and finds all others installed.
QStringList logOfModoUpdate(const test::Studio &studio)
{
    return studio.logOfInstall({Served::FoundInstalled, Served::ConfigKept},
                               {{"modo", {Served::Copied, Served::ConfigKept}}});
}

/// What onlyWriteConfig leaves of the tree that an installation makes.
test::Tree withoutPlugins(const test::Studio &studio, const test::Tree &installed)
{
    test::Tree rest = installed;
    for (const test::StudioHost &host : test::Studio::hosts()) {
        const QStringList shipped = test::readTree(studio.tool("plugins/" + host.plugin)).keys();
        const QStringList folders = host.targets();
        for (const QString &folder : folders) {
            for (const QString &file : shipped) {
                rest.remove(folder + '/' + file);
            }
            rest.remove(folder + "/uninstall.ini");
        }
    }
    return rest;
}

/// The log of onlyWriteConfig where no plug-in is installed.
QStringList logWithoutPlugins(const test::Studio &studio, Served::Config config)
{
    const QString mayaTemplate = test::quoted(studio.target("maya", "drask_userSetup.py"));
    const Served maya{Served::LeftOut, config, {"Debug: 1635 error  " + mayaTemplate}};
    return QStringList("Debug: only write config")
        + studio.logOfInstall({Served::LeftOut, config}, {{"maya", maya}}, 3);
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
    VERIFY_INSTALLATION(studio);
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
    VERIFY_LEFT(studio, expected, logOfModoUpdate(studio), QByteArray());
    QCOMPARE(studio.writtenFiles(), filesOfModo(studio));
    VERIFY_LATER_RUN(studio, expected);
}

void tst_InstallUpdate::fileThatAVersionDropsStaysUnlisted()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    studio.remove("tool/plugins/modo/drask.py");
    studio.ship("modo", 8);
    test::Tree expected = studio.treeWithoutLogs();
    const QString target = test::Studio::host("modo").targets().first();
    const QByteArray manifest = studio.manifestOf("modo", studio.path(target));
    QVERIFY(!manifest.contains("drask.py"));
    expected[target + "/version.txt"] = "8\n";
    expected[target + "/uninstall.ini"] = manifest;

    const test::RunResult update = studio.run();

    VERIFY_RUN(update, 0);
    QVERIFY(studio.exists(target + "/drask.py"));
    VERIFY_LEFT(studio, expected, logOfModoUpdate(studio), QByteArray());
    VERIFY_LATER_RUN(studio, expected);
}

void tst_InstallUpdate::versionThatThePluginDoesNotHoldIsCopiedEachTime()
{
    const test::Studio studio;
    studio.changeSetting("versionModo=7", "versionModo=99");
    const test::Tree before = studio.tree();

    VERIFY_RUN(studio.run(), 0);
    const test::Tree expected = studio.installed(before);
    VERIFY_LEFT(studio, expected, studio.logOfFirstRun(), QByteArray());

    for (int run = 0; run < 2; ++run) {
        studio.ageHosts();
        VERIFY_RUN(studio.run(), 0);
        VERIFY_LEFT(studio, expected, logOfModoUpdate(studio), QByteArray());
        QCOMPARE(studio.writtenFiles(), filesOfModo(studio));
    }
}

void tst_InstallUpdate::otherUserChangesTheConfigurationsAlone()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    studio.ageHosts();
    studio.changeSetting("username=Ann L\xc3\xb6we", "username=bob");
    const test::Tree expected = withUser(studio.treeWithoutLogs(), "bob");

    const test::RunResult second = studio.run();

    VERIFY_RUN(second, 0);
    VERIFY_LEFT(studio, expected, logOfOtherUser(studio), QByteArray());
    QCOMPARE(studio.writtenFiles(), configurations());
    VERIFY_LATER_RUN(studio, expected);
}

void tst_InstallUpdate::loggedOutUserIsTakenOutOfTheConfigurations()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    studio.changeSetting("username=Ann L\xc3\xb6we", "username=Ann L\xc3\xb6we\nloggedOut=true");
    const test::Tree expected = withUser(studio.treeWithoutLogs(), "");

    const test::RunResult second = studio.run();

    VERIFY_RUN(second, 0);
    VERIFY_LEFT(studio, expected, logOfOtherUser(studio), QByteArray());
    VERIFY_LATER_RUN(studio, expected);
}

void tst_InstallUpdate::reinstallCopiesEverythingAnew()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    const test::Tree installed = studio.treeWithoutLogs();

    for (int run = 0; run < 2; ++run) {
        studio.ageHosts();
        VERIFY_LATER_REINSTALL(studio, installed);
        QCOMPARE(studio.writtenFiles(), copiedFiles(studio));
    }
}

void tst_InstallUpdate::reinstallRepairsWhatWasBroken()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    const test::Tree installed = studio.treeWithoutLogs();
    const QString target = test::Studio::host("modo").targets().first();
    studio.write(target + "/drask.py", "broken by a crash");
    studio.remove(target + "/icons");
    studio.remove(target + "/uninstall.ini");
    const test::Tree broken = studio.treeWithoutLogs();

    VERIFY_LATER_RUN(studio, broken);
    VERIFY_LATER_REINSTALL(studio, installed);
    VERIFY_LATER_REINSTALL(studio, installed);
}

void tst_InstallUpdate::reinstallOnFreshHostsIsAnInstallation()
{
#ifndef Q_OS_LINUX
    QSKIP("Rhino's registry has another form on this platform.");
#endif
    const test::Studio studio;
    const test::Tree expected = studio.installed(studio.tree());

    const test::RunResult result = studio.run({"reinstall"});

    VERIFY_RUN(result, 0);
    VERIFY_LEFT(studio, expected, studio.logOfReinstall({Served::Copied, Served::ConfigMade}),
                QByteArray());
    VERIFY_LATER_REINSTALL(studio, expected);
}

void tst_InstallUpdate::onlyWriteConfigWritesConfigurationsAlone()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    studio.ageHosts();
    studio.changeSetting("username=Ann L\xc3\xb6we", "username=bob");
    const test::Tree expected = withUser(studio.treeWithoutLogs(), "bob");
    const QStringList modeLine("Debug: only write config");

    const test::RunResult second = studio.run({"onlyWriteConfig"});

    VERIFY_RUN(second, 0);
    VERIFY_LEFT(studio, expected, modeLine + logOfOtherUser(studio), QByteArray());
    QCOMPARE(studio.writtenFiles(), configurations());
    VERIFY_RUN(studio.run({"onlyWriteConfig"}), 0);
    VERIFY_LEFT(studio, expected, modeLine + studio.logOfLaterRun(), QByteArray());
}

void tst_InstallUpdate::onlyWriteConfigOnFreshHostsCopiesNoPlugin()
{
#ifndef Q_OS_LINUX
    QSKIP("Rhino's registry has another form on this platform.");
#endif
    const test::Studio studio;
    const test::Tree before = studio.tree();
    const test::Tree installed = studio.installed(before);
    // The lines for Maya's start-up script would come with the plug-in.
    const QByteArray errors = "Could not copy userSetup.py file to: "
        + studio.target("maya").toUtf8() + '\n';
    test::Tree expected = withoutPlugins(studio, installed);
    const QString userSetup = "hosts/maya 2020/scripts/userSetup.py";
    expected[userSetup] = before[userSetup];

    VERIFY_RUN(studio.run({"onlyWriteConfig"}), 3);
    VERIFY_LEFT(studio, expected, logWithoutPlugins(studio, Served::ConfigMade), errors);

    VERIFY_RUN(studio.run({"onlyWriteConfig"}), 3);
    VERIFY_LEFT(studio, expected, logWithoutPlugins(studio, Served::ConfigKept), errors);

    VERIFY_RUN(studio.run(), 0);
    VERIFY_LEFT(studio, installed, studio.logOfInstall({Served::Copied, Served::ConfigKept}),
                QByteArray());
}

DRASK_TEST(tst_InstallUpdate)
#include "tst_install_update.moc"
