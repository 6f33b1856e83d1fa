// SPDX-License-Identifier: MIT
#include "driver.h"

#include "expectedlog.h"
#include "globals.h"
#include "logcapture.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QtTest>

class tst_Driver : public QObject {
    Q_OBJECT

private slots:
    void globalsStartEmpty();
    void pluginVersionIsNotTheInstallersVersion();
    void textWithoutSlashIsNoFolder_data();
    void textWithoutSlashIsNoFolder();
    void installedPluginIsRemoved();
    void undeletableFileIsReported();
    void keyBeforeTheFolderIsNotStripped();
    void relativeFolderIsUsedAsItStands();
};

using test::linesOfUninstall;
using test::linesWithoutManifest;
using test::quoted;

void tst_Driver::globalsStartEmpty()
{
    QVERIFY(username.isEmpty());
    QVERIFY(localProjectsFolder.isEmpty());
    QCOMPARE(onlyWriteConfig, false);
}

void tst_Driver::pluginVersionIsNotTheInstallersVersion()
{
    QCOMPARE(pluginVersion, 24);
    QCOMPARE(QString(installerVersion), QString("2.3.10"));
}

void tst_Driver::textWithoutSlashIsNoFolder_data()
{
    QTest::addColumn<QString>("folder");

    QTest::newRow("an empty text") << QString("");
    QTest::newRow("a name that exists in the working directory") << QString("plugin");
    QTest::newRow("backslashes") << QString("C:\\plugin");
    QTest::newRow("a host key in brackets") << QString("(maya) ");
}

void tst_Driver::textWithoutSlashIsNoFolder()
{
    QFETCH(QString, folder);
    const test::Sandbox sandbox;
    const test::WorkingFolder workingFolder(sandbox.path());
    sandbox.write("plugin/uninstall.ini", "a\n");
    sandbox.write("plugin/manager.cfg", "b");
    sandbox.write("uninstall.ini", "plugin/manager.cfg\n");
    const test::Tree before = sandbox.tree();
    const test::LogCapture log;

    QCOMPARE(uninstallPluginFunction(folder), 0);

    QString shown = folder;
    QCOMPARE(
        log.lines(),
        QStringList("Debug: nothing to uninstall for  " + quoted(shown.replace('\\', "\\\\"))));
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

void tst_Driver::installedPluginIsRemoved()
{
    const test::Sandbox sandbox;
    const QString folder = sandbox.path("plugin");
    sandbox.write("plugin/sub/a.py", "a");
    sandbox.write("plugin/kept.txt", "of the user");
    sandbox.write("plugin/manager.cfg", "b");
    sandbox.write("plugin/uninstall.ini", (folder + "/sub/a.py\n").toUtf8());
    test::Tree expected = sandbox.tree();
    expected.remove("plugin/sub/a.py");
    expected.remove("plugin/manager.cfg");
    expected.remove("plugin/uninstall.ini");
    const test::LogCapture log;

    QCOMPARE(uninstallPluginFunction(folder), 0);

    QCOMPARE(log.lines(), linesOfUninstall(folder, 0));
    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
}

void tst_Driver::undeletableFileIsReported()
{
    const test::Sandbox sandbox;
    const QString folder = sandbox.path("plugin");
    sandbox.write("plugin/a.py/in its way", "");
    sandbox.write("plugin/b.py", "b");
    sandbox.write("plugin/manager.cfg", "c");
    sandbox.write("plugin/uninstall.ini", (folder + "/a.py\n" + folder + "/b.py\n").toUtf8());
    test::Tree expected = sandbox.tree();
    expected.remove("plugin/b.py");
    expected.remove("plugin/manager.cfg");
    expected.remove("plugin/uninstall.ini");
    const test::LogCapture log;

    QCOMPARE(uninstallPluginFunction(folder), 2);

    QCOMPARE(log.lines(), linesOfUninstall(folder, 2));
    QCOMPARE(test::treeDifference(sandbox.tree(), expected), QString());
}

void tst_Driver::keyBeforeTheFolderIsNotStripped()
{
    const test::Sandbox sandbox;
    const QString folder = sandbox.path("plugin");
    sandbox.write("plugin/a.py", "a");
    sandbox.write("plugin/manager.cfg", "b");
    sandbox.write("plugin/uninstall.ini", (folder + "/a.py\n").toUtf8());
    const test::Tree before = sandbox.tree();
    const test::LogCapture log;

    QCOMPARE(uninstallPluginFunction("(c4d) " + folder), 0);

    QCOMPARE(log.lines(), linesWithoutManifest("(c4d) " + folder));
    QCOMPARE(test::treeDifference(sandbox.tree(), before), QString());
}

void tst_Driver::relativeFolderIsUsedAsItStands()
{
    const test::Sandbox sandbox;
    const test::WorkingFolder workingFolder(sandbox.path());
    sandbox.write("(maya) /host/a.py", "a");
    sandbox.write("(maya) /host/manager.cfg", "b");
    sandbox.write("(maya) /host/uninstall.ini", "(maya) /host/a.py\n");
    const test::LogCapture log;

    QCOMPARE(uninstallPluginFunction("(maya) /host"), 0);

    QCOMPARE(log.lines(), linesOfUninstall("(maya) /host", 0));
    QCOMPARE(test::treeDifference(sandbox.tree(), {{"(maya) /", ""}, {"(maya) /host/", ""}}),
             QString());
}

DRASK_TEST(tst_Driver)
#include "tst_driver.moc"
