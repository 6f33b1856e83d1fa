// SPDX-License-Identifier: MIT
#include "faultstation.h"

#include "tracer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

namespace test {

namespace {

const QByteArray olderTemplate = "#drask_installed\n"
                                 "import sys\n"
                                 "if True:\n"
                                 "\tsys.path.append( importable_path(u'__scriptpath__'))\n"
                                 "\timport draskdlg\n";
const QByteArray newerTemplate = olderTemplate
    + "\timport draskshelf\n"
      "\tdraskshelf.init()\n"
      "maya.utils.executeDeferred(\"searchTab()\")\n";

QByteArray withFolder(QByteArray text, const QByteArray &folder)
{
    return text.replace("__scriptpath__", folder);
}

/// Lines of the user's that do not fit into what is read at once.
QByteArray manyLines()
{
    QByteArray lines;
    for (char letter = 'a'; letter < 's'; ++letter) {
        lines += "# " + QByteArray(1000, letter) + '\n';
    }
    return lines;
}

} // namespace

const QString FaultStation::mayaTarget = "home/maya 2020/scripts/drask";
const QString FaultStation::script = "home/maya 2020/scripts/userSetup.py";
const QString FaultStation::backup = mayaTarget + "/userSetup.py.draskbackup";
const QString FaultStation::environmentFile = "home/houdini18.0/houdini.env";
const QString FaultStation::legacyFile = "home/Cinema 4D R19/plugins/Grex.cdl";

QString sceneName(Scene scene)
{
    const char *const names[] = {"first installation", "update of the path", "update of the block"};
    return names[int(scene)];
}

void addScenes()
{
    QTest::addColumn<Scene>("scene");
    for (const Scene scene : scenes) {
        QTest::newRow(qPrintable(sceneName(scene))) << scene;
    }
}

FaultStation::FaultStation(Scene which)
    : scene(which)
{
    addMaya();
    if (scene != Scene::OldBlock) {
        addPluginOf({"houdini",
                     "home/houdini18.0",
                     "/Plugins/drask",
                     "houdini",
                     "versionHoudini",
                     {{"drask.py", "python"}, {"otls/drask.hda", "asset"}}});
    }
    if (scene == Scene::FirstInstallation) {
        addOtherHosts();
    }
    write("home/archive/scene.txt", "a scene");
    write("home/archive/old/scene.txt", "an older scene");
    makeFolder("home/temp");
    writeStartUpFiles();
    addSetting("UserData", "username=Ann");
    addSetting("PathOptions", "localProjectsFolder=" + path("home/projects"));
    addCpuType("printf Xeon\n");
    writeSettings();
    recordUndisturbedRuns();
}

void FaultStation::addMaya()
{
    const QByteArray &text = scene == Scene::OldBlock ? newerTemplate : olderTemplate;
    const QByteArray folder = path(mayaTarget).toUtf8();
    mayaFile = StartUpFile::maya(withFolder(text, folder),
                                 "\tsys.path.append( importable_path(u'" + folder + "'))");
    addPluginOf(
        {"maya",
         "home/maya 2020",
         "/scripts/drask",
         "maya",
         "versionMaya",
         {{"drask_userSetup.py", text}, {"draskdlg.py", "dialog"}, {"icons/drask.xpm", "icon"}}});
}

void FaultStation::addOtherHosts()
{
    addPluginOf({"c4d",
                 "home/Cinema 4D R19",
                 "/plugins/drask",
                 "Cinema4D",
                 "versionCinema4d",
                 {{"grex.pyp", "python"}, {"grex21.xlib", "lib"}, {"res/dlg.str", "text"}}});
    write(legacyFile, "an earlier generation's");
    addPluginOf({"blender",
                 "home/blender-2.79",
                 "/scripts/startup/adrask",
                 "Blender",
                 "versionBlender",
                 {{"__init__.py", "python"}}});
    addPluginOf({"rhino",
                 "home/Rhinoceros 5",
                 "/Plug-ins/Drask",
                 "rhino",
                 "versionRhino",
                 {{"Drask.rhp", "rhp"}, {"toolbars/Drask_tb.rui", "rui"}}});
}

void FaultStation::addPluginOf(const Plugin &plugin)
{
    Tree files = plugin.files;
    files["version.txt"] = "24";
    addPlugin(plugin.source, files);
    addHost(plugin.key, path(plugin.host));
    addSetting("plugins", plugin.versionKey + "=24");
    const QString target = plugin.host + plugin.subFolder;
    targets << target;
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        shipped[target + '/' + file.key()] = file.value();
    }
    write(plugin.host + "/notes.txt", "the user's");
    write(target + "/../another.txt", "another plug-in's");
    if (scene == Scene::FirstInstallation) {
        // A folder by the plug-in's name can be there before the plug-in is.
        write(target + "/my notes.txt", "the user's");
    } else {
        writeOlderPlugin(target);
    }
}

void FaultStation::writeOlderPlugin(const QString &target) const
{
    write(target + "/my notes.txt", "the user's");
    write(target + "/version.txt", "23");
    write(target + "/manager.cfg", "Bob\n");
    write(target + "/uninstall.ini", (path(target) + "/version.txt\n").toUtf8());
    for (auto file = shipped.cbegin(); file != shipped.cend(); ++file) {
        if (file.key().startsWith(target) && file.key().endsWith(".py")) {
            write(file.key(), "older");
        }
    }
    if (target == mayaTarget) {
        write(backup, "import user\n");
    }
}

void FaultStation::writeStartUpFiles()
{
    const QByteArray oldFolder = "/opt/older/drask";
    QByteArray lines = "import user\n";
    QByteArray environment = "JOB = /jobs\nHIP = /hip\n";
    if (scene == Scene::OldPath) {
        lines += withFolder(olderTemplate, oldFolder) + manyLines();
        environment = "JOB = /jobs\n#drask_installed\nHOUDINI_PATH = \"" + oldFolder
            + ";$HOUDINI_PATH\"\nHIP = /hip\n";
    } else if (scene == Scene::OldBlock) {
        lines += withFolder(newerTemplate, oldFolder) + manyLines();
    } else {
        lines += "print(user)\n";
    }
    write(script, lines);
    if (scene != Scene::OldBlock) {
        write(environmentFile, environment);
    }
}

RunOptions FaultStation::options(const QStringList &through) const
{
    RunOptions options;
    options.through = through;
    options.environment = Tracer::environment();
    options.environment.insert("TMPDIR", path("home/temp"));
    return options;
}

Tree FaultStation::look() const
{
    Tree tree;
    const auto addFolder = [&tree, this](const QString &folder) {
        const Tree entries = readTree(path(folder));
        for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
            tree[folder + '/' + entry.key()] = entry.value();
        }
    };
    addFolder("home");
    addFolder("tool/plugins");
    const QFileInfoList files = QDir(tool()).entryInfoList(QDir::Files | QDir::Hidden
                                                           | QDir::System);
    for (const QFileInfo &file : files) {
        const QString name = "tool/" + file.fileName();
        if (name == "tool/drask-installer") {
            tree[name] = QByteArray::number(file.size());
        } else if (name != "tool/plugin.log" && name != "tool/pluginError.txt") {
            tree[name] = read(name);
        }
    }
    return tree;
}

void FaultStation::reset() const
{
    remove("home");
    const QStringList names = QDir(tool()).entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : names) {
        if (!first.contains("tool/" + name)) {
            remove("tool/" + name);
        }
    }
    for (auto entry = first.cbegin(); entry != first.cend(); ++entry) {
        if (entry.key().startsWith("home/")) {
            entry.key().endsWith('/') ? makeFolder(entry.key()) : write(entry.key(), entry.value());
        }
    }
}

void FaultStation::recordUndisturbedRuns()
{
    first = look();
    const RunResult installation = run({}, options());
    installed = look();
    usualLog = log();
    const RunResult again = run({"reinstall"}, options());
    settled = look();
    const auto isAsExpected = [this](const QString &name, const StartUpFile &file) {
        return !first.contains(name)
            || (file.afterNextRun(first[name]).content == installed[name]
                && file.afterNextRun(installed[name]).content == settled[name]);
    };
    if (installation.exitCode != 0 || again.exitCode != 0 || !isAsExpected(script, mayaFile)
        || !isAsExpected(environmentFile, houdiniFile)) {
        qFatal("The undisturbed runs went wrong");
    }
}

void FaultStation::letOwnerlessLocksExpire() const
{
    // The lock of a run that was ended before it wrote its number there counts for half a minute.
    const QStringList locks = QDir(tool()).entryList({"*.lock"});
    for (const QString &lock : locks) {
        if (QFileInfo(tool(lock)).size() == 0) {
            age("tool/" + lock);
        }
    }
}

Tree FaultStation::treeWhenRepaired() const
{
    Tree expected = settled;
    const NextContent next = mayaFile.afterNextRun(read(script));
    expected[script] = next.content;
    if (exists(backup)) {
        expected[backup] = read(backup);
    } else if (next.added) {
        expected[backup] = read(script);
    } else {
        expected.remove(backup);
    }
    if (expected.contains(environmentFile)) {
        expected[environmentFile] = houdiniFile.afterNextRun(read(environmentFile)).content;
    }
    return expected;
}

QStringList FaultStation::repair() const
{
    QStringList complaints;
    letOwnerlessLocksExpire();
    const Tree expected = treeWhenRepaired();
    const RunResult result = run({"reinstall"}, options());
    if (!result.ended || result.crashed || result.exitCode != 0 || !result.console.isEmpty()) {
        complaints << QStringLiteral("the repairing run gave %1 and said \"%2\"")
                          .arg(result.exitCode)
                          .arg(QString::fromUtf8(result.console));
    }
    const QString difference = treeDifference(look(), expected);
    if (!difference.isEmpty()) {
        complaints << "after the repair: " + difference;
    }
    return complaints + complaintsAboutRights();
}

QStringList FaultStation::complaintsAboutRights() const
{
    QStringList complaints;
    const QFile::Permissions usual = QFile::permissions(tool("settings.ini"));
    for (auto file = shipped.cbegin(); file != shipped.cend(); ++file) {
        if (exists(file.key()) && QFile::permissions(path(file.key())) != usual) {
            complaints << "other rights than shipped: " + file.key();
        }
    }
    return complaints;
}

} // namespace test
