// SPDX-License-Identifier: MIT
#include "expectedlog.h"
#include "workstation.h"

#include <QtTest>

using test::linesOfLookUp;
using test::linesOfUninstall;
using test::linesWithoutManifest;
using test::quoted;

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
    QCOMPARE(workstation.log(), lookUp + linesOfUninstall(target, 0));
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());

    VERIFY_RUN(workstation.run(arguments), 0);
    QCOMPARE(workstation.log(), lookUp + linesWithoutManifest(target));
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
    QCOMPARE(workstation.errors(), QByteArray());
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

    VERIFY_RUN(workstation.run({"uninstallPlugin", "(3dsmax) " + host}), 0);

    QCOMPARE(workstation.log(), log);
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
}

void tst_ModesUninstall::allHostsKeepTheirPlugins_data()
{
    QTest::addColumn<QString>("word");

    QTest::newRow("uninstall all plug-ins") << QString("uninstallAllPlugins");
    QTest::newRow("reinstall") << QString("reinstall");
}

void tst_ModesUninstall::allHostsKeepTheirPlugins()
{
    QFETCH(QString, word);
    test::Workstation workstation;
    install(workstation, "maya/scripts/drask");
    install(workstation, "modo/Scripts/drask");
    workstation.addHost("maya", workstation.path("maya"));
    workstation.addHost("modo", workstation.path("modo"));
    workstation.writeSettings();
    const QStringList log = linesWithoutManifest("(maya) " + workstation.path("maya/scripts/drask"))
        + linesWithoutManifest("(modo) " + workstation.path("modo/Scripts/drask"));

    // Without shipped plug-ins a reinstallation fails, which leaves the old files to be seen.
    VERIFY_RUN(workstation.run({word}), word == "reinstall" ? 2 : 0);

    QVERIFY(workstation.log().join('\n').contains(log.join('\n')));
    for (const char *folder : {"maya/scripts/drask", "modo/Scripts/drask"}) {
        QCOMPARE(workstation.read(QString(folder) + "/a.py"), QByteArray("a"));
        QVERIFY(workstation.exists(QString(folder) + "/uninstall.ini"));
        QVERIFY(workstation.exists(QString(folder) + "/manager.cfg"));
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

    QCOMPARE(workstation.log(),
             QStringList("Debug: settings loaded") + linesOfLookUp("maya", workstation.path("maya"))
                 + linesOfUninstall(named, 0));
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), expected), QString());
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

    VERIFY_RUN(workstation.run({"uninstallPlugin", operand}), 0);

    QCOMPARE(
        workstation.log(),
        linesOfLookUp(key, path)
            + (folder.contains('/') ? linesWithoutManifest(folder) : nothingToUninstall(folder)));
    QCOMPARE(test::treeDifference(workstation.treeWithoutLogs(), before), QString());
    QCOMPARE(workstation.errors(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_ModesUninstall)
#include "tst_modes_uninstall.moc"
