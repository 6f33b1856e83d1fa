// SPDX-License-Identifier: MIT
#include "mayascripts.h"
#include "ordinaryuser.h"
#include "testprogram.h"

#include <QtTest>

class tst_MayaFirstInsertion : public QObject {
    Q_OBJECT

private slots:
    void missingScriptIsMadeFromTheTemplate();
    void secondRunWithTheSameFolderWritesNothing();
    void everySpellingOfThePlaceHolderIsReplaced();
    void placeHoldersAreReplacedOneAfterTheOther();
    void singleQuotesInTheFolderAreEscaped_data();
    void singleQuotesInTheFolderAreEscaped();
    void scriptIsExtendedByteForByte_data();
    void scriptIsExtendedByteForByte();
    void blockWithoutAnOwnPathLineIsAddedAgain_data();
    void blockWithoutAnOwnPathLineIsAddedAgain();
    void existingBackupIsNeverRefreshed();
    void folderInTheBackupsPlaceCountsAsBackup();
    void backupThatCannotBeMadeIsNoFailure();
    void emptyTemplateMakesNoScript();
    void templateThatCannotBeOpenedFailsAfterTheBackup_data();
    void templateThatCannotBeOpenedFailsAfterTheBackup();
    void folderInTheScriptsPlaceFails();
    void missingPluginFolderFails();
    void scriptThatMayNotBeReadIsExtendedWithoutBackup();
    void linkedScriptStaysALink();
};

void tst_MayaFirstInsertion::missingScriptIsMadeFromTheTemplate()
{
    const MayaScripts maya;
    maya.writeTemplate("#drask_installed\n" + pathLine("__scriptpath__") + "\n");
    test::Tree expected = maya.tree();
    expected[maya.script] = "#drask_installed\n" + pathLine(maya.pluginBytes()) + "\n";
    const test::LogCapture log;

    QCOMPARE(maya.install(), 0);
    QCOMPARE(test::treeDifference(maya.tree(), expected), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_MayaFirstInsertion::secondRunWithTheSameFolderWritesNothing()
{
    const MayaScripts maya;
    maya.writeTemplate("#drask_installed\nimport sys\n" + pathLine("__scriptpath__") + "\n");
    maya.write(maya.script, "import maya\r\n");
    QCOMPARE(maya.install(), 0);
    const test::Tree afterFirstRun = maya.tree();
    maya.age(maya.script);
    maya.age(maya.backup);
    const test::LogCapture log;

    QCOMPARE(maya.install(), 0);
    QCOMPARE(test::treeDifference(maya.tree(), afterFirstRun), QString());
    QVERIFY(maya.isAged(maya.script));
    QVERIFY(maya.isAged(maya.backup));
    QCOMPARE(log.lines(), QStringList());
}

void tst_MayaFirstInsertion::everySpellingOfThePlaceHolderIsReplaced()
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

void tst_MayaFirstInsertion::placeHoldersAreReplacedOneAfterTheOther()
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

void tst_MayaFirstInsertion::singleQuotesInTheFolderAreEscaped_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QByteArray>("written");

    QTest::newRow("a quote in a name") << "O'Neil" << QByteArray("O\\'Neil");
    QTest::newRow("several quotes") << "'a''b'" << QByteArray("\\'a\\'\\'b\\'");
    QTest::newRow("a backslash before a quote") << "a\\'b" << QByteArray("a\\\\'b");
    QTest::newRow("double quotes and backslashes stay") << "a\"b\\c" << QByteArray("a\"b\\c");
}

void tst_MayaFirstInsertion::singleQuotesInTheFolderAreEscaped()
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

void tst_MayaFirstInsertion::scriptIsExtendedByteForByte_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("an empty script") << QByteArray("");
    QTest::newRow("a last line without its end") << QByteArray("import maya\nimport sys");
    QTest::newRow("carriage returns") << QByteArray("import maya\r\nimport sys\r\n");
    QTest::newRow("a byte-order mark") << QByteArray("\xef\xbb\xbfimport maya\n");
    QTest::newRow("bytes that are no UTF-8") << QByteArray("# \xff\xfe\x80\x00\n", 7);
}

void tst_MayaFirstInsertion::scriptIsExtendedByteForByte()
{
    QFETCH(QByteArray, content);
    const MayaScripts maya;
    // The template is read as text, and ends up as UTF-8 with line feeds.
    maya.writeTemplate("\xef\xbb\xbf# \xc3\xbc\xff\r\na\rb\n\nimport drask");
    maya.write(maya.script, content);
    test::Tree expected = maya.tree();
    expected[maya.script] = content + "# \xc3\xbc\xef\xbf\xbd\nab\n\nimport drask\n";
    expected[maya.backup] = content;
    const test::LogCapture log;

    QCOMPARE(maya.install(), 0);
    QCOMPARE(test::treeDifference(maya.tree(), expected), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_MayaFirstInsertion::blockWithoutAnOwnPathLineIsAddedAgain_data()
{
    QTest::addColumn<QByteArray>("content");

    const QByteArray line = pathLine("/old");
    QTest::newRow("a marker and nothing behind it") << QByteArray("#drask_installed\n");
    QTest::newRow("a path line without a marker") << line + '\n';
    QTest::newRow("a path line before the marker") << line + "\n#drask_installed\n";
    QTest::newRow("a path line indented by blanks")
        << "#drask_installed\n    " + line.mid(1) + '\n';
    QTest::newRow("a path line behind other text") << "#drask_installed\nif x:" + line + '\n';
    QTest::newRow("a path line in other letter case")
        << "#drask_installed\n" + line.toUpper() + '\n';
    QTest::newRow("a marker in other letter case") << "#Drask_Installed\n" + line + '\n';
    QTest::newRow("a marker with a blank in it") << "# drask_installed\n" + line + '\n';
    QTest::newRow("a path line without its blank")
        << "#drask_installed\n" + QByteArray(line).replace("( ", "(") + '\n';
}

void tst_MayaFirstInsertion::blockWithoutAnOwnPathLineIsAddedAgain()
{
    QFETCH(QByteArray, content);
    const MayaScripts maya;
    maya.writeTemplate("#drask_installed\n" + pathLine("__scriptpath__") + "\n");
    maya.write(maya.script, content);

    QCOMPARE(maya.install(), 0);
    QCOMPARE(maya.read(maya.script),
             content + "#drask_installed\n" + pathLine(maya.pluginBytes()) + '\n');
    QCOMPARE(maya.read(maya.backup), content);
}

void tst_MayaFirstInsertion::existingBackupIsNeverRefreshed()
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

void tst_MayaFirstInsertion::folderInTheBackupsPlaceCountsAsBackup()
{
    const MayaScripts maya;
    maya.writeTemplate("import drask\n");
    maya.write(maya.script, "old\n");
    maya.makeFolder(maya.backup);
    test::Tree expected = maya.tree();
    expected[maya.script] = "old\nimport drask\n";
    const test::LogCapture log;

    QCOMPARE(maya.install(), 0);
    QCOMPARE(test::treeDifference(maya.tree(), expected), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_MayaFirstInsertion::backupThatCannotBeMadeIsNoFailure()
{
    const MayaScripts maya;
    maya.writeTemplate("import drask\n");
    maya.write(maya.script, "old\n");
    test::giveToOrdinaryUser(maya.plugin());
    test::giveToOrdinaryUser(maya.path(maya.script));
    test::Tree expected = maya.tree();
    expected[maya.script] = "old\nimport drask\n";
    const test::ReadOnly lock(maya.plugin());
    const test::LogCapture log;
    {
        BECOME_ORDINARY_USER_OR_SKIP();
        QCOMPARE(maya.install(), 0);
    }

    QCOMPARE(test::treeDifference(maya.tree(), expected), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_MayaFirstInsertion::emptyTemplateMakesNoScript()
{
    const MayaScripts maya;
    maya.writeTemplate("");
    const test::Tree before = maya.tree();

    QCOMPARE(maya.install(), 0);
    QCOMPARE(test::treeDifference(maya.tree(), before), QString());
}

void tst_MayaFirstInsertion::templateThatCannotBeOpenedFailsAfterTheBackup_data()
{
    QTest::addColumn<bool>("folderInItsPlace");

    QTest::newRow("no template") << false;
    QTest::newRow("a folder in the template's place") << true;
}

void tst_MayaFirstInsertion::templateThatCannotBeOpenedFailsAfterTheBackup()
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
    const test::LogCapture log;

    QCOMPARE(maya.install(), 1);
    QCOMPARE(test::treeDifference(maya.tree(), expected), QString());
    QVERIFY(maya.isAged(maya.script));
    QCOMPARE(log.lines(),
             QStringList("Debug: 1635 error  \"" + maya.plugin() + "/drask_userSetup.py\""));
}

void tst_MayaFirstInsertion::folderInTheScriptsPlaceFails()
{
    const MayaScripts maya;
    maya.writeTemplate("import drask\n");
    maya.makeFolder(maya.script);
    const test::Tree before = maya.tree();
    const test::LogCapture log;

    QCOMPARE(maya.install(), 1);
    QCOMPARE(test::treeDifference(maya.tree(), before), QString());
    QCOMPARE(log.lines(), QStringList("Debug: Could not open target file \"Is a directory\""));
}

void tst_MayaFirstInsertion::missingPluginFolderFails()
{
    const test::Sandbox sandbox;
    sandbox.write("template", "import drask\n");
    sandbox.write("userSetup.py", "old\n");
    const test::Tree before = sandbox.tree();
    const test::LogCapture log;

    QCOMPARE(PluginInstaller::copyMayaUserSetup(sandbox.path("template"), sandbox.path("none")), 1);
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
    QCOMPARE(log.lines(),
             QStringList("Debug: Could not open target file \"No such file or directory\""));
}

void tst_MayaFirstInsertion::scriptThatMayNotBeReadIsExtendedWithoutBackup()
{
    const MayaScripts maya;
    maya.writeTemplate("import drask\n");
    maya.write(maya.script, "#drask_installed\n" + pathLine("/old") + "\n");
    test::Tree expected = maya.tree();
    expected[maya.script] += "import drask\n";
    test::giveToOrdinaryUser(maya.plugin());
    test::giveToOrdinaryUser(maya.path(maya.script));
    QFile::setPermissions(maya.path(maya.script), QFile::WriteOwner);
    const test::LogCapture log;
    int result = -1;
    {
        BECOME_ORDINARY_USER_OR_SKIP();
        result = maya.install();
    }
    QFile::setPermissions(maya.path(maya.script), QFile::ReadOwner | QFile::WriteOwner);

    QCOMPARE(result, 0);
    QCOMPARE(test::treeDifference(maya.tree(), expected), QString());
    QCOMPARE(log.lines(), QStringList());
}

void tst_MayaFirstInsertion::linkedScriptStaysALink()
{
    const MayaScripts maya;
    maya.writeTemplate("import drask\n");
    maya.write("shared/userSetup.py", "old\n");
    maya.makeLink(maya.path("shared/userSetup.py"), maya.script);
    test::Tree expected = maya.tree();
    expected["shared/userSetup.py"] = "old\nimport drask\n";
    expected[maya.backup] = "old\n";

    QCOMPARE(maya.install(), 0);
    QCOMPARE(test::treeDifference(maya.tree(), expected), QString());
}

DRASK_TEST(tst_MayaFirstInsertion)
#include "tst_maya_firstinsertion.moc"
