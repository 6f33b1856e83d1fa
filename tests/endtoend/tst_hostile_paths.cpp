// SPDX-License-Identifier: MIT
#include "plantedplugin.h"

#include "testprogram.h"

#include <QtTest>

/// Where the program may lie, and how its hosts may be written.
class tst_HostilePaths : public QObject {
    Q_OBJECT

private slots:
    void linkToTheProgramLeadsToItsFolder_data();
    void linkToTheProgramLeadsToItsFolder();
    void anotherNameOfTheProgramIsAnotherPlace();
    void programsFolderMayHaveAnyName_data();
    void programsFolderMayHaveAnyName();
    void formsOfAHostsFolder_data();
    void formsOfAHostsFolder();
    void pathsOfQtsOwnGetEmptyFolders_data();
    void pathsOfQtsOwnGetEmptyFolders();
    void hugeOperandNamesNothing_data();
    void hugeOperandNamesNothing();
};

namespace {

/// Has the program started by another of its names.
test::RunOptions startedAs(const QString &program)
{
    test::RunOptions options;
    options.through = QStringList{"/bin/sh", "-c", "exec \"$PROGRAM\""};
    options.environment.insert("PROGRAM", program);
    return options;
}

void serve(const test::PlantedPlugin &plant, const QString &host)
{
    plant.write("tool/settings.ini",
                "[plugins]\nversionModo=7\n[pluginpaths]\nsize=1\n1\\application=modo\n1\\path=\""
                    + host.toUtf8() + "\"\n");
}

} // namespace

void tst_HostilePaths::linkToTheProgramLeadsToItsFolder_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("program");

    QTest::newRow("a link to the program") << "bin/installer"
                                           << "tool/drask-installer"
                                           << "bin/installer";
    QTest::newRow("a link to its folder") << "linked"
                                          << "tool"
                                          << "linked/drask-installer";
    QTest::newRow("a link to a folder above") << "all"
                                              << ""
                                              << "all/tool/drask-installer";
}

void tst_HostilePaths::linkToTheProgramLeadsToItsFolder()
{
#ifndef Q_OS_LINUX
    QSKIP("where Qt takes the program's folder from differs between systems");
#endif
    QFETCH(QString, link);
    QFETCH(QString, target);
    QFETCH(QString, program);
    const test::PlantedPlugin plant;
    plant.makeLink(plant.path(target), link);
    const test::Tree copied = {{"version.txt", "7"}};

    test::verifyInstallOf(plant, copied, plant.manifestOf(copied), startedAs(plant.path(program)));
}

void tst_HostilePaths::anotherNameOfTheProgramIsAnotherPlace()
{
    const test::PlantedPlugin plant;
    QVERIFY(QFile::copy(plant.tool("drask-installer"), plant.path("outside/another name")));
    test::Tree expected = plant.tree();
    expected.insert("outside/version.txt", "2.3.10");
    const QByteArray log = "Debug: settings loaded\n"
                           "Debug: !!!settings local:  QVariant(Invalid)\n"
                           "Debug: version:  24\n"
                           "Debug: 0\n";

    // Without settings beside it there is nothing to do. The working folder is not its own, so that
    // the log of the first run stays.
    for (const QByteArray &lines : {log, log + log}) {
        expected.insert("outside/plugin.log", lines);
        VERIFY_RUN(plant.run({}, startedAs(plant.path("outside/another name"))), 0);
        QCOMPARE(test::treeDifference(plant.tree(), expected), QString());
    }
}

void tst_HostilePaths::programsFolderMayHaveAnyName_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("place-holders") << "a%1b%2";
    QTest::newRow("a backslash") << "back\\slash";
    QTest::newRow("quotes") << "'a' \"b\"";
    QTest::newRow("a colon") << ":";
    QTest::newRow("a home folder") << "~";
    QTest::newRow("an option") << "-rf";
    QTest::newRow("blanks") << "  ";
    QTest::newRow("signs of settings and addresses") << "a;b,c=[d]#e?f%20";
    QTest::newRow("a sign beyond the basic plane") << QString::fromUtf8("\xf0\x9f\x90\x8d");
    QTest::newRow("255 bytes") << QString(255, 'x');
    QTest::newRow("a line feed") << "a\nb";
}

void tst_HostilePaths::programsFolderMayHaveAnyName()
{
    QFETCH(QString, name);
    const test::PlantedPlugin plant;
    const QString tool = "programs/" + name;
    plant.makeFolder("programs");
    QVERIFY(QFile::rename(plant.tool(), plant.path(tool)));
    test::RunOptions options = startedAs(plant.path(tool + "/drask-installer"));
    options.workingFolder = plant.path(tool);
    test::Tree expected = plant.installed(plant.tree(), {{"version.txt", "7"}});
    expected.remove("tool/");
    expected.remove("tool/version.txt");
    expected.insert(tool + "/version.txt", "2.3.10");
    expected.insert(test::plantedIn + "uninstall.ini",
                    plant.path(test::plantedIn + "version.txt\n").toUtf8());
    expected.insert(test::plantedIn + "manager.cfg",
                    "\n\n" + plant.path(tool + "/DraskDrop").toUtf8() + "\n2.3.10\n\n1\n1");
    // A third line of the configuration that is two is never found as it should be.
    const QString aboutConfig = name.contains('\n') ? "Debug: 161 write cfg file..."
                                                    : "Debug: not necessary to write cfg";
    const QStringList keptPlugin{test::alreadyInstalledLine(plant.path("modo/Scripts/drask")),
                                 aboutConfig};

    for (const QStringList &log :
         {plant.logOfInstall(), test::logOfPass("modo", plant.path("modo"), keptPlugin, 0)}) {
        VERIFY_RUN(plant.run({}, options), 0);
        expected.insert(tool + "/plugin.log", log.join('\n').toUtf8() + '\n');
        QCOMPARE(test::treeDifference(plant.tree(), expected), QString());
    }
}

void tst_HostilePaths::formsOfAHostsFolder_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("host");

    const auto row = [](const char *name, const QString &written, const QString &host) {
        QTest::newRow(name) << written << host;
    };

    // Relative ones belong to the working folder, and none means anything special.
    row("a slash behind it", "@/host/", "host");
    row("slashes behind it", "@/host///", "host");
    row("slashes before it", "//@//host", "host");
    row("a dot behind it", "@/host/.", "host");
    row("dots in it", "@/outside/../host/./x/..", "host");
    row("dots at its start", "../host", "host");
    row("a dot at its start", "./host", "work/host");
    row("a home folder", "~/host", "work/~/host");
    row("somebody's home folder", "~root/host", "work/~root/host");
    row("a variable", "$HOME/host", "work/$HOME/host");
    row("an option", "./-rf", "work/-rf");
    row("an address of a resource", "qrc:/host", "work/qrc:/host");
    row("an address of a file", "file:///host", "work/file:/host");
    row("a search path of Qt", "assets:/host", "work/assets:/host");
    row("a drive", "C:/host", "work/C:/host");
    row("a share", "\\\\\\\\server/host", "work/\\\\server/host");
    row("a pattern", "@/ho*t", "ho*t");
    row("place-holders", "@/%1/%2", "%1/%2");
}

void tst_HostilePaths::formsOfAHostsFolder()
{
    QFETCH(QString, written);
    QFETCH(QString, host);
    const test::PlantedPlugin plant;
    plant.makeFolder("host/x");
    plant.write("host/own.txt", "mine");
    serve(plant, QString(written).replace('@', plant.path()));
    test::Tree expected = plant.tree();
    expected.insert("tool/version.txt", "2.3.10");
    const QString target = host + "/Scripts/drask/";
    expected.insert(target + "version.txt", "7");
    expected.insert(target + "manager.cfg", plant.config());
    const QString folder = QString(written).replace('@', plant.path()).replace("\\\\", "\\");
    expected.insert(target + "uninstall.ini", (folder + "/Scripts/drask/version.txt\n").toUtf8());
    expected = test::withFolders(expected);
    test::RunOptions options;
    options.workingFolder = plant.path("work");
    const QString shown = test::escaped(folder);
    const QString shownTarget = shown + "/Scripts/drask";

    // Each run adds to the log of the one before, which is not in the working folder.
    QStringList log;
    for (const QStringList &steps :
         {test::linesOfCopiedPlugin("modo", shownTarget), test::linesOfKeptPlugin(shownTarget)}) {
        log += test::logOfPass("modo", shown, steps, 0);
        VERIFY_RUN(plant.run({}, options), 0);
        VERIFY_LEFT(plant, expected, log, QByteArray());
    }

    VERIFY_RUN(plant.run({"uninstallPlugin", "(modo) " + folder}, options), 0);
    for (const char *name : {"version.txt", "manager.cfg", "uninstall.ini"}) {
        expected.remove(target + name);
    }
    VERIFY_LEFT(plant, expected, log + test::logOfRemoval("modo", shown, shownTarget),
                QByteArray());
}

void tst_HostilePaths::pathsOfQtsOwnGetEmptyFolders_data()
{
    QTest::addColumn<QString>("host");

    QTest::newRow("the root of Qt's resources") << ":/";
    QTest::newRow("a resource of nobody") << ":/nobody";
    QTest::newRow("a resource of the program") << ":/drask";
    QTest::newRow("a resource of Qt") << ":/qt-project.org";
}

void tst_HostilePaths::pathsOfQtsOwnGetEmptyFolders()
{
    QFETCH(QString, host);
    const test::PlantedPlugin plant;
    serve(plant, host);
    test::Tree expected = plant.tree();
    expected.insert("tool/version.txt", "2.3.10");
    // Qt makes the folders on the disk, and then looks for them among its resources.
    expected.insert("work/" + host + (host.endsWith('/') ? "" : "/") + "Scripts/drask/", "");
    test::RunOptions options;
    options.workingFolder = plant.path("work");

    expected = test::withFolders(expected);
    const QString target = host + "/Scripts/drask";
    const QStringList lines = test::logOfPass("modo", host,
                                              test::linesOfMissingTarget("modo", target), 3);
    const QByteArray messages = test::messagesOfMissingTarget(target);

    VERIFY_RUN(plant.run({}, options), 3);
    VERIFY_LEFT(plant, expected, lines, messages);

    // Both files lie outside the working folder, so the second run adds to them.
    VERIFY_RUN(plant.run({}, options), 3);
    VERIFY_LEFT(plant, expected, lines + lines, messages + messages);
}

void tst_HostilePaths::hugeOperandNamesNothing_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("operand");
    QTest::addColumn<QStringList>("log");

    const int size = 100000;
    const auto removal = [](const char *name, const QString &key, const QString &folder,
                            const QString &target) {
        QTest::newRow(name) << "uninstallPlugin" << '(' + key + ") " + folder
                            << test::linesOfLookUp(key, folder)
                + test::linesWithoutManifest(target);
    };
    const QString name = '/' + QString(size, 'x');
    const QString folders = QString("/x").repeated(size / 2);
    removal("a folder to uninstall", "modo", name, name + "/Scripts/drask");
    removal("folders to uninstall", "modo", folders, folders + "/Scripts/drask");
    removal("a key", QString(size, 'x'), "/nowhere", "/nowhere");
    // All between the first and the last bracket is the key, and nothing is left for a folder.
    const QString brackets = QString("()").repeated(size / 2);
    QTest::newRow("brackets") << "uninstallPlugin" << brackets
                              << test::linesOfLookUp(brackets.mid(1, size - 2), "")
            + QStringList("Debug: nothing to uninstall for  \"\"");
    QTest::newRow("a list file") << "ov3uninstall" << QString(size, 'x') << QStringList("Debug: 0");
    QTest::newRow("a list file far down") << "ov3uninstall" << folders << QStringList("Debug: 0");
}

void tst_HostilePaths::hugeOperandNamesNothing()
{
    QFETCH(QString, mode);
    QFETCH(QString, operand);
    QFETCH(QStringList, log);
    const test::PlantedPlugin plant;
    const test::Tree before = plant.tree();

    VERIFY_RUN(plant.run({mode, operand}), 0);
    VERIFY_LEFT(plant, before, log, QByteArray());
}

DRASK_TEST(tst_HostilePaths)
#include "tst_hostile_paths.moc"
