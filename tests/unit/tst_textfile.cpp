// SPDX-License-Identifier: MIT
#include "textfile.h"

#include "localecodec.h"
#include "loggedsandbox.h"
#include "unitcase.h"

#include <QBuffer>

namespace {

QStringList visited(const QString &path)
{
    QStringList lines;
    visitLines(path, [&lines](const QString &line) {
        lines << line;
        return true;
    });
    return lines;
}

} // namespace

class tst_TextFile : public QObject {
    Q_OBJECT
private slots:
    void streamWritesUtf8WithoutMark()
    {
        const test::Latin1Locale locale;
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::WriteOnly));
        Utf8Stream(&buffer) << QString::fromUtf8("H\xc3\xb6st \xf0\x9f\x98\x80") << 7;
        QCOMPARE(buffer.data(), QByteArray("H\xc3\xb6st \xf0\x9f\x98\x80\x37"));
    }

    void halfASurrogateIsAQuestionMarkAndGoesAtTheEnd()
    {
        const QString high(QChar(0xd83d));
        const QString low(QChar(0xde00));
        QCOMPARE(toUtf8(high + low), QByteArray("\xf0\x9f\x98\x80"));
        QCOMPARE(toUtf8(high + 'a' + low + high + high), QByteArray("?a??"));
        QCOMPARE(toUtf8(low), QByteArray("?"));
        QCOMPARE(toUtf8(QString()), QByteArray());
    }

    void streamReadsUtf8_data()
    {
        const test::Table<QByteArray, QString> table("bytes", "text");
        table.row("plain letters", "abc", "abc");
        table.row("non-ASCII letters", "\xc3\xb6\xe6\x97\xa5\xf0\x9f\x98\x80", "ö日😀");
        table.row("bytes that are no UTF-8", "a\xff z", "a\xef\xbf\xbd z");
    }

    void streamReadsUtf8()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        const test::Latin1Locale locale;
        QBuffer buffer(&bytes);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        QCOMPARE(Utf8Stream(&buffer).readAll(), text);
    }

    void streamLeavesLineEndsAlone()
    {
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::WriteOnly));
        Utf8Stream(&buffer) << "a\r\nb\n" << Qt::endl;
        QCOMPARE(buffer.data(), QByteArray("a\r\nb\n\n"));
    }

    void wholeTextIsRead_data()
    {
        const test::Table<QByteArray, QString> table("content", "text");
        table.row("an empty file", "", QString());
        table.row("no line end at the end", "a\nb", "a\nb");
        table.row("a line end at the end", "a\nb\n", "a\nb\n");
        table.row("carriage returns are dropped", "a\r\nb\r\n", "a\nb\n");
        table.row("a carriage return within a line is dropped", "a\rb\n", "ab\n");
        table.row("non-ASCII letters", "h\xc3\xb6st\n", "höst\n");
        table.row("a file larger than a buffer", QByteArray(70000, 'x') + '\n',
                  QString(70000, 'x') + '\n');
    }

    void wholeTextIsRead()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, text);
        const test::Sandbox sandbox;
        sandbox.write("file.txt", content);
        QCOMPARE(readText(sandbox.path("file.txt")), text);
    }

    void linesAreVisited_data()
    {
        const test::Table<QByteArray, QStringList> table("content", "lines");
        table.row("an empty file", "", QStringList());
        table.row("a line end alone", "\n", QStringList(""));
        table.row("no line end at the end", "a\nb", QStringList({"a", "b"}));
        table.row("a line end at the end", "a\nb\n", QStringList({"a", "b"}));
        table.row("empty lines", "\na\n\n\nb\n", QStringList({"", "a", "", "", "b"}));
        table.row("carriage returns", "a\r\n\r\nb\r\n", QStringList({"a", "", "b"}));
        table.row("blanks around a line", "  a\t\n", QStringList("  a\t"));
        table.row("non-ASCII letters", "\xc3\xb6\n", QStringList(QChar(0xf6)));
        table.row("a line longer than a buffer", QByteArray(70000, 'x') + "\ny",
                  QStringList({QString(70000, 'x'), "y"}));
    }

    void linesAreVisited()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, lines);
        const test::Sandbox sandbox;
        sandbox.write("file.txt", content);
        QCOMPARE(visited(sandbox.path("file.txt")), lines);
    }

    void visitStopsWhenAsked()
    {
        const test::Sandbox sandbox;
        sandbox.write("file.txt", "a\nb\nc\n");
        QStringList lines;
        visitLines(sandbox.path("file.txt"), [&lines](const QString &line) {
            lines << line;
            return line != "b";
        });
        QCOMPARE(lines, QStringList({"a", "b"}));
    }

    void unopenableFileHasNoText_data()
    {
        const test::Table<QString> table("name");
        table.row("a missing file", "missing.txt");
        table.row("a missing folder", "missing/file.txt");
        table.row("a folder in its place", "folder");
        table.row("a file in its folder's place", "file.txt/file.txt");
        table.row("a name that is too long", QString(300, 'n'));
        table.row("a link to nothing", "link");
    }

    void unopenableFileHasNoText()
    {
        QFETCH(QString, name);
        const test::LoggedSandbox sandbox;
        sandbox.makeFolder("folder");
        sandbox.write("file.txt", "a");
        sandbox.makeLink(sandbox.path("nowhere"), "link");
        const test::Tree before = sandbox.tree();

        QCOMPARE(readText(sandbox.path(name)), QString());
        QCOMPARE(visited(sandbox.path(name)), QStringList());
        QCOMPARE(sandbox.log.lines(), QStringList());
        VERIFY_TREE(sandbox, before);
    }

    void readingChangesNothing()
    {
        const test::Sandbox sandbox;
        sandbox.write("file.txt", "a\r\nb");
        sandbox.age("file.txt");
        QCOMPARE(readText(sandbox.path("file.txt")), QString("a\nb"));
        QCOMPARE(visited(sandbox.path("file.txt")), QStringList({"a", "b"}));
        QCOMPARE(sandbox.read("file.txt"), QByteArray("a\r\nb"));
        QVERIFY(sandbox.isAged("file.txt"));
    }
};

DRASK_TEST(tst_TextFile)
#include "tst_textfile.moc"
