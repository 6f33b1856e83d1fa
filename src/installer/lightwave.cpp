// SPDX-License-Identifier: MIT
#include "installer/lightwave.h"

#include "disk/files.h"
#include "installer/plugininstaller.h"
#include "literals.h"
#include "qtversions.h"
#include "results.h"
#include "textfile.h"

#include <QDebug>
#include <QDir>

/// The linker drops a static library's resources unless they are asked for by name, outside of any
/// namespace.
static void loadMenuResource()
{
    Q_INIT_RESOURCE(lightwavemenu);
}

namespace {

constexpr QLatin1String lineBreak = "\r\n"_l1;
constexpr QLatin1String menuEntry = "MenuEntry 2 . Generic_Drask Tasklancer\r\n"_l1;
constexpr QLatin1String optionsAnchor = "menuentry 1 options"_l1;
constexpr QLatin1String groupAnchor = "menuentry 131072 1 _"_l1;

struct ConfigFiles {
    QString menu;
    QString extension;
};

// A position is a number, of whatever size.
// cppcheck-suppress passedByValue
QString underOptions(const QString &menu, const QString &lower, TextPosition options)
{
    const auto lineEnd = lower.indexOf(lineBreak, options + 1);
    if (lineEnd <= 0) {
        return {};
    }
    const auto next = lineEnd + lineBreak.size();
    return menu.left(next) + menuEntry + menu.mid(next);
}

QString withDefaultMenu(const QString &menu, const QString &lower)
{
    const auto group = lower.indexOf(groupAnchor);
    if (group <= 0) {
        return {};
    }
    // Deliberate (lightwave-joined-line): only the "_" and the line break behind it make room, so
    // that the default menu's first line joins what is left of the group's line.
    const auto groupName = group + groupAnchor.size() - 1;
    return menu.left(groupName) + defaultLightwaveMenu() + menu.mid(groupName + 3);
}

ConfigFiles findConfigFiles(const QString &folder)
{
    ConfigFiles found;
    const auto take = [&](const QByteArray &entry, EntryKind kind) {
        const QString name = nameOf(entry);
        const bool isFile = kind == EntryKind::File || kind == EntryKind::LinkedDevice;
        if (!isFile || !name.endsWith(".CFG"_l1)) {
            return;
        }
        const QString path = folder + QLatin1Char('/') + name;
        qDebug() << "cfgfile: " << path;
        if (name.startsWith("LW"_l1)) {
            (name.contains("EXT"_l1) ? found.extension : found.menu) = path;
        }
    };
    static_cast<void>(visitFolder(QDir(folder).path(), take));
    return found;
}

bool isFile(const QString &path)
{
    return !path.isEmpty() && QFile::exists(path);
}

void chooseMissingFiles(ConfigFiles &files, const QString &folder)
{
    if (!isFile(files.menu)) {
        qDebug() << "cfg file does not exist, create new file";
        files.menu = folder + "/LW.CFG"_l1;
    }
    if (!isFile(files.extension)) {
        qDebug() << "ext cfg file does not exist, create nwe file" << files.extension;
        // Deliberate (lightwave-menu-takes-name): the extension file stays without a name, and its
        // opening fails.
        files.menu = folder + "/LWEXT.CFG"_l1;
    }
}

/// Deliberate (lightwave-backup-closes): backs up with the copy of the open file object itself. A
/// backup that is made closes the file, and \a text goes nowhere; a backup from before is kept, and
/// \a text lands behind the old content.
void backUpAndWrite(QFile &file, QTextStream &stream, const QString &text)
{
    copyOpenFile(file, file.fileName() + "_bak"_l1);
    stream << text;
    stream.flush();
    static_cast<void>(file.flush());
    file.close();
}

bool openConfig(QFile &file)
{
    if (!file.open(QIODevice::ReadWrite)) {
        qDebug() << "cannot open lightwave cfg file";
        return false;
    }
    return true;
}

/// Edits the menu file and gives its text, changed or not, to \a menuText.
int editMenuFile(const QString &path, QString &menuText)
{
    QFile file(path);
    if (!openConfig(file)) {
        return Result::configurationNotWritten;
    }
    Utf8Stream stream(&file);
    menuText = stream.readAll();
    const QString changed = withLightwaveMenuEntry(menuText);
    if (!changed.isNull()) {
        menuText = changed;
        backUpAndWrite(file, stream, menuText);
    }
    return 0;
}

int editExtensionFile(const QString &path, const QString &menuText)
{
    QFile file(path);
    if (!openConfig(file)) {
        return Result::configurationNotWritten;
    }
    Utf8Stream stream(&file);
    const QString lower = stream.readAll().toLower();
    if (!lower.contains("drask tasklancer"_l1)) {
        // Deliberate (lightwave-menu-in-extension): the menu's text is written here, and
        // lightwaveExtensionEntry() nowhere.
        backUpAndWrite(file, stream, menuText);
    }
    return 0;
}

} // namespace

QString defaultLightwaveMenu()
{
    loadMenuResource();
    QFile menu(QStringLiteral(":/drask/lightwavemenu.cfg"));
    static_cast<void>(menu.open(QIODevice::ReadOnly));
    return QString::fromLatin1(menu.readAll());
}

QString lightwaveExtensionEntry(const QString &module)
{
    return "{ Entry\r\n  Class \"LayoutGeneric\"\r\n  Name \"Drask Tasklancer\"\r\n  Module \""_l1
        + QString(module).replace("\\"_l1, "\\\\"_l1) + "\"\r\n}\r\n"_l1;
}

QString withLightwaveMenuEntry(const QString &menu)
{
    const QString lower = menu.toLower();
    if (lower.contains("tasklancer"_l1)) {
        return {};
    }
    const auto options = lower.indexOf(optionsAnchor);
    // Deliberate (lightwave-options-at-start): an anchor at the very start does not count as one.
    return options > 0 ? underOptions(menu, lower, options) : withDefaultMenu(menu, lower);
}

int PluginInstaller::editLwvCfgFile(const QString &folder)
{
    ConfigFiles files = findConfigFiles(folder);
    chooseMissingFiles(files, folder);
    QString menuText;
    const int result = editMenuFile(files.menu, menuText);
    if (result > 0) {
        return result;
    }
    return editExtensionFile(files.extension, menuText);
}
