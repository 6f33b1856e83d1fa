// SPDX-License-Identifier: MIT
#include "expectedlog.h"
#include "ordinaryuser.h"
#include "studio.h"
#include "testprogram.h"

#include <QtTest>

/// The removal of plug-ins that the program installed itself. A second removal of a host finds
/// nothing, whatever the first one left: that is a case of its own, secondRemovalFindsNothing.
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

QStringList logOfRemoval(const test::Studio &studio, const test::StudioHost &host, int result = 0)
{
    QStringList log = test::linesOfLookUp(host.key, studio.path(host.folder));
    const QStringList folders = host.targets();
    for (const QString &folder : folders) {
        log += test::linesOfUninstall(studio.path(folder), result);
    }
    return log;
}

/// The tree of \a workstation after its one plug-in, of one file, came into "modo (14)/x".
test::Tree withModoInBrackets(const test::Workstation &workstation)
{
    test::Tree tree = workstation.tree();
    for (const char *folder : {"modo (14)/", "modo (14)/x/", "modo (14)/x/Scripts/"}) {
        tree[folder] = "";
    }
    const QString target = "modo (14)/x/Scripts/drask/";
    tree[target] = "";
    tree[target + "a.py"] = "a";
    tree[target + "uninstall.ini"] = workstation.path(target + "a.py").toUtf8() + '\n';
    tree[target + "manager.cfg"] = "\n\n" + workstation.tool("DraskDrop").toUtf8()
        + "\n2.3.10\n\n1\n1";
    tree["tool/version.txt"] = "2.3.10";
    return tree;
}

/// The log of an install that copies Modo's plug-in alone.
QStringList logOfModo(const QString &folder, const QStringList &config)
{
    QStringList log{"Debug: settings loaded"};
    log += test::linesOfLookUp("modo", folder);
    log << "Debug: !!!settings local:  QVariant(Invalid)"
        << "Debug: version:  24"
        << "Debug: open file:  \"\"";
    return log << config << test::installedLine("modo", folder + "/Scripts/drask") << "Debug: 0";
}

} // namespace

void tst_Uninstall::eachPluginIsRemovedAndComesBack()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    const test::Tree installed = studio.treeWithoutLogs();
    test::Tree expected = installed;

    for (const test::StudioHost &host : test::Studio::hosts()) {
        const test::RunResult removal = studio.run(
            {"uninstallPlugin", operandFor(studio, host.key)});

        VERIFY_RUN(removal, 0);
        expected = withoutPlugin(studio, expected, host);
        VERIFY_LEFT(studio, expected, logOfRemoval(studio, host), QByteArray());
    }
    const test::RunResult again = studio.run();

    VERIFY_RUN(again, 0);
    VERIFY_LEFT(studio, installed, studio.logOfFirstRun(), QByteArray());
    VERIFY_LATER_RUN(studio, installed);
}

void tst_Uninstall::secondRemovalFindsNothing()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    const test::StudioHost modo = test::Studio::host("modo");
    const QString operand = operandFor(studio, "modo");
    const test::Tree removed = withoutPlugin(studio, studio.treeWithoutLogs(), modo);
    const test::RunResult first = studio.run({"uninstallPlugin", operand});
    VERIFY_RUN(first, 0);
    VERIFY_LEFT(studio, removed, logOfRemoval(studio, modo), QByteArray());

    const test::RunResult second = studio.run({"uninstallPlugin", operand});

    VERIFY_RUN(second, 0);
    VERIFY_LEFT(studio, removed,
                test::linesOfLookUp("modo", studio.path(modo.folder))
                    + test::linesWithoutManifest(studio.target("modo")),
                QByteArray());
}

void tst_Uninstall::mayaShelfGoesWithThePlugin()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    const test::StudioHost maya = test::Studio::host("maya");
    const QString shelves = maya.folder + "/prefs/shelves/";
    studio.write(shelves + "shelf_DraskGrex.mel", "made by the plug-in");
    studio.write(shelves + "shelf_Own.mel", "mine");
    test::Tree expected = withoutPlugin(studio, studio.treeWithoutLogs(), maya);
    expected.remove(shelves + "shelf_DraskGrex.mel");

    const test::RunResult removal = studio.run({"uninstallPlugin", operandFor(studio, "maya")});

    VERIFY_RUN(removal, 0);
    VERIFY_LEFT(studio, expected, logOfRemoval(studio, maya), QByteArray());
}

void tst_Uninstall::artistsFilesInThePluginFolderStay()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    const test::StudioHost modo = test::Studio::host("modo");
    const QString folder = modo.targets().first();
    test::Tree expected = withoutPlugin(studio, studio.treeWithoutLogs(), modo);
    studio.write(folder + "/icons/own.png", "mine");
    studio.write(folder + "/drask.pyc", "compiled");
    expected[folder + "/icons/own.png"] = "mine";
    expected[folder + "/drask.pyc"] = "compiled";

    const test::RunResult removal = studio.run({"uninstallPlugin", operandFor(studio, "modo")});

    VERIFY_RUN(removal, 0);
    VERIFY_LEFT(studio, expected, logOfRemoval(studio, modo), QByteArray());
}

void tst_Uninstall::folderWithBracketsIsFound()
{
    // The last bracket ends the key, so this folder is cut; the manager avoids such folders.
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"a.py", "a"}});
    const QString folder = workstation.path("modo (14)/x");
    workstation.addHost("modo", folder);
    workstation.writeSettings();
    const test::Tree expected = withModoInBrackets(workstation);
    VERIFY_RUN(workstation.run(), 0);
    VERIFY_LEFT(workstation, expected, logOfModo(folder, test::linesOfNewConfig()), QByteArray());
    // Without a version in the settings, none is never the right one: it is copied again.
    VERIFY_RUN(workstation.run(), 0);
    VERIFY_LEFT(workstation, expected, logOfModo(folder, {"Debug: not necessary to write cfg"}),
                QByteArray());

    const test::RunResult removal = workstation.run({"uninstallPlugin", "(modo) " + folder});

    VERIFY_RUN(removal, 0);
    const QString key = "modo) " + workstation.path("modo (14");
    VERIFY_LEFT(workstation, expected,
                test::linesOfLookUp(key, "x")
                    + QStringList("Debug: nothing to uninstall for  \"x\""),
                QByteArray());
}

void tst_Uninstall::unknownKeyRemovesFromTheFolderItself()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    const QString folder = studio.target("modo");
    const test::Tree expected = withoutPlugin(studio, studio.treeWithoutLogs(),
                                              test::Studio::host("modo"));

    const test::RunResult removal = studio.run({"uninstallPlugin", "(unknown) " + folder});

    VERIFY_RUN(removal, 0);
    VERIFY_LEFT(studio, expected,
                test::linesOfLookUp("unknown", folder) + test::linesOfUninstall(folder, 0),
                QByteArray());
}

void tst_Uninstall::hostIsFoundWithoutSettings()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    const test::StudioHost max = test::Studio::host("3dsmax");
    test::Tree expected = withoutPlugin(studio, studio.treeWithoutLogs(), max);
    for (const char *name : {"tool/settings.ini", "tool/plugins/3ds/drask.py"}) {
        studio.remove(name);
        expected.remove(name);
    }

    const test::RunResult removal = studio.run({"uninstallPlugin", operandFor(studio, "3dsmax")});

    VERIFY_RUN(removal, 0);
    VERIFY_LEFT(studio, expected, logOfRemoval(studio, max), QByteArray());
}

void tst_Uninstall::fileThatCannotBeDeletedIsReportedByTheCode()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    const test::StudioHost modo = test::Studio::host("modo");
    const QString folder = modo.targets().first();
    test::Tree expected = withoutPlugin(studio, studio.treeWithoutLogs(), modo);
    studio.remove(folder + "/drask.py");
    studio.write(folder + "/drask.py/own.txt", "mine");
    expected[folder + "/drask.py/"] = "";
    expected[folder + "/drask.py/own.txt"] = "mine";

    const test::RunResult removal = studio.run({"uninstallPlugin", operandFor(studio, "modo")});

    VERIFY_RUN(removal, 2);
    VERIFY_LEFT(studio, expected, logOfRemoval(studio, modo, 2), QByteArray());
}

void tst_Uninstall::readOnlyPluginFolderIsReportedByTheCode()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    const test::StudioHost modo = test::Studio::host("modo");
    const test::Tree installed = studio.treeWithoutLogs();
    test::Tree expected = withoutPlugin(studio, installed, modo);
    for (auto entry = installed.cbegin(); entry != installed.cend(); ++entry) {
        if (entry.key().startsWith(modo.targets().first() + "/icons/")) {
            expected[entry.key()] = entry.value();
        }
    }
    test::giveToOrdinaryUser(studio.tool());
    QVERIFY(QFile::remove(studio.tool("plugin.log")));
    test::giveToOrdinaryUser(studio.target("modo"));
    const test::ReadOnly readOnly(studio.target("modo", "icons"));
    test::RunOptions options;
    options.asOrdinaryUser = true;

    const test::RunResult removal = studio.run({"uninstallPlugin", operandFor(studio, "modo")},
                                               options);

    VERIFY_RUN(removal, 2);
    VERIFY_LEFT(studio, expected, logOfRemoval(studio, modo, 2), QByteArray());
}

void tst_Uninstall::removalOfAllRemovesNothing()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    const test::Tree installed = studio.treeWithoutLogs();
    studio.ageHosts();

    for (int run = 0; run < 2; ++run) {
        VERIFY_RUN(studio.run({"uninstallAllPlugins"}), 0);
        VERIFY_LEFT(studio, installed, studio.logOfRemovalOfAll(), QByteArray());
        QCOMPARE(studio.writtenFiles(), QStringList());
    }
}

DRASK_TEST(tst_Uninstall)
#include "tst_uninstall.moc"
