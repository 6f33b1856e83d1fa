// SPDX-License-Identifier: MIT
#include "fuzzsandbox.h"
#include "promisedtext.h"
#include "uninstaller/ov3uninstaller.h"

#include <QDir>
#include <QFileInfo>

namespace {

/// Lists may name folders here, and one level above: what is searched lies beside a program.
const QString confine = QStringLiteral("around/hosts");

struct Entry {
    const char *name;
    bool isLegacy; ///< and is found by a walk that reaches its plug-in folder
};

// clang-format off
constexpr Entry entries[] = {
    {"around/hosts/CINEMA 4D R16/Plugins/Drask/res/c4d_symbols.h",        true},
    {"around/hosts/CINEMA 4D R16/Plugins/Drask/res/C4D_symbols.h",        false},
    {"around/hosts/CINEMA 4D R16/Plugins/own/utils.pyc",                  false},
    {"around/hosts/3dsMax/scripts/startup/drask/drask.mse",               true},
    {"around/hosts/3dsMax/scripts/startup/own.ms",                        false},
    {"around/hosts/maya2016/scripts/Drask/manager.cfg",                   true},
    {"around/hosts/maya2016/scripts/Drask/Manager.cfg",                   false},
    {"around/hosts/maya2016/scripts/Drask/.cache/grex.pyc",               false},
    {"around/hosts/maya2016/scripts/drask/manager.cfg",                   false},
    {"around/hosts/Softimage/Plugins/anybody/drask.js",                   true},
    {"around/hosts/Softimage/Plugins/anybody/own.js",                     false},
    {"around/hosts/LightWave/Plugins/Drask/grex64.p",                     true},
    {"around/hosts/modo/drask/val_tex",                                   true},
    {"around/hosts/modo/drask/own.pyc",                                   false},
    {"around/hosts/Blender/2.57/scripts/startup/adrask/__init__.py",      true},
    {"around/hosts/Blender/2.79/scripts/startup/adrask/__init__.py",      true},
    {"around/hosts/Blender/2.80/scripts/startup/adrask/sub/__init__.py",  true},
    {"around/hosts/Blender/2.100/scripts/startup/adrask/__init__.py",     true},
    {"around/hosts/Old/2.58/scripts/startup/adrask/__init__.py",          true},
    {"around/hosts/Older/2.57/scripts/startup/adrask/__init__.py",        true},
    {"around/hosts/Newest/2.99/scripts/startup/adrask/__init__.py",       true},
    {"around/hosts/Plugins/Drask/logo.jpg",                               true},
    {"around/Plugins/Drask/logo.jpg",                                     true},
    {"around/scripts/Drask/logo.jpg",                                     true},
    {"Plugins/Drask/logo.jpg",                                            true},
    {"scripts/Drask/logo.jpg",                                            true},
};

struct Detector {
    QStringList words;
    QString folder;
};

const QList<Detector> &detectors()
{
    static const QList<Detector> inOrder = {
        {{"cinema", "c4d"},       "/Plugins/Drask"},
        {{"3ds"},                 "/scripts/startup/drask"},
        {{"maya"},                "/scripts/Drask"},
        {{"xsi"},                 "/Plugins"},
        {{"lightwav", "layout"},  "/Plugins/Drask"},
        {{"modo"},                "/drask"},
        {{"blender"},             ""},
    };
    return inOrder;
}
// clang-format on

/// The line \a line of a list with the program that it names confined to \a root.
QString confined(const QString &line, const QString &root)
{
    const auto valueBegin = line.indexOf(QLatin1Char('=')) + 1;
    const QString value = line.mid(valueBegin).trimmed();
    const QString begin = value.startsWith(QLatin1Char('/')) ? root + QLatin1Char('/') : QString();
    return line.left(valueBegin) + begin + fuzz::withoutClimbing(value);
}

QStringList confinedList(const QByteArray &content, const QString &root)
{
    QStringList lines;
    const QStringList texts = fuzz::textOf(content).split(QLatin1Char('\n'));
    for (const QString &line : texts) {
        lines.append(line.startsWith("path") ? confined(line, root) : line);
    }
    // A byte-order mark would change what the lines say.
    lines.prepend("[hosts]");
    return lines;
}

QString newestBlender(const QString &beside)
{
    for (int minor = 99; minor >= 58; --minor) {
        const QString version = beside + "/2." + QString::number(minor);
        if (QFileInfo::exists(version)) {
            return version + "/scripts/startup/adrask";
        }
    }
    return {};
}

/// Where the host program \a value has its old plug-in; empty for no host.
QString pluginFolder(const QString &value)
{
    const QString beside = QFileInfo(value).absolutePath();
    const QString lower = value.toLower();
    for (const Detector &detector : detectors()) {
        for (const QString &word : detector.words) {
            if (lower.contains(word)) {
                return word == "blender" ? newestBlender(beside) : beside + detector.folder;
            }
        }
    }
    return {};
}

QStringList searchedFolders(const QStringList &lines)
{
    QStringList folders;
    for (const QString &line : lines) {
        if (line.startsWith("path")) {
            const QString value = line.mid(line.indexOf('=') + 1).trimmed();
            folders += QFileInfo(pluginFolder(value)).canonicalFilePath();
        }
    }
    folders.removeAll(QString());
    return folders;
}

fuzz::Tree promisedTree(const fuzz::Sandbox &sandbox, const QStringList &folders)
{
    fuzz::Tree tree = sandbox.tree();
    for (const Entry &entry : entries) {
        for (const QString &folder : folders) {
            if (entry.isLegacy && sandbox.path(entry.name).startsWith(folder + '/')) {
                tree.remove(entry.name);
            }
        }
    }
    return tree;
}

void plant(const fuzz::Sandbox &sandbox)
{
    for (const Entry &entry : entries) {
        sandbox.write(entry.name, entry.name);
    }
    const QString mayaPlugin = confine + "/maya2016/scripts/Drask";
    sandbox.makeFolder(mayaPlugin + "/drask.py");
    sandbox.makeLink("../../../Softimage/Plugins", mayaPlugin + "/linked");
    sandbox.makeLink("nothing", mayaPlugin + "/dangling");
    sandbox.makeLink("maya2016", confine + "/newest");
}

/// The input is the list file.
void check(const fuzz::Sandbox &sandbox, const fuzz::Input &input)
{
    const QString root = sandbox.path(confine);
    const QStringList lines = confinedList(input.whole(), root);
    plant(sandbox);
    sandbox.write("list.ini", lines.join('\n').toUtf8());
    QDir::setCurrent(root);
    const fuzz::Tree expected = promisedTree(sandbox, searchedFolders(lines));

    const QString list = sandbox.path("list.ini");
    fuzz::promise(Ov3Uninstaller::deleteOldPlugins(list) == 0, "the removal never fails");
    sandbox.promiseTree(expected, "legacy files of listed hosts are deleted, and nothing else");
    fuzz::promise(Ov3Uninstaller::deleteOldPlugins(list) == 0, "the removal never fails");
    sandbox.promiseTree(expected, "a second removal deletes nothing more");
}

} // namespace

DRASK_FUZZ_TARGET(check)
