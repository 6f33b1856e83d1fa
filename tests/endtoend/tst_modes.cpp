// SPDX-License-Identifier: MIT
#include "expectedpass.h"

#include "testprogram.h"

#include <QtTest>

using test::alreadyInstalledLine;
using test::installedLine;
using test::linesOfLookUp;
using test::linesOfRun;
using test::linesOfUninstall;
using test::linesWithoutManifest;
using test::openFileLine;
using test::Run;

/// Every row of the command-line grammar, on a machine with two hosts: a Modo whose plug-in has the
/// wanted version, and an XSI whose plug-in is older.
class tst_Modes : public QObject {
    Q_OBJECT

private slots:
    void wordsChooseTheMode_data();
    void wordsChooseTheMode();
    void noSettingsAtAll_data();
    void noSettingsAtAll();
};

namespace {

const char modoFolder[] = "mödo 15/Scripts/drask";
const char xsiFolder[] = "xsi/Application/Plugins/drask";

class TwoHosts : public test::Workstation {
public:
    TwoHosts();

    QString modo() const
    {
        return path(modoFolder);
    }
    QString xsi() const
    {
        return path(xsiFolder);
    }

    QStringList expectedLog(RunMode mode, Run run) const;
    test::Tree expectedTree(RunMode mode) const;

private:
    QStringList linesOfUninstallAll() const;
    QString lineOfModo(RunMode mode) const;
    QString lineOfXsi(RunMode mode, Run run) const;
};

TwoHosts::TwoHosts()
{
    for (const char *folder : {modoFolder, xsiFolder}) {
        const QString place = QString(folder) + '/';
        write(place + "old.py", "old");
        write(place + "manager.cfg", "old");
        write(place + "uninstall.ini", path(place + "old.py\n").toUtf8());
    }
    write(QString(modoFolder) + "/version.txt", "7");
    write(QString(xsiFolder) + "/version.txt", "3");
    addPlugin("modo", {{"version.txt", "7"}});
    addPlugin("xsi", {{"version.txt", "7"}});
    addHost("modo", path("mödo 15"));
    addHost("xsi", path("xsi"));
    addSetting("plugins", "versionModo=7");
    addSetting("plugins", "versionXSI=7");
    writeSettings();
    write("list.txt", "path=" + path("nowhere/maya.bin").toUtf8() + '\n');
}

/// Behind their keys the folders name nothing, so no manifest is found.
QStringList TwoHosts::linesOfUninstallAll() const
{
    return linesWithoutManifest("(modo) " + modo()) + linesWithoutManifest("(xsi) " + xsi());
}

/// The line before that of manager.cfg; the plug-in has the wanted version from the start.
QString TwoHosts::lineOfModo(RunMode mode) const
{
    return mode == RunMode::Reinstall ? openFileLine() : alreadyInstalledLine(modo());
}

/// The line before that of manager.cfg; the plug-in has the wanted version once it was copied.
QString TwoHosts::lineOfXsi(RunMode mode, Run run) const
{
    switch (mode) {
    case RunMode::Reinstall:
        return openFileLine(modo() + "/uninstall.ini");
    case RunMode::OnlyWriteConfig:
        return "Debug: only write config, do not copy files";
    default:
        return run == Run::First ? openFileLine() : alreadyInstalledLine(xsi());
    }
}

QStringList TwoHosts::expectedLog(RunMode mode, Run run) const
{
    if (mode == RunMode::UninstallPlugin) {
        return linesOfLookUp("modo", path("mödo 15"))
            + (run == Run::First ? linesOfUninstall(modo(), 0) : linesWithoutManifest(modo()));
    }
    if (mode == RunMode::Ov3Uninstall) {
        return {"Debug: 0"};
    }
    const QString config = run == Run::First ? "Debug: 161 write cfg file..."
                                             : "Debug: not necessary to write cfg";
    QStringList pass{lineOfModo(mode), config};
    if (mode == RunMode::Reinstall) {
        pass << installedLine("modo", modo());
    }
    pass << lineOfXsi(mode, run) << config;
    if (mode != RunMode::Install || run == Run::First) {
        pass << installedLine("xsi", xsi());
    }
    return linesOfRun(mode,
                      linesOfLookUp("modo", path("mödo 15")) + linesOfLookUp("xsi", path("xsi")),
                      linesOfUninstallAll(), pass << "Debug: 0");
}

test::Tree TwoHosts::expectedTree(RunMode mode) const
{
    test::Tree expected = tree();
    const QString modoPlace = QString(modoFolder) + '/';
    const QString xsiPlace = QString(xsiFolder) + '/';
    const auto copy = [this, &expected](const QString &place) {
        expected[place + "version.txt"] = "7";
        expected[place + "uninstall.ini"] = path(place + "version.txt\n").toUtf8();
    };
    if (mode == RunMode::UninstallPlugin) {
        for (const char *name : {"old.py", "uninstall.ini", "manager.cfg"}) {
            expected.remove(modoPlace + name);
        }
    }
    if (test::installs(mode)) {
        expected[modoPlace + "manager.cfg"] = test::configOf(*this);
        expected[xsiPlace + "manager.cfg"] = test::configOf(*this);
        expected["tool/version.txt"] = "2.3.10";
    }
    if (mode == RunMode::Install || mode == RunMode::Reinstall) {
        copy(xsiPlace);
    }
    if (mode == RunMode::Reinstall) {
        copy(modoPlace);
    }
    return expected;
}

void addRow(const char *name, const QStringList &arguments, RunMode mode)
{
    QTest::newRow(name) << arguments << mode;
}

void addModeRows()
{
    addRow("no argument", {}, RunMode::Install);
    addRow("only write config", {"onlyWriteConfig"}, RunMode::OnlyWriteConfig);
    addRow("reinstall", {"reinstall"}, RunMode::Reinstall);
    addRow("reinstall in double quotes", {"\"reinstall\""}, RunMode::Reinstall);
    addRow("uninstall all plug-ins", {"uninstallAllPlugins"}, RunMode::UninstallAll);
    addRow("uninstall a plug-in", {"uninstallPlugin", "(modo) @/mödo 15"},
           RunMode::UninstallPlugin);
    addRow("remove legacy plug-ins", {"ov3uninstall", "@/list.txt"}, RunMode::Ov3Uninstall);
}

} // namespace

void tst_Modes::wordsChooseTheMode_data()
{
    QTest::addColumn<QStringList>("arguments"); // "@" stands for the sandbox
    QTest::addColumn<RunMode>("mode");

    addModeRows();
    addRow("more arguments behind onlyWriteConfig", {"onlyWriteConfig", "a", "b"},
           RunMode::OnlyWriteConfig);
    addRow("more arguments behind reinstall", {"reinstall", "a", "b"}, RunMode::Reinstall);
    addRow("more arguments behind the quoted reinstall", {"\"reinstall\"", "a"},
           RunMode::Reinstall);
    addRow("more arguments behind uninstallAllPlugins", {"uninstallAllPlugins", "a"},
           RunMode::UninstallAll);
    addRow("more arguments behind an operand", {"uninstallPlugin", "(modo) @/mödo 15", "a"},
           RunMode::UninstallPlugin);
    addRow("more arguments behind a list file", {"ov3uninstall", "@/list.txt", "a"},
           RunMode::Ov3Uninstall);
    addRow("two mode words: the first counts", {"onlyWriteConfig", "reinstall"},
           RunMode::OnlyWriteConfig);

    addRow("uninstallPlugin alone", {"uninstallPlugin"}, RunMode::Install);
    addRow("ov3uninstall alone", {"ov3uninstall"}, RunMode::Install);
    addRow("an unknown word", {"install"}, RunMode::Install);
    addRow("an unknown word before a mode word", {"x", "uninstallAllPlugins"}, RunMode::Install);
    addRow("an unknown word before an operand", {"x", "uninstallPlugin", "(modo) @/mödo 15"},
           RunMode::Install);
    addRow("an empty word", {""}, RunMode::Install);
    addRow("reinstall in capital letters", {"REINSTALL"}, RunMode::Install);
    addRow("onlyWriteConfig in small letters", {"onlywriteconfig"}, RunMode::Install);
    addRow("reinstall in single quotes", {"'reinstall'"}, RunMode::Install);
    addRow("reinstall with one quote", {"\"reinstall"}, RunMode::Install);
    addRow("onlyWriteConfig in double quotes", {"\"onlyWriteConfig\""}, RunMode::Install);
    addRow("a mode word with a blank behind it", {"uninstallAllPlugins "}, RunMode::Install);
    addRow("an option that Qt takes for itself", {"-qmljsdebugger=port:1", "uninstallAllPlugins"},
           RunMode::Install);
}

void tst_Modes::wordsChooseTheMode()
{
    QFETCH(QStringList, arguments);
    QFETCH(RunMode, mode);
    const TwoHosts workstation;
    arguments.replaceInStrings("@", workstation.path());
    const test::Tree expected = workstation.expectedTree(mode);

    for (const Run run : {Run::First, Run::Second}) {
        VERIFY_RUN(workstation.run(arguments), 0);
        VERIFY_LEFT(workstation, expected, workstation.expectedLog(mode, run), QByteArray());
    }
}

void tst_Modes::noSettingsAtAll_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<bool>("writesVersion");
    const QStringList loaded("Debug: settings loaded");
    const QStringList pass{"Debug: !!!settings local:  QVariant(Invalid)", "Debug: version:  24",
                           "Debug: 0"};

    QTest::newRow("install") << QStringList() << loaded + pass << true;
    QTest::newRow("only write config")
        << QStringList("onlyWriteConfig") << QStringList("Debug: only write config") + loaded + pass
        << true;
    QTest::newRow("reinstall") << QStringList("reinstall")
                               << QStringList("Debug: forceReinstall") + loaded + pass << true;
    QTest::newRow("uninstall all plug-ins")
        << QStringList("uninstallAllPlugins") << loaded << false;
}

void tst_Modes::noSettingsAtAll()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, log);
    QFETCH(bool, writesVersion);
    const test::Workstation workstation;
    test::Tree expected = workstation.tree();
    if (writesVersion) {
        expected["tool/version.txt"] = "2.3.10";
    }

    VERIFY_RUN(workstation.run(arguments), 0);
    VERIFY_LEFT(workstation, expected, log, QByteArray());

    VERIFY_RUN(workstation.run(arguments), 0);
    VERIFY_LEFT(workstation, expected, log, QByteArray());
}

DRASK_TEST(tst_Modes)
#include "tst_modes.moc"
