// SPDX-License-Identifier: MIT
#include "studio.h"

#include "expectedlog.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace test {

namespace {

const char cpuType[] = "printf 'x86\\373\\377'\n";
const char cpuTypeInBase64[] = "eDg2-_8=";

const char mayaTemplate[] = "#drask_installed\n"
                            "import sys\n"
                            "def importable_path(path):\n"
                            "\treturn path\n"
                            "if True:\n"
                            "\tsys.path.append( importable_path(u'__scriptpath__'))\n"
                            "\timport drask\n";

/// What some plug-ins ship beyond what all of them do.
Tree ownFiles(const QString &plugin)
{
    if (plugin == "Cinema4D") {
        return {{"grex20.xdl64", "dl"}, {"grex21.xlib", "lib"}, {"res/c4d_symbols.h", "enum {};"}};
    }
    if (plugin == "maya") {
        return {{"drask_userSetup.py", mayaTemplate}, {"shelf/icons/render.xpm", "/* XPM */"}};
    }
    if (plugin == "rhino") {
        return {{"Drask.rhp", "rhp"}, {"Drask_tb.rui", "rui"}};
    }
    if (plugin == "revit") {
        return {{"DraskRevitUpload.addin", "<RevitAddIns/>"}, {"DraskRevitUpload.dll", "MZ"}};
    }
    return {};
}

Tree pluginFiles(const StudioHost &host)
{
    Tree files = {
        {"version.txt", QByteArray::number(host.version) + '\n'},
        {"drask.py", "# for " + host.key.toUtf8() + "\r\nimport sys\r\n"},
        {"drask_uninstall.sh", "#!/bin/sh\n"},
        {"icons/drask.png", QByteArray("\x89PNG\r\n\x1a\n\0\xff", 10)},
        {"icons/"
             + QString::fromUtf8("gr\xc3\xb6\xc3\x9f"
                                 "er.png"),
         QByteArray(70000, '\xa5')},
    };
    const Tree own = ownFiles(host.plugin);
    for (auto file = own.cbegin(); file != own.cend(); ++file) {
        files.insert(file.key(), file.value());
    }
    return files;
}

void listFiles(const QString &source, const QString &target, const QByteArray &shelf,
               QByteArray &lines)
{
    const QDir folder(source);
    const QStringList files = folder.entryList(QDir::Files, QDir::Unsorted);
    for (const QString &file : files) {
        if (!file.contains("drask_uninstall")) {
            lines += (target + '/' + file).toUtf8() + '\n';
        }
    }
    lines += shelf;
    const QStringList subFolders = folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot,
                                                    QDir::Unsorted);
    for (const QString &subFolder : subFolders) {
        listFiles(source + '/' + subFolder, target + '/' + subFolder, shelf, lines);
    }
}

/// The two files into which Qt writes Rhino's registry where there is no registry.
void putRegistry(Tree &tree, const Studio &studio)
{
    for (const char *name :
         {"tool/HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\5.0x64\\Plug-ins",
          "tool/HKEY_CURRENT_USER\\Software\\McNeel\\Rhinoceros\\5.0x64\\Plug-ins"}) {
#ifdef Q_OS_LINUX
        const QByteArray pluginFile = studio.target("rhino", "Drask.rhp").toUtf8();
        tree[name] = "[5f0c2a71-9e3d-4b68-a2c4-7d81e6b39f20]\nFileName="
            + QByteArray(pluginFile).replace("\xc3\xa9", "\\xe9") + "\nName=Drask\n";
#else
        tree[name] = studio.read(name);
#endif
    }
}

QStringList linesOfSettings(const Studio &studio)
{
    QStringList lines{"Debug: settings loaded"};
    for (const StudioHost &host : Studio::hosts()) {
        lines += linesOfLookUp(host.key, studio.path(host.folder));
    }
    return lines;
}

QStringList linesOfFailedRemovals(const Studio &studio)
{
    QStringList lines;
    for (const StudioHost &host : Studio::hosts()) {
        const QStringList folders = host.targets();
        for (const QString &folder : folders) {
            lines += linesWithoutManifest('(' + host.key + ") " + studio.path(folder));
        }
    }
    return lines;
}

/// The line that tells what came of the copy; none where there was nothing to copy.
QStringList linesOfCopy(Served::Copy copy, const QString &target, const QString &manifestBefore)
{
    switch (copy) {
    case Served::Copied:
        return {"Debug: open file:  " + quoted(manifestBefore)};
    case Served::FoundInstalled:
        return {alreadyInstalledLine(target)};
    case Served::LeftOut:
        return {"Debug: only write config, do not copy files"};
    case Served::NotShipped:
        break;
    }
    return {};
}

QStringList linesOfConfig(Served::Config config)
{
    switch (config) {
    case Served::ConfigMade:
        return linesOfNewConfig();
    case Served::ConfigChanged:
        return {"Debug: 161 write cfg file..."};
    case Served::ConfigKept:
        break;
    }
    return {"Debug: not necessary to write cfg"};
}

QStringList linesOfPass(const Studio &studio, const Served &served,
                        const QMap<QString, Served> &others, int code)
{
    QStringList lines{"Debug: !!!settings local:  QVariant(QString, \"/home/ann/pr\u00f8jects\")",
                      "Debug: version:  24"};
    QString manifestBefore;
    for (const StudioHost &host : Studio::hosts()) {
        const Served done = others.value(host.key, served);
        const QStringList folders = host.targets();
        for (const QString &folder : folders) {
            const QString target = studio.path(folder);
            lines += linesOfCopy(done.copy, target, manifestBefore) + linesOfConfig(done.config)
                + done.hostStep;
            if (done.copy != Served::FoundInstalled) {
                lines << installedLine(host.key, target);
            }
            if (done.copy == Served::Copied) {
                manifestBefore = target + "/uninstall.ini";
            }
        }
    }
    return lines << QStringLiteral("Debug: %1").arg(code);
}

} // namespace

QStringList StudioHost::targets() const
{
    QStringList folders;
    for (const QString &subFolder : subFolders) {
        folders << folder + subFolder;
    }
    return folders;
}

Studio::Studio()
{
    addSetting("UserData", QString::fromUtf8("username=Ann L\xc3\xb6we"));
    addSetting("PathOptions", QString::fromUtf8("localProjectsFolder=/home/ann/pr\xc3\xb8jects"));
    addCpuType(cpuType);
    for (const StudioHost &host : hosts()) {
        addPlugin(host.plugin, pluginFiles(host));
        addHost(host.key, path(host.folder));
        addSetting("plugins", QStringLiteral("%1=%2").arg(host.versionKey).arg(host.version));
        write(host.folder + "/own/settings.txt", "kept by the artist");
    }
    writeSettings();
    write("hosts/Cinema 4D R19/plugins/Grex.cdl", "an earlier generation");
    write("hosts/Cinema 4D R19/plugins/own.cdl", "bought elsewhere");
    write("hosts/maya 2020/scripts/userSetup.py", "import maya.cmds as cmds\r\nprint('hello')\r\n");
    write("hosts/houdini18.0/houdini.env", "HOUDINI_MAXTHREADS = 4\n");
    write("hosts/SketchUp 2019/Plugins/own.rb", "puts 'hello'\n");
}

// clang-format off
const QVector<StudioHost> &Studio::hosts()
{
    static const QVector<StudioHost> fifteenHosts = {
//       key          installed in                  plug-in folder inside            shipped in    version key         version
        {"3dsmax",    "hosts/3ds Max 2020",
         {"/CHS/scripts/startup/drask", "/DEU/scripts/startup/drask", "/ENU/scripts/startup/drask",
          "/FRA/scripts/startup/drask", "/JPN/scripts/startup/drask", "/KOR/scripts/startup/drask"}, "3ds",        "version3ds",        31},
        {"c4d",       "hosts/Cinema 4D R19",        {"/plugins/drask"},              "Cinema4D",   "versionCinema4d",   19},
        {"c4d14",     "hosts/Cinema 4D R14",        {"/plugins/drask"},              "Cinema4D14", "versionCinema4d14", 14},
        {"c4d21",     "hosts/Cinema 4D R21",        {"/plugins/drask"},              "Cinema4D21", "versionCinema4d21", 21},
        {"blender",   "hosts/blender-2.79",         {"/scripts/startup/adrask"},     "Blender",    "versionBlender",     4},
        {"blender28", "hosts/blender-2.82",         {"/scripts/startup/adrask"},     "Blender28",  "versionBlender28",   5},
        {"xsi",       "hosts/Softimage 2015",       {"/Application/Plugins/drask"},  "xsi",        "versionXSI",         2},
        {"lightwave", "hosts/LightWave 2019",       {"/Plugins/drask"},              "lightwave",  "versionLightwave",   9},
        {"maya",      "hosts/maya 2020",            {"/scripts/drask"},              "maya",       "versionMaya",       12},
        {"modo",      "hosts/Modo 14.0v1",          {"/Scripts/drask"},              "modo",       "versionModo",        7},
        {"rhino",     "hosts/Rhinoceros 5",         {"/Plug-ins/Drask"},             "rhino",      "versionRhino",       8},
        {"revit",     "hosts/Revit 2020",           {"/Plugins/drask"},              "revit",      "versionRevit",       3},
        {"houdini",   "hosts/houdini18.0",          {"/Plugins/drask"},              "houdini",    "versionHoudini",     6},
        {"sketchup",  "hosts/SketchUp 2019/Plugins", {""},                           "sketchup",   "versionSketchup",   10},
        {"clarisse",  "hosts/Clarisse iFX 4.0",     {"/drask"},                      "clarisse",   "versionClarisse",   11},
    };
    return fifteenHosts;
}
// clang-format on

StudioHost Studio::host(const QString &key)
{
    return *std::find_if(hosts().cbegin(), hosts().cend(),
                         [&key](const StudioHost &host) { return host.key == key; });
}

QString Studio::target(const QString &key, const QString &relative) const
{
    const QString folder = path(host(key).targets().first());
    return relative.isEmpty() ? folder : folder + '/' + relative;
}

void Studio::ship(const QString &key, int version, const Tree &files) const
{
    const StudioHost wanted = host(key);
    const QString folder = "tool/plugins/" + wanted.plugin;
    const QByteArray before = read(folder + "/version.txt").trimmed();
    const QByteArray number = QByteArray::number(version);
    const QByteArray versionKey = wanted.versionKey.toUtf8() + '=';
    changeSetting(versionKey + before, versionKey + number);
    addPlugin(wanted.plugin, {{"version.txt", number + '\n'}});
    addPlugin(wanted.plugin, files);
}

void Studio::changeSetting(const QByteArray &line, const QByteArray &newLine) const
{
    const QByteArray text = read("tool/settings.ini");
    if (!text.contains(line + '\n')) {
        qFatal("The settings have no line %s", line.constData());
    }
    write("tool/settings.ini", QByteArray(text).replace(line + '\n', newLine + '\n'));
}

Tree Studio::installed(const Tree &before) const
{
    Tree tree = before;
    for (const StudioHost &host : hosts()) {
        const Tree shipped = readTree(tool("plugins/" + host.plugin));
        const QStringList folders = host.targets();
        for (const QString &folder : folders) {
            for (auto file = shipped.cbegin(); file != shipped.cend(); ++file) {
                put(tree, folder + '/' + file.key(), file.value());
            }
            put(tree, folder + "/manager.cfg", configOf(host.key));
            put(tree, folder + "/uninstall.ini", manifestOf(host.key, path(folder)));
        }
    }
    tree.remove("hosts/Cinema 4D R19/plugins/Grex.cdl");
    tree.remove("hosts/Cinema 4D R19/plugins/drask/grex21.xlib");

    QByteArray &userSetup = tree["hosts/maya 2020/scripts/userSetup.py"];
    tree["hosts/maya 2020/scripts/drask/userSetup.py.draskbackup"] = userSetup;
    userSetup += QByteArray(mayaTemplate).replace("__scriptpath__", target("maya").toUtf8());
    tree["hosts/houdini18.0/houdini.env"] += "\n#drask_installed\n"
                                             "HOUDINI_PATH = \";$HOUDINI_PATH\"\n";
    putRegistry(tree, *this);
    tree["tool/version.txt"] = DRASK_VERSION;
    return tree;
}

QByteArray Studio::configOf(const QString &key) const
{
    const QList<QByteArray> lines{"Ann L\xc3\xb6we",
                                  "/home/ann/pr\xc3\xb8jects",
                                  tool("DraskDrop").toUtf8(),
                                  DRASK_VERSION,
                                  cpuTypeInBase64,
                                  "1",
                                  "1"};
    return lines.join(key.startsWith("c4d") ? "\r\n" : "\n");
}

QByteArray Studio::manifestOf(const QString &key, const QString &target) const
{
    const StudioHost wanted = host(key);
    QByteArray shelf;
    if (key == "maya") {
        shelf = path(wanted.folder).toUtf8() + "/prefs/shelves/shelf_DraskGrex.mel\n";
    }
    QByteArray lines;
    listFiles(tool("plugins/" + wanted.plugin), target, shelf, lines);
    return lines;
}

QStringList Studio::logOfFirstRun() const
{
    return logOfInstall({Served::Copied, Served::ConfigMade});
}

QStringList Studio::logOfLaterRun() const
{
    return logOfInstall({Served::FoundInstalled, Served::ConfigKept});
}

QStringList Studio::logOfInstall(const Served &served, const QMap<QString, Served> &others,
                                 int code) const
{
    return linesOfSettings(*this) + linesOfPass(*this, served, others, code);
}

QStringList Studio::logOfReinstall(const Served &served) const
{
    return QStringList("Debug: forceReinstall") + linesOfSettings(*this)
        + linesOfFailedRemovals(*this) + linesOfPass(*this, served, {}, 0);
}

QStringList Studio::logOfRemovalOfAll() const
{
    return linesOfSettings(*this) + linesOfFailedRemovals(*this);
}

void Studio::ageHosts() const
{
    const Tree tree = readTree(path("hosts"));
    for (auto file = tree.cbegin(); file != tree.cend(); ++file) {
        if (!file.key().endsWith('/')) {
            age("hosts/" + file.key());
        }
    }
}

QStringList Studio::writtenFiles() const
{
    QStringList names;
    const Tree tree = readTree(path("hosts"));
    for (auto file = tree.cbegin(); file != tree.cend(); ++file) {
        if (!file.key().endsWith('/') && !isAged("hosts/" + file.key())) {
            names << "hosts/" + file.key();
        }
    }
    return names;
}

} // namespace test
