// SPDX-License-Identifier: MIT
#include "lightwavefolder.h"
#include "unitcase.h"

#include <sys/stat.h>
#include <unistd.h>

using namespace lightwave;

namespace {

enum class Role { Menu, Extension, None };

} // namespace

Q_DECLARE_METATYPE(Role)

class tst_LightwaveFiles : public QObject {
    Q_OBJECT
private slots:
    void nameDecidesTheRoleOfAFile_data()
    {
        const test::Table<Role, bool> table("role", "isListed");
        table.row("LW.CFG", Role::Menu, true);
        table.row("LW11.CFG", Role::Menu, true);
        table.row("LW menu copy.CFG", Role::Menu, true);
        table.row("LWext.CFG", Role::Menu, true);
        table.row("LW.cfg.CFG", Role::Menu, true);
        table.row("LWEXT.CFG", Role::Extension, true);
        table.row("LWEXT11.CFG", Role::Extension, true);
        table.row("LW11-EXT.CFG", Role::Extension, true);
        table.row("LWNEXTMENU.CFG", Role::Extension, true);
        table.row("OTHER.CFG", Role::None, true);
        table.row("MYLW.CFG", Role::None, true);
        table.row("EXT.CFG", Role::None, true);
        table.row("lw.CFG", Role::None, true);
        table.row("Lw.CFG", Role::None, true);
        table.row("lw.cfg", Role::None, false);
        table.row("LW.cfg", Role::None, false);
        table.row("LWEXT.Cfg", Role::None, false);
        table.row("LW.CFG.old", Role::None, false);
        table.row("LW.CFG_bak", Role::None, false);
        table.row("LW.CFG ", Role::None, false);
        table.row("LWCFG", Role::None, false);
        table.row(".LW.CFG", Role::None, false);
    }

    void nameDecidesTheRoleOfAFile()
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
        VERIFY_TREE(folder, expected);
        QCOMPARE(folder.log.lines(), lines);
    }

    void foldersHaveNoRole()
    {
        const LightwaveFolder folder;
        folder.makeFolder("LW9.CFG");
        folder.makeFolder("LWEXT9.CFG");
        folder.write("inner/LW.CFG", menu);
        test::Tree expected = folder.tree();
        expected["LWEXT.CFG"] = "";

        QCOMPARE(folder.edit(), 3);
        VERIFY_TREE(folder, expected);
        VERIFY_LINES(folder.log.lines(), noMenuFile, noExtensionFile, noName, notOpened);
    }

#ifdef Q_OS_LINUX
    void namesThatAreNoTextHideNoOthers()
    {
        const LightwaveFolder folder;
        folder.write("LW.CFG", "# Tasklancer");
        folder.write("LWEXT.CFG", "# Drask Tasklancer");
        const test::Tree before = folder.tree();
        for (char letter = 'a'; letter <= 'z'; ++letter) {
            const QByteArray bad = QFile::encodeName(folder.path("LW")) + letter + "\xff.CFG";
            QCOMPARE(mknod(bad.constData(), S_IFREG | S_IRUSR | S_IWUSR, 0), 0);
        }

        QCOMPARE(folder.edit(), 0);
        QCOMPARE(folder.log.lines().size(), 2);
        for (char letter = 'a'; letter <= 'z'; ++letter) {
            unlink((QFile::encodeName(folder.path("LW")) + letter + "\xff.CFG").constData());
        }
        VERIFY_TREE(folder, before);
    }
#endif

    void linksToFilesHaveARole()
    {
        const LightwaveFolder folder;
        folder.write("shared/menu", menu);
        folder.write("LWEXT.CFG", "# Drask Tasklancer");
        folder.makeLink(folder.path("shared/menu"), "LW.CFG");
        folder.write("LW.CFG_bak", "old backup");
        test::Tree expected = folder.tree();
        expected["shared/menu"] = menu + editedMenu;

        QCOMPARE(folder.edit(), 0);
        VERIFY_TREE(folder, expected);
    }

    void laterFileReplacesAnEarlierOne()
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
        VERIFY_TREE(folder, expected);
        QCOMPARE(folder.log.lines(), lines);
    }

    void missingFolderFails()
    {
        const LightwaveFolder folder;
        QCOMPARE(PluginInstaller::editLwvCfgFile(folder.path("none")), 3);
        VERIFY_TREE(folder, {});
        VERIFY_LINES(folder.log.lines(), noMenuFile, noExtensionFile, notOpened);
    }

    void missingMenuFileIsMadeEmpty()
    {
        const LightwaveFolder folder;
        folder.write("LWEXT.CFG", extension);
        folder.write("LWEXT.CFG_bak", "old backup");
        test::Tree expected = folder.tree();
        expected["LW.CFG"] = "";
        QCOMPARE(folder.edit(), 0);
        VERIFY_TREE(folder, expected);
        QCOMPARE(folder.linesBehindTheFiles(), QStringList(noMenuFile));
    }

    void missingExtensionFileIsMadeEmptyAndFails()
    {
        const LightwaveFolder folder;
        folder.write("LW.CFG", menu);
        folder.age("LW.CFG");
        test::Tree expected = folder.tree();
        expected["LWEXT.CFG"] = "";

        QCOMPARE(folder.edit(), 3);
        VERIFY_TREE(folder, expected);
        QVERIFY(folder.isAged("LW.CFG"));
        VERIFY_LINES(folder.linesBehindTheFiles(), noExtensionFile, noName, notOpened);
    }

    void missingExtensionFileIsFoundByTheNextRun()
    {
        const LightwaveFolder folder;
        folder.write("LW.CFG", menu);
        QCOMPARE(folder.edit(), 3);
        QCOMPARE(folder.edit(), 0);
        VERIFY_TREE(
            folder,
            {{"LW.CFG", menu}, {"LW.CFG_bak", menu}, {"LWEXT.CFG", ""}, {"LWEXT.CFG_bak", ""}});
    }

    void folderInAFilesPlaceFails_data()
    {
        const test::Table<QString, QString, QString> table("folder", "file", "complaint");
        table.row("the menu", "LW.CFG", "LWEXT.CFG", noMenuFile);
        table.row("the extensions", "LWEXT.CFG", "LW.CFG", noExtensionFile);
    }

    void folderInAFilesPlaceFails()
    {
        QFETCH(QString, folder);
        QFETCH(QString, file);
        QFETCH(QString, complaint);
        const LightwaveFolder sandbox;
        sandbox.makeFolder(folder);
        sandbox.write(file, menu);
        const test::Tree before = sandbox.tree();

        QCOMPARE(sandbox.edit(), 3);
        VERIFY_TREE(sandbox, before);
        VERIFY_LINES(sandbox.linesBehindTheFiles(), complaint, notOpened);
    }

    void extensionFileThatMayNotBeWrittenFailsAfterTheMenu()
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

        VERIFY_TREE(folder, expected);
        QCOMPARE(folder.linesBehindTheFiles(), QStringList(notOpened));
    }
};

DRASK_TEST(tst_LightwaveFiles)
#include "tst_lightwave_files.moc"
