// SPDX-License-Identifier: MIT
#include "installer/lightwave.h"
#include "lightwavefolder.h"
#include "testprogram.h"

#include <QtTest>

using namespace lightwave;

/// What the two files hold in the end, which depends on the backups that stand beside them.
class tst_LightwaveBackups : public QObject {
    Q_OBJECT

private slots:
    void backupsDecideWhatIsWritten_data();
    void backupsDecideWhatIsWritten();
    void folderInABackupsPlaceCountsAsBackup();
    void backupWhoseNameIsTooLongClosesTheFile();
    void runsBehindEachOtherEndInTheSameFiles();
    void unchangedMenuStillGoesIntoTheExtensionFile();
    void extensionThatMentionsThePluginByNameIsNotTouched_data();
    void extensionThatMentionsThePluginByNameIsNotTouched();
    void textOutsideAsciiIsWrittenAsUtf8_data();
    void textOutsideAsciiIsWrittenAsUtf8();
};

void tst_LightwaveBackups::backupsDecideWhatIsWritten_data()
{
    QTest::addColumn<bool>("menuBackup");
    QTest::addColumn<bool>("extensionBackup");
    QTest::addColumn<QByteArray>("menuAfter");
    QTest::addColumn<QByteArray>("extensionAfter");

    QTest::newRow("no backup: both are backed up and kept") << false << false << menu << extension;
    QTest::newRow("a menu backup: the menu is written behind itself")
        << true << false << menu + editedMenu << extension;
    QTest::newRow("an extension backup: the menu is written behind the extension")
        << false << true << menu << extension + editedMenu;
    QTest::newRow("both backups: the menu is written behind both")
        << true << true << menu + editedMenu << extension + editedMenu;
}

void tst_LightwaveBackups::backupsDecideWhatIsWritten()
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
    QCOMPARE(test::treeDifference(folder.tree(), expected), QString());
    QCOMPARE(folder.linesBehindTheFiles(), lines);
}

void tst_LightwaveBackups::folderInABackupsPlaceCountsAsBackup()
{
    const LightwaveFolder folder;
    folder.write("LW.CFG", menu);
    folder.write("LWEXT.CFG", extension);
    folder.makeFolder("LW.CFG_bak");
    folder.makeFolder("LWEXT.CFG_bak");

    QCOMPARE(folder.edit(), 0);
    QCOMPARE(test::treeDifference(folder.tree(),
                                  {{"LW.CFG", menu + editedMenu},
                                   {"LW.CFG_bak/", ""},
                                   {"LWEXT.CFG", extension + editedMenu},
                                   {"LWEXT.CFG_bak/", ""}}),
             QString());
    QCOMPARE(folder.linesBehindTheFiles(), QStringList());
}

void tst_LightwaveBackups::backupWhoseNameIsTooLongClosesTheFile()
{
    const LightwaveFolder folder;
    const QString menuFile = "LW" + QString(248, 'x') + ".CFG";
    const QString extensionFile = "LWEXT" + QString(245, 'x') + ".CFG";
    folder.write(menuFile, menu);
    folder.write(extensionFile, extension);
    const test::Tree before = folder.tree();

    QCOMPARE(folder.edit(), 0);
    QCOMPARE(test::treeDifference(folder.tree(), before), QString());
    QCOMPARE(folder.linesBehindTheFiles(),
             QStringList({folder.notWritten(menuFile), folder.notWritten(extensionFile)}));
}

void tst_LightwaveBackups::runsBehindEachOtherEndInTheSameFiles()
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
    QCOMPARE(test::treeDifference(folder.tree(), afterTwoRuns), QString());

    folder.age("LW.CFG");
    folder.age("LWEXT.CFG");
    QCOMPARE(folder.edit(), 0);
    QCOMPARE(test::treeDifference(folder.tree(), afterTwoRuns), QString());
    QVERIFY(folder.isAged("LW.CFG"));
    QVERIFY(folder.isAged("LWEXT.CFG"));
}

void tst_LightwaveBackups::unchangedMenuStillGoesIntoTheExtensionFile()
{
    const LightwaveFolder folder;
    folder.write("LW.CFG", "# tasklancer\n");
    folder.age("LW.CFG");
    folder.write("LWEXT.CFG", extension);
    folder.write("LWEXT.CFG_bak", "");
    test::Tree expected = folder.tree();
    expected["LWEXT.CFG"] = extension + "# tasklancer\n";

    QCOMPARE(folder.edit(), 0);
    QCOMPARE(test::treeDifference(folder.tree(), expected), QString());
    QVERIFY(folder.isAged("LW.CFG"));
}

void tst_LightwaveBackups::extensionThatMentionsThePluginByNameIsNotTouched_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isTouched");

    QTest::newRow("in its own entry") << lightwaveExtensionEntry("/plugins").toUtf8() << false;
    QTest::newRow("in capitals") << QByteArray("DRASK TASKLANCER") << false;
    QTest::newRow("inside longer words") << QByteArray("myDrask TaskLancers") << false;
    QTest::newRow("one word of the name") << QByteArray("Name \"Tasklancer\"\r\n") << true;
    QTest::newRow("two blanks in the name") << QByteArray("\"Drask  Tasklancer\"") << true;
    QTest::newRow("an underscore in the name") << QByteArray("\"Drask_Tasklancer\"") << true;
}

void tst_LightwaveBackups::extensionThatMentionsThePluginByNameIsNotTouched()
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
    QCOMPARE(test::treeDifference(folder.tree(), expected), QString());
    QCOMPARE(folder.isAged("LWEXT.CFG"), !isTouched);
    QCOMPARE(folder.linesBehindTheFiles(), QStringList());
}

void tst_LightwaveBackups::textOutsideAsciiIsWrittenAsUtf8_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("written");

    QTest::newRow("letters outside ASCII") << QByteArray("\xc3\x84\xc3\x9f\xe6\xbc\xa2\r\n")
                                           << QByteArray("\xc3\x84\xc3\x9f\xe6\xbc\xa2\r\n");
    QTest::newRow("a byte-order mark, which is not repeated")
        << QByteArray("\xef\xbb\xbf# a\r\n") << QByteArray("# a\r\n");
    QTest::newRow("a byte that is no UTF-8")
        << QByteArray("# \xff!\r\n") << QByteArray("# \xef\xbf\xbd!\r\n");
    QTest::newRow("a null character") << QByteArray("#\0!\r\n", 5) << QByteArray("#\0!\r\n", 5);
    QTest::newRow("line ends of both kinds")
        << QByteArray("a\nb\rc\r\n") << QByteArray("a\nb\rc\r\n");
}

void tst_LightwaveBackups::textOutsideAsciiIsWrittenAsUtf8()
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

DRASK_TEST(tst_LightwaveBackups)
#include "tst_lightwave_backups.moc"
