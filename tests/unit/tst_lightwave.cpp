// SPDX-License-Identifier: MIT
#include "installer/lightwave.h"

#include "testprogram.h"

#include <QtTest>

namespace {

const QString entry = "MenuEntry 2 . Generic_Drask Tasklancer\r\n";

} // namespace

/// The texts; the files are in tst_lightwave_files.cpp and tst_lightwave_backups.cpp.
class tst_Lightwave : public QObject {
    Q_OBJECT

private slots:
    void extensionEntryNamesTheModule_data();
    void extensionEntryNamesTheModule();
    void menuEntryGoesUnderOptions_data();
    void menuEntryGoesUnderOptions();
    void defaultMenuGoesIntoTheGroup_data();
    void defaultMenuGoesIntoTheGroup();
    void optionsAreAskedBeforeTheGroup();
    void menuWithoutAPlaceForItStays_data();
    void menuWithoutAPlaceForItStays();
    void menuThatMentionsThePluginStays_data();
    void menuThatMentionsThePluginStays();
    void changedMenuIsNotChangedAgain();
    void lettersThatGrowInLowerCaseShiftThePlace();
};

void tst_Lightwave::extensionEntryNamesTheModule_data()
{
    QTest::addColumn<QString>("module");
    QTest::addColumn<QString>("written");
    const auto addRow = [](const char *name, const QString &module, const QString &written) {
        QTest::newRow(name) << module << written;
    };
    addRow("no module", "", "");
    addRow("slashes and blanks", "/a b/plug ins", "/a b/plug ins");
    addRow("backslashes, which are doubled", "C:\\LightWave\\plugins",
           "C:\\\\LightWave\\\\plugins");
    addRow("doubled backslashes, which are doubled too", "\\\\server\\", "\\\\\\\\server\\\\");
    addRow("quotes, which stay", "a\"b'c", "a\"b'c");
    addRow("a place-holder of the formatter", "%1 %2", "%1 %2");
    addRow("letters outside ASCII", QString::fromUtf8("h\xc3\xb6me \xe6\xbc\xa2"),
           QString::fromUtf8("h\xc3\xb6me \xe6\xbc\xa2"));
}

void tst_Lightwave::extensionEntryNamesTheModule()
{
    QFETCH(QString, module);
    QFETCH(QString, written);

    QCOMPARE(lightwaveExtensionEntry(module),
             "{ Entry\r\n  Class \"LayoutGeneric\"\r\n  Name \"Drask Tasklancer\"\r\n  Module \""
                 + written + "\"\r\n}\r\n");
}

void tst_Lightwave::menuEntryGoesUnderOptions_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    const auto addRow = [](const char *name, const QString &before, const QString &after) {
        QTest::newRow(name) << before << after;
    };
    addRow("in the middle", "MenuEntry 1 Render \r\nMenuEntry 1 Options \r\n",
           "MenuEntry 2 . RenderOptions\r\nMenuEntry 0 . \r\n");
    addRow("at the end", "x\r\nMenuEntry 1 Options \r\n", "");
    addRow("one character behind the start", "\nMenuEntry 1 Options\r\n", "b\r\n");
    addRow("in capitals", "x\r\nMENUENTRY 1 OPTIONS \r\n", "b\r\n");
    addRow("in small letters", "x\r\nmenuentry 1 options \r\n", "b\r\n");
    addRow("with a longer name", "x\r\nMenuEntry 1 OptionsAndMore \r\n", "b\r\n");
    addRow("behind other text on its line", "x\r\n  # MenuEntry 1 Options # \r\n", "b\r\n");
    addRow("with another line break in its line", "x\r\nMenuEntry 1 Options \nMenuEntry 2 . B\r\n",
           "c\r\n");
    addRow("the first of two", "x\r\nMenuEntry 1 Options \r\n",
           "b\r\nMenuEntry 1 Options \r\nc\r\n");
    addRow("with letters outside ASCII around it",
           QString::fromUtf8("\xc3\x84\xe6\xbc\xa2\r\nMenuEntry 1 Options \xc3\x9f\r\n"),
           QString::fromUtf8("\xc3\xa9\r\n"));
}

void tst_Lightwave::menuEntryGoesUnderOptions()
{
    QFETCH(QString, before);
    QFETCH(QString, after);

    QCOMPARE(withLightwaveMenuEntry(before + after), before + entry + after);
}

void tst_Lightwave::defaultMenuGoesIntoTheGroup_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("replaced");
    QTest::addColumn<QString>("after");
    const auto addRow = [](const char *name, const QString &before, const QString &replaced,
                           const QString &after) {
        QTest::newRow(name) << before << replaced << after;
    };
    addRow("in the middle", "x\r\nMenuEntry 131072 1 ", "_\r\n", "y\r\n");
    addRow("at the end", "x\r\nMenuEntry 131072 1 ", "_\r\n", "");
    addRow("without a line break", "x\r\nMenuEntry 131072 1 ", "_", "");
    addRow("one character behind the start", " MenuEntry 131072 1 ", "_\r\n", "y");
    addRow("in capitals", "x\r\nMENUENTRY 131072 1 ", "_\r\n", "y\r\n");
    addRow("with a line feed, which takes a letter along", "x\nMenuEntry 131072 1 ", "_\nM",
           "enuEntry 0 . \n");
    addRow("with a longer name, which loses two letters", "x\r\nMenuEntry 131072 1 ", "_Gr",
           "oup\r\n");
    addRow("the first of two", "x\r\nMenuEntry 131072 1 ", "_\r\n", "MenuEntry 131072 1 _\r\n");
    addRow("behind an Options menu at the very start",
           "MenuEntry 1 Options \r\nMenuEntry 131072 1 ", "_\r\n", "y\r\n");
    addRow("behind Options menus at the very start and later",
           "MenuEntry 1 Options \r\nMenuEntry 1 Options \r\nMenuEntry 131072 1 ", "_\r\n", "");
}

void tst_Lightwave::defaultMenuGoesIntoTheGroup()
{
    QFETCH(QString, before);
    QFETCH(QString, replaced);
    QFETCH(QString, after);

    QCOMPARE(withLightwaveMenuEntry(before + replaced + after),
             before + defaultLightwaveMenu() + after);
}

void tst_Lightwave::optionsAreAskedBeforeTheGroup()
{
    const QString before = "x\r\nMenuEntry 131072 1 _\r\nMenuEntry 1 Options \r\n";

    QCOMPARE(withLightwaveMenuEntry(before + "y\r\n"), before + entry + "y\r\n");
}

void tst_Lightwave::menuWithoutAPlaceForItStays_data()
{
    QTest::addColumn<QString>("menu");

    const QString group = "MenuEntry 131072 1 _\r\n";
    QTest::newRow("an empty menu") << "";
    QTest::newRow("neither Options nor a group") << "MenuEntry 1 Render \r\n";
    QTest::newRow("Options at the very start") << "MenuEntry 1 Options \r\ny\r\n";
    QTest::newRow("the group at the very start") << group + "y\r\n";
    QTest::newRow("another group") << "x\r\nMenuEntry 131072 1 GraphEditor\r\n";
    QTest::newRow("Options of another kind") << "x\r\nMenuEntry 2 Options \r\n";
    QTest::newRow("Options in quotes") << "x\r\nMenuEntry 1 \"Options\" \r\n";
    QTest::newRow("Options without a line break") << "x\r\nMenuEntry 1 Options ";
    QTest::newRow("Options with a line feed only") << "x\nMenuEntry 1 Options \ny\n";
    QTest::newRow("Options without a line break, and a group before them")
        << "x\r\n" + group + "MenuEntry 1 Options ";
}

void tst_Lightwave::menuWithoutAPlaceForItStays()
{
    QFETCH(QString, menu);

    QVERIFY(withLightwaveMenuEntry(menu).isNull());
}

void tst_Lightwave::menuThatMentionsThePluginStays_data()
{
    QTest::addColumn<QString>("mention");
    QTest::addColumn<bool>("stays");

    QTest::newRow("its own entry") << entry << true;
    QTest::newRow("in mixed letters") << "TaskLancer" << true;
    QTest::newRow("in capitals") << "# TASKLANCER" << true;
    QTest::newRow("in a longer word") << "myTasklancers" << true;
    QTest::newRow("in two words") << "Task lancer" << false;
    QTest::newRow("by its other name only") << "Drask" << false;
}

void tst_Lightwave::menuThatMentionsThePluginStays()
{
    QFETCH(QString, mention);
    const QString options = "x\r\nMenuEntry 1 Options \r\n";

    QTEST(withLightwaveMenuEntry(options + mention).isNull(), "stays");
    QTEST(withLightwaveMenuEntry(mention + options).isNull(), "stays");
}

void tst_Lightwave::changedMenuIsNotChangedAgain()
{
    const QString underOptions = withLightwaveMenuEntry("x\r\nMenuEntry 1 Options \r\n");
    QVERIFY(!underOptions.isNull());
    QVERIFY(withLightwaveMenuEntry(underOptions).isNull());

    const QString inGroup = withLightwaveMenuEntry("x\r\nMenuEntry 131072 1 _\r\n");
    QVERIFY(!inGroup.isNull());
    QVERIFY(withLightwaveMenuEntry(inGroup).isNull());
}

void tst_Lightwave::lettersThatGrowInLowerCaseShiftThePlace()
{
    // A capital I with a dot becomes two characters, and places are sought in the lower-case text.
    const QString dotted = QString::fromUtf8("\xc4\xb0");

    QCOMPARE(withLightwaveMenuEntry(dotted + "\r\nMenuEntry 1 Options \r\nabc\r\n"),
             dotted + "\r\nMenuEntry 1 Options \r\na" + entry + "bc\r\n");
    QCOMPARE(withLightwaveMenuEntry(dotted + "\r\nMenuEntry 131072 1 _\r\nabc\r\n"),
             dotted + "\r\nMenuEntry 131072 1 _" + defaultLightwaveMenu() + "bc\r\n");
}

DRASK_TEST(tst_Lightwave)
#include "tst_lightwave.moc"
