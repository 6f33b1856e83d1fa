// SPDX-License-Identifier: MIT
#include "expectedlog.h"
#include "ordinaryuser.h"
#include "studio.h"

#include <QtTest>

/// The removal of plug-ins that the program installed itself.
class tst_Uninstall : public QObject {
    Q_OBJECT

private slots:
    void eachPluginIsRemovedAndComesBack();
    void secondRemovalFindsNothing();
    void mayaShelfGoesWithThePlugin();
    void artistsFilesInThePluginFolderStay();
    void folderWithBracketsIsFound();
    void unknownKeyRemovesFromTheFolderItself();
    void hostIsFoundWithoutSettings();

    void fileThatCannotBeDeletedIsReportedByTheCode();
    void readOnlyPluginFolderIsReportedByTheCode();

    void removalOfAllRemovesNothing();
};

namespace {

QString operandFor(const test::Studio &studio, const QString &key)
{
    return '(' + key + ") " + studio.path(test::Studio::host(key).folder);
}

/// What is left of \a tree when the plug-in of \a host is removed: folders, what the manifest does
/// not list, and what was edited.
test::Tree withoutPlugin(const test::Studio &studio, const test::Tree &tree,
                         const test::StudioHost &host)
{
    test::Tree rest = tree;
    const QStringList shipped = test::readTree(studio.tool("plugins/" + host.plugin)).keys();
    const QStringList folders = host.targets();
    for (const QString &folder : folders) {
        for (const QString &file : shipped) {
            if (!file.endsWith('/') && !file.contains("drask_uninstall")) {
                rest.remove(folder + '/' + file);
            }
        }
        rest.remove(folder + "/uninstall.ini");
        rest.remove(folder + "/manager.cfg");
    }
    return rest;
}

QStringList logOfRemoval(const test::Studio &studio, const test::StudioHost &host)
{
    QStringList log = test::linesOfLookUp(host.key, studio.path(host.folder));
    const QStringList folders = host.targets();
    for (const QString &folder : folders) {
        log += test::linesOfUninstall(studio.path(folder), 0);
    }
    return log;
}

} // namespace

void tst_Uninstall::eachPluginIsRemovedAndComesBack()
{
    const test::Studio studio;
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    const test::Tree installed = studio.treeWithoutLogs();
    test::Tree expected = installed;

    for (const test::StudioHost &host : test::Studio::hosts()) {
        const test::RunResult removal = studio.run(
            {"uninstallPlugin", operandFor(studio, host.key)});

        VERIFY_RUN(removal, 0);
        expected = withoutPlugin(studio, expected, host);
        QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), expected), QString());
        QCOMPARE(studio.log(), logOfRemoval(studio, host));
        QCOMPARE(studio.errors(), QByteArray());
    }
    const test::RunResult again = studio.run();

    VERIFY_RUN(again, 0);
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), installed), QString());
}

void tst_Uninstall::secondRemovalFindsNothing()
{
    const test::Studio studio;
    const test::RunResult installation = studio.run();
    VERIFY_RUN(installation, 0);
    const QString operand = operandFor(studio, "modo");
    const test::RunResult first = studio.run({"uninstallPlugin", operand});
    VERIFY_RUN(first, 0);
    const test::Tree removed = studio.treeWithoutLogs();

    const test::RunResult second = studio.run({"uninstallPlugin", operand});

    VERIFY_RUN(second, 0);
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), removed), QString());
    QCOMPARE(studio.log(),
             test::linesOfLookUp("modo", studio.path(test::Studio::host("modo").folder))
                 + test::linesWithoutManifest(studio.target("modo")));
}

void tst_Uninstall::mayaShelfGoesWithThePlugin()
{
    const test::Studio studio;
    const test::RunResult installation = studio.run();
    VERIFY_RUN(installation, 0);
    const QString shelves = test::Studio::host("maya").folder + "/prefs/shelves/";
    studio.write(shelves + "shelf_DraskGrex.mel", "made by the plug-in");
    studio.write(shelves + "shelf_Own.mel", "mine");

    const test::RunResult removal = studio.run({"uninstallPlugin", operandFor(studio, "maya")});

    VERIFY_RUN(removal, 0);
    QCOMPARE(test::readTree(studio.path(shelves)).keys(), QStringList("shelf_Own.mel"));
}

void tst_Uninstall::artistsFilesInThePluginFolderStay()
{
    const test::Studio studio;
    const test::RunResult installation = studio.run();
    VERIFY_RUN(installation, 0);
    const QString folder = test::Studio::host("modo").targets().first();
    studio.write(folder + "/icons/own.png", "mine");
    studio.write(folder + "/drask.pyc", "compiled");

    const test::RunResult removal = studio.run({"uninstallPlugin", operandFor(studio, "modo")});

    VERIFY_RUN(removal, 0);
    QCOMPARE(test::readTree(studio.path(folder)).keys(),
             QStringList({"drask.pyc", "drask_uninstall.sh", "icons/", "icons/own.png"}));
}

void tst_Uninstall::folderWithBracketsIsFound()
{
    // The last bracket ends the key, so this folder is cut; the manager avoids such folders.
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"a.py", "a"}});
    workstation.addHost("modo", workstation.path("modo (14)/x"));
    workstation.writeSettings();
    const test::RunResult installation = workstation.run();
    VERIFY_RUN(installation, 0);
    const test::Tree installed = workstation.treeWithoutLogs();
    const QString folder = workstation.path("modo (14)/x");

    const test::RunResult removal = workstation.run({"uninstallPlugin", "(modo) " + folder});

    VERIFY_RUN(removal, 0);
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), installed), QString());
    const QString key = "modo) " + workstation.path("modo (14");
    QCOMPARE(workstation.log(),
             test::linesOfLookUp(key, "x") + QStringList("Debug: nothing to uninstall for  \"x\""));
}

void tst_Uninstall::unknownKeyRemovesFromTheFolderItself()
{
    const test::Studio studio;
    const test::RunResult installation = studio.run();
    VERIFY_RUN(installation, 0);
    const test::Tree installed = studio.treeWithoutLogs();
    const test::StudioHost host = test::Studio::host("modo");

    const test::RunResult removal = studio.run(
        {"uninstallPlugin", "(unknown) " + studio.target("modo")});

    VERIFY_RUN(removal, 0);
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), withoutPlugin(studio, installed, host)),
             QString());
}

void tst_Uninstall::hostIsFoundWithoutSettings()
{
    const test::Studio studio;
    const test::RunResult installation = studio.run();
    VERIFY_RUN(installation, 0);
    studio.remove("tool/settings.ini");
    studio.remove("tool/plugins/3ds/drask.py");
    const QString operand = operandFor(studio, "3dsmax");

    const test::RunResult removal = studio.run({"uninstallPlugin", operand});

    VERIFY_RUN(removal, 0);
    const QStringList folders = test::Studio::host("3dsmax").targets();
    for (const QString &folder : folders) {
        QCOMPARE(test::readTree(studio.path(folder)).keys(),
                 QStringList({"drask_uninstall.sh", "icons/"}));
    }
}

void tst_Uninstall::fileThatCannotBeDeletedIsReportedByTheCode()
{
    const test::Studio studio;
    const test::RunResult installation = studio.run();
    VERIFY_RUN(installation, 0);
    const QString folder = test::Studio::host("modo").targets().first();
    studio.remove(folder + "/drask.py");
    studio.write(folder + "/drask.py/own.txt", "mine");

    const test::RunResult removal = studio.run({"uninstallPlugin", operandFor(studio, "modo")});

    VERIFY_RUN(removal, 2);
    QCOMPARE(test::readTree(studio.path(folder)).keys(),
             QStringList({"drask.py/", "drask.py/own.txt", "drask_uninstall.sh", "icons/"}));
    QCOMPARE(studio.log().constLast(), QString("Debug: uninstallPlugin  2"));
    QCOMPARE(studio.errors(), QByteArray());
}

void tst_Uninstall::readOnlyPluginFolderIsReportedByTheCode()
{
    const test::Studio studio;
    const test::RunResult installation = studio.run();
    VERIFY_RUN(installation, 0);
    test::giveToOrdinaryUser(studio.tool());
    QVERIFY(QFile::remove(studio.tool("plugin.log")));
    const QString icons = studio.target("modo", "icons");
    test::giveToOrdinaryUser(studio.target("modo"));
    const test::ReadOnly readOnly(icons);
    test::RunOptions options;
    options.asOrdinaryUser = true;

    const test::RunResult removal = studio.run({"uninstallPlugin", operandFor(studio, "modo")},
                                               options);

    VERIFY_RUN(removal, 2);
    QCOMPARE(test::readTree(studio.target("modo")).size(), 4);
    QCOMPARE(test::readTree(icons).size(), 2);
    QCOMPARE(studio.log().constLast(), QString("Debug: uninstallPlugin  2"));
}

void tst_Uninstall::removalOfAllRemovesNothing()
{
    const test::Studio studio;
    const test::RunResult installation = studio.run();
    VERIFY_RUN(installation, 0);
    const test::Tree installed = studio.treeWithoutLogs();
    studio.ageHosts();

    const test::RunResult removal = studio.run({"uninstallAllPlugins"});

    VERIFY_RUN(removal, 0);
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), installed), QString());
    QCOMPARE(studio.writtenFiles(), QStringList());
    QStringList log{"Debug: settings loaded"};
    for (const test::StudioHost &host : test::Studio::hosts()) {
        log += test::linesOfLookUp(host.key, studio.path(host.folder));
    }
    for (const test::StudioHost &host : test::Studio::hosts()) {
        const QStringList folders = host.targets();
        for (const QString &folder : folders) {
            log += test::linesWithoutManifest('(' + host.key + ") " + studio.path(folder));
        }
    }
    QCOMPARE(studio.log(), log);
    QCOMPARE(studio.errors(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_Uninstall)
#include "tst_uninstall.moc"
