// SPDX-License-Identifier: MIT
#include "randomworld.h"

#include "entriesbelow.h"
#include "ordinaryuser.h"
#include "statusrun.h"

#include <QDir>
#include <QFile>

#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace test {

namespace {

struct Host {
    const char *key;
    const char *subFolder;
    const char *source;
    const char *versionKey;
};

const std::vector<Host> knownHosts{
#include "hosts.inc"
};

const std::vector<QByteArray> fileNames{"drask.py",           "a b.txt",  "\xc3\xa4.png",
                                        "drask_uninstall.sh", "Grex.cdl", "grex21.xlib"};
const std::vector<QByteArray> contents{"", "x", "one\ntwo\n", "a longer text, twice as long\n"};

const QByteArray oldTemplate = "#drask_installed\n"
                               "\tsys.path.append( importable_path(u'__scriptPath__'))\n";

void setMode(const QString &path, unsigned mode)
{
    static_cast<void>(chmod(QFile::encodeName(path).constData(), mode));
}

} // namespace

RandomWorld::RandomWorld(std::uint32_t seed)
    : dice(seed)
{
    asOrdinaryUser = chance(50);
    modeWord = oneOf(QStringList{"", "", "", "reinstall", "onlyWriteConfig"});
    addSetting("UserData", "username=Ann");
    if (chance(20)) {
        addSetting("UserData", "loggedOut=true");
    }
    if (chance(30)) {
        addSetting("Settings", "copyTexFiles=false");
    }
    const int count = 1 + below(4);
    for (int number = 0; number < count; ++number) {
        addRandomHost(oneOf(knownHosts).key);
    }
    if (chance(6)) {
        addHost("painter", path("hosts/painter"));
    }
    if (chance(6)) {
        addHost("modo", "nowhere");
    }
    writeSettings();
    give();
    if (chance(60)) {
        run({}, user());
    }
    disturbAll();
}

void RandomWorld::disturbAll()
{
    for (const QString &folder : std::as_const(folders)) {
        if (chance(60)) {
            disturb(folder);
        }
    }
    for (const QString &plugin : std::as_const(plugins)) {
        if (chance(25)) {
            disturb("tool/plugins/" + plugin);
        }
    }
    if (chance(10)) {
        disturb("tool");
    }
}

RunOptions RandomWorld::user() const
{
    RunOptions options;
    options.asOrdinaryUser = asOrdinaryUser;
    return options;
}

QString RandomWorld::mode() const
{
    return modeWord;
}

int RandomWorld::below(int number)
{
    return static_cast<int>(dice() % static_cast<std::uint32_t>(number));
}

bool RandomWorld::chance(int percent)
{
    return below(100) < percent;
}

void RandomWorld::makePlugin(const QString &source, int version, const QString &key)
{
    const QString folder = "tool/plugins/" + source + '/';
    makeFolder(folder);
    if (chance(90)) {
        const int shipped = chance(85) ? version : version + 1;
        write(folder + "version.txt", chance(93) ? QByteArray::number(shipped) : "abc");
    }
    const QStringList subFolders{"", "", "sub/", "sub/deep/", "scripts/", ".hidden/"};
    const int files = below(6);
    for (int number = 0; number < files; ++number) {
        write(folder + oneOf(subFolders) + QString::fromUtf8(oneOf(fileNames)), oneOf(contents));
    }
    if (key == "maya") {
        makeMayaTemplate(folder);
    }
    if (chance(4)) {
        write(folder + oneOf(QStringList{"uninstall.ini", "manager.cfg"}), "shipped\n");
    }
}

void RandomWorld::makeMayaTemplate(const QString &folder)
{
    const std::vector<QByteArray> templates{mayaTemplate,
                                            mayaTemplate,
                                            mayaTemplate,
                                            oldTemplate,
                                            oldTemplate,
                                            "print('no marker')\n",
                                            ""};
    if (chance(92)) {
        write(folder + "drask_userSetup.py", oneOf(templates));
    }
}

void RandomWorld::makeStartUpFiles(const QString &key, const QString &folder)
{
    const std::vector<QByteArray> scripts{
        "import maya\r\n",
        "#drask_installed\n",
        mayaTemplate,
        "print(1)",
        "a = 1\n" + oldTemplate + "b = 2\n",
        QByteArray(oldTemplate)
            .replace("__scriptPath__", (path(folder) + "/scripts/drask").toUtf8())};
    const std::vector<QByteArray> environments{
        "A = 1\n", "#drask_installed\nHOUDINI_PATH = \"old\"\nB = 2\n",
        "A = 1\n\n#drask_installed\nHOUDINI_PATH = \";$HOUDINI_PATH\"\n", "#drask_installed\n"};
    if (key == "maya" && chance(60)) {
        write(folder + "/scripts/userSetup.py", oneOf(scripts));
    }
    if (key == "houdini" && chance(60)) {
        write(folder + "/houdini.env", oneOf(environments));
    }
    if (key == "c4d" && chance(60)) {
        write(folder + "/plugins/Grex.cdl", "old");
        write(folder + "/plugins/grex20.xlib", "old");
    }
}

void RandomWorld::addRandomHost(const QString &key)
{
    const Host &host = *std::find_if(knownHosts.cbegin(), knownHosts.cend(),
                                     [&key](const Host &row) { return key == row.key; });
    const int version = below(3) + 1;
    if (!plugins.contains(host.source)) {
        plugins << host.source;
        addSetting("plugins", QStringLiteral("%1=%2").arg(host.versionKey).arg(version));
        if (chance(93)) {
            makePlugin(host.source, version, key);
        }
    }
    QString folder = QStringLiteral("hosts/%1 %2").arg(key).arg(below(2));
    if (key.startsWith("blender") || chance(4)) {
        folder = QStringLiteral("hosts/shared %1").arg(below(3));
    } else if (key == "sketchup" && chance(10)) {
        folder = "tool/plugins/sketchup";
    }
    addHost(key, path(folder) + (chance(3) ? "/" : ""));
    folders << folder;
    if (chance(70)) {
        makeFolder(folder);
        makeStartUpFiles(key, folder);
    } else if (chance(20)) {
        makeFolder("elsewhere");
        makeFolder("hosts");
        if (!QFileInfo::exists(path(folder))) {
            makeLink(path("elsewhere"), folder);
        }
    }
}

/// An entry somewhere in \a folder; that itself if it is empty.
QString RandomWorld::anyEntry(const QString &folder)
{
    QStringList entries;
    const QStringList all = entriesBelow(path(folder));
    for (const QString &each : all) {
        const QString entry = QDir(path()).relativeFilePath(each);
        if (!entry.endsWith("/drask-installer") && !entry.endsWith("settings.ini")) {
            entries << entry;
        }
    }
    entries.sort();
    return entries.isEmpty() ? folder : oneOf(entries);
}

void RandomWorld::disturb(const QString &folder)
{
    const int times = 1 + below(3);
    for (int number = 0; number < times; ++number) {
        disturbFile(anyEntry(folder));
    }
}

/// A link to nothing, to a file, or to itself.
void RandomWorld::makeAnyLink(const QString &relative)
{
    write("linked.txt", "linked");
    giveToOrdinaryUser(path("linked.txt"));
    const QString nowhere = path("nowhere " + QString::number(below(3)));
    makeLink(oneOf(QStringList{nowhere, path("linked.txt"), path(relative)}), relative);
}

void RandomWorld::disturbFile(const QString &relative)
{
    const QString whole = path(relative);
    const bool isFolder = QFileInfo(whole).isDir() && !QFileInfo(whole).isSymLink();
    switch (below(isFolder ? 5 : 12)) {
    case 0:
        setMode(whole, oneOf(std::vector<unsigned>{0U, 0444U, 0555U, 0755U, 0700U}));
        break;
    case 1:
        static_cast<void>(lchown(QFile::encodeName(whole).constData(), 0, 0));
        break;
    case 4:
        if (isFolder) {
            write(relative + oneOf(QStringList{"/one more", "/.drask-unfinished"}), "own");
        } else {
            replaceFile(relative);
        }
        break;
    case 9:
        setMode(whole, oneOf(std::vector<unsigned>{0444U, 0400U, 0200U, 0777U, 0U}));
        break;
    case 10:
    case 11:
        if (QFileInfo(whole).isSymLink()) {
            remove(relative);
        }
        write(relative, oneOf(contents));
        break;
    default:
        replaceFile(relative);
        break;
    }
    if (relative == "tool") {
        setMode(path("tool"), 0755);
    }
}

/// Puts nothing, an obstacle, an empty file, a folder or a link in the place of \a relative.
void RandomWorld::replaceFile(const QString &relative)
{
    if (relative == "tool") {
        return; // Without it there is nothing to run.
    }
    const bool isOfTheTool = relative.startsWith("tool/plugins");
    const QString whole = path(relative);
    if (QFileInfo::exists(whole) || QFileInfo(whole).isSymLink()) {
        remove(relative);
    }
    switch (below(7)) {
    case 0:
        if (!isOfTheTool) {
            write(relative, "an obstacle");
        }
        break;
    case 1:
        break;
    case 2:
        makeFolder(relative + "/in the way");
        break;
    case 3:
        write(relative, "");
        break;
    default:
        makeAnyLink(relative);
        break;
    }
}

void RandomWorld::give()
{
    if (!asOrdinaryUser) {
        return;
    }
    giveToOrdinaryUser(path());
    const QStringList all = entriesBelow(path());
    for (const QString &entry : all) {
        giveToOrdinaryUser(entry);
    }
}

bool Leaf::isAs(const Leaf &other) const
{
    return type == other.type && mode == other.mode && content == other.content;
}

bool Leaf::isUntouched(const Leaf &other) const
{
    return inode == other.inode && changed == other.changed;
}

QMap<QString, Leaf> leavesOf(const QString &folder)
{
    QMap<QString, Leaf> leaves;
    const QStringList all = entriesBelow(folder);
    for (const QString &path : all) {
        struct stat status = {};
        static_cast<void>(lstat(QFile::encodeName(path).constData(), &status));
        Leaf leaf;
        leaf.mode = status.st_mode & 07777U;
        leaf.inode = status.st_ino;
        leaf.changed = status.st_mtim.tv_sec * 1000000000LL + status.st_mtim.tv_nsec;
        if (S_ISLNK(status.st_mode)) {
            leaf.type = 'l';
            leaf.content = QFile::encodeName(QFile::symLinkTarget(path));
        } else if (S_ISDIR(status.st_mode)) {
            leaf.type = 'd';
        } else {
            leaf.type = S_ISREG(status.st_mode) ? 'f' : 'o';
            QFile file(path);
            if (leaf.type == 'f' && file.open(QIODevice::ReadOnly)) {
                leaf.content = file.readAll();
            }
        }
        leaves.insert(path, leaf);
    }
    return leaves;
}

} // namespace test
