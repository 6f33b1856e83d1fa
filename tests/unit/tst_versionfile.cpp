// SPDX-License-Identifier: MIT
#include "versionfile.h"

#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QtTest>

class tst_VersionFile : public QObject {
    Q_OBJECT

private slots:
    void readsTheFirstLine_data();
    void readsTheFirstLine();
    void whatCannotBeOpenedReadsAsUnknown();
    void unreadableFileReadsAsUnknown();
};

void tst_VersionFile::readsTheFirstLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("version");

    QTest::newRow("a number without a line end") << QByteArray("17") << 17;
    QTest::newRow("a number and more lines") << QByteArray("12\nnotes\n13\n") << 12;
    QTest::newRow("a number with a carriage return") << QByteArray("12\r\n") << 12;
    QTest::newRow("a negative number") << QByteArray("-3\n") << -3;
    QTest::newRow("the largest number") << QByteArray("2147483647") << 2147483647;
    QTest::newRow("a number too large") << QByteArray("2147483648") << -1;
    QTest::newRow("an empty file") << QByteArray("") << -1;
    QTest::newRow("an empty first line") << QByteArray("\n12\n") << -1;
    QTest::newRow("a blank before the number") << QByteArray(" 12") << -1;
    QTest::newRow("a blank behind the number") << QByteArray("12 ") << -1;
    QTest::newRow("a tab before the number") << QByteArray("\t12") << -1;
    QTest::newRow("a letter behind the number") << QByteArray("12a") << -1;
    QTest::newRow("a version with dots") << QByteArray("1.2.3") << -1;
    QTest::newRow("hexadecimal digits") << QByteArray("0x12") << -1;
    QTest::newRow("leading zeros") << QByteArray("012") << 12;
    QTest::newRow("a no-break space before the number") << QByteArray("\xc2\xa0"
                                                                      "12")
                                                        << -1;
    QTest::newRow("digits of another script") << QByteArray("\xd9\xa1\xd9\xa2") << -1;
    QTest::newRow("a fraction") << QByteArray("12.0") << -1;
    QTest::newRow("the number in the second line") << QByteArray("version\n12\n") << -1;
    QTest::newRow("random bytes") << QByteArray("\xff\xfe\x00\x01\x80", 5) << -1;
}

void tst_VersionFile::readsTheFirstLine()
{
    QFETCH(QByteArray, content);
    QFETCH(int, version);
    const test::Sandbox sandbox;
    sandbox.write("version.txt", content);

    QCOMPARE(readVersionTxt(sandbox.path()), version);
    QCOMPARE(sandbox.read("version.txt"), content);
}

void tst_VersionFile::whatCannotBeOpenedReadsAsUnknown()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("host/version.txt");
    const test::Tree before = sandbox.tree();
    const test::LogCapture log;

    QCOMPARE(readVersionTxt(sandbox.path("nowhere")), -1);
    QCOMPARE(readVersionTxt(sandbox.path("host")), -1);

    QCOMPARE(log.lines(), QStringList());
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

void tst_VersionFile::unreadableFileReadsAsUnknown()
{
    const test::Sandbox sandbox;
    sandbox.write("version.txt", "12");
    QVERIFY(QFile::setPermissions(sandbox.path("version.txt"), QFileDevice::Permissions()));
    BECOME_ORDINARY_USER_OR_SKIP();

    QCOMPARE(readVersionTxt(sandbox.path()), -1);
}

DRASK_TEST(tst_VersionFile)
#include "tst_versionfile.moc"
