// SPDX-License-Identifier: MIT
#include "ordinaryuser.h"
#include "testprogram.h"
#include "workstation.h"

#include <QtTest>

#include <sys/stat.h>

namespace {

/// A machine on which plug-ins of the earlier generation were never removed.
struct OldStudio : test::Workstation {
    OldStudio()
    {
        for (const QString &name : legacyFiles) {
            write(name, "old");
        }
        for (const QString &name : keptFiles) {
            write(name, "mine");
        }
        makeFolder("Hosts/modo/drask/empty");
    }

    /// Writes the list that the manager makes; "~" in \a text stands for the folder of the hosts.
    void writeList(const QByteArray &text) const
    {
        write("list", QByteArray(text).replace("~", path("Hosts").toLocal8Bit()));
    }

    test::RunResult clean(const QString &list, const test::RunOptions &options = {}) const
    {
        return run({"ov3uninstall", list}, options);
    }

    /// The tree without \a names.
    test::Tree treeWithout(const QStringList &names) const
    {
        test::Tree rest = tree();
        for (const QString &name : names) {
            rest.remove(name);
        }
        return rest;
    }

    const QString mayaFile = "Hosts/maya2016/scripts/Drask/icons/drask.xpm";
    const QStringList legacyFiles = {"Hosts/Cinema R16/Plugins/Drask/res/c4d_symbols.h",
                                     "Hosts/3dsmax/scripts/startup/drask/drask.mse",
                                     mayaFile,
                                     "Hosts/XSI/Plugins/Other/grex.js",
                                     "Hosts/LightWave/Plugins/Drask/grex64.p",
                                     "Hosts/modo/drask/manager.cfg",
                                     "Hosts/blender/2.79/scripts/startup/adrask/__init__.py"};
    const QStringList keptFiles = {"Hosts/maya2016/scripts/Drask/notes.txt",
                                   "Hosts/maya2016/scripts/userSetup.py",
                                   "Hosts/XSI/Plugins/Other/other.js"};
    const QByteArray listOfAll = "[paths]\n"
                                 "pathCinema=~/Cinema R16/CINEMA 4D.app\n"
                                 "path3ds = ~/3dsmax/3dsmax.exe\r\n"
                                 "pathMaya = ~/maya2016/Maya.app\n"
                                 "pathXsi=~/XSI/XSI.app\n"
                                 "pathLightWave=~/LightWave/Layout.app\n"
                                 "pathModo=~/modo/modo.app\n"
                                 "pathBlender=~/blender/blender.app\n";
};

} // namespace

/// What goes and what stays, and that no run tells anything but its result.
class tst_Ov3Uninstall : public QObject {
    Q_OBJECT

private slots:
    void filesOfAllListedHostsGo();
    void secondRunChangesNothing();
    void listThatLeadsNowhereDeletesNothing_data();
    void listThatLeadsNowhereDeletesNothing();
    void missingListDeletesNothing_data();
    void missingListDeletesNothing();
    void emptyListNameIsQtsToReport();
    void onlyListedHostsAreCleaned();
    void hugeListIsReadToItsEnd();
    void linksAreNotFollowed();
    void namesThatDifferInCaseStay();
    void filesOutsideThePluginFoldersStay();
    void settingsAreNotRead();
    void settingsAndHostsOfTheManagerStay();
    void runFromAnotherFolder();
    void listOutsideAsciiIsFound();
    void furtherArgumentsAreIgnored();
    void fileThatCannotBeDeletedIsNoFailure();
};

/// Every run of this mode: exit code 0, an empty console, one line in the log, no error file. It
/// leaves \a expectedTree, and so does another \a run, which finds nothing more.
#define VERIFY_CLEANED(studio, run, expectedTree)                                                  \
    do {                                                                                           \
        for (int round = 0; round < 2; ++round) {                                                  \
            VERIFY_RUN(run, 0);                                                                    \
            VERIFY_LEFT(studio, expectedTree, QStringList("Debug: 0"), QByteArray());              \
        }                                                                                          \
    } while (false)

void tst_Ov3Uninstall::filesOfAllListedHostsGo()
{
    const OldStudio studio;
    studio.writeList(studio.listOfAll);
    const test::Tree rest = studio.treeWithout(studio.legacyFiles);

    VERIFY_CLEANED(studio, studio.clean(studio.path("list")), rest);
}

void tst_Ov3Uninstall::secondRunChangesNothing()
{
    const OldStudio studio;
    studio.writeList(studio.listOfAll);
    const test::Tree rest = studio.treeWithout(studio.legacyFiles);
    const test::RunResult first = studio.clean(studio.path("list"));
    VERIFY_RUN(first, 0);
    VERIFY_LEFT(studio, rest, QStringList("Debug: 0"), QByteArray());
    for (const QString &name : studio.keptFiles) {
        studio.age(name);
    }

    const test::RunResult second = studio.clean(studio.path("list"));

    VERIFY_RUN(second, 0);
    VERIFY_LEFT(studio, rest, QStringList("Debug: 0"), QByteArray());
    for (const QString &name : studio.keptFiles) {
        QVERIFY2(studio.isAged(name), qPrintable(name));
    }
}

void tst_Ov3Uninstall::listThatLeadsNowhereDeletesNothing_data()
{
    QTest::addColumn<QByteArray>("list");

    QByteArray everyByte;
    for (int byte = 0; byte < 256; ++byte) {
        everyByte += static_cast<char>(byte);
    }
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("only line ends") << QByteArray("\n\r\n\r\r\n");
    QTest::newRow("binary") << everyByte.repeated(40);
    QTest::newRow("binary with a key in it") << everyByte + "\npath=" + everyByte + "\npath=";
    QTest::newRow("a null character before the key")
        << QByteArray("\0path=~/maya2016/Maya.app\n", 26);
    QTest::newRow("lines without an equal sign")
        << QByteArray("path ~/maya2016/Maya.app\npath\npath:~/modo/modo.app\n");
    QTest::newRow("values without a key") << QByteArray("~/maya2016/Maya.app\n=~/modo/modo.app\n");
    QTest::newRow("keys with a capital") << QByteArray("Path=~/maya2016/Maya.app\n");
    QTest::newRow("keys without a value") << QByteArray("path=\npath= \t\n");
    QTest::newRow("hosts that are not there") << QByteArray("path=~/maya2018/Maya.app\n");
    QTest::newRow("programs that are no hosts") << QByteArray("path=~/houdini/houdini\n");
    QTest::newRow("a Blender inside its version folder")
        << QByteArray("path=~/blender/2.79/blender\n");
}

void tst_Ov3Uninstall::listThatLeadsNowhereDeletesNothing()
{
    QFETCH(QByteArray, list);
    const OldStudio studio;
    studio.writeList(list);
    const test::Tree before = studio.tree();

    VERIFY_CLEANED(studio, studio.clean(studio.path("list")), before);
}

void tst_Ov3Uninstall::missingListDeletesNothing_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("no file") << "none";
    QTest::newRow("no folder") << "none/list";
    QTest::newRow("a folder in its place") << "Hosts";
    QTest::newRow("a file in its folder's place") << "list/list";
    QTest::newRow("a name that is too long") << QString(300, 'x');
}

void tst_Ov3Uninstall::missingListDeletesNothing()
{
    QFETCH(QString, name);
    const OldStudio studio;
    studio.writeList(studio.listOfAll);
    const test::Tree before = studio.tree();

    VERIFY_CLEANED(studio, studio.clean(studio.path(name)), before);
}

void tst_Ov3Uninstall::emptyListNameIsQtsToReport()
{
    const OldStudio studio;
    const test::Tree before = studio.tree();
    const QStringList log{"Warning: QFSFileEngine::open: No file name specified", "Debug: 0"};

    for (int round = 0; round < 2; ++round) {
        VERIFY_RUN(studio.clean(""), 0);
        VERIFY_LEFT(studio, before, log, QByteArray());
    }
}

void tst_Ov3Uninstall::onlyListedHostsAreCleaned()
{
    const OldStudio studio;
    studio.writeList("path=~/maya2016/Maya.app\npath=~/maya2016/Maya.app\n");
    const test::Tree rest = studio.treeWithout({studio.mayaFile});

    VERIFY_CLEANED(studio, studio.clean(studio.path("list")), rest);
}

void tst_Ov3Uninstall::hugeListIsReadToItsEnd()
{
    const OldStudio studio;
    studio.writeList(QByteArray("path=/nowhere/maya/Maya.app\nremark=none\n").repeated(50000)
                     + studio.listOfAll);
    const test::Tree rest = studio.treeWithout(studio.legacyFiles);

    VERIFY_CLEANED(studio, studio.clean(studio.path("list")), rest);
}

void tst_Ov3Uninstall::linksAreNotFollowed()
{
    const OldStudio studio;
    const QString plugin = "Hosts/maya2016/scripts/Drask/";
    studio.write("elsewhere/manager.cfg", "mine");
    studio.write("elsewhere/grex.js", "mine");
    studio.makeLink(studio.path("elsewhere"), plugin + "linked");
    studio.makeLink(studio.path("elsewhere"), plugin + "drask.py");
    studio.makeLink(studio.path("elsewhere/grex.js"), plugin + "grex.js");
    studio.makeLink(studio.path("nowhere"), plugin + "manager.cfg");
    studio.makeLink(studio.path("Hosts"), plugin + "icons/up");
    studio.writeList("path=~/maya2016/Maya.app\n");
    // The link to a file is a file with a listed name; what it leads to is not.
    const test::Tree rest = studio.treeWithout({studio.mayaFile, plugin + "grex.js@"});

    VERIFY_CLEANED(studio, studio.clean(studio.path("list")), rest);
}

void tst_Ov3Uninstall::namesThatDifferInCaseStay()
{
    const OldStudio studio;
    const QString plugin = "Hosts/maya2016/scripts/Drask/";
    studio.write(plugin + "manager.cfg", "old");
    studio.write(plugin + "Manager.cfg", "mine");
    if (studio.read(plugin + "manager.cfg") != "old") {
        QSKIP("this file system takes names that differ in case for one");
    }
    studio.write(plugin + "MANAGER.CFG", "mine");
    studio.write(plugin + "Grex.cdl", "old");
    studio.write(plugin + "grex.cdl", "mine");
    studio.writeList("path=~/maya2016/Maya.app\n");
    const test::Tree rest = studio.treeWithout(
        {studio.mayaFile, plugin + "manager.cfg", plugin + "Grex.cdl"});

    VERIFY_CLEANED(studio, studio.clean(studio.path("list")), rest);
}

void tst_Ov3Uninstall::filesOutsideThePluginFoldersStay()
{
    const OldStudio studio;
    for (const char *folder :
         {"", "tool/", "tool/plugins/maya/", "Hosts/", "Hosts/maya2016/", "Hosts/maya2016/scripts/",
          "Hosts/maya2016/scripts/Drask2/", "Hosts/blender/2.78/scripts/startup/adrask/"}) {
        studio.write(QString(folder) + "manager.cfg", "mine");
    }
    studio.writeList(studio.listOfAll);
    const test::Tree rest = studio.treeWithout(studio.legacyFiles);

    VERIFY_CLEANED(studio, studio.clean(studio.path("list")), rest);
}

void tst_Ov3Uninstall::settingsAreNotRead()
{
    const OldStudio studio;
    studio.writeList(studio.listOfAll);
    const test::Tree rest = studio.treeWithout(studio.legacyFiles);
    // A pipe that nobody writes to: who opens it for reading waits forever.
    const QByteArray settings = studio.tool("settings.ini").toLocal8Bit();
    QCOMPARE(mkfifo(settings.constData(), 0600), 0);
    test::RunOptions options;
    options.timeoutMs = 20000;

    VERIFY_RUN(studio.clean(studio.path("list"), options), 0);
    // The tree's reader would wait as well.
    studio.remove("tool/settings.ini");
    VERIFY_LEFT(studio, rest, QStringList("Debug: 0"), QByteArray());
}

void tst_Ov3Uninstall::settingsAndHostsOfTheManagerStay()
{
    OldStudio studio;
    studio.makeFolder("Hosts/maya2018/scripts");
    studio.addPlugin("maya", {{"drask.py", "new"}});
    studio.addHost("maya", studio.path("Hosts/maya2018"));
    studio.addSetting("UserData", "username=Ann");
    studio.writeSettings();
    studio.writeList(studio.listOfAll);
    const test::Tree rest = studio.treeWithout(studio.legacyFiles);

    VERIFY_CLEANED(studio, studio.clean(studio.path("list")), rest);
}

void tst_Ov3Uninstall::runFromAnotherFolder()
{
    const OldStudio studio;
    studio.makeFolder("work");
    studio.write("work/lists/old hosts.txt",
                 "path=../Hosts/maya2016/Maya.app\npath="
                     + studio.path("Hosts/modo/x").toLocal8Bit());
    const test::Tree rest = studio.treeWithout({studio.mayaFile, "Hosts/modo/drask/manager.cfg"});
    test::RunOptions options;
    options.workingFolder = studio.path("work");

    VERIFY_RUN(studio.clean("lists/old hosts.txt", options), 0);
    VERIFY_LEFT(studio, rest, QStringList("Debug: 0"), QByteArray());

    // The log of the first run lies beside the program, where the second one does not look for it.
    VERIFY_RUN(studio.clean("lists/old hosts.txt", options), 0);
    VERIFY_LEFT(studio, rest, QStringList({"Debug: 0", "Debug: 0"}), QByteArray());
}

void tst_Ov3Uninstall::listOutsideAsciiIsFound()
{
    const OldStudio studio;
    const QString list = QString::fromUtf8("l\xc3\xafst \xe6\xbc\xa2");
    const QString host = QString::fromUtf8("Hosts/\xe6\xbc\xa2 maya");
    studio.write(host + "/scripts/Drask/drask.py", "old");
    studio.write(list, "path=" + studio.path(host).toLocal8Bit() + "/Maya.app\n");
    const test::Tree rest = studio.treeWithout({host + "/scripts/Drask/drask.py"});

    VERIFY_CLEANED(studio, studio.clean(studio.path(list)), rest);
}

void tst_Ov3Uninstall::furtherArgumentsAreIgnored()
{
    const OldStudio studio;
    studio.writeList("path=~/modo/modo.app\n");
    studio.write("other list", "path=" + studio.path("Hosts/maya2016/Maya.app").toLocal8Bit());
    const test::Tree rest = studio.treeWithout({"Hosts/modo/drask/manager.cfg"});

    const QStringList arguments{"ov3uninstall", studio.path("list"), studio.path("other list")};
    VERIFY_CLEANED(studio, studio.run(arguments), rest);
}

void tst_Ov3Uninstall::fileThatCannotBeDeletedIsNoFailure()
{
    const OldStudio studio;
    studio.writeList(studio.listOfAll);
    test::giveToOrdinaryUser(studio.tool());
    QStringList deletable = studio.legacyFiles;
    deletable.removeOne(studio.mayaFile);
    for (const QString &name : qAsConst(deletable)) {
        test::giveToOrdinaryUser(QFileInfo(studio.path(name)).path());
    }
    const test::Tree rest = studio.treeWithout(deletable);
    // A user who is not root owns all folders, and must lose the right to write in this one.
    const test::ReadOnly lock(studio.path("Hosts/maya2016/scripts/Drask/icons"));
    test::RunOptions options;
    options.asOrdinaryUser = true;

    VERIFY_CLEANED(studio, studio.clean(studio.path("list"), options), rest);
}

DRASK_TEST(tst_Ov3Uninstall)
#include "tst_ov3uninstall.moc"
