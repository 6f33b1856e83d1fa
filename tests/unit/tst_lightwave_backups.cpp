// SPDX-License-Identifier: MIT
#include "installer/lightwave.h"
#include "lightwavefolder.h"
#include "unitcase.h"

using namespace lightwave;

/// What the two files hold in the end, which depends on the backups that stand beside them.
class tst_LightwaveBackups : public QObject {
    Q_OBJECT
private slots:
    void backupsDecideWhatIsWritten_data()
    {
        const test::Table<bool, bool, QByteArray, QByteArray> table("menuBackup", "extensionBackup",
                                                                    "menuAfter", "extensionAfter");
        table.row("no backup: both are backed up and kept", false, false, menu, extension);
        table.row("a menu backup: the menu is written behind itself", true, false,
                  menu + editedMenu, extension);
        table.row("an extension backup: the menu is written behind the extension", false, true,
                  menu, extension + editedMenu);
        table.row("both backups: the menu is written behind both", true, true, menu + editedMenu,
                  extension + editedMenu);
    }

    void backupsDecideWhatIsWritten()
    {
        QFETCH(bool, menuBackup);
        QFETCH(bool, extensionBackup);
        QFETCH(QByteArray, menuAfter);
        QFETCH(QByteArray, extensionAfter);
        const LightwaveFolder folder;
        folder.write("LW.CFG", menu);
        folder.write("LWEXT.CFG", extension);
        test::Tree expected = {{"LW.CFG", menuAfter},
                               {"LW.CFG_bak", menu},
                               {"LWEXT.CFG", extensionAfter},
                               {"LWEXT.CFG_bak", extension}};
        QStringList lines;
        if (menuBackup) {
            folder.write("LW.CFG_bak", "old backup");
            expected["LW.CFG_bak"] = "old backup";
        } else {
            lines << folder.notWritten("LW.CFG");
        }
        if (extensionBackup) {
            folder.write("LWEXT.CFG_bak", "old backup");
            expected["LWEXT.CFG_bak"] = "old backup";
        } else {
            lines << folder.notWritten("LWEXT.CFG");
        }

        QCOMPARE(folder.edit(), 0);
        VERIFY_TREE(folder, expected);
        QCOMPARE(folder.linesBehindTheFiles(), lines);
    }

    void folderInABackupsPlaceCountsAsBackup()
    {
        const LightwaveFolder folder;
        folder.write("LW.CFG", menu);
        folder.write("LWEXT.CFG", extension);
        folder.makeFolder("LW.CFG_bak");
        folder.makeFolder("LWEXT.CFG_bak");

        QCOMPARE(folder.edit(), 0);
        VERIFY_TREE(folder,
                    {{"LW.CFG", menu + editedMenu},
                     {"LW.CFG_bak/", ""},
                     {"LWEXT.CFG", extension + editedMenu},
                     {"LWEXT.CFG_bak/", ""}});
        QCOMPARE(folder.linesBehindTheFiles(), QStringList());
    }

    void danglingLinkInABackupsPlaceClosesTheFile()
    {
        const LightwaveFolder folder;
        folder.write("LW.CFG", menu);
        folder.write("LWEXT.CFG", extension);
        folder.makeLink("missing", "LW.CFG_bak");
        folder.makeLink("missing", "LWEXT.CFG_bak");
        const test::Tree before = folder.tree();

        QCOMPARE(folder.edit(), 0);
        VERIFY_TREE(folder, before);
        VERIFY_LINES(folder.linesBehindTheFiles(), folder.notWritten("LW.CFG"),
                     folder.notWritten("LWEXT.CFG"));
    }

    void backupWhoseNameIsTooLongClosesTheFile()
    {
        const LightwaveFolder folder;
        const QString menuFile = "LW" + QString(248, 'x') + ".CFG";
        const QString extensionFile = "LWEXT" + QString(245, 'x') + ".CFG";
        folder.write(menuFile, menu);
        folder.write(extensionFile, extension);
        const test::Tree before = folder.tree();

        QCOMPARE(folder.edit(), 0);
        VERIFY_TREE(folder, before);
        VERIFY_LINES(folder.linesBehindTheFiles(), folder.notWritten(menuFile),
                     folder.notWritten(extensionFile));
    }

    void runsBehindEachOtherEndInTheSameFiles()
    {
        const LightwaveFolder folder;
        folder.write("LW.CFG", menu);
        folder.write("LWEXT.CFG", extension);
        const test::Tree afterTwoRuns = {{"LW.CFG", menu + editedMenu},
                                         {"LW.CFG_bak", menu},
                                         {"LWEXT.CFG", extension + editedMenu},
                                         {"LWEXT.CFG_bak", extension}};

        QCOMPARE(folder.edit(), 0);
        QCOMPARE(folder.edit(), 0);
        VERIFY_TREE(folder, afterTwoRuns);

        folder.age("LW.CFG");
        folder.age("LWEXT.CFG");
        QCOMPARE(folder.edit(), 0);
        VERIFY_TREE(folder, afterTwoRuns);
        QVERIFY(folder.isAged("LW.CFG"));
        QVERIFY(folder.isAged("LWEXT.CFG"));
    }

    void unchangedMenuStillGoesIntoTheExtensionFile()
    {
        const LightwaveFolder folder;
        folder.write("LW.CFG", "# tasklancer\n");
        folder.age("LW.CFG");
        folder.write("LWEXT.CFG", extension);
        folder.write("LWEXT.CFG_bak", "");
        test::Tree expected = folder.tree();
        expected["LWEXT.CFG"] = extension + "# tasklancer\n";

        QCOMPARE(folder.edit(), 0);
        VERIFY_TREE(folder, expected);
        QVERIFY(folder.isAged("LW.CFG"));
    }

    void extensionThatMentionsThePluginByNameIsNotTouched_data()
    {
        const test::Table<QByteArray, bool> table("content", "isTouched");
        table.row("in its own entry", lightwaveExtensionEntry("/plugins").toUtf8(), false);
        table.row("in capitals", "DRASK TASKLANCER", false);
        table.row("inside longer words", "myDrask TaskLancers", false);
        table.row("one word of the name", "Name \"Tasklancer\"\r\n", true);
        table.row("two blanks in the name", "\"Drask  Tasklancer\"", true);
        table.row("an underscore in the name", "\"Drask_Tasklancer\"", true);
    }

    void extensionThatMentionsThePluginByNameIsNotTouched()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, isTouched);
        const LightwaveFolder folder;
        folder.write("LW.CFG", "# Tasklancer");
        folder.write("LWEXT.CFG", content);
        folder.write("LWEXT.CFG_bak", "");
        folder.age("LWEXT.CFG");
        test::Tree expected = folder.tree();
        expected["LWEXT.CFG"] = isTouched ? content + "# Tasklancer" : content;

        QCOMPARE(folder.edit(), 0);
        VERIFY_TREE(folder, expected);
        QCOMPARE(folder.isAged("LWEXT.CFG"), !isTouched);
        QCOMPARE(folder.linesBehindTheFiles(), QStringList());
    }

    /// Listed in behaviour.md: what cannot be bridged.
    void halfASurrogateInUtf16DependsOnTheQtElsewhere()
    {
        const LightwaveFolder folder;
        const QByteArray utf16("\xff\xfe#\0\x3d\xd8#\0\n\0", 10);
        const QByteArray written = QT_VERSION_MAJOR < 6 ? "#?#\n" : "#\xef\xbf\xbd#\n";
        folder.write("LW.CFG", utf16);
        folder.write("LW.CFG_bak", "");
        folder.write("LWEXT.CFG", extension);
        folder.write("LWEXT.CFG_bak", "");
        test::Tree expected = folder.tree();
        expected["LWEXT.CFG"] = extension + written;

        QCOMPARE(folder.edit(), 0);
        VERIFY_TREE(folder, expected);
    }

    void textOutsideAsciiIsWrittenAsUtf8_data()
    {
        const test::Table<QByteArray, QByteArray> table("line", "written");
        table.row("letters outside ASCII", "\xc3\x84\xc3\x9f\xe6\xbc\xa2\r\n",
                  "\xc3\x84\xc3\x9f\xe6\xbc\xa2\r\n");
        table.row("a byte-order mark, which is not repeated", "\xef\xbb\xbf# a\r\n", "# a\r\n");
        table.row("a byte that is no UTF-8", "# \xff!\r\n", "# \xef\xbf\xbd!\r\n");
        table.row("a null character", QByteArray("#\0!\r\n", 5), QByteArray("#\0!\r\n", 5));
        table.row("line ends of both kinds", "a\nb\rc\r\n", "a\nb\rc\r\n");
    }

    void textOutsideAsciiIsWrittenAsUtf8()
    {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, written);
        const LightwaveFolder folder;
        folder.write("LW.CFG", line + menu);
        folder.write("LW.CFG_bak", "");
        folder.write("LWEXT.CFG", line + extension);
        folder.write("LWEXT.CFG_bak", "");

        QCOMPARE(folder.edit(), 0);
        QCOMPARE(folder.read("LW.CFG"), line + menu + written + editedMenu);
        QCOMPARE(folder.read("LWEXT.CFG"), line + extension + written + editedMenu);
    }
};

DRASK_TEST(tst_LightwaveBackups)
#include "tst_lightwave_backups.moc"
