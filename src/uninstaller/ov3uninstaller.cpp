// SPDX-License-Identifier: MIT
#include "uninstaller/ov3uninstaller.h"

#include "literals.h"
#include "textfile.h"
#include "uninstaller/legacyfiles.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTextStream>

namespace {

struct LegacyHost {
    bool (*recognises)(const QString &path);
    QString (*pluginFolder)(const QString &path);
};

// clang-format off
/// The first row that recognises a path decides: a "c4d" folder below "maya" is Cinema 4D.
constexpr LegacyHost legacyHosts[] = {
    {Ov3Uninstaller::isC4DPath,     Ov3Uninstaller::getC4DPath},
    {Ov3Uninstaller::isMaxPath,     Ov3Uninstaller::getMaxPath},
    {Ov3Uninstaller::isMayaPath,    Ov3Uninstaller::getMayaPath},
    {Ov3Uninstaller::isXsiPath,     Ov3Uninstaller::getXsiPath},
    {Ov3Uninstaller::isLwvPath,     Ov3Uninstaller::getLwvPath},
    {Ov3Uninstaller::isModoPath,    Ov3Uninstaller::getModoPath},
    {Ov3Uninstaller::isBlenderPath, Ov3Uninstaller::getBlenderPath},
};
// clang-format on

constexpr int newestBlenderMinor = 99;
constexpr int oldestBlenderMinor = 58;

bool mentions(const QString &path, QLatin1String word)
{
    // Lower-cased, not case-insensitive: folding would take more letters for the same.
    const QString lower = path.toLower();
    return lower.contains(word);
}

QString besideProgram(const QString &path, QLatin1String folder)
{
    return QFileInfo(path).absolutePath() + folder;
}

/// The legacy names as views, so that a name within a path can be looked up where it stands.
QSet<QStringView> legacyNames()
{
    static const QString list = legacyFileList;
    QSet<QStringView> names;
    for (int begin = 0; begin <= list.size();) {
        const int comma = list.indexOf(QLatin1Char(','), begin);
        const int end = comma < 0 ? list.size() : comma;
        names.insert(QStringView(list).mid(begin, end - begin));
        begin = end + 1;
    }
    return names;
}

QStringView fileName(const QString &path)
{
    return QStringView(path).mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

} // namespace

// Taken by value: part of the operation's interface.
// cppcheck-suppress passedByValue
// NOLINTNEXTLINE(performance-unnecessary-value-param)
int Ov3Uninstaller::deleteOldPlugins(QString listFile) // clazy:exclude=function-args-by-ref
{
    const QList<QString> folders = findPluginFolders(listFile);
    for (const QString &folder : folders) {
        const QList<QString> files = findPluginFiles(folder);
        for (const QString &file : files) {
            static_cast<void>(QFile::remove(file));
        }
    }
    // Deliberate: what could not be deleted is no failure; the manager asks for no action here.
    return 0;
}

QList<QString> Ov3Uninstaller::findPluginFolders(const QString &listFile)
{
    QList<QString> folders;
    QFile file(listFile);
    if (!file.open(QIODevice::ReadOnly)) {
        return folders;
    }
    QTextStream stream(&file);
    QString line;
    while (readWholeLine(stream, line)) {
        if (!line.startsWith("path"_l1)) {
            continue;
        }
        const QString value = line.mid(line.indexOf(QLatin1Char('=')) + 1).trimmed();
        const QString folder = getProgramPluginFolder(value);
        if (!folder.isEmpty() && QFile::exists(folder)) {
            folders.append(folder);
        }
    }
    return folders;
}

QList<QString> Ov3Uninstaller::findPluginFiles(const QString &folder)
{
    static const QSet<QStringView> names = legacyNames();
    QList<QString> files;
    QDirIterator entries(QDir(folder), QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        if (names.contains(fileName(path)) && !entries.fileInfo().isDir()) {
            files.append(path);
        }
    }
    return files;
}

QString Ov3Uninstaller::getProgramPluginFolder(const QString &path)
{
    for (const LegacyHost &host : legacyHosts) {
        if (host.recognises(path)) {
            return host.pluginFolder(path);
        }
    }
    return {};
}

bool Ov3Uninstaller::isC4DPath(const QString &path)
{
    return mentions(path, "cinema"_l1) || mentions(path, "c4d"_l1);
}

bool Ov3Uninstaller::isMaxPath(const QString &path)
{
    return mentions(path, "3ds"_l1);
}

bool Ov3Uninstaller::isMayaPath(const QString &path)
{
    return mentions(path, "maya"_l1);
}

bool Ov3Uninstaller::isXsiPath(const QString &path)
{
    return mentions(path, "xsi"_l1);
}

bool Ov3Uninstaller::isLwvPath(const QString &path)
{
    return mentions(path, "lightwav"_l1) || mentions(path, "layout"_l1);
}

bool Ov3Uninstaller::isModoPath(const QString &path)
{
    return mentions(path, "modo"_l1);
}

bool Ov3Uninstaller::isBlenderPath(const QString &path)
{
    return mentions(path, "blender"_l1);
}

QString Ov3Uninstaller::getC4DPath(const QString &path)
{
    return besideProgram(path, "/Plugins/Drask"_l1);
}

QString Ov3Uninstaller::getMaxPath(const QString &path)
{
    return besideProgram(path, "/scripts/startup/drask"_l1);
}

QString Ov3Uninstaller::getMayaPath(const QString &path)
{
    return besideProgram(path, "/scripts/Drask"_l1);
}

QString Ov3Uninstaller::getXsiPath(const QString &path)
{
    // Deliberate: the whole folder; the old XSI plug-in lay among those of others.
    return besideProgram(path, "/Plugins"_l1);
}

QString Ov3Uninstaller::getLwvPath(const QString &path)
{
    return besideProgram(path, "/Plugins/Drask"_l1);
}

QString Ov3Uninstaller::getModoPath(const QString &path)
{
    return besideProgram(path, "/drask"_l1);
}

QString Ov3Uninstaller::getBlenderPath(const QString &path)
{
    const QString versions = besideProgram(path, "/2."_l1);
    for (int minor = newestBlenderMinor; minor >= oldestBlenderMinor; --minor) {
        const QString candidate = versions + QString::number(minor);
        if (QFile::exists(candidate)) {
            return candidate + "/scripts/startup/adrask"_l1;
        }
    }
    return {};
}
