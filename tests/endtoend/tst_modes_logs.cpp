// SPDX-License-Identifier: MIT
#include "expectedpass.h"

#include "testprogram.h"

#include <QtTest>

#include <unistd.h>

using test::installedLine;
using test::linesOfConfig;
using test::linesOfLookUp;
using test::linesOfRun;
using test::linesWithoutManifest;
using test::openFileLine;
using test::Run;

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

/// Makes a run fail, so that there is something to tell the user: an unknown host.
void addUnknownHost(test::Workstation &workstation)
{
    workstation.addHost("nuke", workstation.path("nuke"));
    workstation.writeSettings();
}

/// Only a copy can fail of an unknown host.
bool fails(RunMode mode)
{
    return mode == RunMode::Install || mode == RunMode::Reinstall;
}

QByteArray errorsOfRun(const test::Workstation &workstation, RunMode mode = RunMode::Install)
{
    return fails(mode) ? "Could not copy file to: \n" + workstation.path("nuke").toUtf8() + '\n'
                       : QByteArray();
}

/// What a run logs whose settings list the unknown host.
QStringList linesOfUnknownHost(const test::Workstation &workstation, Run run,
                               RunMode mode = RunMode::Install)
{
    const QString folder = workstation.path("nuke");
    if (mode == RunMode::Ov3Uninstall) {
        return {"Debug: 0"};
    }
    if (mode == RunMode::UninstallPlugin) {
        return linesOfLookUp("nuke", folder) + linesWithoutManifest(folder);
    }
    QStringList pass;
    if (mode == RunMode::OnlyWriteConfig) {
        pass << "Debug: only write config, do not copy files";
    }
    pass += linesOfConfig(run) << installedLine("nuke", folder)
                               << (fails(mode) ? "Debug: 2" : "Debug: 0");
    return linesOfRun(mode, linesOfLookUp("nuke", folder), linesWithoutManifest("(nuke) " + folder),
                      pass);
}

/// What a run logs whose settings list no host.
QStringList linesWithoutHosts(const test::Workstation &workstation, RunMode mode)
{
    return mode == RunMode::UninstallPlugin || mode == RunMode::Ov3Uninstall
        ? linesOfUnknownHost(workstation, Run::First, mode)
        : linesOfRun(mode, {}, {}, {"Debug: 0"});
}

/// What a run that installs will make of the tree as it is now.
test::Tree treeOfUnknownHost(const test::Workstation &workstation)
{
    test::Tree expected = workstation.treeWithoutLogs();
    test::addWithFolders(expected, "nuke/manager.cfg", test::configOf(workstation));
    expected["tool/version.txt"] = "2.3.10";
    return expected;
}

/// In the arguments, "@" stands for the sandbox.
void addModeRows()
{
    test::addModesOfListedHosts();
    QTest::newRow("uninstall a plug-in")
        << QStringList({"uninstallPlugin", "(nuke) @/nuke"}) << RunMode::UninstallPlugin;
    QTest::newRow("remove legacy plug-ins")
        << QStringList({"ov3uninstall", "@/missing"}) << RunMode::Ov3Uninstall;
}

/// Runs the program where no file may grow: every write fails as on a full disk.
test::RunResult runOnFullDisk(const test::Workstation &workstation)
{
    test::RunOptions options;
    options.through = QStringList({"/bin/sh", "-c", "trap '' XFSZ; ulimit -f 0; exec \"$0\""});
    return workstation.run({}, options);
}

/// Two hosts, of which the first has a subfolder that cannot be copied. Its manifest then stays
/// open, of which Qt warns when the second host's is to be opened.
class LeftOpenManifest : public test::Workstation {
public:
    LeftOpenManifest()
    {
        addPlugin("modo", {{"sub/a.py", "a"}});
        addPlugin("xsi", {{"a.js", "a"}});
        addHost("modo", path("modo"));
        addHost("xsi", path("xsi"));
        writeSettings();
        makeFolder(modoFolder + "/sub/a.py");
    }

    QString modo() const
    {
        return path(modoFolder);
    }

    /// The words are Qt's own.
    QString warning() const
    {
        return log().filter("Warning: ").value(0);
    }

    QByteArray expectedErrors() const
    {
        return "Could not copy file to: \n" + modo().toUtf8() + '\n';
    }

    test::Tree expectedTree() const;
    QStringList expectedLog(Run run) const;

private:
    const QString modoFolder = "modo/Scripts/drask";
    const QString xsiFolder = "xsi/Application/Plugins/drask";
};

test::Tree LeftOpenManifest::expectedTree() const
{
    test::Tree expected = tree();
    expected["tool/version.txt"] = "2.3.10";
    expected[modoFolder + "/uninstall.ini"] = "";
    expected[modoFolder + "/manager.cfg"] = test::configOf(*this);
    test::addWithFolders(expected, xsiFolder + "/a.js", "a");
    expected[xsiFolder + "/uninstall.ini"] = path(xsiFolder + "/a.js\n").toUtf8();
    expected[xsiFolder + "/manager.cfg"] = test::configOf(*this);
    return expected;
}

QStringList LeftOpenManifest::expectedLog(Run run) const
{
    const QString obstacle = test::quoted(modo() + "/sub/a.py");
    QStringList pass{openFileLine(), "Debug: Could not remove file " + obstacle,
                     "Debug: exist check failed - rights problem " + obstacle};
    pass += linesOfConfig(run);
    pass << installedLine("modo", modo()) << openFileLine(modo() + "/uninstall.ini") << warning();
    pass += linesOfConfig(run);
    pass << installedLine("xsi", path(xsiFolder)) << "Debug: 2";
    return linesOfRun(RunMode::Install,
                      linesOfLookUp("modo", path("modo")) + linesOfLookUp("xsi", path("xsi")), {},
                      pass);
}

} // namespace

void tst_ModesLogs::previousLogsAreDeleted_data()
{
    addModeRows();
}

void tst_ModesLogs::previousLogsAreDeleted()
{
    QFETCH(QStringList, arguments);
    QFETCH(RunMode, mode);
    test::Workstation workstation;
    workstation.writeSettings();
    arguments.replaceInStrings("@", workstation.path());
    test::Tree expected = workstation.tree();
    if (test::installs(mode)) {
        expected["tool/version.txt"] = "2.3.10";
    }
    workstation.write("tool/plugin.log", "of an earlier run\n");
    workstation.write("tool/pluginError.txt", "of an earlier run\n");

    for (int run = 1; run <= 2; ++run) {
        VERIFY_RUN(workstation.run(arguments), 0);
        VERIFY_LEFT(workstation, expected, linesWithoutHosts(workstation, mode), QByteArray());
    }
}

void tst_ModesLogs::runFromElsewhereAppends_data()
{
    addModeRows();
}

void tst_ModesLogs::runFromElsewhereAppends()
{
    QFETCH(QStringList, arguments);
    QFETCH(RunMode, mode);
    test::Workstation workstation;
    addUnknownHost(workstation);
    arguments.replaceInStrings("@", workstation.path());
    workstation.write("desk/settings.ini", "[pluginpaths]\nsize=0\n");
    // The files of the working directory will be gone, although they are not the program's.
    const test::Tree expected = test::installs(mode) ? treeOfUnknownHost(workstation)
                                                     : workstation.tree();
    workstation.write("desk/plugin.log", "of another program");
    workstation.write("desk/pluginError.txt", "of another program");
    test::RunOptions options;
    options.workingFolder = workstation.path("desk");
    const QStringList log = linesOfUnknownHost(workstation, Run::First, mode);
    const QByteArray errors = errorsOfRun(workstation, mode);

    VERIFY_RUN(workstation.run(arguments, options), fails(mode) ? 2 : 0);
    VERIFY_LEFT(workstation, expected, log, errors);

    VERIFY_RUN(workstation.run(arguments, options), fails(mode) ? 2 : 0);
    VERIFY_LEFT(workstation, expected, log + linesOfUnknownHost(workstation, Run::Second, mode),
                errors + errors);
}

void tst_ModesLogs::undeletableLogsArePassedOver()
{
    test::Workstation workstation;
    addUnknownHost(workstation);
    workstation.makeFolder("desk/plugin.log");
    workstation.makeFolder("desk/pluginError.txt");
    test::RunOptions options;
    options.workingFolder = workstation.path("desk");

    const test::Tree expected = treeOfUnknownHost(workstation);
    const QStringList log = linesOfUnknownHost(workstation, Run::First);
    const QByteArray errors = errorsOfRun(workstation);

    VERIFY_RUN(workstation.run({}, options), 2);
    VERIFY_LEFT(workstation, expected, log, errors);

    VERIFY_RUN(workstation.run({}, options), 2);
    VERIFY_LEFT(workstation, expected, log + linesOfUnknownHost(workstation, Run::Second),
                errors + errors);
}

void tst_ModesLogs::unwritableLogsLoseTheirLines()
{
    test::Workstation workstation;
    addUnknownHost(workstation);
    workstation.makeFolder("tool/plugin.log");
    workstation.makeFolder("tool/pluginError.txt");
    const test::Tree expected = treeOfUnknownHost(workstation);

    for (int run = 1; run <= 2; ++run) {
        VERIFY_RUN(workstation.run(), 2);
        VERIFY_LEFT(workstation, expected, QStringList(), QByteArray());
    }
}

void tst_ModesLogs::fullDiskLosesTheLines()
{
    test::Workstation workstation;
    addUnknownHost(workstation);
    const test::Tree expected = treeOfUnknownHost(workstation);
    test::Tree expectedWhenFull = expected;
    expectedWhenFull.remove("nuke/manager.cfg");
    expectedWhenFull.remove("tool/version.txt");

    for (int run = 1; run <= 2; ++run) {
        VERIFY_RUN(runOnFullDisk(workstation), 3);
        VERIFY_LEFT(workstation, expectedWhenFull, QStringList(), QByteArray(""));
        QCOMPARE(workstation.read("tool/plugin.log"), QByteArray());
        QVERIFY(workstation.exists("tool/plugin.log"));
    }

    // Once there is room, the files are made.
    VERIFY_RUN(workstation.run(), 2);
    VERIFY_LEFT(workstation, expected, linesOfUnknownHost(workstation, Run::First),
                errorsOfRun(workstation));
}

void tst_ModesLogs::writeProtectedToolFolderLosesTheLines()
{
    if (geteuid() != 0) {
        QSKIP("Only root can start the program as another user");
    }
    test::Workstation workstation;
    addUnknownHost(workstation);
    workstation.write("tool/plugin.log", "kept\n");
    const test::Tree before = workstation.treeWithoutLogs();
    test::RunOptions options;
    options.asOrdinaryUser = true;

    // The host cannot be written to either.
    for (int run = 1; run <= 2; ++run) {
        VERIFY_RUN(workstation.run({}, options), 3);
        VERIFY_LEFT(workstation, before, QStringList("kept"), QByteArray());
    }
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

    const test::Tree expected = treeOfUnknownHost(workstation);

    for (const Run run : {Run::First, Run::Second}) {
        VERIFY_RUN(workstation.run({}, options), 2);
        VERIFY_LEFT(workstation, expected, linesOfUnknownHost(workstation, run),
                    errorsOfRun(workstation));
    }
}

void tst_ModesLogs::loggingRulesOfTheEnvironmentDropNothing()
{
    const LeftOpenManifest workstation;
    const test::Tree expected = workstation.expectedTree();
    for (const Run run : {Run::First, Run::Second}) {
        VERIFY_RUN(workstation.run(), 2);
        VERIFY_LEFT(workstation, expected, workstation.expectedLog(run),
                    workstation.expectedErrors());
    }
    const QStringList linesWithoutRules = workstation.log();
    QCOMPARE(linesWithoutRules.filter("Warning: ").size(), 1);
    test::RunOptions options;
    options.environment.insert("QT_LOGGING_RULES", "*=false");

    VERIFY_RUN(workstation.run({}, options), 2);
    VERIFY_LEFT(workstation, expected, linesWithoutRules, workstation.expectedErrors());
}

void tst_ModesLogs::warningsOfQtAreLogged()
{
    const LeftOpenManifest workstation;
    const test::Tree expected = workstation.expectedTree();

    for (const Run run : {Run::First, Run::Second}) {
        VERIFY_RUN(workstation.run(), 2);
        const QString warning = workstation.warning();
        QVERIFY2(warning.startsWith("Warning: QFile::setFileName: ")
                     && warning.contains(workstation.modo() + "/uninstall.ini"),
                 qPrintable(warning));
        VERIFY_LEFT(workstation, expected, workstation.expectedLog(run),
                    workstation.expectedErrors());
    }
}

DRASK_TEST(tst_ModesLogs)
#include "tst_modes_logs.moc"
