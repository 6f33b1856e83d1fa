// SPDX-License-Identifier: MIT
#include "loggedsandbox.h"
#include "unitcase.h"
#include "versionfile.h"

class tst_VersionFile : public QObject {
    Q_OBJECT
private slots:
    void readsTheFirstLine_data()
    {
        const test::Table<QByteArray, int> table("content", "version");
        table.row("a number without a line end", "17", 17);
        table.row("a number and more lines", "12\nnotes\n13\n", 12);
        table.row("a number with a carriage return", "12\r\n", 12);
        table.row("a negative number", "-3\n", -3);
        table.row("the largest number", "2147483647", 2147483647);
        table.row("a number too large", "2147483648", -1);
        table.row("an empty file", "", -1);
        table.row("an empty first line", "\n12\n", -1);
        table.row("a blank before the number", " 12", -1);
        table.row("a blank behind the number", "12 ", -1);
        table.row("a tab before the number", "\t12", -1);
        table.row("a letter behind the number", "12a", -1);
        table.row("a version with dots", "1.2.3", -1);
        table.row("hexadecimal digits", "0x12", -1);
        table.row("leading zeros", "012", 12);
        table.row("a no-break space before the number",
                  "\xc2\xa0"
                  "12",
                  -1);
        table.row("digits of another script", "\xd9\xa1\xd9\xa2", -1);
        table.row("a fraction", "12.0", -1);
        table.row("the number in the second line", "version\n12\n", -1);
        table.row("random bytes", QByteArray("\xff\xfe\x00\x01\x80", 5), -1);
    }

    void readsTheFirstLine()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, version);
        const test::Sandbox sandbox;
        sandbox.write("version.txt", content);
        QCOMPARE(readVersionTxt(sandbox.path()), version);
        QCOMPARE(sandbox.read("version.txt"), content);
    }

    void whatCannotBeOpenedReadsAsUnknown()
    {
        const test::LoggedSandbox sandbox;
        sandbox.makeFolder("host/version.txt");
        const test::Tree before = sandbox.tree();
        QCOMPARE(readVersionTxt(sandbox.path("nowhere")), -1);
        QCOMPARE(readVersionTxt(sandbox.path("host")), -1);
        QCOMPARE(sandbox.log.lines(), QStringList());
        VERIFY_TREE(sandbox, before);
    }
};

DRASK_TEST(tst_VersionFile)
#include "tst_versionfile.moc"
