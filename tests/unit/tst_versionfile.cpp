// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"
#include "sandbox.h"
#include "versionfile.h"

#include <QtTest>

class tst_VersionFile : public QObject {
    Q_OBJECT

private slots:
    void readsTheFirstLine_data();
    void readsTheFirstLine();
    void missingFolderReadsAsUnknown();
    void folderInTheFilesPlaceReadsAsUnknown();
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
    QTest::newRow("the installer's own version") << QByteArray("2.3.10") << -1;
    QTest::newRow("hexadecimal digits") << QByteArray("0x12") << -1;
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

void tst_VersionFile::missingFolderReadsAsUnknown()
{
    const test::Sandbox sandbox;

    QCOMPARE(readVersionTxt(sandbox.path("nowhere")), -1);
}

void tst_VersionFile::folderInTheFilesPlaceReadsAsUnknown()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("version.txt");

    QCOMPARE(readVersionTxt(sandbox.path()), -1);
}

QTEST_GUILESS_MAIN(tst_VersionFile)
#include "tst_versionfile.moc"
