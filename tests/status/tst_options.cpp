// SPDX-License-Identifier: MIT
#include "status/options.h"

#include "sandbox.h"
#include "testprogram.h"

#include <QCoreApplication>
#include <QtTest>

class tst_Options : public QObject {
    Q_OBJECT

private slots:
    void wordsAreUnderstood();
    void defaultsAreKept();
    void folderLosesItsLinks();
    void wrongWordsAreExplained_data();
    void wrongWordsAreExplained();
    void helpIsGiven_data();
    void helpIsGiven();
    void noColourOfTheEnvironmentIsRespected();
};

void tst_Options::wordsAreUnderstood()
{
    const ParsedWords parsed = parseWords({"drask-status", "--json", "report", "--host", "maya",
                                           "--host=modo", "--all", "--no-colour", "--folder", "/"});
    QCOMPARE(parsed.error + parsed.help, QString());
    QCOMPARE(parsed.options.command, QString("report"));
    QCOMPARE(parsed.options.folder, QString("/"));
    QVERIFY(parsed.options.wants("maya") && parsed.options.wants("modo"));
    QVERIFY(!parsed.options.wants("Maya"));
    QCOMPARE(parsed.options.output, Output::Machines);
    QCOMPARE(parsed.options.listing, Listing::All);
    QCOMPARE(parsed.options.colour, Colour::Never);
}

void tst_Options::defaultsAreKept()
{
    qunsetenv("NO_COLOR");
    const Options options = parseWords({"drask-status", "report"}).options;
    QCOMPARE(options.folder, QCoreApplication::applicationDirPath());
    QVERIFY(options.wants("anything"));
    QCOMPARE(options.output, Output::People);
    QCOMPARE(options.listing, Listing::First);
    QCOMPARE(options.colour, Colour::IfTerminal);
}

void tst_Options::folderLosesItsLinks()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("tool");
    sandbox.makeLink("tool", "link");
    const auto folderOf = [](const QString &folder) {
        return parseWords({"drask-status", "report", "--folder", folder}).options.folder;
    };
    QCOMPARE(folderOf(sandbox.path("link/")), sandbox.path("tool"));
    QCOMPARE(folderOf(sandbox.path("none/../other/")), sandbox.path("other"));
}

void tst_Options::wrongWordsAreExplained_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("explanation");
    QTest::newRow("no command") << QStringList() << "A command is missing.";
    QTest::newRow("unknown command") << QStringList{"repot"} << "There is no command \"repot\".";
    QTest::newRow("another word") << QStringList{"report", "now"}
                                  << "\"now\" is one word too many.";
    QTest::newRow("unknown option") << QStringList{"report", "--jsn"} << "Unknown option 'jsn'.";
    QTest::newRow("mode of another command")
        << QStringList{"report", "--mode", "reinstall"} << "Unknown option 'mode'.";
    QTest::newRow("folder without a name")
        << QStringList{"report", "--folder", ""} << "--folder needs the name of a folder.";
}

void tst_Options::wrongWordsAreExplained()
{
    QFETCH(QStringList, words);
    QFETCH(QString, explanation);
    const ParsedWords parsed = parseWords(QStringList("drask-status") + words);
    QCOMPARE(parsed.error, explanation + "\nTry \"drask-status --help\".\n");
    QCOMPARE(parsed.help, QString());
}

void tst_Options::helpIsGiven_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("part");
    QTest::newRow("of the program") << QStringList{"--help"} << "Commands:";
    QTest::newRow("in short") << QStringList{"-h"} << "Commands:";
    QTest::newRow("of a command") << QStringList{"report", "--help"} << "What did the last run";
    QTest::newRow("version") << QStringList{"--version"} << "drask-status 2.";
}

void tst_Options::helpIsGiven()
{
    QFETCH(QStringList, words);
    QFETCH(QString, part);
    const ParsedWords parsed = parseWords(QStringList("drask-status") + words);
    QVERIFY2(parsed.help.contains(part), qPrintable(parsed.help));
    QCOMPARE(parsed.error, QString());
}

void tst_Options::noColourOfTheEnvironmentIsRespected()
{
    qputenv("NO_COLOR", "1");
    QCOMPARE(parseWords({"drask-status", "report"}).options.colour, Colour::Never);
    qputenv("NO_COLOR", "");
    QCOMPARE(parseWords({"drask-status", "report"}).options.colour, Colour::IfTerminal);
    qunsetenv("NO_COLOR");
}

DRASK_TEST(tst_Options)
#include "tst_options.moc"
