// SPDX-License-Identifier: MIT
#include "installer/scriptedit.h"
#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QtTest>

class tst_ScriptEdit : public QObject {
    Q_OBJECT

private slots:
    void everyLineIsChangedAndEndsWithALineFeed();
    void lineEndsFallAway_data();
    void lineEndsFallAway();
    void oldLineIsReplacedWhereverItStands();
    void equalOldLineIsLeft();
    void rewritingDropsTheOldContent();
    void textOutsideAsciiIsWrittenAsUtf8WithoutMark();
    void rewritingAFolderFailsInTheGivenWords();
    void extendingInAMissingFolderNamesTheReason();
    void textIsAddedBehindWhatIsThere_data();
    void textIsAddedBehindWhatIsThere();
    void textIsAddedToAFileThatIsMissing();
    void textForAFolderFailsSilently();
    void textForAFileInAMissingFolderFailsSilently();
    void textForAFileThatMayNotBeRead();
};

void tst_ScriptEdit::everyLineIsChangedAndEndsWithALineFeed()
{
    const QString edited = editedLines("one\ntwo\n\nthree",
                                       [](const QString &line) { return '<' + line + '>'; });

    QCOMPARE(edited, QString("<one>\n<two>\n<>\n<three>\n"));
}

void tst_ScriptEdit::lineEndsFallAway_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("no lines") << ""
                              << "";
    QTest::newRow("line feeds") << "a\nb\n"
                                << "a\nb\n";
    QTest::newRow("carriage returns before line feeds") << "a\r\nb\r\n"
                                                        << "a\nb\n";
    QTest::newRow("no line end at the end") << "a\nb"
                                            << "a\nb\n";
    QTest::newRow("one empty line") << "\n"
                                    << "\n";
    QTest::newRow("a carriage return inside a line") << "a\rb\n"
                                                     << "a\rb\n";
    QTest::newRow("two carriage returns at the end") << "a\r\r\n"
                                                     << "a\r\n";
}

void tst_ScriptEdit::lineEndsFallAway()
{
    QFETCH(QString, text);

    QTEST(editedLines(text, [](const QString &line) { return line; }), "expected");
}

void tst_ScriptEdit::oldLineIsReplacedWhereverItStands()
{
    const ScriptEdit edit = lineUpdate("first\nold\n# old, old and Old\nlast\n", "old", "older");

    QCOMPARE(int(edit.kind), int(ScriptEdit::Kind::Rewrite));
    QCOMPARE(edit.text, QString("first\nolder\n# older, older and Old\nlast\n"));
}

void tst_ScriptEdit::equalOldLineIsLeft()
{
    const ScriptEdit edit = lineUpdate("same\n", "same", "same");

    QCOMPARE(int(edit.kind), int(ScriptEdit::Kind::Leave));
}

void tst_ScriptEdit::rewritingDropsTheOldContent()
{
    const test::Sandbox sandbox;
    sandbox.write("script", "a longer old content\n");

    QCOMPARE(rewriteScript(sandbox.path("script"), "new\n"), 0);
    QCOMPARE(test::treeDifference(sandbox.tree(), {{"script", "new\n"}}), QString());
}

void tst_ScriptEdit::textOutsideAsciiIsWrittenAsUtf8WithoutMark()
{
    const test::Sandbox sandbox;

    QCOMPARE(rewriteScript(sandbox.path("script"), QString::fromUtf8("höme \xe6\xbc\xa2\n")), 0);
    QCOMPARE(sandbox.read("script"), QByteArray("h\xc3\xb6me \xe6\xbc\xa2\n"));
}

void tst_ScriptEdit::rewritingAFolderFailsInTheGivenWords()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("script");
    const test::LogCapture log;

    QCOMPARE(rewriteScript(sandbox.path("script"), "one\n"), 1);
    QCOMPARE(rewriteScript(sandbox.path("script"), "one\n", "Not this one"), 1);
    QCOMPARE(log.lines(),
             QStringList({"Debug: Could not open target file \"Is a directory\"",
                          "Debug: Not this one \"Is a directory\""}));
}

void tst_ScriptEdit::extendingInAMissingFolderNamesTheReason()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;

    QCOMPARE(extendScript(sandbox.path("missing/script"), "one\n"), 1);
    QCOMPARE(log.lines(),
             QStringList("Debug: Could not open target file \"No such file or directory\""));
    QCOMPARE(test::treeDifference(sandbox.tree(), {}), QString());
}

void tst_ScriptEdit::textIsAddedBehindWhatIsThere_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("an empty file") << QByteArray("");
    QTest::newRow("a line with its end") << QByteArray("old\n");
    QTest::newRow("a line without its end") << QByteArray("old");
    QTest::newRow("carriage returns") << QByteArray("a\r\nb\r\n\r");
    QTest::newRow("a byte-order mark") << QByteArray("\xef\xbb\xbfold\n");
    QTest::newRow("bytes that are no UTF-8") << QByteArray("\xff\xfe\x00\x80\n", 5);
}

void tst_ScriptEdit::textIsAddedBehindWhatIsThere()
{
    QFETCH(QByteArray, content);
    const test::Sandbox sandbox;
    sandbox.write("script", content);

    QCOMPARE(extendScript(sandbox.path("script"), QString::fromUtf8("\nné\n")), 0);
    QCOMPARE(sandbox.read("script"), content + "\nn\xc3\xa9\n");
    QCOMPARE(extendReadableScript(sandbox.path("script"), "again\n"), 0);
    QCOMPARE(sandbox.read("script"), content + "\nn\xc3\xa9\nagain\n");
}

void tst_ScriptEdit::textIsAddedToAFileThatIsMissing()
{
    const test::Sandbox sandbox;

    QCOMPARE(extendScript(sandbox.path("one"), "\nnew\n"), 0);
    QCOMPARE(extendReadableScript(sandbox.path("two"), "\nnew\n"), 0);
    QCOMPARE(test::treeDifference(sandbox.tree(), {{"one", "\nnew\n"}, {"two", "\nnew\n"}}),
             QString());
}

void tst_ScriptEdit::textForAFolderFailsSilently()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("script");
    const test::LogCapture log;

    QCOMPARE(extendReadableScript(sandbox.path("script"), "new\n"), 1);
    QCOMPARE(log.lines(), QStringList());
}

void tst_ScriptEdit::textForAFileInAMissingFolderFailsSilently()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;

    QCOMPARE(extendReadableScript(sandbox.path("missing/script"), "new\n"), 1);
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(test::treeDifference(sandbox.tree(), {}), QString());
}

void tst_ScriptEdit::textForAFileThatMayNotBeRead()
{
    const test::Sandbox sandbox;
    sandbox.write("script", "old\n");
    test::giveToOrdinaryUser(sandbox.path("script"));
    QFile::setPermissions(sandbox.path("script"), QFile::WriteOwner);
    const test::LogCapture log;
    int needsReading = -1;
    int needsNone = -1;
    {
        BECOME_ORDINARY_USER_OR_SKIP();
        needsReading = extendReadableScript(sandbox.path("script"), "new\n");
        needsNone = extendScript(sandbox.path("script"), "newer\n");
    }
    QFile::setPermissions(sandbox.path("script"), QFile::ReadOwner | QFile::WriteOwner);

    QCOMPARE(needsReading, 1);
    QCOMPARE(needsNone, 0);
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(sandbox.read("script"), QByteArray("old\nnewer\n"));
}

DRASK_TEST(tst_ScriptEdit)
#include "tst_scriptedit.moc"
