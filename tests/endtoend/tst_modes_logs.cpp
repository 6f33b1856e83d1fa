// SPDX-License-Identifier: MIT
#include "expectedlog.h"
#include "workstation.h"

#include <QProcess>
#include <QtTest>

#include <unistd.h>

using test::linesOfLookUp;

/// The log and the error file: when they are deleted, where they are written, and that nothing else
/// is said.
class tst_ModesLogs : public QObject {
    Q_OBJECT

private slots:
    void previousLogsAreDeleted_data();
    void previousLogsAreDeleted();
    void runFromElsewhereAppends_data();
    void runFromElsewhereAppends();
    void undeletableLogsArePassedOver();
    void unwritableLogsLoseTheirLines();
    void fullDiskLosesTheLines();
    void writeProtectedToolFolderLosesTheLines();
    void debugLinesCannotBeSwitchedOffForTheMachine_data();
    void debugLinesCannotBeSwitchedOffForTheMachine();
    void loggingRulesOfTheEnvironmentDropNothing();
    void warningsOfQtAreLogged();
};

namespace {

/// What a run logs that finds an unknown host in the settings, in the folder "nuke".
QStringList linesOfInstall(const test::Workstation &workstation)
{
    const QString folder = workstation.path("nuke");
    return QStringList("Debug: settings loaded") + linesOfLookUp("nuke", folder)
        + QStringList({"Debug: !!!settings local:  QVariant(Invalid)", "Debug: version:  24"})
        + test::linesOfNewConfig() + QStringList({test::installedLine("nuke", folder), "Debug: 2"});
}

QByteArray errorsOfInstall(const test::Workstation &workstation)
{
    return "Could not copy file to: \n" + workstation.path("nuke").toUtf8() + '\n';
}

/// Makes a run fail, so that there is something to tell the user.
void addUnknownHost(test::Workstation &workstation)
{
    workstation.addHost("nuke", workstation.path("nuke"));
    workstation.writeSettings();
}

void addModeRows()
{
    QTest::addColumn<QStringList>("arguments"); // "@" stands for the sandbox

    QTest::newRow("install") << QStringList();
    QTest::newRow("only write config") << QStringList("onlyWriteConfig");
    QTest::newRow("reinstall") << QStringList("reinstall");
    QTest::newRow("uninstall all plug-ins") << QStringList("uninstallAllPlugins");
    QTest::newRow("uninstall a plug-in") << QStringList({"uninstallPlugin", "(nuke) @/nuke"});
    QTest::newRow("remove legacy plug-ins") << QStringList({"ov3uninstall", "@/missing"});
}

} // namespace

void tst_ModesLogs::previousLogsAreDeleted_data()
{
    addModeRows();
}

void tst_ModesLogs::previousLogsAreDeleted()
{
    QFETCH(QStringList, arguments);
    test::Workstation workstation;
    workstation.writeSettings();
    arguments.replaceInStrings("@", workstation.path());
    workstation.write("tool/plugin.log", "of an earlier run\n");
    workstation.write("tool/pluginError.txt", "of an earlier run\n");

    VERIFY_RUN(workstation.run(arguments), 0);

    QVERIFY(!workstation.log().isEmpty());
    QVERIFY(!workstation.log().contains("of an earlier run"));
    QVERIFY(!workstation.exists("tool/pluginError.txt"));
}

void tst_ModesLogs::runFromElsewhereAppends_data()
{
    addModeRows();
}

void tst_ModesLogs::runFromElsewhereAppends()
{
    QFETCH(QStringList, arguments);
    test::Workstation workstation;
    addUnknownHost(workstation);
    arguments.replaceInStrings("@", workstation.path());
    workstation.write("desk/plugin.log", "of another program");
    workstation.write("desk/pluginError.txt", "of another program");
    workstation.write("desk/settings.ini", "[pluginpaths]\nsize=0\n");
    test::RunOptions options;
    options.workingFolder = workstation.path("desk");

    const int exitCode = workstation.run(arguments, options).exitCode;
    const QStringList once = workstation.log();
    const QByteArray errorsOnce = workstation.errors();
    // The files of the working directory are gone, although they are not the program's.
    QVERIFY(!workstation.exists("desk/plugin.log"));
    QVERIFY(!workstation.exists("desk/pluginError.txt"));
    QVERIFY(!once.isEmpty());

    VERIFY_RUN(workstation.run(arguments, options), exitCode);

    QCOMPARE(workstation.log().mid(0, once.size()), once);
    QVERIFY(workstation.log().size() > once.size());
    QCOMPARE(workstation.errors(), errorsOnce + errorsOnce);
    QCOMPARE(workstation.read("desk/settings.ini"), QByteArray("[pluginpaths]\nsize=0\n"));
}

void tst_ModesLogs::undeletableLogsArePassedOver()
{
    test::Workstation workstation;
    addUnknownHost(workstation);
    workstation.makeFolder("desk/plugin.log");
    workstation.makeFolder("desk/pluginError.txt");
    test::RunOptions options;
    options.workingFolder = workstation.path("desk");

    VERIFY_RUN(workstation.run({}, options), 2);

    QVERIFY(workstation.exists("desk/plugin.log"));
    QVERIFY(workstation.exists("desk/pluginError.txt"));
    QCOMPARE(workstation.log(), linesOfInstall(workstation));
    QCOMPARE(workstation.errors(), errorsOfInstall(workstation));
}

void tst_ModesLogs::unwritableLogsLoseTheirLines()
{
    test::Workstation workstation;
    addUnknownHost(workstation);
    workstation.makeFolder("tool/plugin.log");
    workstation.makeFolder("tool/pluginError.txt");
    test::Tree expected = workstation.tree();
    expected.insert("nuke/", "");
    expected["nuke/manager.cfg"] = "\n\n" + workstation.tool("DraskDrop").toUtf8()
        + "\n2.3.10\n\n1\n1";
    expected["tool/version.txt"] = "2.3.10";

    VERIFY_RUN(workstation.run(), 2);

    QCOMPARE(test::treeDifference(workstation.tree(), expected), QString());
}

void tst_ModesLogs::fullDiskLosesTheLines()
{
    test::Workstation workstation;
    addUnknownHost(workstation);
    // Where no file may grow, every write fails as on a full disk.
    QProcess shell;
    shell.setProcessChannelMode(QProcess::MergedChannels);
    shell.setWorkingDirectory(workstation.tool());
    shell.start("/bin/sh", {"-c", "trap '' XFSZ; ulimit -f 0; exec ./drask-installer"});
    QVERIFY(shell.waitForFinished());

    QCOMPARE(shell.exitStatus(), QProcess::NormalExit);
    QCOMPARE(shell.exitCode(), 2);
    QCOMPARE(shell.readAll(), QByteArray());
    QCOMPARE(workstation.read("tool/plugin.log"), QByteArray());
    QCOMPARE(workstation.errors(), QByteArray());
    QVERIFY(workstation.exists("nuke/manager.cfg"));
    QVERIFY(workstation.exists("tool/plugin.log"));
    QVERIFY(workstation.exists("tool/version.txt"));
}

void tst_ModesLogs::writeProtectedToolFolderLosesTheLines()
{
    if (geteuid() != 0) {
        QSKIP("Only root can start the program as another user");
    }
    test::Workstation workstation;
    addUnknownHost(workstation);
    workstation.write("tool/plugin.log", "kept\n");
    const test::Tree before = workstation.tree();
    test::RunOptions options;
    options.asOrdinaryUser = true;

    // The host cannot be written to either.
    VERIFY_RUN(workstation.run({}, options), 3);

    QCOMPARE(test::treeDifference(workstation.tree(), before), QString());
}

void tst_ModesLogs::debugLinesCannotBeSwitchedOffForTheMachine_data()
{
    QTest::addColumn<QByteArray>("rule");

    QTest::newRow("all debug lines") << QByteArray("*.debug=false");
    QTest::newRow("the debug lines of programs") << QByteArray("default.debug=false");
    QTest::newRow("both") << QByteArray("*.debug=false\ndefault.debug=false");
}

void tst_ModesLogs::debugLinesCannotBeSwitchedOffForTheMachine()
{
#ifndef Q_OS_LINUX
    QSKIP("Qt looks for its logging rules in XDG_CONFIG_HOME on Linux alone");
#endif
    QFETCH(QByteArray, rule);
    test::Workstation workstation;
    addUnknownHost(workstation);
    workstation.write("config/QtProject/qtlogging.ini", "[Rules]\n" + rule + '\n');
    test::RunOptions options;
    options.environment.insert("XDG_CONFIG_HOME", workstation.path("config"));

    VERIFY_RUN(workstation.run({}, options), 2);

    QCOMPARE(workstation.log(), linesOfInstall(workstation));
    QCOMPARE(workstation.errors(), errorsOfInstall(workstation));
}

void tst_ModesLogs::loggingRulesOfTheEnvironmentDropNothing()
{
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"sub/a.py", "a"}});
    workstation.addPlugin("xsi", {{"a.js", "a"}});
    workstation.addHost("modo", workstation.path("modo"));
    workstation.addHost("xsi", workstation.path("xsi"));
    workstation.writeSettings();
    // A subfolder that cannot be copied makes Qt warn about the first host's open manifest.
    workstation.makeFolder("modo/Scripts/drask/sub/a.py");
    VERIFY_RUN(workstation.run(), 2);
    VERIFY_RUN(workstation.run(), 2);
    const QStringList linesWithoutRules = workstation.log();
    QCOMPARE(linesWithoutRules.filter("Warning: ").size(), 1);
    test::RunOptions options;
    options.environment.insert("QT_LOGGING_RULES", "*=false");

    VERIFY_RUN(workstation.run({}, options), 2);

    QCOMPARE(workstation.log(), linesWithoutRules);
}

void tst_ModesLogs::warningsOfQtAreLogged()
{
    test::Workstation workstation;
    workstation.addPlugin("modo", {{"sub/a.py", "a"}});
    workstation.addPlugin("xsi", {{"a.js", "a"}});
    workstation.addHost("modo", workstation.path("modo"));
    workstation.addHost("xsi", workstation.path("xsi"));
    workstation.writeSettings();
    // A subfolder that cannot be copied leaves the first host's manifest open.
    workstation.makeFolder("modo/Scripts/drask/sub/a.py");
    const QString manifest = workstation.path("modo/Scripts/drask/uninstall.ini");

    VERIFY_RUN(workstation.run(), 2);

    const QStringList warnings = workstation.log().filter("Warning: ");
    QCOMPARE(warnings.size(), 1);
    QVERIFY2(warnings.first().startsWith("Warning: QFile::setFileName: ")
                 && warnings.first().contains(manifest),
             qPrintable(warnings.first()));
    QCOMPARE(workstation.read("xsi/Application/Plugins/drask/uninstall.ini"),
             workstation.path("xsi/Application/Plugins/drask/a.js\n").toUtf8());
}

QTEST_GUILESS_MAIN(tst_ModesLogs)
#include "tst_modes_logs.moc"
