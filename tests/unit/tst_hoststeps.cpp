// SPDX-License-Identifier: MIT
#include "hoststeps.h"

#include "hostsetup.h"
#include "logcapture.h"
#include "programfolder.h"
#include "testprogram.h"

#include <QtTest>

class tst_HostSteps : public QObject {
    Q_OBJECT

private slots:
    void hostWithoutStepsIsOnlyLogged_data();
    void hostWithoutStepsIsOnlyLogged();
    void mayaGetsItsStartUpScript();
    void mayaFailureIsReported_data();
    void mayaFailureIsReported();
    void houdiniGetsItsSearchPath();
    void houdiniFailureIsPassedOver();
};

using test::hostAt;
using test::installedLine;

void tst_HostSteps::hostWithoutStepsIsOnlyLogged_data()
{
    QTest::addColumn<QString>("key");

    for (const char *key :
         {"c4d", "c4d14", "c4d21", "blender", "blender28", "xsi", "lightwave", "modo", "sketchup",
          "clarisse", "3dsmax", "Maya", "Rhino", "Revit", "Houdini", "maya2", "unknown"}) {
        QTest::newRow(key) << QString(key);
    }
    QTest::newRow("an empty key") << QString("");
}

void tst_HostSteps::hostWithoutStepsIsOnlyLogged()
{
    QFETCH(QString, key);
    const test::ProgramFolder programFolder;
    const test::Sandbox sandbox;
    const test::WorkingFolder workingFolder(sandbox.path());
    sandbox.write("host/plugins/drask/drask_userSetup.py", "import x\n");
    sandbox.write("host/houdini.env", "A = 1\n");
    const PluginPathStruct host = hostAt(sandbox.path("host"), key, "/plugins/drask");
    const test::Tree before = sandbox.tree();
    const test::LogCapture log;

    QCOMPARE(runHostSteps(host), 0);

    QCOMPARE(log.lines(), QStringList(installedLine(host)));
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
    QCOMPARE(test::treeDifference(programFolder.tree(), {}), QString());
}

void tst_HostSteps::mayaGetsItsStartUpScript()
{
    const test::ProgramFolder programFolder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = hostAt(sandbox.path("maya"), "maya", "/scripts/drask");
    sandbox.write("maya/scripts/drask/drask_userSetup.py", "path = '__scriptpath__'\n");
    test::Tree expected = sandbox.tree();
    expected["maya/scripts/userSetup.py"] = "path = '" + host.targetFolder().toUtf8() + "'\n";
    const test::LogCapture log;

    QCOMPARE(runHostSteps(host), 0);

    QCOMPARE(log.lines(), QStringList(installedLine(host)));
    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
    QCOMPARE(test::treeDifference(programFolder.tree(), {}), QString());
}

void tst_HostSteps::mayaFailureIsReported_data()
{
    QTest::addColumn<bool>("hasTemplate");
    QTest::addColumn<QString>("complaint");

    QTest::newRow("the template is missing") << false << QString("Debug: 1635 error  \"%1\"");
    QTest::newRow("a folder stands in the script's place")
        << true << QString("Debug: Could not open target file \"Is a directory\"");
}

void tst_HostSteps::mayaFailureIsReported()
{
    QFETCH(bool, hasTemplate);
    QFETCH(QString, complaint);
    const test::ProgramFolder programFolder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = hostAt(sandbox.path("maya"), "maya", "/scripts/drask");
    const QString templateFile = "maya/scripts/drask/drask_userSetup.py";
    sandbox.makeFolder("maya/scripts/drask");
    sandbox.makeFolder("maya/scripts/userSetup.py");
    if (hasTemplate) {
        sandbox.write(templateFile, "import x\n");
    }
    const test::Tree before = sandbox.tree();
    const test::LogCapture log;

    QCOMPARE(runHostSteps(host), 3);

    complaint.replace("%1", sandbox.path(templateFile));
    QCOMPARE(log.lines(), QStringList({complaint, installedLine(host)}));
    QCOMPARE(programFolder.read("pluginError.txt"),
             "Could not copy userSetup.py file to: " + host.targetFolder().toUtf8() + "\n");
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

void tst_HostSteps::houdiniGetsItsSearchPath()
{
    const test::ProgramFolder programFolder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = hostAt(sandbox.path("houdini"), "houdini", "/Plugins/drask");
    sandbox.write("houdini/houdini.env", "A = 1\n");
    sandbox.makeFolder("houdini/Plugins/drask");
    test::Tree expected = sandbox.tree();
    // No folder stands before the semicolon, and the file lies in the host's own folder.
    expected["houdini/houdini.env"] =
        "A = 1\n\n#drask_installed\nHOUDINI_PATH = \";$HOUDINI_PATH\"\n";
    const test::LogCapture log;

    QCOMPARE(runHostSteps(host), 0);
    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
    sandbox.age("houdini/houdini.env");
    QCOMPARE(runHostSteps(host), 0);

    QCOMPARE(log.lines(), QStringList({installedLine(host), installedLine(host)}));
    QVERIFY(sandbox.isAged("houdini/houdini.env"));
    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
    QCOMPARE(test::treeDifference(programFolder.tree(), {}), QString());
}

void tst_HostSteps::houdiniFailureIsPassedOver()
{
    const test::ProgramFolder programFolder;
    const test::Sandbox sandbox;
    const PluginPathStruct host = hostAt(sandbox.path("houdini"), "houdini", "/Plugins/drask");
    sandbox.makeFolder("houdini/houdini.env");
    const test::Tree before = sandbox.tree();
    const test::LogCapture log;

    QCOMPARE(runHostSteps(host), 0);

    QCOMPARE(log.lines(), QStringList(installedLine(host)));
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
    QCOMPARE(test::treeDifference(programFolder.tree(), {}), QString());
}

DRASK_TEST_IN_OWN_FOLDER(tst_HostSteps)
#include "tst_hoststeps.moc"
