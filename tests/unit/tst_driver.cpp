// SPDX-License-Identifier: MIT
#include "driver.h"

#include "expectedlog.h"
#include "globals.h"
#include "loggedsandbox.h"
#include "pages.h"
#include "unitcase.h"

using test::linesOfUninstall;
using test::linesWithoutManifest;
using test::quoted;

class tst_Driver : public QObject {
    Q_OBJECT
private slots:
    void globalsStartEmpty()
    {
        QVERIFY(username.isEmpty());
        QVERIFY(localProjectsFolder.isEmpty());
        QCOMPARE(onlyWriteConfig, false);
    }

    void pluginVersionIsNotTheInstallersVersion()
    {
        QCOMPARE(pluginVersion, 24);
        QCOMPARE(QString(installerVersion), test::page("VERSION").trimmed());
    }

    void textWithoutSlashIsNoFolder_data()
    {
        const test::Table<QString> table("folder");
        table.row("an empty text", "");
        table.row("a name that exists in the working directory", "plugin");
        table.row("backslashes", "C:\\plugin");
        table.row("a host key in brackets", "(maya) ");
    }

    void textWithoutSlashIsNoFolder()
    {
        QFETCH(QString, folder);
        const test::LoggedSandbox sandbox;
        const test::WorkingFolder workingFolder(sandbox.path());
        sandbox.write("plugin/uninstall.ini", "a\n");
        sandbox.write("plugin/manager.cfg", "b");
        sandbox.write("uninstall.ini", "plugin/manager.cfg\n");
        const test::Tree before = sandbox.tree();

        QCOMPARE(uninstallPluginFunction(folder), 0);

        QString shown = folder;
        VERIFY_LINES(sandbox.log.lines(),
                     "Debug: nothing to uninstall for  " + quoted(shown.replace('\\', "\\\\")));
        VERIFY_TREE(sandbox, before);
    }

    void installedPluginIsRemoved()
    {
        const test::LoggedSandbox sandbox;
        const QString folder = sandbox.path("plugin");
        sandbox.write("plugin/sub/a.py", "a");
        sandbox.write("plugin/kept.txt", "of the user");
        sandbox.write("plugin/manager.cfg", "b");
        sandbox.write("plugin/uninstall.ini", (folder + "/sub/a.py\n").toUtf8());
        test::Tree expected = sandbox.tree();
        expected.remove("plugin/sub/a.py");
        expected.remove("plugin/manager.cfg");
        expected.remove("plugin/uninstall.ini");

        QCOMPARE(uninstallPluginFunction(folder), 0);
        QCOMPARE(sandbox.log.lines(), linesOfUninstall(folder, 0));
        VERIFY_TREE(sandbox, expected);
    }

    void undeletableFileIsReported()
    {
        const test::LoggedSandbox sandbox;
        const QString folder = sandbox.path("plugin");
        sandbox.write("plugin/a.py/in its way", "");
        sandbox.write("plugin/b.py", "b");
        sandbox.write("plugin/manager.cfg", "c");
        sandbox.write("plugin/uninstall.ini", (folder + "/a.py\n" + folder + "/b.py\n").toUtf8());
        test::Tree expected = sandbox.tree();
        expected.remove("plugin/b.py");
        expected.remove("plugin/manager.cfg");
        expected.remove("plugin/uninstall.ini");

        QCOMPARE(uninstallPluginFunction(folder), 2);
        QCOMPARE(sandbox.log.lines(), linesOfUninstall(folder, 2));
        VERIFY_TREE(sandbox, expected);
    }

    void keyBeforeTheFolderIsNotStripped()
    {
        const test::LoggedSandbox sandbox;
        const QString folder = sandbox.path("plugin");
        sandbox.write("plugin/a.py", "a");
        sandbox.write("plugin/manager.cfg", "b");
        sandbox.write("plugin/uninstall.ini", (folder + "/a.py\n").toUtf8());
        const test::Tree before = sandbox.tree();

        QCOMPARE(uninstallPluginFunction("(c4d) " + folder), 0);
        QCOMPARE(sandbox.log.lines(), linesWithoutManifest("(c4d) " + folder));
        VERIFY_TREE(sandbox, before);
    }

    void relativeFolderIsUsedAsItStands()
    {
        const test::LoggedSandbox sandbox;
        const test::WorkingFolder workingFolder(sandbox.path());
        sandbox.write("(maya) /host/a.py", "a");
        sandbox.write("(maya) /host/manager.cfg", "b");
        sandbox.write("(maya) /host/uninstall.ini", "(maya) /host/a.py\n");
        QCOMPARE(uninstallPluginFunction("(maya) /host"), 0);
        QCOMPARE(sandbox.log.lines(), linesOfUninstall("(maya) /host", 0));
        VERIFY_TREE(sandbox, {{"(maya) /", ""}, {"(maya) /host/", ""}});
    }
};

DRASK_TEST(tst_Driver)
#include "tst_driver.moc"
