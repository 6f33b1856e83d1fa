// SPDX-License-Identifier: MIT
#include "ordinaryuser.h"
#include "plantedplugin.h"
#include "testprogram.h"

#include <QtTest>

#include <algorithm>
#include <iterator>

/// What surrounds a run: variables, descriptors, working folders, names of the program, limits.
class tst_HostileEnvironment : public QObject {
    Q_OBJECT

private slots:
    void variablesChangeNothing_data();
    void variablesChangeNothing();
    void variablesThatHaveQtSpeakLeaveTheConsoleEmpty_data();
    void variablesThatHaveQtSpeakLeaveTheConsoleEmpty();
    void closedDescriptorsChangeNothing_data();
    void closedDescriptorsChangeNothing();
    void workingFolderThatIsGoneChangesNothing();
    void workingFolderThatIsGoneHoldsNoHost();
    void workingFolderThatMayNotBeUsedChangesNothing_data();
    void workingFolderThatMayNotBeUsedChangesNothing();
    void nameInTheArgumentsChangesNothing_data();
    void nameInTheArgumentsChangesNothing();
    void smallLimitsChangeNothing_data();
    void smallLimitsChangeNothing();
};

namespace {

/// A plug-in and a user whose names are not ASCII, and a companion that answers and complains.
class Surrounded : public test::PlantedPlugin {
public:
    Surrounded()
    {
        addSetting("UserData", QString::fromUtf8("username=\xc3\x84nn"));
        writeSettings();
        addPlugin("modo", copied());
        addCpuType("printf cpu; echo complaint >&2\n");
        user = "\xc3\x84nn";
        cpuTypeInBase64 = "Y3B1";
    }

    static test::Tree copied()
    {
        return {{"version.txt", "7"}, {QString::fromUtf8("\xc3\xb6.py"), "a"}, {"sub/b.py", "b"}};
    }
};

/// Options of a run through the shell command \a script, which is to end in "exec "$@"".
test::RunOptions throughShell(const QString &script)
{
    test::RunOptions options;
    options.through = QStringList{"/bin/bash", "-c", script, "bash"};
    return options;
}

const char *const leavingNoWorkingFolder = "mkdir gone && cd gone && rmdir ../gone && exec \"$@\"";

/// Installs twice and removes with \a options, and wants everything to be as ever.
void verifyLifeWith(const Surrounded &station, const test::RunOptions &options)
{
    const test::Tree copied = Surrounded::copied();
    test::verifyInstallOf(station, copied, station.manifestOf(copied), options);
    const test::Tree rest = test::PlantedPlugin::withoutPlugin(station.treeWithoutLogs());

    VERIFY_RUN(station.run({"uninstallPlugin", "(modo) " + station.path("modo")}, options), 0);
    VERIFY_LEFT(station, rest, station.logOfRemoval(), QByteArray());
}

/// The lines of \a log that are the program's, in their order, when it wrote \a expected.
QStringList programsLines(const QStringList &log, const QStringList &expected)
{
    QStringList lines;
    std::copy_if(log.cbegin(), log.cend(), std::back_inserter(lines),
                 [&expected](const QString &line) { return expected.contains(line); });
    return lines;
}

} // namespace

void tst_HostileEnvironment::variablesChangeNothing_data()
{
    QTest::addColumn<QStringList>("variables");
    QTest::addColumn<bool>("alone");
    const auto row = [](const char *name, const QStringList &variables, bool alone = false) {
        QTest::newRow(name) << variables << alone;
    };

    row("no variable at all", {}, true);
    row("no home", {"HOME="});
    row("a home that is missing", {"HOME=/nowhere/at/all", "XDG_CONFIG_HOME=/nowhere/at/all"});
    row("a home that is no whole path", {"HOME=.", "XDG_CONFIG_HOME=..", "XDG_CONFIG_DIRS=a:b"});
    row("no path", {"PATH="});
    row("no temporary folder", {"TMPDIR=/nowhere/at/all"});
    row("the plainest locale", {"LC_ALL=C"});
    row("the plainest locale by its other name", {"LC_ALL=POSIX"});
    row("a locale that is missing", {"LC_ALL=xx_YY.UTF-8", "LANG=none", "LANGUAGE=none"});
    row("a locale of one byte a letter", {"LC_ALL=de_DE.ISO-8859-1"});
    row("a time zone that is none", {"TZ=:/etc/passwd"});
    row("lines of the log to the console",
        {"QT_LOGGING_TO_CONSOLE=1", "QT_FORCE_STDERR_LOGGING=1", "QT_ASSUME_STDERR_HAS_CONSOLE=1"});
    row("another form of the log's lines", {"QT_MESSAGE_PATTERN=%{type} %{message} %{backtrace}"});
    row("a form that is none", {"QT_MESSAGE_PATTERN=%{none} %{if-debug}%{if-fatal}"});
    row("logging rules that are missing", {"QT_LOGGING_CONF=/nowhere/at/all"});
    row("warnings that are fatal, of which there is none",
        {"QT_FATAL_WARNINGS=1", "QT_FATAL_CRITICALS=1"});
    row("plug-ins of Qt that are missing", {"QT_PLUGIN_PATH=/nowhere", "QT_DEBUG_PLUGINS=1"});
    row("memory that is never zero", {"MALLOC_PERTURB_=165"});
    row("a variable of a megabyte's tenth", {"LONG=" + QString(100000, 'x')});
}

void tst_HostileEnvironment::variablesChangeNothing()
{
    QFETCH(QStringList, variables);
    QFETCH(bool, alone);
    const Surrounded station;
    test::RunOptions options;
    if (alone) {
        options.environment = QProcessEnvironment();
        options.environment.insert("X", QString());
    }
    for (const QString &variable : qAsConst(variables)) {
        const int sign = variable.indexOf('=');
        options.environment.insert(variable.left(sign), variable.mid(sign + 1));
    }

    verifyLifeWith(station, options);
}

void tst_HostileEnvironment::variablesThatHaveQtSpeakLeaveTheConsoleEmpty_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");

    QTest::newRow("about its logging rules") << "QT_LOGGING_DEBUG"
                                             << "1";
    QTest::newRow("about rules that are none") << "QT_LOGGING_RULES"
                                               << "x=maybe;*.*.*=true;=;;%";
    QTest::newRow("about all that it does") << "QT_LOGGING_RULES"
                                            << "*=true";
}

void tst_HostileEnvironment::variablesThatHaveQtSpeakLeaveTheConsoleEmpty()
{
    QFETCH(QString, name);
    QFETCH(QString, value);
    const Surrounded station;
    test::RunOptions options;
    options.environment.insert(name, value);

    const test::Tree copied = Surrounded::copied();
    const test::Tree installed = station.installed(station.tree(), copied);

    // Qt's own lines, which differ between its versions, stand among those of the program.
    for (const QStringList &log : {station.logOfInstall(), station.logOfSecondInstall()}) {
        VERIFY_RUN(station.run({}, options), 0);
        QCOMPARE(programsLines(station.log(), log), log);
        QCOMPARE(station.manifest(), station.manifestOf(copied));
        VERIFY_LEFT(station, station.withManifest(installed), station.log(), QByteArray());
    }
}

void tst_HostileEnvironment::closedDescriptorsChangeNothing_data()
{
    QTest::addColumn<QString>("redirections");

    QTest::newRow("no input") << "<&-";
    QTest::newRow("no output") << ">&-";
    QTest::newRow("no place for errors") << "2>&-";
    QTest::newRow("neither output nor errors") << ">&- 2>&-";
    QTest::newRow("neither input nor output") << "<&- >&-";
    QTest::newRow("none of the three") << "<&- >&- 2>&-";
    QTest::newRow("input that may not be read") << "0>/dev/null";
    QTest::newRow("output that may not be written") << "1</dev/null 2</dev/null";
    QTest::newRow("a full device") << ">/dev/full 2>/dev/full";
    QTest::newRow("many open files") << "7<. 8</dev/null 9</etc/passwd";
}

void tst_HostileEnvironment::closedDescriptorsChangeNothing()
{
    QFETCH(QString, redirections);
    const Surrounded station;

    verifyLifeWith(station, throughShell("exec \"$@\" " + redirections));
}

void tst_HostileEnvironment::workingFolderThatIsGoneChangesNothing()
{
    const Surrounded station;
    const test::Tree copied = Surrounded::copied();
    const test::Tree installed = station.installed(station.tree(), copied);

    // The old log is looked for in the working folder, so that the second run adds to this one.
    QStringList log;
    for (const QStringList &lines : {station.logOfInstall(), station.logOfSecondInstall()}) {
        log += lines;
        VERIFY_RUN(station.run({}, throughShell(leavingNoWorkingFolder)), 0);
        QCOMPARE(station.manifest(), station.manifestOf(copied));
        VERIFY_LEFT(station, station.withManifest(installed), log, QByteArray());
    }
}

void tst_HostileEnvironment::workingFolderThatIsGoneHoldsNoHost()
{
    const Surrounded station;
    station.write("tool/settings.ini",
                  "[pluginpaths]\nsize=1\n1\\application=modo\n1\\path=some/modo\n");
    test::Tree expected = station.tree();
    expected.insert("tool/version.txt", "2.3.10");
    const QString target = "some/modo/Scripts/drask";
    const QStringList log = test::logOfPass("modo", "some/modo",
                                            test::linesOfMissingTarget("modo", target), 3);
    const QByteArray messages = test::messagesOfMissingTarget(target);

    VERIFY_RUN(station.run({}, throughShell(leavingNoWorkingFolder)), 3);
    VERIFY_LEFT(station, expected, log, messages);

    // The second run finds no folder to delete the logs of the first one in.
    VERIFY_RUN(station.run({}, throughShell(leavingNoWorkingFolder)), 3);
    VERIFY_LEFT(station, expected, log + log, messages + messages);
}

void tst_HostileEnvironment::workingFolderThatMayNotBeUsedChangesNothing_data()
{
    QTest::addColumn<int>("mode");

    QTest::newRow("not be written to") << 0555;
    QTest::newRow("not be listed") << 0111;
    QTest::newRow("not even be entered") << 0;
}

void tst_HostileEnvironment::workingFolderThatMayNotBeUsedChangesNothing()
{
    QFETCH(int, mode);
    const Surrounded station;
    station.write("locked/plugin.log", "mine");
    for (const char *folder : {"tool", "modo", "modo/Scripts", "locked"}) {
        test::giveToOrdinaryUser(station.path(folder));
    }
    const test::Tree copied = Surrounded::copied();
    const test::Tree installed = station.installed(station.tree(), copied);
    test::RunOptions options = throughShell(
        QStringLiteral("chmod %1 . && exec \"$@\"").arg(mode, 0, 8));
    options.workingFolder = station.path("locked");
    options.asOrdinaryUser = true;

    QStringList log;
    for (const QStringList &lines : {station.logOfInstall(), station.logOfSecondInstall()}) {
        log += lines;
        const test::RunResult result = station.run({}, options);

        QVERIFY(QFile::setPermissions(station.path("locked"),
                                      QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        VERIFY_RUN(result, 0);
        QCOMPARE(station.manifest(), station.manifestOf(copied));
        VERIFY_LEFT(station, station.withManifest(installed), log, QByteArray());
    }
}

void tst_HostileEnvironment::nameInTheArgumentsChangesNothing_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("empty") << "";
    QTest::newRow("another program") << "/bin/ls";
    QTest::newRow("an option") << "-style";
    QTest::newRow("a name without a folder") << "drask-installer";
    QTest::newRow("a folder that is missing") << "../nowhere/drask-installer";
    QTest::newRow("line feeds and an escape") << "a\nb\x1b[31m";
    QTest::newRow("a hundred thousand letters") << QString(100000, 'x');
}

void tst_HostileEnvironment::nameInTheArgumentsChangesNothing()
{
    QFETCH(QString, name);
    const Surrounded station;
    test::RunOptions options = throughShell("exec -a \"$NAME\" \"$@\"");
    options.environment.insert("NAME", name);

    verifyLifeWith(station, options);
}

void tst_HostileEnvironment::smallLimitsChangeNothing_data()
{
    QTest::addColumn<QString>("limit");

    QTest::newRow("256 KB of stack") << "-s 256";
    QTest::newRow("no core file") << "-c 0";
    QTest::newRow("files of 64 KB") << "-f 64";
    QTest::newRow("no memory that is locked") << "-l 0";
}

void tst_HostileEnvironment::smallLimitsChangeNothing()
{
    QFETCH(QString, limit);
    const Surrounded station;

    verifyLifeWith(station, throughShell("ulimit " + limit + " && exec \"$@\""));
}

DRASK_TEST(tst_HostileEnvironment)
#include "tst_hostile_environment.moc"
