// SPDX-License-Identifier: MIT
#include "installer/scriptedit.h"
#include "loggedsandbox.h"
#include "unitcase.h"

class tst_ScriptEdit : public QObject {
    Q_OBJECT
private slots:
    void everyLineIsChangedAndEndsWithALineFeed()
    {
        const QString edited = editedLines("one\ntwo\n\nthree",
                                           [](const QString &line) { return '<' + line + '>'; });
        QCOMPARE(edited, QString("<one>\n<two>\n<>\n<three>\n"));
    }

    void lineEndsFallAway_data()
    {
        const test::Table<QString, QString> table("text", "expected");
        table.row("no lines", "", "");
        table.row("line feeds", "a\nb\n", "a\nb\n");
        table.row("carriage returns before line feeds", "a\r\nb\r\n", "a\nb\n");
        table.row("no line end at the end", "a\nb", "a\nb\n");
        table.row("one empty line", "\n", "\n");
        table.row("a carriage return inside a line", "a\rb\n", "a\rb\n");
        table.row("two carriage returns at the end", "a\r\r\n", "a\r\n");
    }

    void lineEndsFallAway()
    {
        QFETCH(QString, text);
        QTEST(editedLines(text, [](const QString &line) { return line; }), "expected");
    }

    void oldLineIsReplacedWhereverItStands()
    {
        const ScriptEdit edit = lineUpdate("first\nold\n# old, old and Old\nlast\n", "old",
                                           "older");
        QCOMPARE(int(edit.kind), int(ScriptEdit::Kind::Rewrite));
        QCOMPARE(edit.text, QString("first\nolder\n# older, older and Old\nlast\n"));
    }

    void equalOldLineIsLeft()
    {
        const ScriptEdit edit = lineUpdate("same\n", "same", "same");
        QCOMPARE(int(edit.kind), int(ScriptEdit::Kind::Leave));
    }

    void rewritingLeavesTheNewTextInUtf8WithoutMark()
    {
        const test::Sandbox sandbox;
        sandbox.write("script", "a longer old content\n");
        const QString text = QString::fromUtf8("h\xc3\xb6me\n");
        QCOMPARE(rewriteScript(sandbox.path("script"), text), 0);
        VERIFY_TREE(sandbox, {{"script", "h\xc3\xb6me\n"}});
    }

    void rewritingAFolderFailsInTheGivenWords()
    {
        const test::LoggedSandbox sandbox;
        sandbox.makeFolder("script");
        QCOMPARE(rewriteScript(sandbox.path("script"), "one\n"), 1);
        QCOMPARE(rewriteScript(sandbox.path("script"), "one\n", "Could not open target file2"), 1);
        VERIFY_LINES(sandbox.log.lines(), "Debug: Could not open target file \"Is a directory\"",
                     "Debug: Could not open target file2 \"Is a directory\"");
    }

    void extendingInAMissingFolderNamesTheReason()
    {
        const test::LoggedSandbox sandbox;
        QCOMPARE(extendScript(sandbox.path("missing/script"), "one\n"), 1);
        VERIFY_LINES(sandbox.log.lines(),
                     "Debug: Could not open target file \"No such file or directory\"");
        VERIFY_TREE(sandbox, {});
    }

    void textIsAddedBehindWhatIsThere_data()
    {
        const test::Table<QByteArray> table("content");
        table.row("an empty file", "");
        table.row("a line with its end", "old\n");
        table.row("a line without its end", "old");
        table.row("carriage returns", "a\r\nb\r\n\r");
        table.row("a byte-order mark", "\xef\xbb\xbfold\n");
        table.row("bytes that are no UTF-8", QByteArray("\xff\xfe\x00\x80\n", 5));
    }

    void textIsAddedBehindWhatIsThere()
    {
        QFETCH(QByteArray, content);
        const test::Sandbox sandbox;
        sandbox.write("script", content);
        QCOMPARE(extendScript(sandbox.path("script"), QString::fromUtf8("\nné\n")), 0);
        QCOMPARE(sandbox.read("script"), content + "\nn\xc3\xa9\n");
        QCOMPARE(extendReadableScript(sandbox.path("script"), "again\n"), 0);
        QCOMPARE(sandbox.read("script"), content + "\nn\xc3\xa9\nagain\n");
    }

    void textIsAddedToAFileThatIsMissing()
    {
        const test::Sandbox sandbox;
        QCOMPARE(extendScript(sandbox.path("one"), "\nnew\n"), 0);
        QCOMPARE(extendReadableScript(sandbox.path("two"), "\nnew\n"), 0);
        VERIFY_TREE(sandbox, {{"one", "\nnew\n"}, {"two", "\nnew\n"}});
    }

    void textForWhatCannotBeOpenedFailsSilently()
    {
        const test::LoggedSandbox sandbox;
        sandbox.makeFolder("script");
        QCOMPARE(extendReadableScript(sandbox.path("script"), "new\n"), 1);
        QCOMPARE(extendReadableScript(sandbox.path("missing/script"), "new\n"), 1);
        QCOMPARE(sandbox.log.lines(), QStringList());
        VERIFY_TREE(sandbox, {{"script/", ""}});
    }

    void textForAFileThatMayNotBeRead()
    {
        const test::LoggedSandbox sandbox;
        sandbox.write("script", "old\n");
        test::giveToOrdinaryUser(sandbox.path("script"));
        QFile::setPermissions(sandbox.path("script"), QFile::WriteOwner);
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
        QCOMPARE(sandbox.log.lines(), QStringList());
        QCOMPARE(sandbox.read("script"), QByteArray("old\nnewer\n"));
    }
};

DRASK_TEST(tst_ScriptEdit)
#include "tst_scriptedit.moc"
