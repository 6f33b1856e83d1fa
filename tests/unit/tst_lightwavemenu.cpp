// SPDX-License-Identifier: MIT
#include "installer/lightwave.h"

#include <QRegularExpression>
#include <QSet>
#include <QtTest>

namespace {

constexpr int lineCount = 811;
constexpr int characterCount = 25850;

const QString pluginEntry = "MenuEntry 2 . Generic_Drask Tasklancer";

/// The fields of one line: "MenuEntry", kind, label, command.
struct Entry {
    QString line;
    int kind = -1;
    QString label;
    QString command;
};

QStringList menuLines()
{
    QStringList lines = defaultLightwaveMenu().split("\r\n");
    lines.removeLast();
    return lines;
}

/// The entries of the kinds \a first to \a last; lines that are no entries have the kind -1.
QList<Entry> entriesOfKinds(int first, int last)
{
    const QRegularExpression grammar(
        "^MenuEntry ([0-9]+) ([A-Za-z0-9-]+|\"[^\"]+\"|\\.) ([A-Za-z0-9_]*(?: [A-Za-z]+)?)$");
    QList<Entry> entries;
    for (const QString &line : menuLines()) {
        const QRegularExpressionMatch match = grammar.match(line);
        const Entry entry = {line, match.hasMatch() ? match.captured(1).toInt() : -1,
                             match.captured(2), match.captured(3)};
        if (entry.kind >= first && entry.kind <= last) {
            entries << entry;
        }
    }
    return entries;
}

QString lineNumber(int number)
{
    return menuLines().at(number - 1);
}

} // namespace

/// The default menu is data that LightWave reads: its size and its fixed lines are a contract.
class tst_LightwaveMenu : public QObject {
    Q_OBJECT

private slots:
    void sizeIsFixed();
    void everyLineEndsInCarriageReturnAndLineFeed();
    void allCharactersArePrintableAscii();
    void everyLineIsAnEntry();
    void everyKindIsUsed_data();
    void everyKindIsUsed();
    void separatorsAndDividersHaveNeitherLabelNorCommand();
    void subMenusHaveATitleAndNoCommand();
    void commandsWithoutALabelHaveAFullStop();
    void commandsWithALabelHaveBoth();
    void groupsHaveTheirOwnNames();
    void wordsStandWithoutQuotes();
    void fixedLinesStand_data();
    void fixedLinesStand();
    void pluginEntryStandsTwice();
    void commandLinesHardlyRecur();
};

void tst_LightwaveMenu::sizeIsFixed()
{
    const QString menu = defaultLightwaveMenu();

    QCOMPARE(menu.size(), characterCount);
    QCOMPARE(menuLines().size(), lineCount);
    QCOMPARE(defaultLightwaveMenu(), menu);
}

void tst_LightwaveMenu::everyLineEndsInCarriageReturnAndLineFeed()
{
    const QString menu = defaultLightwaveMenu();

    QCOMPARE(menu.count("\r\n"), lineCount);
    QCOMPARE(menu.count('\n'), lineCount);
    QCOMPARE(menu.count('\r'), lineCount);
    QVERIFY(menu.endsWith("\r\n"));
}

void tst_LightwaveMenu::allCharactersArePrintableAscii()
{
    for (const QString &line : menuLines()) {
        for (const QChar character : line) {
            QVERIFY2(character >= ' ' && character <= '~', qPrintable(line));
        }
    }
}

void tst_LightwaveMenu::everyLineIsAnEntry()
{
    const QList<Entry> others = entriesOfKinds(-1, -1);

    QCOMPARE(others.isEmpty() ? QString() : others.first().line, QString());
    QCOMPARE(entriesOfKinds(0, 131072).size(), lineCount);
}

void tst_LightwaveMenu::everyKindIsUsed_data()
{
    QTest::addColumn<int>("kind");

    for (const int kind : {0, 1, 2, 3, 4, 65546, 65547, 65556, 65557, 65558, 131072}) {
        QTest::newRow(qPrintable(QString("kind %1").arg(kind))) << kind;
    }
}

void tst_LightwaveMenu::everyKindIsUsed()
{
    QFETCH(int, kind);

    QVERIFY(!entriesOfKinds(kind, kind).isEmpty());
}

void tst_LightwaveMenu::separatorsAndDividersHaveNeitherLabelNorCommand()
{
    for (const Entry &entry : entriesOfKinds(0, 0) + entriesOfKinds(4, 4)) {
        QVERIFY2(entry.label == "." && entry.command.isEmpty(), qPrintable(entry.line));
    }
}

void tst_LightwaveMenu::subMenusHaveATitleAndNoCommand()
{
    for (const Entry &entry : entriesOfKinds(1, 1)) {
        QVERIFY2(entry.label != "." && entry.command.isEmpty(), qPrintable(entry.line));
    }
}

void tst_LightwaveMenu::commandsWithoutALabelHaveAFullStop()
{
    for (const Entry &entry : entriesOfKinds(2, 2)) {
        QVERIFY2(entry.label == "." && entry.command.at(0).isLetter(), qPrintable(entry.line));
        // Only the plug-in's own command has a blank in its name.
        QVERIFY2(!entry.command.contains(' ') || entry.line == pluginEntry, qPrintable(entry.line));
    }
}

void tst_LightwaveMenu::commandsWithALabelHaveBoth()
{
    for (const Entry &entry : entriesOfKinds(3, 3)) {
        QVERIFY2(entry.label != "." && entry.command.at(0).isLetter(), qPrintable(entry.line));
        QVERIFY2(!entry.command.contains(' '), qPrintable(entry.line));
    }
}

void tst_LightwaveMenu::groupsHaveTheirOwnNames()
{
    const QMap<int, QString> names = {{65546, "\"Main Menu\""},
                                      {65547, "\"Top Group\""},
                                      {65556, "\"Left Mouse Button Menu\""},
                                      {65557, "\"Middle Mouse Button Menu\""},
                                      {65558, "\"Right Mouse Button Menu\""},
                                      {131072, "1"}};
    for (const Entry &entry : entriesOfKinds(5, 131072)) {
        QVERIFY2(names.value(entry.kind) == entry.label, qPrintable(entry.line));
        QVERIFY2(entry.command == "_" || entry.line == "MenuEntry 131072 1 GraphEditor",
                 qPrintable(entry.line));
    }
}

void tst_LightwaveMenu::wordsStandWithoutQuotes()
{
    for (const Entry &entry : entriesOfKinds(0, 131072)) {
        QVERIFY2(!entry.label.startsWith('"') || entry.label.contains(' '), qPrintable(entry.line));
    }
}

void tst_LightwaveMenu::fixedLinesStand_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("line");

    const auto addLine = [](int number, const QString &line) {
        QTest::newRow(qPrintable(QString("line %1").arg(number))) << number << line;
    };
    addLine(1, "MenuEntry 131072 1 GraphEditor");
    addLine(2, "MenuEntry 65547 \"Top Group\" _");
    addLine(3, "MenuEntry 1 File ");
    addLine(4, "MenuEntry 1 Load ");
    addLine(5, "MenuEntry 2 . LoadScene");
    addLine(411, "MenuEntry 1 Render ");
    addLine(412, "MenuEntry 1 Options ");
    addLine(413, pluginEntry);
    addLine(414, "MenuEntry 2 . RenderOptions");
    addLine(728, "MenuEntry 2 . Generic_worklights");
    addLine(729, pluginEntry);
    addLine(730, "MenuEntry 0 . ");
    addLine(806, "MenuEntry 2 . GeneralOptions");
    addLine(807, "MenuEntry 2 . DisplayOptions");
    addLine(808, "MenuEntry 2 . OpenGLOptions");
    addLine(809, "MenuEntry 2 . DefaultsOptions");
    addLine(810, "MenuEntry 2 . PathsOptions");
    addLine(811, "MenuEntry 2 . ColorSpaceOptions");
}

void tst_LightwaveMenu::fixedLinesStand()
{
    QFETCH(int, number);

    QTEST(lineNumber(number), "line");
}

void tst_LightwaveMenu::pluginEntryStandsTwice()
{
    QCOMPARE(menuLines().count(pluginEntry), 2);
    QCOMPARE(defaultLightwaveMenu().count("tasklancer", Qt::CaseInsensitive), 2);
    // Above its second place are nothing but commands of the same family.
    for (int number = 728; lineNumber(number) != "MenuEntry 1 Utilities "; --number) {
        QVERIFY2(lineNumber(number).contains(" Generic_"), qPrintable(lineNumber(number)));
    }
}

void tst_LightwaveMenu::commandLinesHardlyRecur()
{
    QSet<QString> seen;
    int recurring = 0;
    const QList<Entry> commands = entriesOfKinds(2, 3);
    for (const Entry &entry : commands) {
        recurring += seen.contains(entry.line) ? 1 : 0;
        seen.insert(entry.line);
    }

    // What a mouse-button menu offers is in the main menus too; a twentieth is enough for that.
    QVERIFY2(recurring * 20 <= commands.size(), qPrintable(QString::number(recurring)));
    QVERIFY(commands.size() > lineCount / 2);
}

QTEST_GUILESS_MAIN(tst_LightwaveMenu)
#include "tst_lightwavemenu.moc"
