// SPDX-License-Identifier: MIT
#include "studio.h"

#include <QtTest>

/// What installations do to the files that belong to the hosts' users.
class tst_InstallEdits : public QObject {
    Q_OBJECT

private slots:
    void mayaScriptIsMadeWhereThereIsNone();
    void mayaScriptKeepsItsLinesWhenTheBlockIsReplaced();
    void mayaScriptFollowsAFolderThatMoved();
    void mayaScriptWithoutALineEndContinues();
    void mayaBackupStaysAsItWasFirst();

    void houdiniEnvironmentIsMadeWhereThereIsNone();
    void houdiniEnvironmentKeepsItsLines();
    void houdiniAssignmentOfAnEarlierPluginIsReplaced();

    void rhinoIsRegisteredInTheWorkingFolder();
    void cinema4dLosesWhatEarlierPluginsLeft();
};

namespace {

const char mayaScript[] = "hosts/maya 2020/scripts/userSetup.py";
const char mayaBackup[] = "hosts/maya 2020/scripts/drask/userSetup.py.draskbackup";
const char environment[] = "hosts/houdini18.0/houdini.env";
const char assignment[] = "\n#drask_installed\nHOUDINI_PATH = \";$HOUDINI_PATH\"\n";

/// What the newer generation of the Maya plug-in adds: one block, from the marker to a call.
const char newerTemplate[] = "#drask_installed\n"
                             "def addTab():\n"
                             "\tsys.path.append( importable_path(u'__ScriptPath__'))\n"
                             "\timport draskshelf\n"
                             "\tdraskshelf.init()\n"
                             "maya.utils.executeDeferred(\"searchTab()\")";

} // namespace

void tst_InstallEdits::mayaScriptIsMadeWhereThereIsNone()
{
    const test::Studio studio;
    studio.remove(mayaScript);

    const test::RunResult result = studio.run();

    VERIFY_RUN(result, 0);
    QCOMPARE(studio.read(mayaScript),
             studio.read("tool/plugins/maya/drask_userSetup.py")
                 .replace("__scriptpath__", studio.target("maya").toUtf8()));
    QVERIFY(!studio.exists(mayaBackup));
}

void tst_InstallEdits::mayaScriptKeepsItsLinesWhenTheBlockIsReplaced()
{
    const test::Studio studio;
    const QByteArray own = "import maya.cmds as cmds\n";
    studio.write(mayaScript, own);
    studio.ship("maya", 13, {{"drask_userSetup.py", QByteArray(newerTemplate) + '\n'}});
    const QByteArray block = QByteArray(newerTemplate)
                                 .replace("__ScriptPath__", studio.target("maya").toUtf8());

    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    QCOMPARE(studio.read(mayaScript), own + block + '\n');
    studio.write(mayaScript, studio.read(mayaScript) + "print('behind')\n");
    studio.ship("maya", 14);
    const test::RunResult update = studio.run();

    VERIFY_RUN(update, 0);
    QCOMPARE(studio.read(mayaScript), own + "\r\n" + block + "\n\r\n\nprint('behind')\n");
    QCOMPARE(studio.read(mayaBackup), own);
}

void tst_InstallEdits::mayaScriptFollowsAFolderThatMoved()
{
    const test::Studio studio;
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    const QByteArray oldPath = studio.target("maya").toUtf8();
    const QByteArray script = studio.read(mayaScript);
    QVERIFY(QDir().rename(studio.path("hosts/maya 2020"), studio.path("hosts/O'Neil's maya")));
    studio.write(
        "tool/settings.ini",
        studio.read("tool/settings.ini").replace("hosts/maya 2020", "hosts/O'Neil's maya"));

    const test::RunResult second = studio.run({"reinstall"});

    VERIFY_RUN(second, 0);
    QByteArray expected = script;
    expected.replace("\r\n", "\n");
    expected.replace(oldPath,
                     QByteArray(oldPath).replace("hosts/maya 2020", "hosts/O\\'Neil\\'s maya"));
    QCOMPARE(studio.read("hosts/O'Neil's maya/scripts/userSetup.py"), expected);
}

void tst_InstallEdits::mayaScriptWithoutALineEndContinues()
{
    const test::Studio studio;
    studio.write(mayaScript, "print('last')");

    const test::RunResult result = studio.run();

    VERIFY_RUN(result, 0);
    QVERIFY(studio.read(mayaScript).startsWith("print('last')#drask_installed\n"));
}

void tst_InstallEdits::mayaBackupStaysAsItWasFirst()
{
    const test::Studio studio;
    const QByteArray original = studio.read(mayaScript);
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    studio.write(mayaScript, "rewritten by the artist\n");

    const test::RunResult second = studio.run({"reinstall"});

    VERIFY_RUN(second, 0);
    QVERIFY(studio.read(mayaScript).startsWith("rewritten by the artist\n#drask_installed\n"));
    QCOMPARE(studio.read(mayaBackup), original);
}

void tst_InstallEdits::houdiniEnvironmentIsMadeWhereThereIsNone()
{
    const test::Studio studio;
    studio.remove(environment);

    const test::RunResult result = studio.run();

    VERIFY_RUN(result, 0);
    QCOMPARE(studio.read(environment), QByteArray(assignment));
    QVERIFY(!QFile::exists(studio.target("houdini", "houdini.env")));
}

void tst_InstallEdits::houdiniEnvironmentKeepsItsLines()
{
    const test::Studio studio;
    const QByteArray own = "# a comment\r\nHOUDINI_MAXTHREADS = 4\r\nHOUDINI_PATH = \"/own;&\"";
    studio.write(environment, own);

    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    const test::RunResult second = studio.run({"reinstall"});

    VERIFY_RUN(second, 0);
    QCOMPARE(studio.read(environment), own + assignment);
}

void tst_InstallEdits::houdiniAssignmentOfAnEarlierPluginIsReplaced()
{
    const test::Studio studio;
    studio.write(environment,
                 "OWN = 1\r\n#drask_installed\r\nHOUDINI_PATH = \"/opt/old;$HOUDINI_PATH\"\r\n"
                 "BEHIND = 2\r\n");

    const test::RunResult result = studio.run();

    VERIFY_RUN(result, 0);
    QCOMPARE(studio.read(environment), QByteArray("OWN = 1") + assignment);
}

void tst_InstallEdits::rhinoIsRegisteredInTheWorkingFolder()
{
#ifndef Q_OS_LINUX
    QSKIP("Rhino's registry has another form on this platform.");
#endif
    const test::Studio studio;
    studio.makeFolder("elsewhere");
    const test::Tree atHome = studio.installed(studio.tree());
    test::Tree expected = atHome;
    for (auto file = atHome.cbegin(); file != atHome.cend(); ++file) {
        if (file.key().startsWith("tool/HKEY_")) {
            expected.remove(file.key());
            expected["elsewhere" + file.key().mid(QString("tool").size())] = file.value();
        }
    }
    test::RunOptions options;
    options.workingFolder = studio.path("elsewhere");

    const test::RunResult first = studio.run({}, options);
    VERIFY_RUN(first, 0);
    const test::RunResult second = studio.run({"reinstall"}, options);

    VERIFY_RUN(second, 0);
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), expected), QString());
}

void tst_InstallEdits::cinema4dLosesWhatEarlierPluginsLeft()
{
    const test::Studio studio;
    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    const test::Tree installed = studio.treeWithoutLogs();
    for (const char *key : {"c4d", "c4d14", "c4d21"}) {
        studio.write(test::Studio::host(key).folder + "/plugins/Grex.cfl64",
                     "of an earlier plug-in");
        studio.write(test::Studio::host(key).targets().first() + "/grex21.xdl64", "of R21");
    }

    const test::RunResult second = studio.run();

    VERIFY_RUN(second, 0);
    test::Tree expected = installed;
    for (const char *key : {"c4d14", "c4d21"}) {
        expected[test::Studio::host(key).folder + "/plugins/Grex.cfl64"] = "of an earlier plug-in";
        expected[test::Studio::host(key).targets().first() + "/grex21.xdl64"] = "of R21";
    }
    QCOMPARE(test::treeDifference(studio.treeWithoutLogs(), expected), QString());
}

QTEST_GUILESS_MAIN(tst_InstallEdits)
#include "tst_install_edits.moc"
