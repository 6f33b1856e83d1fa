// SPDX-License-Identifier: MIT
#include "expectedpass.h"

#include "testprogram.h"

#include <QtTest>

using test::installedLine;
using test::linesOfLookUp;
using test::linesOfRun;
using test::linesOfUninstall;
using test::linesWithoutManifest;
using test::quoted;
using test::Run;

/// The modes that uninstall, and the operand of the one that takes a host.
class tst_ModesUninstall : public QObject {
    Q_OBJECT

private slots:
    void oneHostIsUninstalled_data();
    void oneHostIsUninstalled();
    void everyLanguageOf3dsMaxIsUninstalled();
    void allHostsKeepTheirPlugins_data();
    void allHostsKeepTheirPlugins();
    void keyAndFolderNameOneRelativeFolder();
    void operandIsTakenApart_data();
    void operandIsTakenApart();
};

namespace {

/// Installs a plug-in of one file, as an earlier run would have done.
void install(const test::Workstation &workstation, const QString &folder)
{
    workstation.write(folder + "/a.py", "a");
    workstation.write(folder + "/manager.cfg", "b");
    workstation.write(folder + "/uninstall.ini", workstation.path(folder + "/a.py\n").toUtf8());
}

void removeInstalled(test::Tree &tree, const QString &folder)
{
    for (const char *name : {"/a.py", "/manager.cfg", "/uninstall.ini"}) {
        tree.remove(folder + name);
    }
}

QStringList nothingToUninstall(const QString &folder)
{
    return {"Debug: nothing to uninstall for  " + quoted(folder)};
}

const char mayaFolder[] = "maya/scripts/drask";
const char modoFolder[] = "modo/Scripts/drask";

/// Two hosts with plug-ins that are not shipped any more.
class InstalledHosts : public test::Workstation {
public:
    InstalledHosts()
    {
        install(*this, mayaFolder);
        install(*this, modoFolder);
        addHost("maya", path("maya"));
        addHost("modo", path("modo"));
        writeSettings();
    }

    QByteArray errorsOfReinstall() const
    {
        const QByteArray maya = path(mayaFolder).toUtf8();
        return "Could not copy file to: \n" + maya + "\nCould not copy userSetup.py file to: "
            + maya + "\nCould not copy file to: \n" + path(modoFolder).toUtf8() + '\n';
    }

    QStringList expectedLog(RunMode mode, Run run) const
    {
        const QString maya = path(mayaFolder);
        const QString modo = path(modoFolder);
        const QString config = run == Run::First ? "Debug: 161 write cfg file..."
                                                 : "Debug: not necessary to write cfg";
        return linesOfRun(
            mode, linesOfLookUp("maya", path("maya")) + linesOfLookUp("modo", path("modo")),
            linesWithoutManifest("(maya) " + maya) + linesWithoutManifest("(modo) " + modo),
            {config, "Debug: 1635 error  " + quoted(maya + "/drask_userSetup.py"),
             installedLine("maya", maya), config, installedLine("modo", modo), "Debug: 2"});
    }
};

} // namespace

void tst_ModesUninstall::oneHostIsUninstalled_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("subFolder");

    QTest::newRow("a plain name") << QString("maya") << QString("maya")
                                  << QString("/scripts/drask");
    QTest::newRow("blanks and non-ASCII letters")
        << QString("rhino") << QString("Höst 日 x/Rhino 5") << QString("/Plug-ins/Drask");
    QTest::newRow("an opening bracket in the folder's name")
        << QString("modo") << QString("mo(do") << QString("/Scripts/drask");
    QTest::newRow("files straight in the host's folder")
        << QString("sketchup") << QString("sketchup") << QString();
    QTest::newRow("an unknown host") << QString("nuke") << QString("nuke") << QString();
}

void tst_ModesUninstall::oneHostIsUninstalled()
{
    QFETCH(QString, key);
    QFETCH(QString, host);
    QFETCH(QString, subFolder);
    test::Workstation workstation;
    workstation.addHost(key, workstation.path(host));
    workstation.writeSettings();
    install(workstation, host + subFolder);
    workstation.write(host + "/user.txt", "kept");
    test::Tree expected = workstation.tree();
    removeInstalled(expected, host + subFolder);
    const QStringList arguments{"uninstallPlugin", "(" + key + ") " + workstation.path(host)};
    const QString target = workstation.path(host + subFolder);
    const QStringList lookUp = linesOfLookUp(key, workstation.path(host));

    VERIFY_RUN(workstation.run(arguments), 0);
    VERIFY_LEFT(workstation, expected, lookUp + linesOfUninstall(target, 0), QByteArray());

    VERIFY_RUN(workstation.run(arguments), 0);
    VERIFY_LEFT(workstation, expected, lookUp + linesWithoutManifest(target), QByteArray());
}

void tst_ModesUninstall::everyLanguageOf3dsMaxIsUninstalled()
{
    const test::Workstation workstation;
    const QString host = workstation.path("max");
    const QStringList installed{"CHS", "JPN"};
    for (const QString &language : installed) {
        install(workstation, "max/" + language + "/scripts/startup/drask");
    }
    test::Tree expected = workstation.tree();
    QStringList log = linesOfLookUp("3dsmax", host);
    for (const char *language : {"CHS", "DEU", "ENU", "FRA", "JPN", "KOR"}) {
        const QString folder = QStringLiteral("max/%1/scripts/startup/drask").arg(language);
        removeInstalled(expected, folder);
        log += installed.contains(language) ? linesOfUninstall(workstation.path(folder), 0)
                                            : linesWithoutManifest(workstation.path(folder));
    }

    const QStringList arguments{"uninstallPlugin", "(3dsmax) " + host};

    VERIFY_RUN(workstation.run(arguments), 0);
    VERIFY_LEFT(workstation, expected, log, QByteArray());

    VERIFY_RERUN(workstation, arguments, test::RunOptions(), 0);
}

void tst_ModesUninstall::allHostsKeepTheirPlugins_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<RunMode>("mode");

    QTest::newRow("uninstall all plug-ins")
        << QString("uninstallAllPlugins") << RunMode::UninstallAll;
    QTest::newRow("reinstall") << QString("reinstall") << RunMode::Reinstall;
}

void tst_ModesUninstall::allHostsKeepTheirPlugins()
{
    QFETCH(QString, word);
    QFETCH(RunMode, mode);
    const InstalledHosts workstation;
    test::Tree expected = workstation.tree();
    QByteArray errors;
    if (mode == RunMode::Reinstall) {
        expected["tool/version.txt"] = "2.3.10";
        expected[QString(mayaFolder) + "/manager.cfg"] = test::configOf(workstation);
        expected[QString(modoFolder) + "/manager.cfg"] = test::configOf(workstation);
        errors = workstation.errorsOfReinstall();
    }

    // Without shipped plug-ins a reinstallation fails, which leaves the old files to be seen.
    for (const Run run : {Run::First, Run::Second}) {
        VERIFY_RUN(workstation.run({word}), mode == RunMode::Reinstall ? 2 : 0);
        VERIFY_LEFT(workstation, expected, workstation.expectedLog(mode, run), errors);
    }
}

void tst_ModesUninstall::keyAndFolderNameOneRelativeFolder()
{
    test::Workstation workstation;
    install(workstation, "maya/scripts/drask");
    workstation.addHost("maya", workstation.path("maya"));
    workstation.writeSettings();
    const QString named = "(maya) " + workstation.path("maya/scripts/drask");
    install(workstation, "desk/" + named);
    test::Tree expected = workstation.tree();
    removeInstalled(expected, "desk/" + named);
    test::RunOptions options;
    options.workingFolder = workstation.path("desk");

    VERIFY_RUN(workstation.run({"uninstallAllPlugins"}, options), 0);
    VERIFY_LEFT(workstation, expected,
                linesOfRun(RunMode::UninstallAll, linesOfLookUp("maya", workstation.path("maya")),
                           linesOfUninstall(named, 0), {}),
                QByteArray());

    VERIFY_RERUN(workstation, QStringList("uninstallAllPlugins"), options, 0);
}

void tst_ModesUninstall::operandIsTakenApart_data()
{
    QTest::addColumn<QString>("operand"); // "@" stands for the sandbox
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");
    const auto row = [](const char *name, const char *operand, const char *key, const char *path,
                        const char *folder) {
        QTest::newRow(name) << QString(operand) << QString(key) << QString(path) << QString(folder);
    };

    row("key and folder", "(maya) @/h", "maya", "@/h", "@/h/scripts/drask");
    row("a slash at the end", "(maya) @/h/", "maya", "@/h/", "@/h//scripts/drask");
    row("no blank: the slash is skipped instead", "(maya)/h/i", "maya", "h/i", "h/i/scripts/drask");
    row("two blanks: one is kept", "(maya)  @/h", "maya", " @/h", " @/h/scripts/drask");
    row("a closing bracket in the key", "(ma)ya) @/h", "ma)ya", "@/h", "@/h");
    row("an opening bracket in the key", "((maya) @/h", "(maya", "@/h", "@/h");
    row("letters before the bracket", "x(maya) @/h", "maya", "@/h", "@/h/scripts/drask");
    row("no opening bracket", "maya) @/h", "maya", "@/h", "@/h/scripts/drask");
    row("no closing bracket", "(maya h/i", "maya h/i", "maya h/i", "maya h/i");
    row("no brackets", "maya h/i", "maya h/i", "aya h/i", "aya h/i");
    row("brackets the wrong way round", ")maya( @/h", "", "aya( @/h", "aya( @/h");
    row("a bracket in the folder's name", "(maya) @/h (x64)/maya", "maya) @/h (x64", "maya",
        "maya");
    row("a bracket at the end", "(maya) @/h (x64)", "maya) @/h (x64", "", "");
    row("brackets alone", "()", "", "", "");
    row("a closing bracket alone", ")", "", "", "");
    row("an opening bracket alone", "(", "", "", "");
    row("nothing", "", "", "", "");
    row("no folder", "(sketchup)", "sketchup", "", "");
    row("no folder behind the blank", "(sketchup) ", "sketchup", "", "");
    row("an empty key", "() @/h", "", "@/h", "@/h");
    row("an unknown key", "(nuke) @/h", "nuke", "@/h", "@/h");
    row("capital letters", "(MAYA) @/h", "MAYA", "@/h", "@/h");
    row("a relative folder", "(maya) h", "maya", "h", "h/scripts/drask");
    row("a relative folder of an unknown key", "(nuke) h", "nuke", "h", "h");
    row("non-ASCII letters", "(mäya) @/höst", "mäya", "@/höst", "@/höst");
}

void tst_ModesUninstall::operandIsTakenApart()
{
    QFETCH(QString, operand);
    QFETCH(QString, key);
    QFETCH(QString, path);
    QFETCH(QString, folder);
    const test::Workstation workstation;
    for (QString *text : {&operand, &key, &path, &folder}) {
        text->replace("@", workstation.path());
    }
    // What an operand without a folder must not reach: the files of the working directory.
    install(workstation, "tool");
    const test::Tree before = workstation.tree();

    const QStringList arguments{"uninstallPlugin", operand};

    VERIFY_RUN(workstation.run(arguments), 0);
    VERIFY_LEFT(
        workstation, before,
        linesOfLookUp(key, path)
            + (folder.contains('/') ? linesWithoutManifest(folder) : nothingToUninstall(folder)),
        QByteArray());

    VERIFY_RERUN(workstation, arguments, test::RunOptions(), 0);
}

DRASK_TEST(tst_ModesUninstall)
#include "tst_modes_uninstall.moc"
