// SPDX-License-Identifier: MIT
#include "installer/lightwave.h"
#include "unitcase.h"

#include <QRegularExpression>

namespace {

constexpr int lineCount = 811;

const QString pluginEntry = "MenuEntry 2 . Generic_Drask Tasklancer";

// clang-format off
/// A line of each kind, after "MenuEntry ". A label is a word, or several in quotes.
#define LABEL "([A-Za-z0-9-]+|\"[^\" ]+ [^\"]+\") "
#define COMMAND "[A-Za-z][A-Za-z0-9_]*"
constexpr const char *kinds[] = {
    "0 \\. ", // separator
    "1 " LABEL, // title of a sub-menu
    "2 \\. (" COMMAND "|Generic_Drask Tasklancer)",
    "3 " LABEL COMMAND,
    "4 \\. ", // divider
    "65546 \"Main Menu\" _",
    "65547 \"Top Group\" _",
    "65556 \"Left Mouse Button Menu\" _",
    "65557 \"Middle Mouse Button Menu\" _",
    "65558 \"Right Mouse Button Menu\" _",
    "131072 1 (_|GraphEditor)",
};
// clang-format on

QStringList menuLines()
{
    QStringList lines = defaultLightwaveMenu().split("\r\n");
    lines.removeLast();
    return lines;
}

} // namespace

/// The default menu is data that LightWave reads: its size and its fixed lines are a contract.
class tst_LightwaveMenu : public QObject {
    Q_OBJECT
private slots:
    void sizeIsFixed()
    {
        const QString menu = defaultLightwaveMenu();
        QCOMPARE(menu.size(), 25850);
        QCOMPARE(menuLines().size(), lineCount);
        QCOMPARE(defaultLightwaveMenu(), menu);
    }

    void everyLineEndsInCarriageReturnAndLineFeed()
    {
        const QString menu = defaultLightwaveMenu();
        QCOMPARE(menu.count("\r\n"), lineCount);
        QCOMPARE(menu.count('\n'), lineCount);
        QCOMPARE(menu.count('\r'), lineCount);
        QVERIFY(menu.endsWith("\r\n"));
    }

    void everyLineIsOfAKnownKind()
    {
        QStringList others = menuLines();
        for (const char *kind : kinds) {
            const QRegularExpression line(QString("^MenuEntry (%1)$").arg(kind));
            QVERIFY2(!others.filter(line).isEmpty(), kind);
            others = others.filter(QRegularExpression(QString("^(?!MenuEntry (%1)$)").arg(kind)));
        }
        QCOMPARE(others, QStringList());
    }

    void fixedLinesStand_data()
    {
        const test::Table<int, QString> table("number", "line");
        const auto addLine = [&table](int number, const QString &line) {
            table.row(qPrintable(QString("line %1").arg(number)), number, line);
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

    void fixedLinesStand()
    {
        QFETCH(int, number);
        QTEST(menuLines().at(number - 1), "line");
    }

    void pluginEntryStandsTwice()
    {
        const QStringList lines = menuLines();
        QCOMPARE(lines.count(pluginEntry), 2);
        QCOMPARE(defaultLightwaveMenu().count("tasklancer", Qt::CaseInsensitive), 2);
        // Above its second place are nothing but commands of the same family.
        for (int index = 727; lines.at(index) != "MenuEntry 1 Utilities "; --index) {
            QVERIFY2(lines.at(index).contains(" Generic_"), qPrintable(lines.at(index)));
        }
    }

    void commandLinesHardlyRecur()
    {
        QStringList commands = menuLines().filter(QRegularExpression("^MenuEntry [23] "));
        const auto count = commands.size();
        // What a mouse-button menu offers is in the main menus too; a twentieth is enough for that.
        QVERIFY(commands.removeDuplicates() * 20 <= count);
        QVERIFY(count > lineCount / 2);
    }
};

DRASK_TEST(tst_LightwaveMenu)
#include "tst_lightwavemenu.moc"
