// SPDX-License-Identifier: MIT
#include "studio.h"

#include "testprogram.h"

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

const char mayaFolder[] = "hosts/maya 2020";
const char movedMayaFolder[] = "hosts/O'Neil's maya";
const char mayaScript[] = "hosts/maya 2020/scripts/userSetup.py";
const char mayaBackup[] = "hosts/maya 2020/scripts/drask/userSetup.py.draskbackup";
const char mayaVersion[] = "hosts/maya 2020/scripts/drask/version.txt";
const char environment[] = "hosts/houdini18.0/houdini.env";
const char assignment[] = "\n#drask_installed\nHOUDINI_PATH = \";$HOUDINI_PATH\"\n";

/// What the newer generation of the Maya plug-in adds: one block, from the marker to a call.
const char newerTemplate[] = "#drask_installed\n"
                             "def addTab():\n"
                             "\tsys.path.append( importable_path(u'__ScriptPath__'))\n"
                             "\timport draskshelf\n"
                             "\tdraskshelf.init()\n"
                             "maya.utils.executeDeferred(\"searchTab()\")";

QStringList logOfMayaUpdate(const test::Studio &studio)
{
    using test::Served;
    return studio.logOfInstall({Served::FoundInstalled, Served::ConfigKept},
                               {{"maya", {Served::Copied, Served::ConfigKept}}});
}

/// What a reinstall makes of \a tree when the folder of Maya got another name: the manifest lists
/// the files of the new folder, and the start-up script names it, with plain line ends.
test::Tree withMayaMoved(const test::Tree &tree)
{
    test::Tree moved;
    for (auto entry = tree.cbegin(); entry != tree.cend(); ++entry) {
        QByteArray content = entry.value();
        if (entry.key() == mayaScript) {
            content.replace("\r\n", "\n").replace(mayaFolder, "hosts/O\\'Neil\\'s maya");
        } else if (entry.key() == QString(mayaFolder) + "/scripts/drask/uninstall.ini") {
            content.replace(mayaFolder, movedMayaFolder);
        }
        moved.insert(QString(entry.key()).replace(mayaFolder, movedMayaFolder), content);
    }
    return moved;
}

} // namespace

void tst_InstallEdits::mayaScriptIsMadeWhereThereIsNone()
{
    const test::Studio studio;
    studio.remove(mayaScript);
    const test::Tree before = studio.tree();

    const test::RunResult result = studio.run();

    VERIFY_RUN(result, 0);
    test::Tree expected = studio.installed(before);
    expected[mayaScript] = studio.read("tool/plugins/maya/drask_userSetup.py")
                               .replace("__scriptpath__", studio.target("maya").toUtf8());
    expected.remove(mayaBackup);
    VERIFY_LEFT(studio, expected, studio.logOfFirstRun(), QByteArray());
    VERIFY_LATER_RUN(studio, expected);
    VERIFY_LATER_REINSTALL(studio, expected);
}

void tst_InstallEdits::mayaScriptKeepsItsLinesWhenTheBlockIsReplaced()
{
    const test::Studio studio;
    const QByteArray own = "import maya.cmds as cmds\n";
    studio.write(mayaScript, own);
    studio.ship("maya", 13, {{"drask_userSetup.py", QByteArray(newerTemplate) + '\n'}});
    const test::Tree before = studio.tree();
    const QByteArray block = QByteArray(newerTemplate)
                                 .replace("__ScriptPath__", studio.target("maya").toUtf8());

    const test::RunResult first = studio.run();
    VERIFY_RUN(first, 0);
    test::Tree expected = studio.installed(before);
    expected[mayaScript] = own + block + '\n';
    expected[mayaBackup] = own;
    VERIFY_LEFT(studio, expected, studio.logOfFirstRun(), QByteArray());
    VERIFY_LATER_RUN(studio, expected);
    studio.write(mayaScript, studio.read(mayaScript) + "print('behind')\n");
    studio.ship("maya", 14);
    expected = studio.treeWithoutLogs();
    expected[mayaScript] = own + "\r\n" + block + "\n\r\n\nprint('behind')\n";
    expected[mayaVersion] = "14\n";
    const test::RunResult update = studio.run();

    VERIFY_RUN(update, 0);
    VERIFY_LEFT(studio, expected, logOfMayaUpdate(studio), QByteArray());
    VERIFY_LATER_RUN(studio, expected);
}

void tst_InstallEdits::mayaScriptFollowsAFolderThatMoved()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    const test::Tree installed = studio.treeWithoutLogs();
    QVERIFY(QDir().rename(studio.path(mayaFolder), studio.path(movedMayaFolder)));
    const QByteArray settings = studio.read("tool/settings.ini")
                                    .replace(mayaFolder, movedMayaFolder);
    studio.write("tool/settings.ini", settings);
    test::Tree expected = withMayaMoved(installed);
    expected["tool/settings.ini"] = settings;

    // The second of them finds the folder that the first one wrote.
    for (int run = 0; run < 2; ++run) {
        VERIFY_RUN(studio.run({"reinstall"}), 0);
        QStringList log = studio.logOfReinstall({test::Served::Copied, test::Served::ConfigKept});
        log.replaceInStrings(mayaFolder, movedMayaFolder);
        VERIFY_LEFT(studio, expected, log, QByteArray());
    }
}

void tst_InstallEdits::mayaScriptWithoutALineEndContinues()
{
    const test::Studio studio;
    studio.write(mayaScript, "print('last')");
    const test::Tree before = studio.tree();

    const test::RunResult result = studio.run();

    VERIFY_RUN(result, 0);
    QVERIFY(studio.read(mayaScript).startsWith("print('last')#drask_installed\n"));
    const test::Tree expected = studio.installed(before);
    VERIFY_LEFT(studio, expected, studio.logOfFirstRun(), QByteArray());
    VERIFY_LATER_RUN(studio, expected);
    VERIFY_LATER_REINSTALL(studio, expected);
}

void tst_InstallEdits::mayaBackupStaysAsItWasFirst()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    test::Tree expected = studio.treeWithoutLogs();
    const QByteArray rewritten = "rewritten by the artist\n";
    studio.write(mayaScript, rewritten);
    expected[mayaScript] = rewritten
        + studio.read("tool/plugins/maya/drask_userSetup.py")
              .replace("__scriptpath__", studio.target("maya").toUtf8());

    VERIFY_LATER_REINSTALL(studio, expected);
    VERIFY_LATER_RUN(studio, expected);
    VERIFY_LATER_REINSTALL(studio, expected);
}

void tst_InstallEdits::houdiniEnvironmentIsMadeWhereThereIsNone()
{
    const test::Studio studio;
    studio.remove(environment);
    const test::Tree before = studio.tree();

    const test::RunResult result = studio.run();

    VERIFY_RUN(result, 0);
    test::Tree expected = studio.installed(before);
    expected[environment] = assignment;
    VERIFY_LEFT(studio, expected, studio.logOfFirstRun(), QByteArray());
    VERIFY_LATER_RUN(studio, expected);
    VERIFY_LATER_REINSTALL(studio, expected);
}

void tst_InstallEdits::houdiniEnvironmentKeepsItsLines()
{
    const test::Studio studio;
    const QByteArray own = "# a comment\r\nHOUDINI_MAXTHREADS = 4\r\nHOUDINI_PATH = \"/own;&\"";
    studio.write(environment, own);
    const test::Tree before = studio.tree();

    const test::RunResult first = studio.run();

    VERIFY_RUN(first, 0);
    test::Tree expected = studio.installed(before);
    expected[environment] = own + assignment;
    VERIFY_LEFT(studio, expected, studio.logOfFirstRun(), QByteArray());
    VERIFY_LATER_RUN(studio, expected);
    VERIFY_LATER_REINSTALL(studio, expected);
}

void tst_InstallEdits::houdiniAssignmentOfAnEarlierPluginIsReplaced()
{
    const test::Studio studio;
    studio.write(environment,
                 "OWN = 1\r\n#drask_installed\r\nHOUDINI_PATH = \"/opt/old;$HOUDINI_PATH\"\r\n"
                 "BEHIND = 2\r\n");
    const test::Tree before = studio.tree();

    const test::RunResult result = studio.run();

    VERIFY_RUN(result, 0);
    test::Tree expected = studio.installed(before);
    expected[environment] = QByteArray("OWN = 1") + assignment;
    VERIFY_LEFT(studio, expected, studio.logOfFirstRun(), QByteArray());
    VERIFY_LATER_RUN(studio, expected);
    VERIFY_LATER_REINSTALL(studio, expected);
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
    QStringList log = studio.logOfFirstRun();
    VERIFY_LEFT(studio, expected, log, QByteArray());
    const test::RunResult second = studio.run({"reinstall"}, options);

    VERIFY_RUN(second, 0);
    // The log of the first run lies beside the program, where the second one does not look for it.
    log += studio.logOfReinstall({test::Served::Copied, test::Served::ConfigKept});
    VERIFY_LEFT(studio, expected, log, QByteArray());
}

void tst_InstallEdits::cinema4dLosesWhatEarlierPluginsLeft()
{
    const test::Studio studio;
    VERIFY_INSTALLATION(studio);
    test::Tree expected = studio.treeWithoutLogs();
    for (const char *key : {"c4d", "c4d14", "c4d21"}) {
        studio.write(test::Studio::host(key).folder + "/plugins/Grex.cfl64",
                     "of an earlier plug-in");
        studio.write(test::Studio::host(key).targets().first() + "/grex21.xdl64", "of R21");
    }
    for (const char *key : {"c4d14", "c4d21"}) {
        expected[test::Studio::host(key).folder + "/plugins/Grex.cfl64"] = "of an earlier plug-in";
        expected[test::Studio::host(key).targets().first() + "/grex21.xdl64"] = "of R21";
    }

    VERIFY_LATER_RUN(studio, expected);
    VERIFY_LATER_RUN(studio, expected);
    VERIFY_LATER_REINSTALL(studio, expected);
}

DRASK_TEST(tst_InstallEdits)
#include "tst_install_edits.moc"
