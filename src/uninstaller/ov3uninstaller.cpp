// SPDX-License-Identifier: MIT
#include "uninstaller/ov3uninstaller.h"

#include "disk/folderlisting.h"
#include "literals.h"
#include "qtversions.h"
#include "textfile.h"
#include "uninstaller/legacyfiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QTextStream>

#include <algorithm>

namespace {

/// The rows of the table below.
enum class Host { Cinema4d, Max, Maya, Xsi, LightWave, Modo, Blender };

struct LegacyHost {
    QLatin1String word;      ///< what a path of the host mentions, in small letters
    QLatin1String otherWord; ///< or this, if there is one
    QLatin1String folder;    ///< of the old plug-in, beside the program; Blender's is looked for
};

// clang-format off
/// The first row that recognises a path decides: a "c4d" folder below "maya" is Cinema 4D.
/// Deliberate (legacy-xsi-folder): it is the folder of all plug-ins.
constexpr LegacyHost legacyHosts[] = {
    {"cinema"_l1,   "c4d"_l1,    "/Plugins/Drask"_l1},
    {"3ds"_l1,      {},          "/scripts/startup/drask"_l1},
    {"maya"_l1,     {},          "/scripts/Drask"_l1},
    {"xsi"_l1,      {},          "/Plugins"_l1},
    {"lightwav"_l1, "layout"_l1, "/Plugins/Drask"_l1},
    {"modo"_l1,     {},          "/drask"_l1},
    {"blender"_l1,  {},          {}},
};
// clang-format on

constexpr int newestBlenderMinor = 99;
constexpr int oldestBlenderMinor = 58;

const LegacyHost &row(Host host)
{
    return legacyHosts[static_cast<std::size_t>(host)];
}

bool recognises(const LegacyHost &host, const QString &path)
{
    // Lower-cased, not case-insensitive: folding would take more letters for the same.
    const QString lower = path.toLower();
    return lower.contains(host.word)
        || (!host.otherWord.isEmpty() && lower.contains(host.otherWord));
}

QString besideProgram(const QString &path, QLatin1String folder)
{
    return QFileInfo(path).absolutePath() + folder;
}

QSet<QByteArray> legacyNames()
{
    const QByteArrayList names = QByteArray(legacyFileList.data(), legacyFileList.size())
                                     .split(',');
    return {names.cbegin(), names.cend()};
}

/// Adds to \a files what of the legacy files lies in \a folder and in the folders below.
void findLegacyFiles(const QByteArray &folder, QList<QString> &files)
{
    static const QSet<QByteArray> names = legacyNames();
    const auto find = [&](const QByteArray &name, EntryKind kind) {
        if (kind == EntryKind::Folder) {
            findLegacyFiles(folder + '/' + name, files);
        } else if (kind != EntryKind::LinkedFolder && names.contains(name)) {
            files.append(QFile::decodeName(folder + '/' + name));
        }
    };
    // As with what cannot be deleted, a folder that cannot be read is no failure.
    static_cast<void>(visitEntries(folder, find));
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
    // Deliberate (legacy-result): what could not be deleted is no failure.
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
    useLocalEncoding(stream);
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
    QList<QString> files;
    findLegacyFiles(QFile::encodeName(QDir(folder).path()), files);
    return files;
}

QString Ov3Uninstaller::getProgramPluginFolder(const QString &path)
{
    const auto *const host = std::find_if(
        std::begin(legacyHosts), std::end(legacyHosts),
        [&](const LegacyHost &candidate) { return recognises(candidate, path); });
    if (host == std::end(legacyHosts)) {
        return {};
    }
    return host == &row(Host::Blender) ? getBlenderPath(path) : besideProgram(path, host->folder);
}

bool Ov3Uninstaller::isC4DPath(const QString &path)
{
    return recognises(row(Host::Cinema4d), path);
}

bool Ov3Uninstaller::isMaxPath(const QString &path)
{
    return recognises(row(Host::Max), path);
}

bool Ov3Uninstaller::isMayaPath(const QString &path)
{
    return recognises(row(Host::Maya), path);
}

bool Ov3Uninstaller::isXsiPath(const QString &path)
{
    return recognises(row(Host::Xsi), path);
}

bool Ov3Uninstaller::isLwvPath(const QString &path)
{
    return recognises(row(Host::LightWave), path);
}

bool Ov3Uninstaller::isModoPath(const QString &path)
{
    return recognises(row(Host::Modo), path);
}

bool Ov3Uninstaller::isBlenderPath(const QString &path)
{
    return recognises(row(Host::Blender), path);
}

QString Ov3Uninstaller::getC4DPath(const QString &path)
{
    return besideProgram(path, row(Host::Cinema4d).folder);
}

QString Ov3Uninstaller::getMaxPath(const QString &path)
{
    return besideProgram(path, row(Host::Max).folder);
}

QString Ov3Uninstaller::getMayaPath(const QString &path)
{
    return besideProgram(path, row(Host::Maya).folder);
}

QString Ov3Uninstaller::getXsiPath(const QString &path)
{
    return besideProgram(path, row(Host::Xsi).folder);
}

QString Ov3Uninstaller::getLwvPath(const QString &path)
{
    return besideProgram(path, row(Host::LightWave).folder);
}

QString Ov3Uninstaller::getModoPath(const QString &path)
{
    return besideProgram(path, row(Host::Modo).folder);
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
