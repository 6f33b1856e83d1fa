// SPDX-License-Identifier: MIT
#include "wholenumber.h"

#include "unitcase.h"

#include <QPoint>

class tst_WholeNumber : public QObject {
    Q_OBJECT
private slots:
    void textsAreRead_data()
    {
        const test::Table<QString, QString> table("text", "number");
        table.row("a number", "12", "12");
        table.row("leading zeros", "0012", "12");
        table.row("the smallest number", "-9223372036854775808", "-9223372036854775808");
        table.row("a number too large", "9223372036854775808", "none");
        table.row("blanks around it", "  12\t", "12");
        table.row("U+2212 in front", QStringLiteral("\u221212"), "-12");
        table.row("a blank behind the sign", QStringLiteral("\u2212 12"), "none");
        table.row("two signs", "--12", "none");
        table.row("two numbers", "1 2", "none");
        table.row("groups", "1,000", "none");
        table.row("a fraction", "12.0", "none");
        table.row("hexadecimal digits", "0x12", "none");
        table.row("nothing", "", "none");
        table.row("a blank", " ", "none");
        table.row("a zero byte behind it", QString("24") + QChar(0), "none");
        table.row("more behind a zero byte", QString("24") + QChar(0) + "x", "none");
    }

    void textsAreRead()
    {
        QFETCH(QString, text);
        QFETCH(QString, number);
        const auto read = wholeNumber(text);
        QCOMPARE(read ? QString::number(*read) : QString("none"), number);
    }

    void everyLetterAroundANumberHasItsMeaning()
    {
        for (uint code = 0; code <= 0xffff; ++code) {
            const QChar letter(code);
            const bool isDigit = letter >= QLatin1Char('0') && letter <= QLatin1Char('9');
            const bool isSign = QString("+-\u2212").contains(letter);
            const auto isNumber = [](const QString &text) { return wholeNumber(text).has_value(); };
            const QByteArray place = QByteArray::number(code, 16);
            QVERIFY2(isNumber(letter + QString("7")) == (isDigit || isSign || letter.isSpace()),
                     place);
            QVERIFY2(isNumber(QString("7") + letter) == (isDigit || letter.isSpace()), place);
            QVERIFY2(isNumber(QString("7") + letter + "7") == isDigit, place);
        }
    }

    void settingIsAsNumber_data()
    {
        const test::Table<QVariant, int> table("setting", "number");
        table.row("none", QVariant(), 0);
        table.row("a number", "41", 41);
        table.row("blanks around it", " 41\u00a0", 41);
        table.row("a sign of its own", "\u221241", -41);
        table.row("no number", "fourty", 0);
        table.row("more than 32 bits", "4294967297", 1);
        table.row("a list", QStringList{"4", "1"}, 0);
        table.row("a point", QPoint(4, 1), 0);
        table.row("bytes", QByteArray("41"), 41);
    }

    void settingIsAsNumber()
    {
        QFETCH(QVariant, setting);
        QFETCH(int, number);
        QCOMPARE(numberOfSetting(setting), number);
    }
};

DRASK_TEST(tst_WholeNumber)
#include "tst_wholenumber.moc"
