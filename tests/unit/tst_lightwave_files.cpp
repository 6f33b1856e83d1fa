// SPDX-License-Identifier: MIT
#include "lightwavefolder.h"
#include "ordinaryuser.h"
#include "testprogram.h"

#include <QtTest>

using namespace lightwave;

namespace {

enum class Role { Menu, Extension, None };

} // namespace

Q_DECLARE_METATYPE(Role)

class tst_LightwaveFiles : public QObject {
    Q_OBJECT

private slots:
    void nameDecidesTheRoleOfAFile_data();
    void nameDecidesTheRoleOfAFile();
    void foldersHaveNoRole();
    void linksToFilesHaveARole();
    void laterFileReplacesAnEarlierOne();
    void missingFolderFails();
    void missingMenuFileIsMadeEmpty();
    void missingExtensionFileIsMadeEmptyAndFails();
    void missingExtensionFileIsFoundByTheNextRun();
    void folderInTheMenuFilesPlaceFails();
    void folderInTheExtensionFilesPlaceFails();
    void extensionFileThatMayNotBeWrittenFailsAfterTheMenu();
};

void tst_LightwaveFiles::nameDecidesTheRoleOfAFile_data()
{
    QTest::addColumn<Role>("role");
    QTest::addColumn<bool>("isListed");

    QTest::newRow("LW.CFG") << Role::Menu << true;
    QTest::newRow("LW11.CFG") << Role::Menu << true;
    QTest::newRow("LW menu copy.CFG") << Role::Menu << true;
    QTest::newRow("LWext.CFG") << Role::Menu << true;
    QTest::newRow("LW.cfg.CFG") << Role::Menu << true;
    QTest::newRow("LWEXT.CFG") << Role::Extension << true;
    QTest::newRow("LWEXT11.CFG") << Role::Extension << true;
    QTest::newRow("LW11-EXT.CFG") << Role::Extension << true;
    QTest::newRow("LWNEXTMENU.CFG") << Role::Extension << true;
    QTest::newRow("OTHER.CFG") << Role::None << true;
    QTest::newRow("MYLW.CFG") << Role::None << true;
    QTest::newRow("EXT.CFG") << Role::None << true;
    QTest::newRow("lw.CFG") << Role::None << true;
    QTest::newRow("Lw.CFG") << Role::None << true;
    QTest::newRow("lw.cfg") << Role::None << false;
    QTest::newRow("LW.cfg") << Role::None << false;
    QTest::newRow("LWEXT.Cfg") << Role::None << false;
    QTest::newRow("LW.CFG.old") << Role::None << false;
    QTest::newRow("LW.CFG_bak") << Role::None << false;
    QTest::newRow("LW.CFG ") << Role::None << false;
    QTest::newRow("LWCFG") << Role::None << false;
    QTest::newRow(".LW.CFG") << Role::None << false;
}

void tst_LightwaveFiles::nameDecidesTheRoleOfAFile()
{
    QFETCH(Role, role);
    QFETCH(bool, isListed);
    const LightwaveFolder folder;
    const QString name = QTest::currentDataTag();
    folder.write(name, "# Tasklancer");
    test::Tree expected = folder.tree();
    QStringList lines;
    if (isListed) {
        lines << "Debug: cfgfile:  \"" + folder.path(name) + '"';
    }
    if (role != Role::Menu) {
        lines << noMenuFile;
    }
    if (role == Role::Extension) {
        expected[name + "_bak"] = "# Tasklancer";
        expected["LW.CFG"] = "";
    } else {
        lines << noExtensionFile << noName << notOpened;
        expected["LWEXT.CFG"] = "";
    }

    QCOMPARE(folder.edit(), role == Role::Extension ? 0 : 3);
    QCOMPARE(test::treeDifference(folder.tree(), expected), QString());
    QCOMPARE(folder.log.lines(), lines);
}

void tst_LightwaveFiles::foldersHaveNoRole()
{
    const LightwaveFolder folder;
    folder.makeFolder("LW9.CFG");
    folder.makeFolder("LWEXT9.CFG");
    folder.write("inner/LW.CFG", menu);
    test::Tree expected = folder.tree();
    expected["LWEXT.CFG"] = "";

    QCOMPARE(folder.edit(), 3);
    QCOMPARE(test::treeDifference(folder.tree(), expected), QString());
    QCOMPARE(folder.log.lines(), QStringList({noMenuFile, noExtensionFile, noName, notOpened}));
}

void tst_LightwaveFiles::linksToFilesHaveARole()
{
    const LightwaveFolder folder;
    folder.write("shared/menu", menu);
    folder.write("LWEXT.CFG", "# Drask Tasklancer");
    folder.makeLink(folder.path("shared/menu"), "LW.CFG");
    folder.write("LW.CFG_bak", "old backup");
    test::Tree expected = folder.tree();
    expected["shared/menu"] = menu + editedMenu;

    QCOMPARE(folder.edit(), 0);
    QCOMPARE(test::treeDifference(folder.tree(), expected), QString());
}

void tst_LightwaveFiles::laterFileReplacesAnEarlierOne()
{
    const LightwaveFolder folder;
    for (char letter = 'A'; letter <= 'H'; ++letter) {
        const QString name = QString("LW%1.CFG").arg(QLatin1Char(letter));
        folder.write(name, menu);
        folder.write("LWEXT" + name, extension);
    }
    test::Tree expected = folder.tree();
    QStringList lines;
    QString menuFile;
    QString extensionFile;
    for (const QString &name : folder.namesInFolderOrder()) {
        if (name.endsWith(".CFG")) {
            lines << "Debug: cfgfile:  \"" + folder.path(name) + '"';
            (name.contains("EXT") ? extensionFile : menuFile) = name;
        }
    }
    expected[menuFile + "_bak"] = menu;
    expected[extensionFile + "_bak"] = extension;
    lines << folder.notWritten(menuFile) << folder.notWritten(extensionFile);

    QCOMPARE(folder.edit(), 0);
    QCOMPARE(test::treeDifference(folder.tree(), expected), QString());
    QCOMPARE(folder.log.lines(), lines);
}

void tst_LightwaveFiles::missingFolderFails()
{
    const LightwaveFolder folder;

    QCOMPARE(PluginInstaller::editLwvCfgFile(folder.path("none")), 3);
    QCOMPARE(test::treeDifference(folder.tree(), {}), QString());
    QCOMPARE(folder.log.lines(), QStringList({noMenuFile, noExtensionFile, notOpened}));
}

void tst_LightwaveFiles::missingMenuFileIsMadeEmpty()
{
    const LightwaveFolder folder;
    folder.write("LWEXT.CFG", extension);
    folder.write("LWEXT.CFG_bak", "old backup");
    test::Tree expected = folder.tree();
    expected["LW.CFG"] = "";

    QCOMPARE(folder.edit(), 0);
    QCOMPARE(test::treeDifference(folder.tree(), expected), QString());
    QCOMPARE(folder.linesBehindTheFiles(), QStringList(noMenuFile));
}

void tst_LightwaveFiles::missingExtensionFileIsMadeEmptyAndFails()
{
    const LightwaveFolder folder;
    folder.write("LW.CFG", menu);
    folder.age("LW.CFG");
    test::Tree expected = folder.tree();
    expected["LWEXT.CFG"] = "";

    QCOMPARE(folder.edit(), 3);
    QCOMPARE(test::treeDifference(folder.tree(), expected), QString());
    QVERIFY(folder.isAged("LW.CFG"));
    QCOMPARE(folder.linesBehindTheFiles(), QStringList({noExtensionFile, noName, notOpened}));
}

void tst_LightwaveFiles::missingExtensionFileIsFoundByTheNextRun()
{
    const LightwaveFolder folder;
    folder.write("LW.CFG", menu);
    QCOMPARE(folder.edit(), 3);

    QCOMPARE(folder.edit(), 0);
    QCOMPARE(
        test::treeDifference(
            folder.tree(),
            {{"LW.CFG", menu}, {"LW.CFG_bak", menu}, {"LWEXT.CFG", ""}, {"LWEXT.CFG_bak", ""}}),
        QString());
}

void tst_LightwaveFiles::folderInTheMenuFilesPlaceFails()
{
    const LightwaveFolder folder;
    folder.makeFolder("LW.CFG");
    folder.write("LWEXT.CFG", extension);
    const test::Tree before = folder.tree();

    QCOMPARE(folder.edit(), 3);
    QCOMPARE(test::treeDifference(folder.tree(), before), QString());
    QCOMPARE(folder.linesBehindTheFiles(), QStringList({noMenuFile, notOpened}));
}

void tst_LightwaveFiles::folderInTheExtensionFilesPlaceFails()
{
    const LightwaveFolder folder;
    folder.write("LW.CFG", menu);
    folder.makeFolder("LWEXT.CFG");
    const test::Tree before = folder.tree();

    QCOMPARE(folder.edit(), 3);
    QCOMPARE(test::treeDifference(folder.tree(), before), QString());
    QCOMPARE(folder.linesBehindTheFiles(), QStringList({noExtensionFile, notOpened}));
}

void tst_LightwaveFiles::extensionFileThatMayNotBeWrittenFailsAfterTheMenu()
{
    const LightwaveFolder folder;
    folder.write("LW.CFG", menu);
    folder.write("LW.CFG_bak", "old backup");
    folder.write("LWEXT.CFG", extension);
    test::giveToOrdinaryUser(folder.path("LW.CFG"));
    test::Tree expected = folder.tree();
    expected["LW.CFG"] = menu + editedMenu;
    const test::ReadOnly lock(folder.path("LWEXT.CFG"));
    {
        BECOME_ORDINARY_USER_OR_SKIP();
        QCOMPARE(folder.edit(), 3);
    }

    QCOMPARE(test::treeDifference(folder.tree(), expected), QString());
    QCOMPARE(folder.linesBehindTheFiles(), QStringList(notOpened));
}

DRASK_TEST(tst_LightwaveFiles)
#include "tst_lightwave_files.moc"
