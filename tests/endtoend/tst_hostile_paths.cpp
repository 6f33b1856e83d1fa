// SPDX-License-Identifier: MIT
#include "plantedplugin.h"

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
    test::Tree expected = plant.installed(plant.tree(), copied);
    expected.insert(test::plantedIn + "uninstall.ini",
                    plant.path(test::plantedIn + "version.txt\n").toUtf8());

    VERIFY_RUN(plant.run({}, startedAs(plant.path(program))), 0);

    QCOMPARE(plant.log(), plant.logOfInstall());
    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), expected), QString());
}

void tst_HostilePaths::anotherNameOfTheProgramIsAnotherPlace()
{
    const test::PlantedPlugin plant;
    QVERIFY(QFile::copy(plant.tool("drask-installer"), plant.path("outside/another name")));
    test::Tree expected = plant.tree();
    expected.insert("outside/version.txt", "2.3.10");
    expected.insert("outside/plugin.log",
                    "Debug: settings loaded\n"
                    "Debug: !!!settings local:  QVariant(Invalid)\n"
                    "Debug: version:  24\n"
                    "Debug: 0\n");

    // Without settings beside it there is nothing to do.
    VERIFY_RUN(plant.run({}, startedAs(plant.path("outside/another name"))), 0);

    QCOMPARE(test::treeDifference(plant.tree(), expected), QString());
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
    // The third line of the configuration becomes two, so that it is written by each run.
    QTest::newRow("a line feed") << "a\nb";
}

void tst_HostilePaths::programsFolderMayHaveAnyName()
{
    QFETCH(QString, name);
    const test::PlantedPlugin plant;
    const test::Folder folder(plant.path("programs/" + name));
    plant.makeFolder("programs");
    QVERIFY(QFile::rename(plant.tool(), folder.path()));
    const test::Tree before = folder.tree();
    const test::RunOptions options = [&folder] {
        test::RunOptions started = startedAs(folder.path("drask-installer"));
        started.workingFolder = folder.path();
        return started;
    }();

    for (int run = 0; run < 2; ++run) {
        plant.remove("modo");
        VERIFY_RUN(plant.run({}, options), 0);

        test::Tree expected = before;
        expected.insert("version.txt", "2.3.10");
        expected.insert("plugin.log", plant.logOfInstall().join('\n').toUtf8() + '\n');
        QCOMPARE(test::treeDifference(folder.tree(), expected), QString());
        QCOMPARE(plant.read(test::plantedIn + "version.txt"), QByteArray("7"));
        QCOMPARE(plant.read(test::plantedIn + "manager.cfg"),
                 "\n\n" + folder.path("DraskDrop").toUtf8() + "\n2.3.10\n\n1\n1");
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

    VERIFY_RUN(plant.run({}, options), 0);
    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), expected), QString());
    QVERIFY(plant.errors().isNull());

    VERIFY_RUN(plant.run({"uninstallPlugin", "(modo) " + folder}, options), 0);
    for (const char *name : {"version.txt", "manager.cfg", "uninstall.ini"}) {
        expected.remove(target + name);
    }
    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), expected), QString());
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

    VERIFY_RUN(plant.run({}, options), 3);

    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), test::withFolders(expected)), QString());
    const QByteArray target = host.toUtf8() + "/Scripts/drask";
    QCOMPARE(plant.errors(),
             "Could not copy file to: \n" + target + "\nCould not write config file in: \n" + target
                 + "manager.cfg\n");
}

void tst_HostilePaths::hugeOperandNamesNothing_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("operand");

    const int size = 100000;
    QTest::newRow("a folder to uninstall") << "uninstallPlugin"
                                           << "(modo) /" + QString(size, 'x');
    QTest::newRow("folders to uninstall") << "uninstallPlugin"
                                          << "(modo) " + QString("/x").repeated(size / 2);
    QTest::newRow("a key") << "uninstallPlugin" << '(' + QString(size, 'x') + ") /nowhere";
    QTest::newRow("brackets") << "uninstallPlugin" << QString("()").repeated(size / 2);
    QTest::newRow("a list file") << "ov3uninstall" << QString(size, 'x');
    QTest::newRow("a list file far down") << "ov3uninstall" << QString("/x").repeated(size / 2);
}

void tst_HostilePaths::hugeOperandNamesNothing()
{
    QFETCH(QString, mode);
    QFETCH(QString, operand);
    const test::PlantedPlugin plant;
    const test::Tree before = plant.tree();

    VERIFY_RUN(plant.run({mode, operand}), 0);

    QCOMPARE(test::treeDifference(plant.treeWithoutLogs(), before), QString());
    QVERIFY(plant.errors().isNull());
}

QTEST_GUILESS_MAIN(tst_HostilePaths)
#include "tst_hostile_paths.moc"
