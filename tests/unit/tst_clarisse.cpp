// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"
#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QtTest>

namespace {

int edit(const test::Sandbox &sandbox)
{
    return PluginInstaller::editClarisseStartup(sandbox.path("startup.py"));
}

} // namespace

class tst_Clarisse : public QObject {
    Q_OBJECT

private slots:
    void missingScriptIsMade();
    void scriptWithTheImportIsLeftAlone_data();
    void scriptWithTheImportIsLeftAlone();
    void scriptWithoutTheImportIsExtendedByteForByte_data();
    void scriptWithoutTheImportIsExtendedByteForByte();
    void folderInTheScriptsPlaceFailsSilently();
    void missingParentFolderFailsSilently();
    void scriptThatMayNotBeWrittenFailsSilently();
};

void tst_Clarisse::missingScriptIsMade()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;

    QCOMPARE(edit(sandbox), 0);
    QCOMPARE(test::treeDifference(sandbox.tree(), {{"startup.py", "\nimport drask\n"}}), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_Clarisse::scriptWithTheImportIsLeftAlone_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("on a line of its own") << QByteArray("import ix\nimport drask\nix.go()\n");
    QTest::newRow("without a line end") << QByteArray("import drask");
    QTest::newRow("with a carriage return") << QByteArray("import drask\r\n");
    QTest::newRow("under another name") << QByteArray("import drask as d\n");
    QTest::newRow("of a module with a longer name") << QByteArray("import draskette\n");
    QTest::newRow("in a comment") << QByteArray("# import drask, some day\n");
    QTest::newRow("in the middle of a word") << QByteArray("reimport drasks\n");
    QTest::newRow("behind a byte-order mark") << QByteArray("\xef\xbb\xbfimport drask\n");
    QTest::newRow("among bytes that are no UTF-8") << QByteArray("\x80\xffimport drask\x80");
}

void tst_Clarisse::scriptWithTheImportIsLeftAlone()
{
    QFETCH(QByteArray, content);
    const test::Sandbox sandbox;
    sandbox.write("startup.py", content);
    sandbox.age("startup.py");
    const test::LogCapture log;

    QCOMPARE(edit(sandbox), 0);
    QCOMPARE(sandbox.read("startup.py"), content);
    QVERIFY(sandbox.isAged("startup.py"));
    QCOMPARE(log.lines(), QStringList());
}

void tst_Clarisse::scriptWithoutTheImportIsExtendedByteForByte_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("an empty script") << QByteArray("");
    QTest::newRow("a last line without its end") << QByteArray("import ix");
    QTest::newRow("carriage returns") << QByteArray("import ix\r\nix.go()\r\n");
    QTest::newRow("a byte-order mark") << QByteArray("\xef\xbb\xbfimport ix\n");
    QTest::newRow("bytes that are no UTF-8") << QByteArray("# \xff\xfe\x80\x00\n", 7);
    QTest::newRow("the import in other letter case") << QByteArray("Import Drask\nIMPORT DRASK\n");
    QTest::newRow("the import with two blanks") << QByteArray("import  drask\n");
    QTest::newRow("the import with a tab") << QByteArray("import\tdrask\n");
    QTest::newRow("the import on two lines") << QByteArray("import \\\ndrask\nimport \ndrask\n");
    QTest::newRow("an import from the module") << QByteArray("from drask import go\n");
}

void tst_Clarisse::scriptWithoutTheImportIsExtendedByteForByte()
{
    QFETCH(QByteArray, content);
    const test::Sandbox sandbox;
    sandbox.write("startup.py", content);
    const test::LogCapture log;

    QCOMPARE(edit(sandbox), 0);
    QCOMPARE(test::treeDifference(sandbox.tree(), {{"startup.py", content + "\nimport drask\n"}}),
             QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_Clarisse::folderInTheScriptsPlaceFailsSilently()
{
    const test::Sandbox sandbox;
    sandbox.makeFolder("startup.py");
    const test::LogCapture log;

    QCOMPARE(edit(sandbox), 1);
    QCOMPARE(test::treeDifference(sandbox.tree(), {{"startup.py/", ""}}), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_Clarisse::missingParentFolderFailsSilently()
{
    const test::Sandbox sandbox;
    const test::LogCapture log;

    QCOMPARE(PluginInstaller::editClarisseStartup(sandbox.path("none/startup.py")), 1);
    QCOMPARE(test::treeDifference(sandbox.tree(), {}), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_Clarisse::scriptThatMayNotBeWrittenFailsSilently()
{
    const test::Sandbox sandbox;
    sandbox.write("startup.py", "import ix\n");
    const test::ReadOnly lock(sandbox.path("startup.py"));
    const test::LogCapture log;
    {
        BECOME_ORDINARY_USER_OR_SKIP();
        QCOMPARE(edit(sandbox), 1);
    }

    QCOMPARE(sandbox.read("startup.py"), QByteArray("import ix\n"));
    QCOMPARE(log.lines(), QStringList());
}

DRASK_TEST(tst_Clarisse)
#include "tst_clarisse.moc"
