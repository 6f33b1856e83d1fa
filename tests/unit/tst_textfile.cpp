// SPDX-License-Identifier: MIT
#include "textfile.h"

#include "localecodec.h"
#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QBuffer>
#include <QtTest>

class tst_TextFile : public QObject {
    Q_OBJECT

private slots:
    void streamWritesUtf8WithoutMark();
    void streamReadsUtf8_data();
    void streamReadsUtf8();
    void streamLeavesLineEndsAlone();
    void wholeTextIsRead_data();
    void wholeTextIsRead();
    void linesAreVisited_data();
    void linesAreVisited();
    void visitStopsWhenAsked();
    void unopenableFileHasNoText_data();
    void unopenableFileHasNoText();
    void unreadableFileHasNoText();
    void readingChangesNothing();
};

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

void tst_TextFile::streamWritesUtf8WithoutMark()
{
    const test::Latin1Locale locale;
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));

    Utf8Stream(&buffer) << QString::fromUtf8("H\xc3\xb6st \xf0\x9f\x98\x80") << 7;

    QCOMPARE(buffer.data(), QByteArray("H\xc3\xb6st \xf0\x9f\x98\x80\x37"));
}

void tst_TextFile::streamReadsUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    QTest::newRow("plain letters") << QByteArray("abc") << QString("abc");
    QTest::newRow("non-ASCII letters")
        << QByteArray("\xc3\xb6\xe6\x97\xa5\xf0\x9f\x98\x80") << QString::fromUtf8("ö日😀");
    QTest::newRow("bytes that are no UTF-8")
        << QByteArray("a\xff z") << QString::fromUtf8("a\xef\xbf\xbd z");
}

void tst_TextFile::streamReadsUtf8()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    const test::Latin1Locale locale;
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::ReadOnly));

    QCOMPARE(Utf8Stream(&buffer).readAll(), text);
}

void tst_TextFile::streamLeavesLineEndsAlone()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::WriteOnly));

    Utf8Stream(&buffer) << "a\r\nb\n" << Qt::endl;

    QCOMPARE(buffer.data(), QByteArray("a\r\nb\n\n"));
}

void tst_TextFile::wholeTextIsRead_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");

    QTest::newRow("an empty file") << QByteArray("") << QString();
    QTest::newRow("no line end at the end") << QByteArray("a\nb") << QString("a\nb");
    QTest::newRow("a line end at the end") << QByteArray("a\nb\n") << QString("a\nb\n");
    QTest::newRow("carriage returns are dropped") << QByteArray("a\r\nb\r\n") << QString("a\nb\n");
    QTest::newRow("a carriage return within a line is dropped")
        << QByteArray("a\rb\n") << QString("ab\n");
    QTest::newRow("non-ASCII letters")
        << QByteArray("h\xc3\xb6st\n") << QString::fromUtf8("höst\n");
    QTest::newRow("a file larger than a buffer") << QByteArray(70000, 'x') + '\n'
                                                 << QString(70000, 'x') + '\n';
}

void tst_TextFile::wholeTextIsRead()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, text);
    const test::Sandbox sandbox;
    sandbox.write("file.txt", content);

    QCOMPARE(readText(sandbox.path("file.txt")), text);
}

void tst_TextFile::linesAreVisited_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("an empty file") << QByteArray("") << QStringList();
    QTest::newRow("a line end alone") << QByteArray("\n") << QStringList("");
    QTest::newRow("no line end at the end") << QByteArray("a\nb") << QStringList({"a", "b"});
    QTest::newRow("a line end at the end") << QByteArray("a\nb\n") << QStringList({"a", "b"});
    QTest::newRow("empty lines") << QByteArray("\na\n\n\nb\n")
                                 << QStringList({"", "a", "", "", "b"});
    QTest::newRow("carriage returns")
        << QByteArray("a\r\n\r\nb\r\n") << QStringList({"a", "", "b"});
    QTest::newRow("blanks around a line") << QByteArray("  a\t\n") << QStringList("  a\t");
    QTest::newRow("non-ASCII letters") << QByteArray("\xc3\xb6\n") << QStringList(QChar(0xf6));
    QTest::newRow("a line longer than a buffer")
        << QByteArray(70000, 'x') + "\ny" << QStringList({QString(70000, 'x'), "y"});
}

void tst_TextFile::linesAreVisited()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, lines);
    const test::Sandbox sandbox;
    sandbox.write("file.txt", content);

    QCOMPARE(visited(sandbox.path("file.txt")), lines);
}

void tst_TextFile::visitStopsWhenAsked()
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

void tst_TextFile::unopenableFileHasNoText_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("a missing file") << QString("missing.txt");
    QTest::newRow("a missing folder") << QString("missing/file.txt");
    QTest::newRow("a folder in its place") << QString("folder");
    QTest::newRow("a file in its folder's place") << QString("file.txt/file.txt");
    QTest::newRow("a name that is too long") << QString(300, 'n');
    QTest::newRow("a link to nothing") << QString("link");
}

void tst_TextFile::unopenableFileHasNoText()
{
    QFETCH(QString, name);
    const test::Sandbox sandbox;
    sandbox.makeFolder("folder");
    sandbox.write("file.txt", "a");
    sandbox.makeLink(sandbox.path("nowhere"), "link");
    const test::Tree before = sandbox.tree();
    const test::LogCapture log;

    QCOMPARE(readText(sandbox.path(name)), QString());
    QCOMPARE(visited(sandbox.path(name)), QStringList());

    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

void tst_TextFile::unreadableFileHasNoText()
{
    const test::Sandbox sandbox;
    sandbox.write("file.txt", "a\n");
    QVERIFY(QFile::setPermissions(sandbox.path("file.txt"), QFileDevice::Permissions()));
    BECOME_ORDINARY_USER_OR_SKIP();
    const test::LogCapture log;

    QCOMPARE(readText(sandbox.path("file.txt")), QString());
    QCOMPARE(visited(sandbox.path("file.txt")), QStringList());
    QCOMPARE(log.lines(), QStringList());
}

void tst_TextFile::readingChangesNothing()
{
    const test::Sandbox sandbox;
    sandbox.write("file.txt", "a\r\nb");
    sandbox.age("file.txt");

    QCOMPARE(readText(sandbox.path("file.txt")), QString("a\nb"));
    QCOMPARE(visited(sandbox.path("file.txt")), QStringList({"a", "b"}));

    QCOMPARE(sandbox.read("file.txt"), QByteArray("a\r\nb"));
    QVERIFY(sandbox.isAged("file.txt"));
}

DRASK_TEST(tst_TextFile)
#include "tst_textfile.moc"
