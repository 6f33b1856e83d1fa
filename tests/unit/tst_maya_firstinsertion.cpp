// SPDX-License-Identifier: MIT
#include "loggedsandbox.h"
#include "mayascripts.h"
#include "unitcase.h"

class tst_MayaFirstInsertion : public QObject {
    Q_OBJECT
private slots:
    void missingScriptIsMadeFromTheTemplate()
    {
        const MayaScripts maya;
        maya.writeTemplate("#drask_installed\n" + pathLine("__scriptpath__") + "\n");
        test::Tree expected = maya.tree();
        expected[maya.script] = "#drask_installed\n" + pathLine(maya.pluginBytes()) + "\n";
        QCOMPARE(maya.install(), 0);
        VERIFY_TREE(maya, expected);
        QCOMPARE(maya.log.lines(), QStringList());
    }

    void everySpellingOfThePlaceHolderIsReplaced()
    {
        const MayaScripts maya;
        maya.writeTemplate("__scriptpath__ __scriptPath__ __ScriptPath__\n"
                           "__scriptpath____scriptpath__\n"
                           "__SCRIPTPATH__ __Scriptpath__ scriptpath\n");
        const QByteArray folder = maya.pluginBytes();

        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.script),
                 folder + ' ' + folder + ' ' + folder + '\n' + folder + folder
                     + "\n__SCRIPTPATH__ __Scriptpath__ scriptpath\n");
    }

    void placeHoldersAreReplacedOneAfterTheOther()
    {
        const test::Sandbox sandbox;
        sandbox.makeFolder("__scriptPath__");
        sandbox.write("template", "1 __scriptpath__\n2 __scriptPath__\n3 __ScriptPath__\n");
        const QByteArray home = sandbox.path().toUtf8();
        const QByteArray folder = home + "/__scriptPath__";

        QCOMPARE(PluginInstaller::copyMayaUserSetup(sandbox.path("template"),
                                                    sandbox.path("__scriptPath__")),
                 0);
        QCOMPARE(sandbox.read("userSetup.py"),
                 "1 " + home + '/' + folder + "\n2 " + folder + "\n3 " + folder + '\n');
    }

    void singleQuotesInTheFolderAreEscaped_data()
    {
        const test::Table<QString, QByteArray> table("folder", "written");
        table.row("a quote in a name", "O'Neil", "O\\'Neil");
        table.row("several quotes", "'a''b'", "\\'a\\'\\'b\\'");
        table.row("a backslash before a quote", "a\\'b", "a\\\\'b");
        table.row("double quotes and backslashes stay", "a\"b\\c", "a\"b\\c");
    }

    void singleQuotesInTheFolderAreEscaped()
    {
        QFETCH(QString, folder);
        QFETCH(QByteArray, written);
        const test::Sandbox sandbox;
        sandbox.makeFolder(folder);
        sandbox.write("template", "#drask_installed\n" + pathLine("__scriptPath__") + "\n");
        const QString templateFile = sandbox.path("template");

        QCOMPARE(PluginInstaller::copyMayaUserSetup(templateFile, sandbox.path(folder)), 0);
        QCOMPARE(sandbox.read("userSetup.py"),
                 "#drask_installed\n" + pathLine(sandbox.path().toUtf8() + '/' + written) + '\n');

        sandbox.age("userSetup.py");
        QCOMPARE(PluginInstaller::copyMayaUserSetup(templateFile, sandbox.path(folder)), 0);
        QVERIFY(sandbox.isAged("userSetup.py"));
    }

    void scriptIsExtendedByteForByte_data()
    {
        const test::Table<QByteArray> table("content");
        table.row("bytes that are no UTF-8", QByteArray("# \xff\xfe\x80\x00\n", 7));
        const QByteArray line = pathLine("/old");
        table.row("a marker and nothing behind it", "#drask_installed\n");
        table.row("a path line without a marker", line + '\n');
        table.row("a path line before the marker", line + "\n#drask_installed\n");
        table.row("a path line indented by blanks", "#drask_installed\n    " + line.mid(1) + '\n');
        table.row("a path line behind other text", "#drask_installed\nif x:" + line + '\n');
        table.row("a path line in other letter case", "#drask_installed\n" + line.toUpper() + '\n');
        table.row("a marker in other letter case", "#Drask_Installed\n" + line + '\n');
        table.row("a marker with a blank in it", "# drask_installed\n" + line + '\n');
        table.row("a path line without its blank",
                  "#drask_installed\n" + QByteArray(line).replace("( ", "(") + '\n');
    }

    void scriptIsExtendedByteForByte()
    {
        QFETCH(QByteArray, content);
        const MayaScripts maya;
        // The template is read as text, and ends up as UTF-8 with line feeds.
        maya.writeTemplate("\xef\xbb\xbf# \xc3\xbc\xff\r\na\rb\n\nimport drask");
        maya.write(maya.script, content);
        test::Tree expected = maya.tree();
        expected[maya.script] = content + "# \xc3\xbc\xef\xbf\xbd\nab\n\nimport drask\n";
        expected[maya.backup] = content;

        QCOMPARE(maya.install(), 0);
        VERIFY_TREE(maya, expected);
        QCOMPARE(maya.log.lines(), QStringList());
    }

    void existingBackupIsNeverRefreshed()
    {
        const MayaScripts maya;
        maya.writeTemplate("import drask\n");
        maya.write(maya.script, "first\n");
        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.backup), QByteArray("first\n"));
        maya.write(maya.script, "second\n");
        maya.age(maya.backup);

        QCOMPARE(maya.install(), 0);
        QCOMPARE(maya.read(maya.backup), QByteArray("first\n"));
        QVERIFY(maya.isAged(maya.backup));
        QCOMPARE(maya.read(maya.script), QByteArray("second\nimport drask\n"));
    }

    void folderInTheBackupsPlaceCountsAsBackup()
    {
        const MayaScripts maya;
        maya.writeTemplate("import drask\n");
        maya.write(maya.script, "old\n");
        maya.makeFolder(maya.backup);
        test::Tree expected = maya.tree();
        expected[maya.script] = "old\nimport drask\n";

        QCOMPARE(maya.install(), 0);
        VERIFY_TREE(maya, expected);
        QCOMPARE(maya.log.lines(), QStringList());
    }

    void backupThatCannotBeMadeIsNoFailure()
    {
        const MayaScripts maya;
        maya.writeTemplate("import drask\n");
        maya.write(maya.script, "old\n");
        test::giveToOrdinaryUser(maya.plugin());
        test::giveToOrdinaryUser(maya.path(maya.script));
        test::Tree expected = maya.tree();
        expected[maya.script] = "old\nimport drask\n";
        const test::ReadOnly lock(maya.plugin());
        {
            BECOME_ORDINARY_USER_OR_SKIP();
            QCOMPARE(maya.install(), 0);
        }

        VERIFY_TREE(maya, expected);
        QCOMPARE(maya.log.lines(), QStringList());
    }

    void emptyTemplateMakesNoScript()
    {
        const MayaScripts maya;
        maya.writeTemplate("");
        const test::Tree before = maya.tree();
        QCOMPARE(maya.install(), 0);
        VERIFY_TREE(maya, before);
    }

    void templateThatCannotBeOpenedFailsAfterTheBackup_data()
    {
        const test::Table<bool> table("folderInItsPlace");
        table.row("no template", false);
        table.row("a folder in the template's place", true);
    }

    void templateThatCannotBeOpenedFailsAfterTheBackup()
    {
        QFETCH(bool, folderInItsPlace);
        const MayaScripts maya;
        if (folderInItsPlace) {
            maya.makeFolder(maya.templateName);
        }
        maya.write(maya.script, "old\n");
        maya.age(maya.script);
        test::Tree expected = maya.tree();
        expected[maya.backup] = "old\n";

        QCOMPARE(maya.install(), 1);
        VERIFY_TREE(maya, expected);
        QVERIFY(maya.isAged(maya.script));
        VERIFY_LINES(maya.log.lines(),
                     "Debug: 1635 error  \"" + maya.plugin() + "/drask_userSetup.py\"");
    }

    void folderInTheScriptsPlaceFails()
    {
        const MayaScripts maya;
        maya.writeTemplate("import drask\n");
        maya.makeFolder(maya.script);
        const test::Tree before = maya.tree();
        QCOMPARE(maya.install(), 1);
        VERIFY_TREE(maya, before);
        QCOMPARE(maya.log.lines(),
                 QStringList("Debug: Could not open target file \"Is a directory\""));
    }

    void missingPluginFolderFails()
    {
        const test::LoggedSandbox sandbox;
        sandbox.write("template", "import drask\n");
        sandbox.write("userSetup.py", "old\n");
        const test::Tree before = sandbox.tree();

        QCOMPARE(PluginInstaller::copyMayaUserSetup(sandbox.path("template"), sandbox.path("none")),
                 1);
        VERIFY_TREE(sandbox, before);
        VERIFY_LINES(sandbox.log.lines(),
                     "Debug: Could not open target file \"No such file or directory\"");
    }

    void scriptThatMayNotBeReadIsExtendedWithoutBackup()
    {
        const MayaScripts maya;
        maya.writeTemplate("import drask\n");
        maya.write(maya.script, "#drask_installed\n" + pathLine("/old") + "\n");
        test::Tree expected = maya.tree();
        expected[maya.script] += "import drask\n";
        test::giveToOrdinaryUser(maya.plugin());
        test::giveToOrdinaryUser(maya.path(maya.script));
        QFile::setPermissions(maya.path(maya.script), QFile::WriteOwner);
        int result = -1;
        {
            BECOME_ORDINARY_USER_OR_SKIP();
            result = maya.install();
        }
        QFile::setPermissions(maya.path(maya.script), QFile::ReadOwner | QFile::WriteOwner);

        QCOMPARE(result, 0);
        VERIFY_TREE(maya, expected);
        QCOMPARE(maya.log.lines(), QStringList());
    }

    void linkedScriptStaysALink()
    {
        const MayaScripts maya;
        maya.writeTemplate("import drask\n");
        maya.write("shared/userSetup.py", "old\n");
        maya.makeLink(maya.path("shared/userSetup.py"), maya.script);
        test::Tree expected = maya.tree();
        expected["shared/userSetup.py"] = "old\nimport drask\n";
        expected[maya.backup] = "old\n";

        QCOMPARE(maya.install(), 0);
        VERIFY_TREE(maya, expected);
    }
};

DRASK_TEST(tst_MayaFirstInsertion)
#include "tst_maya_firstinsertion.moc"
