// SPDX-License-Identifier: MIT
#include "status/tableoutput.h"

#include "status/answer.h"
#include "testprogram.h"

#include <QtTest>

namespace {

Answer sample()
{
    Answer answer;
    answer.command = "verify";
    answer.folder = "/tool";
    HostAnswer whole;
    whole.key = "modo";
    whole.target = "/Users/ann/modo/Scripts/drask";
    whole.state = State::Whole;
    whole.installed = 7;
    whole.wanted = 7;
    HostAnswer damaged;
    damaged.key = "maya";
    damaged.target = "/a/very/long/way/to/the/folder/of/a/host/that/nobody/would/ever/type/drask";
    damaged.state = State::Damaged;
    damaged.wanted = 41;
    for (int number = 1; number <= 12; ++number) {
        damaged.problems.append({Kind::FileMissing, damaged.target + "/f" + QString::number(number),
                                 "The file is missing."});
    }
    answer.hosts = {whole, damaged};
    return answer;
}

} // namespace

class tst_TableOutput : public QObject {
    Q_OBJECT

private slots:
    void answerIsAligned();
    void allIsListedWhenWanted();
    void statesAreColouredWhenWanted();
    void noHostsAreSaid();
};

void tst_TableOutput::answerIsAligned()
{
    const QString text = toText(sample(), Listing::First, Paint::Plain);
    const QString expected =
        QString::fromUtf8(
            "verify: /tool\n"
            "1 whole, 1 damaged\n"
            "\n"
            "HOST  VERSION  STATE    FOLDER\n"
            "modo  7        whole    /Users/ann/modo/Scripts/drask\n"
            "maya  - -> 41  damaged  …/the/folder/of/a/host/that/nobody/would/ever/type/drask\n"
            "\n"
            "maya  ")
        + sample().hosts.last().target + "\n"
        + QString::fromUtf8("  The file is missing (12):\n"
                            "    f1\n    f2\n    f3\n    f4\n    f5\n"
                            "    f6\n    f7\n    f8\n    f9\n    f10\n"
                            "    … and 2 more (--all lists them)\n");
    QCOMPARE(text, expected);
}

void tst_TableOutput::allIsListedWhenWanted()
{
    const QString text = toText(sample(), Listing::All, Paint::Plain);
    QVERIFY(text.contains("    f12\n"));
    QVERIFY(!text.contains("more"));
}

void tst_TableOutput::statesAreColouredWhenWanted()
{
    const QString text = toText(sample(), Listing::First, Paint::Coloured);
    QVERIFY(text.contains("\033[32mwhole  \033[0m"));
    QVERIFY(text.contains("\033[31mdamaged\033[0m"));
    QVERIFY(!toText(sample(), Listing::First, Paint::Plain).contains("\033"));
}

void tst_TableOutput::noHostsAreSaid()
{
    Answer answer;
    answer.command = "report";
    answer.folder = "/tool";
    answer.problems.append({Kind::LogMissing, "/tool/plugin.log", "There is no log."});
    QCOMPARE(toText(answer, Listing::First, Paint::Plain),
             QString::fromUtf8("report: /tool\nno hosts\n  There is no log: plugin.log\n"));
}

DRASK_TEST(tst_TableOutput)
#include "tst_tableoutput.moc"
