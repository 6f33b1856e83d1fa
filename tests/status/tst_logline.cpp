// SPDX-License-Identifier: MIT
#include "status/logline.h"

#include "testprogram.h"

#include <QDebug>
#include <QtTest>

class tst_LogLine : public QObject {
    Q_OBJECT

private slots:
    void textsComeBackAsTheyWereStreamed_data();
    void textsComeBackAsTheyWereStreamed();
    void itemsAreTakenInTurn();
    void otherItemIsNotTaken_data();
    void otherItemIsNotTaken();
    void lineOfAnotherLevelHasNoItems();
};

void tst_LogLine::textsComeBackAsTheyWereStreamed_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << "/Users/ann/maya";
    QTest::newRow("empty") << "";
    QTest::newRow("quotes and backslashes") << "a \"b\" \\c\\ \\\" d";
    QTest::newRow("line breaks and tabs") << "a\nb\rc\td\be\ff";
    QTest::newRow("control characters") << QString("a") + QChar(1) + QChar(0x7f) + "7";
    QTest::newRow("letters beyond ASCII") << QString::fromUtf8("h\xc3\xb6m\xc3\xa9");
    QTest::newRow("beyond the first plane") << QString::fromUtf8("\xf0\x9f\x8e\xa8 art");
    QTest::newRow("half a pair") << QString(QChar(0xd83c)) + "x";
    QTest::newRow("not printable beyond the first plane") << QString::fromUtf8("\xf3\xa0\x80\x81");
}

void tst_LogLine::textsComeBackAsTheyWereStreamed()
{
    QFETCH(QString, text);
    QString line("Debug: ");
    QDebug(&line) << "path" << text << 7;
    LogLine items(line.trimmed());
    QString found;
    int number = 0;
    QVERIFY(items.takeLabel("path"));
    QVERIFY(items.takeText(found));
    QCOMPARE(found, text);
    QVERIFY(items.takeNumber(number));
    QCOMPARE(number, 7);
    QVERIFY(items.isAtEnd());
}

void tst_LogLine::itemsAreTakenInTurn()
{
    LogLine line("Debug: Could not copy file  \"/a b\"  to  \"/c\"");
    QString from;
    QString to;
    QVERIFY(line.takeLabel("Could not copy file ") && line.takeText(from));
    QVERIFY(line.takeLabel(" to ") && line.takeText(to));
    QCOMPARE(from + '|' + to, QString("/a b|/c"));
}

void tst_LogLine::otherItemIsNotTaken_data()
{
    QTest::addColumn<QString>("items");
    QTest::newRow("nothing") << "";
    QTest::newRow("another word") << "paths \"/a\"";
    QTest::newRow("beginning of the word") << "pat";
    QTest::newRow("text without end") << "\"/a";
    QTest::newRow("text that ends in an escape") << "\"/a\\";
    QTest::newRow("number too large") << "99999999999";
}

void tst_LogLine::otherItemIsNotTaken()
{
    QFETCH(QString, items);
    LogLine line("Debug: " + items);
    QString text;
    int number = 0;
    QVERIFY(!line.takeLabel("path"));
    QVERIFY(!line.takeText(text));
    QVERIFY(!line.takeNumber(number));
}

void tst_LogLine::lineOfAnotherLevelHasNoItems()
{
    LogLine line("Warning: path \"/a\"");
    QVERIFY(!line.isDebug());
    QVERIFY(!line.takeLabel("path"));
}

DRASK_TEST(tst_LogLine)
#include "tst_logline.moc"
