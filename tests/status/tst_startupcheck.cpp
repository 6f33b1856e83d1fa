// SPDX-License-Identifier: MIT
#include "status/startupcheck.h"

#include "kinds.h"
#include "statusrun.h"
#include "testprogram.h"

#include <QtTest>

Q_DECLARE_METATYPE(FileText)

class tst_StartUpCheck : public QObject {
    Q_OBJECT

private slots:
    void scriptIsJudged_data();
    void scriptIsJudged();
    void environmentIsJudged();
};

void tst_StartUpCheck::scriptIsJudged_data()
{
    QTest::addColumn<FileText>("script");
    QTest::addColumn<QStringList>("kinds");
    const QString block = QString(test::mayaTemplate).replace("__scriptpath__", "/maya/drask");
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
    QTEST(test::kindsOf(checkUserSetup(script, "/maya/userSetup.py", "/maya/drask")), "kinds");
}

void tst_StartUpCheck::environmentIsJudged()
{
    const QString with = "A = 1\n\n#drask_installed\nHOUDINI_PATH = \";$HOUDINI_PATH\"\n";
    QCOMPARE(test::kindsOf(checkHoudiniEnv({}, "/env")), QStringList("houdiniEnvMissing"));
    QCOMPARE(test::kindsOf(checkHoudiniEnv(QString("A = 1\n"), "/env")),
             QStringList("houdiniEnvWithoutAssignment"));
    QCOMPARE(test::kindsOf(checkHoudiniEnv(with, "/env")), QStringList());
}

DRASK_TEST(tst_StartUpCheck)
#include "tst_startupcheck.moc"
