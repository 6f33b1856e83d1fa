// SPDX-License-Identifier: MIT
#include "wholenumber.h"

#include "testprogram.h"

#include <QPoint>
#include <QtTest>

class tst_WholeNumber : public QObject {
    Q_OBJECT

private slots:
    void textsAreRead_data();
    void textsAreRead();
    void everyLetterAroundANumberHasItsMeaning();
    void settingIsAsNumber_data();
    void settingIsAsNumber();
};

void tst_WholeNumber::textsAreRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("number");
    const auto row = [](const QString &text, const char *number) {
        QTest::addRow("'%s'", qPrintable(text)) << text << QString(number);
    };
    row("12", "12");
    row("0012", "12");
    row("-9223372036854775808", "-9223372036854775808");
    row("9223372036854775808", "none");
    row("  12\t", "12");
    row(QStringLiteral("\u2212 12"), "none");
    row("--12", "none");
    row("1 2", "none");
    row("1,000", "none");
    row("12.0", "none");
    row("0x12", "none");
    row("", "none");
    row(" ", "none");
    row(QString("24") + QChar(0), "none");
    row(QString("24") + QChar(0) + "x", "none");
}

void tst_WholeNumber::textsAreRead()
{
    QFETCH(QString, text);
    QFETCH(QString, number);
    const auto read = wholeNumber(text);

    QCOMPARE(read ? QString::number(*read) : QString("none"), number);
}

void tst_WholeNumber::everyLetterAroundANumberHasItsMeaning()
{
    for (uint code = 0; code <= 0xffff; ++code) {
        const QChar letter(code);
        const bool isDigit = letter >= QLatin1Char('0') && letter <= QLatin1Char('9');
        const bool isSign = QString("+-\u2212").contains(letter);
        const QByteArray place = QByteArray::number(code, 16);
        QVERIFY2(wholeNumber(letter + QString("7")).has_value()
                     == (isDigit || isSign || letter.isSpace()),
                 place);
        QVERIFY2(wholeNumber(QString("7") + letter).has_value() == (isDigit || letter.isSpace()),
                 place);
        QVERIFY2(wholeNumber(QString("7") + letter + "7").has_value() == isDigit, place);
    }
    QCOMPARE(wholeNumber(QStringLiteral("\u22127")).value_or(0), -7);
}

void tst_WholeNumber::settingIsAsNumber_data()
{
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<int>("number");

    QTest::newRow("none") << QVariant() << 0;
    QTest::newRow("a number") << QVariant("41") << 41;
    QTest::newRow("blanks around it") << QVariant(" 41\u00a0") << 41;
    QTest::newRow("a sign of its own") << QVariant(QStringLiteral("\u221241")) << -41;
    QTest::newRow("no number") << QVariant("fourty") << 0;
    QTest::newRow("more than 32 bits") << QVariant("4294967297") << 1;
    QTest::newRow("a list") << QVariant(QStringList{"4", "1"}) << 0;
    QTest::newRow("a point") << QVariant(QPoint(4, 1)) << 0;
    QTest::newRow("bytes") << QVariant(QByteArray("41")) << 41;
}

void tst_WholeNumber::settingIsAsNumber()
{
    QFETCH(QVariant, setting);
    QFETCH(int, number);

    QCOMPARE(numberOfSetting(setting), number);
}

DRASK_TEST(tst_WholeNumber)
#include "tst_wholenumber.moc"
