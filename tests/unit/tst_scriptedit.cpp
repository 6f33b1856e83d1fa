// SPDX-License-Identifier: MIT
#include "installer/scriptedit.h"
#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"

#include <QtTest>

#include <csignal>
#include <sys/resource.h>

namespace {

constexpr QIODevice::OpenMode rewriting = QIODevice::WriteOnly | QIODevice::Text;
constexpr QIODevice::OpenMode appending = QIODevice::WriteOnly | QIODevice::Append
    | QIODevice::Text;

QString unchanged(const QString &line)
{
    return line;
}

int writeText(QString text, const QString &path, QIODevice::OpenMode mode = rewriting)
{
    QTextStream source(&text);
    return writeLines(source, path, mode, unchanged);
}

/// Sets how large a file may grow; a write beyond it fails as on a full disk.
void limitFileSize(rlim_t bytes)
{
    rlimit limit = {};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = qMin(bytes, limit.rlim_max);
    setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace

class tst_ScriptEdit : public QObject {
    Q_OBJECT

private slots:
    void oldLineCountsOnlyWithTheMarker_data();
    void oldLineCountsOnlyWithTheMarker();
    void everyLineIsChangedAndEndsWithALineFeed();
    void everyLineIsOnTheDiskBeforeTheNextIsChanged();
    void lineEndsOfTheSourceFallAway_data();
    void lineEndsOfTheSourceFallAway();
    void textOutsideAsciiIsWrittenAsUtf8WithoutMark();
    void sourceWithoutLinesLeavesTheFileAlone();
    void sourceWithoutLinesMakesNoFile();
    void rewritingDropsTheOldContent();
    void appendingKeepsTheOldContent();
    void fileThatCannotBeOpenedStopsAtTheFirstLine();
    void missingParentFolderIsNamedAsTheReason();
    void lineThatMetAFullDiskDoesNotSilenceTheRest();
    void oldLineIsReplacedWhereverItStands();
    void equalOldLineWritesNothing();
    void oldLineInAFileThatCannotBeOpened();
    void textIsAppendedBehindWhatIsThere_data();
    void textIsAppendedBehindWhatIsThere();
    void textIsAppendedToAFileThatIsMissing();
    void textForAFolderFailsSilently();
    void textForAFileInAMissingFolderFailsSilently();
    void textForAFileThatMayNotBeReadFailsSilently();
};

void tst_ScriptEdit::oldLineCountsOnlyWithTheMarker_data()
{
    QTest::addColumn<bool>("markerSeen");
    QTest::addColumn<QString>("oldLine");
    QTest::addColumn<bool>("expected");

    QTest::newRow("neither marker nor line") << false << "" << false;
    QTest::newRow("a line without a marker") << false << "a" << false;
    QTest::newRow("a marker without a line") << true << "" << false;
    QTest::newRow("a marker and a line") << true << "a" << true;
}

void tst_ScriptEdit::oldLineCountsOnlyWithTheMarker()
{
    QFETCH(bool, markerSeen);
    QFETCH(QString, oldLine);

    ScriptScan scan;
    QVERIFY(!scan.hasOldLine());
    scan.markerSeen = markerSeen;
    scan.oldLine = oldLine;

    QTEST(scan.hasOldLine(), "expected");
}

void tst_ScriptEdit::everyLineIsChangedAndEndsWithALineFeed()
{
    const test::Sandbox sandbox;
    QString text = "one\ntwo\n\nthree";
    QTextStream source(&text);

    const int result = writeLines(source, sandbox.path("script"), rewriting,
                                  [](const QString &line) { return '<' + line + '>'; });

    QCOMPARE(result, 0);
    QCOMPARE(sandbox.read("script"), QByteArray("<one>\n<two>\n<>\n<three>\n"));
}

void tst_ScriptEdit::everyLineIsOnTheDiskBeforeTheNextIsChanged()
{
    const test::Sandbox sandbox;
    QString text = "one\ntwo\nthree";
    QTextStream source(&text);
    QByteArrayList contents;

    const int result = writeLines(source, sandbox.path("script"), rewriting,
                                  [&sandbox, &contents](const QString &line) {
                                      contents << sandbox.read("script");
                                      return line;
                                  });

    QCOMPARE(result, 0);
    QCOMPARE(contents, QByteArrayList({"", "one\n", "one\ntwo\n"}));
}

void tst_ScriptEdit::lineEndsOfTheSourceFallAway_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("written");

    QTest::newRow("line feeds") << "a\nb\n" << QByteArray("a\nb\n");
    QTest::newRow("carriage returns before line feeds") << "a\r\nb\r\n" << QByteArray("a\nb\n");
    QTest::newRow("no line end at the end") << "a\nb" << QByteArray("a\nb\n");
    QTest::newRow("one empty line") << "\n" << QByteArray("\n");
    QTest::newRow("a carriage return inside a line") << "a\rb\n" << QByteArray("a\rb\n");
    QTest::newRow("two carriage returns at the end") << "a\r\r\n" << QByteArray("a\r\n");
}

void tst_ScriptEdit::lineEndsOfTheSourceFallAway()
{
    QFETCH(QString, text);
    const test::Sandbox sandbox;

    QCOMPARE(writeText(text, sandbox.path("script")), 0);
    QTEST(sandbox.read("script"), "written");
}

void tst_ScriptEdit::textOutsideAsciiIsWrittenAsUtf8WithoutMark()
{
    const test::Sandbox sandbox;

    QCOMPARE(writeText(QString::fromUtf8("höme \xe6\xbc\xa2\n"), sandbox.path("script")), 0);
    QCOMPARE(sandbox.read("script"), QByteArray("h\xc3\xb6me \xe6\xbc\xa2\n"));
}

void tst_ScriptEdit::sourceWithoutLinesLeavesTheFileAlone()
{
    const test::Sandbox sandbox;
    sandbox.write("script", "old\n");
    sandbox.age("script");

    QCOMPARE(writeText("", sandbox.path("script")), 0);
    QCOMPARE(sandbox.read("script"), QByteArray("old\n"));
    QVERIFY(sandbox.isAged("script"));
}

void tst_ScriptEdit::sourceWithoutLinesMakesNoFile()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;

    QCOMPARE(writeText("", sandbox.path("script")), 0);
    QCOMPARE(writeText("", sandbox.path("missing/script")), 0);
    QCOMPARE(test::treeDifference(sandbox.tree(), {}), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_ScriptEdit::rewritingDropsTheOldContent()
{
    const test::Sandbox sandbox;
    sandbox.write("script", "a longer old content\n");

    QCOMPARE(writeText("new\n", sandbox.path("script")), 0);
    QCOMPARE(sandbox.read("script"), QByteArray("new\n"));
}

void tst_ScriptEdit::appendingKeepsTheOldContent()
{
    const test::Sandbox sandbox;
    sandbox.write("script", "old\r\nwithout an end");

    QCOMPARE(writeText("new\n", sandbox.path("script"), appending), 0);
    QCOMPARE(sandbox.read("script"), QByteArray("old\r\nwithout an endnew\n"));
}

void tst_ScriptEdit::fileThatCannotBeOpenedStopsAtTheFirstLine()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("script");
    QString text = "one\ntwo\n";
    QTextStream source(&text);
    int linesChanged = 0;
    const test::LogCapture log;

    const int result = writeLines(source, sandbox.path("script"), rewriting,
                                  [&linesChanged](const QString &line) {
                                      ++linesChanged;
                                      return line;
                                  });

    QCOMPARE(result, 1);
    QCOMPARE(linesChanged, 0);
    QCOMPARE(source.readLine(), QString("two"));
    QCOMPARE(log.lines(), QStringList("Debug: Could not open target file \"Is a directory\""));
}

void tst_ScriptEdit::missingParentFolderIsNamedAsTheReason()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;

    QCOMPARE(writeText("one\n", sandbox.path("missing/script"), appending), 1);
    QCOMPARE(log.lines(),
             QStringList("Debug: Could not open target file \"No such file or directory\""));
    QCOMPARE(test::treeDifference(sandbox.tree(), {}), QString());
}

void tst_ScriptEdit::lineThatMetAFullDiskDoesNotSilenceTheRest()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;
    std::signal(SIGXFSZ, SIG_IGN);
    QString text = "one\ntwo\nthree\nfour\n";
    QTextStream source(&text);

    const int result = writeLines(source, sandbox.path("script"), rewriting,
                                  [](const QString &line) {
                                      limitFileSize(line == "two" ? 4 : RLIM_INFINITY);
                                      return line;
                                  });
    limitFileSize(RLIM_INFINITY);

    QCOMPARE(result, 0);
    QCOMPARE(sandbox.read("script").right(11), QByteArray("three\nfour\n"));
    QCOMPARE(log.lines(), QStringList());
}

void tst_ScriptEdit::oldLineIsReplacedWhereverItStands()
{
    const test::Sandbox sandbox;
    ScriptScan scan;
    scan.content = "first\r\nold\r\n# old, old and Old\r\nlast\r\n";
    scan.markerSeen = true;
    scan.oldLine = "old";

    QCOMPARE(replaceOldLine(sandbox.path("script"), scan, "older"), 0);
    QCOMPARE(sandbox.read("script"), QByteArray("first\nolder\n# older, older and Old\nlast\n"));
}

void tst_ScriptEdit::equalOldLineWritesNothing()
{
    const test::Sandbox sandbox;
    sandbox.write("script", "something else\n");
    sandbox.age("script");
    ScriptScan scan;
    scan.content = "same\r\n";
    scan.oldLine = "same";

    QCOMPARE(replaceOldLine(sandbox.path("script"), scan, "same"), 0);
    QCOMPARE(replaceOldLine(sandbox.path("missing/script"), scan, "same"), 0);
    QCOMPARE(sandbox.read("script"), QByteArray("something else\n"));
    QVERIFY(sandbox.isAged("script"));
}

void tst_ScriptEdit::oldLineInAFileThatCannotBeOpened()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("script");
    ScriptScan scan;
    scan.content = "old\r\n";
    scan.oldLine = "old";
    const test::LogCapture log;

    QCOMPARE(replaceOldLine(sandbox.path("script"), scan, "new"), 1);
    QCOMPARE(log.lines(), QStringList("Debug: Could not open target file \"Is a directory\""));
}

void tst_ScriptEdit::textIsAppendedBehindWhatIsThere_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("an empty file") << QByteArray("");
    QTest::newRow("a line with its end") << QByteArray("old\n");
    QTest::newRow("a line without its end") << QByteArray("old");
    QTest::newRow("carriage returns") << QByteArray("a\r\nb\r\n\r");
    QTest::newRow("a byte-order mark") << QByteArray("\xef\xbb\xbfold\n");
    QTest::newRow("bytes that are no UTF-8") << QByteArray("\xff\xfe\x00\x80\n", 5);
}

void tst_ScriptEdit::textIsAppendedBehindWhatIsThere()
{
    QFETCH(QByteArray, content);
    const test::Sandbox sandbox;
    sandbox.write("script", content);

    QCOMPARE(appendText(sandbox.path("script"), QString::fromUtf8("\nné\n")), 0);
    QCOMPARE(sandbox.read("script"), content + "\nn\xc3\xa9\n");
}

void tst_ScriptEdit::textIsAppendedToAFileThatIsMissing()
{
    const test::Sandbox sandbox;

    QCOMPARE(appendText(sandbox.path("script"), "\nnew\n"), 0);
    QCOMPARE(test::treeDifference(sandbox.tree(), {{"script", "\nnew\n"}}), QString());
}

void tst_ScriptEdit::textForAFolderFailsSilently()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("script");
    const test::LogCapture log;

    QCOMPARE(appendText(sandbox.path("script"), "new\n"), 1);
    QCOMPARE(log.lines(), QStringList());
}

void tst_ScriptEdit::textForAFileInAMissingFolderFailsSilently()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;

    QCOMPARE(appendText(sandbox.path("missing/script"), "new\n"), 1);
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(test::treeDifference(sandbox.tree(), {}), QString());
}

void tst_ScriptEdit::textForAFileThatMayNotBeReadFailsSilently()
{
    const test::Sandbox sandbox;
    sandbox.write("script", "old\n");
    test::giveToOrdinaryUser(sandbox.path("script"));
    QFile::setPermissions(sandbox.path("script"), QFile::WriteOwner);
    const test::LogCapture log;
    int result = -1;
    {
        const test::OrdinaryUser user;
        if (!user.isActive()) {
            QSKIP("the rights of root could not be given up");
        }
        result = appendText(sandbox.path("script"), "new\n");
    }
    QFile::setPermissions(sandbox.path("script"), QFile::ReadOwner | QFile::WriteOwner);

    QCOMPARE(result, 1);
    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(sandbox.read("script"), QByteArray("old\n"));
}

QTEST_GUILESS_MAIN(tst_ScriptEdit)
#include "tst_scriptedit.moc"
