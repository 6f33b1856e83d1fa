// SPDX-License-Identifier: MIT
#include "installer/lightwave.h"
#include "unitcase.h"

namespace {

const QString entry = "MenuEntry 2 . Generic_Drask Tasklancer\r\n";

} // namespace

/// The texts; the files are in tst_lightwave_files.cpp and tst_lightwave_backups.cpp.
class tst_Lightwave : public QObject {
    Q_OBJECT
private slots:
    void extensionEntryNamesTheModule_data()
    {
        const test::Table<QString, QString> table("module", "written");
        table.row("no module", "", "");
        table.row("slashes and blanks", "/a b/plug ins", "/a b/plug ins");
        table.row("backslashes, which are doubled", "C:\\LightWave\\plugins",
                  "C:\\\\LightWave\\\\plugins");
        table.row("doubled backslashes, which are doubled too", "\\\\server\\",
                  "\\\\\\\\server\\\\");
        table.row("quotes, which stay", "a\"b'c", "a\"b'c");
        table.row("a place-holder of the formatter", "%1 %2", "%1 %2");
        table.row("letters outside ASCII", QString::fromUtf8("h\xc3\xb6me \xe6\xbc\xa2"),
                  QString::fromUtf8("h\xc3\xb6me \xe6\xbc\xa2"));
    }

    void extensionEntryNamesTheModule()
    {
        QFETCH(QString, module);
        QFETCH(QString, written);
        QCOMPARE(
            lightwaveExtensionEntry(module),
            "{ Entry\r\n  Class \"LayoutGeneric\"\r\n  Name \"Drask Tasklancer\"\r\n  Module \""
                + written + "\"\r\n}\r\n");
    }

    void menuEntryGoesUnderOptions_data()
    {
        const test::Table<QString, QString> table("before", "after");
        table.row("in the middle", "MenuEntry 1 Render \r\nMenuEntry 1 Options \r\n",
                  "MenuEntry 2 . RenderOptions\r\nMenuEntry 0 . \r\n");
        table.row("at the end", "x\r\nMenuEntry 1 Options \r\n", "");
        table.row("one character behind the start", "\nMenuEntry 1 Options\r\n", "b\r\n");
        table.row("in capitals", "x\r\nMENUENTRY 1 OPTIONS \r\n", "b\r\n");
        table.row("in small letters", "x\r\nmenuentry 1 options \r\n", "b\r\n");
        table.row("with a longer name", "x\r\nMenuEntry 1 OptionsAndMore \r\n", "b\r\n");
        table.row("behind other text on its line", "x\r\n  # MenuEntry 1 Options # \r\n", "b\r\n");
        table.row("with another line break in its line",
                  "x\r\nMenuEntry 1 Options \nMenuEntry 2 . B\r\n", "c\r\n");
        table.row("the first of two", "x\r\nMenuEntry 1 Options \r\n",
                  "b\r\nMenuEntry 1 Options \r\nc\r\n");
        table.row("with letters outside ASCII around it",
                  QString::fromUtf8("\xc3\x84\xe6\xbc\xa2\r\nMenuEntry 1 Options \xc3\x9f\r\n"),
                  QString::fromUtf8("\xc3\xa9\r\n"));
    }

    void menuEntryGoesUnderOptions()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QCOMPARE(withLightwaveMenuEntry(before + after), before + entry + after);
    }

    void defaultMenuGoesIntoTheGroup_data()
    {
        const test::Table<QString, QString, QString> table("before", "replaced", "after");
        table.row("in the middle", "x\r\nMenuEntry 131072 1 ", "_\r\n", "y\r\n");
        table.row("at the end", "x\r\nMenuEntry 131072 1 ", "_\r\n", "");
        table.row("without a line break", "x\r\nMenuEntry 131072 1 ", "_", "");
        table.row("one character behind the start", " MenuEntry 131072 1 ", "_\r\n", "y");
        table.row("in capitals", "x\r\nMENUENTRY 131072 1 ", "_\r\n", "y\r\n");
        table.row("with a line feed, which takes a letter along", "x\nMenuEntry 131072 1 ", "_\nM",
                  "enuEntry 0 . \n");
        table.row("with a longer name, which loses two letters", "x\r\nMenuEntry 131072 1 ", "_Gr",
                  "oup\r\n");
        table.row("the first of two", "x\r\nMenuEntry 131072 1 ", "_\r\n",
                  "MenuEntry 131072 1 _\r\n");
        table.row("behind an Options menu at the very start",
                  "MenuEntry 1 Options \r\nMenuEntry 131072 1 ", "_\r\n", "y\r\n");
        table.row("behind Options menus at the very start and later",
                  "MenuEntry 1 Options \r\nMenuEntry 1 Options \r\nMenuEntry 131072 1 ", "_\r\n",
                  "");
    }

    void defaultMenuGoesIntoTheGroup()
    {
        QFETCH(QString, before);
        QFETCH(QString, replaced);
        QFETCH(QString, after);
        QCOMPARE(withLightwaveMenuEntry(before + replaced + after),
                 before + defaultLightwaveMenu() + after);
    }

    void optionsAreAskedBeforeTheGroup()
    {
        const QString before = "x\r\nMenuEntry 131072 1 _\r\nMenuEntry 1 Options \r\n";
        QCOMPARE(withLightwaveMenuEntry(before + "y\r\n"), before + entry + "y\r\n");
    }

    void menuWithoutAPlaceForItStays_data()
    {
        const test::Table<QString> table("menu");
        const QString group = "MenuEntry 131072 1 _\r\n";
        table.row("an empty menu", "");
        table.row("neither Options nor a group", "MenuEntry 1 Render \r\n");
        table.row("Options at the very start", "MenuEntry 1 Options \r\ny\r\n");
        table.row("the group at the very start", group + "y\r\n");
        table.row("another group", "x\r\nMenuEntry 131072 1 GraphEditor\r\n");
        table.row("Options of another kind", "x\r\nMenuEntry 2 Options \r\n");
        table.row("Options in quotes", "x\r\nMenuEntry 1 \"Options\" \r\n");
        table.row("Options without a line break", "x\r\nMenuEntry 1 Options ");
        table.row("Options with a line feed only", "x\nMenuEntry 1 Options \ny\n");
        table.row("Options without a line break, and a group before them",
                  "x\r\n" + group + "MenuEntry 1 Options ");
    }

    void menuWithoutAPlaceForItStays()
    {
        QFETCH(QString, menu);
        QVERIFY(withLightwaveMenuEntry(menu).isNull());
    }

    void menuThatMentionsThePluginStays_data()
    {
        const test::Table<QString, bool> table("mention", "stays");
        table.row("its own entry", entry, true);
        table.row("in mixed letters", "TaskLancer", true);
        table.row("in capitals", "# TASKLANCER", true);
        table.row("in a longer word", "myTasklancers", true);
        table.row("in two words", "Task lancer", false);
        table.row("by its other name only", "Drask", false);
    }

    void menuThatMentionsThePluginStays()
    {
        QFETCH(QString, mention);
        const QString options = "x\r\nMenuEntry 1 Options \r\n";
        QTEST(withLightwaveMenuEntry(options + mention).isNull(), "stays");
        QTEST(withLightwaveMenuEntry(mention + options).isNull(), "stays");
    }

    void changedMenuIsNotChangedAgain()
    {
        const QString underOptions = withLightwaveMenuEntry("x\r\nMenuEntry 1 Options \r\n");
        QVERIFY(!underOptions.isNull());
        QVERIFY(withLightwaveMenuEntry(underOptions).isNull());
        const QString inGroup = withLightwaveMenuEntry("x\r\nMenuEntry 131072 1 _\r\n");
        QVERIFY(!inGroup.isNull());
        QVERIFY(withLightwaveMenuEntry(inGroup).isNull());
    }

    void lettersThatGrowInLowerCaseShiftThePlace()
    {
        // A capital I with a dot becomes two characters, and places are sought in the lower-case
        // text.
        const QString dotted = QString::fromUtf8("\xc4\xb0");
        QCOMPARE(withLightwaveMenuEntry(dotted + "\r\nMenuEntry 1 Options \r\nabc\r\n"),
                 dotted + "\r\nMenuEntry 1 Options \r\na" + entry + "bc\r\n");
        QCOMPARE(withLightwaveMenuEntry(dotted + "\r\nMenuEntry 131072 1 _\r\nabc\r\n"),
                 dotted + "\r\nMenuEntry 131072 1 _" + defaultLightwaveMenu() + "bc\r\n");
    }
};

DRASK_TEST(tst_Lightwave)
#include "tst_lightwave.moc"
