// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"
#include "loggedsandbox.h"
#include "unitcase.h"

namespace {

int edit(const test::Sandbox &sandbox)
{
    return PluginInstaller::editClarisseStartup(sandbox.path("startup.py"));
}

} // namespace

class tst_Clarisse : public QObject {
    Q_OBJECT
private slots:
    void missingScriptIsMade()
    {
        const test::LoggedSandbox sandbox;
        QCOMPARE(edit(sandbox), 0);
        VERIFY_TREE(sandbox, {{"startup.py", "\nimport drask\n"}});
        QCOMPARE(sandbox.log.lines(), QStringList());
    }

    void scriptWithTheImportIsLeftAlone_data()
    {
        const test::Table<QByteArray> table("content");
        table.row("on a line of its own", "import ix\nimport drask\nix.go()\n");
        table.row("without a line end", "import drask");
        table.row("with a carriage return", "import drask\r\n");
        table.row("under another name", "import drask as d\n");
        table.row("of a module with a longer name", "import draskette\n");
        table.row("in a comment", "# import drask, some day\n");
        table.row("in the middle of a word", "reimport drasks\n");
        table.row("behind a byte-order mark", "\xef\xbb\xbfimport drask\n");
        table.row("among bytes that are no UTF-8", "\x80\xffimport drask\x80");
    }

    void scriptWithTheImportIsLeftAlone()
    {
        QFETCH(QByteArray, content);
        const test::LoggedSandbox sandbox;
        sandbox.write("startup.py", content);
        sandbox.age("startup.py");
        QCOMPARE(edit(sandbox), 0);
        QCOMPARE(sandbox.read("startup.py"), content);
        QVERIFY(sandbox.isAged("startup.py"));
        QCOMPARE(sandbox.log.lines(), QStringList());
    }

    void scriptWithoutTheImportIsExtendedByteForByte_data()
    {
        const test::Table<QByteArray> table("content");
        table.row("bytes that are no UTF-8", QByteArray("# \xff\xfe\x80\x00\n", 7));
        table.row("the import in other letter case", "Import Drask\nIMPORT DRASK\n");
        table.row("the import with two blanks", "import  drask\n");
        table.row("the import with a tab", "import\tdrask\n");
        table.row("the import on two lines", "import \\\ndrask\nimport \ndrask\n");
        table.row("an import from the module", "from drask import go\n");
    }

    void scriptWithoutTheImportIsExtendedByteForByte()
    {
        QFETCH(QByteArray, content);
        const test::LoggedSandbox sandbox;
        sandbox.write("startup.py", content);
        QCOMPARE(edit(sandbox), 0);
        VERIFY_TREE(sandbox, {{"startup.py", content + "\nimport drask\n"}});
        QCOMPARE(sandbox.log.lines(), QStringList());
    }

    void folderInTheScriptsPlaceFailsSilently()
    {
        const test::LoggedSandbox sandbox;
        sandbox.makeFolder("startup.py");
        QCOMPARE(edit(sandbox), 1);
        VERIFY_TREE(sandbox, {{"startup.py/", ""}});
        QCOMPARE(sandbox.log.lines(), QStringList());
    }
};

DRASK_TEST(tst_Clarisse)
#include "tst_clarisse.moc"
