// SPDX-License-Identifier: MIT
#include "hoststeps.h"

#include "hostsetup.h"
#include "loggedsandbox.h"
#include "programfolder.h"
#include "unitcase.h"

using test::hostAt;
using test::installedLine;

class tst_HostSteps : public QObject {
    Q_OBJECT
private slots:
    void hostWithoutStepsIsOnlyLogged_data()
    {
        const test::Table<QString> table("key");
        for (const char *key : {"c4d", "c4d14", "c4d21", "blender", "blender28", "xsi", "lightwave",
                                "modo", "sketchup", "clarisse", "3dsmax", "Maya", "Rhino", "Revit",
                                "Houdini", "maya2", "unknown"}) {
            table.row(key, QString(key));
        }
        table.row("an empty key", "");
    }

    void hostWithoutStepsIsOnlyLogged()
    {
        QFETCH(QString, key);
        const test::ProgramFolder programFolder;
        const test::LoggedSandbox sandbox;
        const test::WorkingFolder workingFolder(sandbox.path());
        sandbox.write("host/plugins/drask/drask_userSetup.py", "import x\n");
        sandbox.write("host/houdini.env", "A = 1\n");
        const PluginPathStruct host = hostAt(sandbox.path("host"), key, "/plugins/drask");
        const test::Tree before = sandbox.tree();

        QCOMPARE(runHostSteps(host), 0);
        QCOMPARE(sandbox.log.lines(), QStringList(installedLine(host)));
        VERIFY_TREE(sandbox, before);
        VERIFY_TREE(programFolder, {});
    }

    void mayaGetsItsStartUpScript()
    {
        const test::ProgramFolder programFolder;
        const test::LoggedSandbox sandbox;
        const PluginPathStruct host = hostAt(sandbox.path("maya"), "maya", "/scripts/drask");
        sandbox.write("maya/scripts/drask/drask_userSetup.py", "path = '__scriptpath__'\n");
        test::Tree expected = sandbox.tree();
        expected["maya/scripts/userSetup.py"] = "path = '" + host.targetFolder().toUtf8() + "'\n";

        QCOMPARE(runHostSteps(host), 0);
        QCOMPARE(sandbox.log.lines(), QStringList(installedLine(host)));
        VERIFY_TREE(sandbox, expected);
        VERIFY_TREE(programFolder, {});
    }

    void mayaFailureIsReported_data()
    {
        const test::Table<bool, QString> table("hasTemplate", "complaint");
        table.row("the template is missing", false, "Debug: 1635 error  \"%1\"");
        table.row("a folder stands in the script's place", true,
                  "Debug: Could not open target file \"Is a directory\"");
    }

    void mayaFailureIsReported()
    {
        QFETCH(bool, hasTemplate);
        QFETCH(QString, complaint);
        const test::ProgramFolder programFolder;
        const test::LoggedSandbox sandbox;
        const PluginPathStruct host = hostAt(sandbox.path("maya"), "maya", "/scripts/drask");
        const QString templateFile = "maya/scripts/drask/drask_userSetup.py";
        sandbox.makeFolder("maya/scripts/drask");
        sandbox.makeFolder("maya/scripts/userSetup.py");
        if (hasTemplate) {
            sandbox.write(templateFile, "import x\n");
        }
        const test::Tree before = sandbox.tree();

        QCOMPARE(runHostSteps(host), 3);

        complaint.replace("%1", sandbox.path(templateFile));
        VERIFY_LINES(sandbox.log.lines(), complaint, installedLine(host));
        QCOMPARE(programFolder.read("pluginError.txt"),
                 "Could not copy userSetup.py file to: " + host.targetFolder().toUtf8() + "\n");
        VERIFY_TREE(sandbox, before);
    }

    void houdiniGetsItsSearchPath()
    {
        const test::ProgramFolder programFolder;
        const test::LoggedSandbox sandbox;
        const PluginPathStruct host = hostAt(sandbox.path("houdini"), "houdini", "/Plugins/drask");
        sandbox.write("houdini/houdini.env", "A = 1\n");
        sandbox.makeFolder("houdini/Plugins/drask");
        test::Tree expected = sandbox.tree();
        // No folder stands before the semicolon, and the file lies in the host's own folder.
        expected["houdini/houdini.env"] =
            "A = 1\n\n#drask_installed\nHOUDINI_PATH = \";$HOUDINI_PATH\"\n";

        QCOMPARE(runHostSteps(host), 0);
        VERIFY_TREE(sandbox, expected);
        sandbox.age("houdini/houdini.env");
        QCOMPARE(runHostSteps(host), 0);
        VERIFY_LINES(sandbox.log.lines(), installedLine(host), installedLine(host));
        QVERIFY(sandbox.isAged("houdini/houdini.env"));
        VERIFY_TREE(sandbox, expected);
        VERIFY_TREE(programFolder, {});
    }

    void houdiniFailureIsPassedOver()
    {
        const test::ProgramFolder programFolder;
        const test::LoggedSandbox sandbox;
        const PluginPathStruct host = hostAt(sandbox.path("houdini"), "houdini", "/Plugins/drask");
        sandbox.makeFolder("houdini/houdini.env");
        const test::Tree before = sandbox.tree();

        QCOMPARE(runHostSteps(host), 0);
        QCOMPARE(sandbox.log.lines(), QStringList(installedLine(host)));
        VERIFY_TREE(sandbox, before);
        VERIFY_TREE(programFolder, {});
    }
};

DRASK_TEST_IN_OWN_FOLDER(tst_HostSteps)
#include "tst_hoststeps.moc"
