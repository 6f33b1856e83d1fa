// SPDX-License-Identifier: MIT
#include "status/startupcheck.h"

#include "status/shippedcheck.h"
#include "testprogram.h"

#include <QtTest>

Q_DECLARE_METATYPE(FileText)

namespace {

const QString goodTemplate = "#drask_installed\n"
                             "def searchTab():\n"
                             "\tsys.path.append( importable_path(u'__scriptpath__'))\n"
                             "\tdraskshelf.init()\n"
                             "maya.utils.executeDeferred(\"searchTab()\")\n";

QStringList namesOf(const QList<Problem> &problems)
{
    QStringList names;
    for (const Problem &problem : problems) {
        names << kindName(problem.kind);
    }
    return names;
}

} // namespace

class tst_StartUpCheck : public QObject {
    Q_OBJECT

private slots:
    void scriptIsJudged_data();
    void scriptIsJudged();
    void environmentIsJudged();
    void templateKeepsItsRules_data();
    void templateKeepsItsRules();
};

void tst_StartUpCheck::scriptIsJudged_data()
{
    QTest::addColumn<FileText>("script");
    QTest::addColumn<QStringList>("kinds");
    const QString block = QString(goodTemplate).replace("__scriptpath__", "/maya/drask");
    const QString other = QString(block).replace("/maya/", "/old/");
    const auto row = [](const char *name, const FileText &script, const QStringList &kinds) {
        QTest::newRow(name) << script << kinds;
    };
    row("none", {}, {"userSetupMissing"});
    row("the user's own", "import maya\n", {"userSetupWithoutBlock"});
    row("with the block", "import maya\n" + block, {});
    row("with two", block + block, {"userSetupTwoBlocks"});
    row("with another folder", other, {"userSetupOtherPath"});
}

void tst_StartUpCheck::scriptIsJudged()
{
    QFETCH(FileText, script);
    QTEST(namesOf(checkUserSetup(script, "/maya/userSetup.py", "/maya/drask")), "kinds");
}

void tst_StartUpCheck::environmentIsJudged()
{
    const QString with = "A = 1\n\n#drask_installed\nHOUDINI_PATH = \";$HOUDINI_PATH\"\n";
    QCOMPARE(namesOf(checkHoudiniEnv({}, "/env")), QStringList("houdiniEnvMissing"));
    QCOMPARE(namesOf(checkHoudiniEnv(QString("A = 1\n"), "/env")),
             QStringList("houdiniEnvWithoutAssignment"));
    QCOMPARE(namesOf(checkHoudiniEnv(with, "/env")), QStringList());
}

void tst_StartUpCheck::templateKeepsItsRules_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("broken");
    QTest::newRow("all kept") << "#"
                              << "#" << 0;
    QTest::newRow("a line before the marker") << "#drask"
                                              << "\n#drask" << 1;
    QTest::newRow("two markers") << "def"
                                 << "#drask_installed\ndef" << 1;
    QTest::newRow("no path line") << "sys.path"
                                  << "my.path" << 1;
    QTest::newRow("carriage returns") << "init()\n"
                                      << "init()\r\n"
                                      << 1;
    QTest::newRow("no shelf") << "draskshelf.init()"
                              << "pass" << 1;
    QTest::newRow("another last line") << "(\"searchTab()\")"
                                       << "(\"tab()\")" << 1;
}

void tst_StartUpCheck::templateKeepsItsRules()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    const QString content = QString(goodTemplate).replace(before, after);
    QCOMPARE(before == after, content == goodTemplate);
    QTEST(int(checkTemplate(content, "/template").size()), "broken");
}

DRASK_TEST(tst_StartUpCheck)
#include "tst_startupcheck.moc"
