// SPDX-License-Identifier: MIT
#include "status/plugincheck.h"

#include "disk/folderlisting.h"
#include "disk/samefile.h"
#include "hoststeps.h"
#include "installer/foldercopy.h"
#include "literals.h"
#include "status/filelook.h"
#include "versionfile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <utility>

namespace {

constexpr QLatin1String versionFile = "/version.txt"_l1;
constexpr QLatin1String manifestName = "/uninstall.ini"_l1;

void listShipped(const QString &folder, const QString &prefix, QStringList &files)
{
    QStringList subFolders;
    visitEntries(QFile::encodeName(folder), [&](const QByteArray &name, EntryKind kind) {
        if (kind == EntryKind::File) {
            files << prefix + nameOf(name);
        } else if (kind != EntryKind::LinkedDevice) {
            subFolders << nameOf(name);
        }
    });
    for (const QString &name : std::as_const(subFolders)) {
        listShipped(folder + QLatin1Char('/') + name, prefix + name + QLatin1Char('/'), files);
    }
}

/// Looks at the files of one installed plug-in.
class PluginCheck {
public:
    PluginCheck(const PluginPathStruct &record, Look howClosely)
        : source(record.sourceFolder)
        , target(record.targetFolder())
        , look(howClosely)
    {
        // These went again after the copy.
        const QStringList removed = legacyCinema4dFiles(record);
        for (const QString &file : removed) {
            exempt.insert(file);
        }
        exempt << target + "/manager.cfg"_l1 << target + manifestName;
    }

    QList<Problem> run(std::optional<int> installed);
    QStringList unlisted(const QString &manifestText);

private:
    void readManifest();
    void setManifest(const QString &text);
    bool isUnlisted(const QString &file) const;
    bool isShippedVersion(std::optional<int> installed) const;
    void checkShipped(const QString &name);
    void checkListed(const QString &file);
    Found lookAtCopy(const QString &file) const;
    bool isThere(const QString &file, Found found);
    void checkContent(const QString &file, const QString &shipped);
    bool isShelf(const QString &file) const;
    void add(Kind kind, const QString &file, const QString &text);

    const QString source;
    const QString target;
    const Look look;
    QSet<QString> exempt;
    QStringList manifest;
    bool manifestWasRead = false;
    bool isEverythingListed = true;
    QSet<QString> listed;
    QSet<QString> looked;
    QList<Problem> problems;
};

void PluginCheck::add(Kind kind, const QString &file, const QString &text)
{
    problems.append({kind, file, text});
}

void PluginCheck::readManifest()
{
    const QString file = target + manifestName;
    switch (lookAt(file)) {
    case Found::File:
        manifestWasRead = true;
        setManifest(wholeText(file));
        break;
    case Found::Nothing:
        add(Kind::ManifestMissing, file, QStringLiteral("The manifest is missing."));
        break;
    case Found::NoFile:
    case Found::Unreadable:
        add(Kind::ManifestUnreadable, file, QStringLiteral("The manifest cannot be read."));
        break;
    }
}

void PluginCheck::setManifest(const QString &text)
{
    manifest = text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    listed = QSet<QString>(manifest.cbegin(), manifest.cend());
}

/// True when the manifest lacks \a file, which an installation puts there.
bool PluginCheck::isUnlisted(const QString &file) const
{
    return !listed.contains(file) && !exempt.contains(file) && isListed(file);
}

QStringList PluginCheck::unlisted(const QString &manifestText)
{
    setManifest(manifestText);
    QStringList files;
    const QStringList names = shippedFiles(source);
    for (const QString &name : names) {
        const QString file = target + QLatin1Char('/') + name;
        if (isUnlisted(file)) {
            files << file;
        }
    }
    return files;
}

/// A version file that does not say a number, or was changed after the manifest was written, tells
/// nothing of the other files: they are held against the shipped ones.
bool PluginCheck::isShippedVersion(std::optional<int> installed) const
{
    const QFileInfo number(target + versionFile);
    const QFileInfo list(target + manifestName);
    return !installed || *installed == readVersionTxt(source)
        || (list.exists() && number.lastModified() > list.lastModified());
}

/// Says what is wrong with \a file if what was \a found there is no readable file.
bool PluginCheck::isThere(const QString &file, Found found)
{
    switch (found) {
    case Found::File:
        return true;
    case Found::Nothing:
        add(Kind::FileMissing, file, QStringLiteral("The file is missing."));
        break;
    case Found::NoFile:
        add(Kind::FileMissing, file, QStringLiteral("Something else stands in the file's place."));
        break;
    case Found::Unreadable:
        add(Kind::FileUnreadable, file, QStringLiteral("The file cannot be read."));
        break;
    }
    return false;
}

/// What is at \a file. One that nobody but this user may read is as it should be if it was shipped
/// so.
Found PluginCheck::lookAtCopy(const QString &file) const
{
    const Found found = lookAt(file);
    const bool wasShippedSo = found == Found::Unreadable && QFileInfo(file).isReadable()
        && lookAt(source + file.mid(target.size())) == Found::Unreadable;
    return wasShippedSo ? Found::File : found;
}

void PluginCheck::checkShipped(const QString &name)
{
    const QString shipped = source + QLatin1Char('/') + name;
    const QString file = target + QLatin1Char('/') + name;
    looked.insert(file);
    if (exempt.contains(file)) {
        return;
    }
    const bool isSame = look == Look::Inside
        && isSoundCopy(QFile::encodeName(file), QFile::encodeName(shipped));
    if (!isSame) {
        if (!isThere(file, lookAtCopy(file))) {
            return;
        }
        checkContent(file, shipped);
    }
    if (manifestWasRead && isUnlisted(file)) {
        isEverythingListed = false;
        add(Kind::FileNotListed, file, QStringLiteral("The manifest does not list the file."));
    }
}

void PluginCheck::checkContent(const QString &file, const QString &shipped)
{
    const qint64 size = QFileInfo(file).size();
    const qint64 shippedSize = QFileInfo(shipped).size();
    if (size == 0 && shippedSize > 0) {
        add(Kind::FileEmpty, file, QStringLiteral("The file is empty."));
        return;
    }
    if (look == Look::Outside) {
        return;
    }
    const Sameness sameness = size == shippedSize ? compareFiles(file, shipped)
                                                  : Sameness::Different;
    if (sameness == Sameness::Different) {
        add(Kind::FileDiffers, file, QStringLiteral("The file is not the shipped one."));
    } else if (sameness == Sameness::CannotTell) {
        add(Kind::CannotLook, shipped, QStringLiteral("The shipped file cannot be read."));
    }
}

bool PluginCheck::isShelf(const QString &file) const
{
    return makesShelf(source) && file.endsWith(shelfFile);
}

void PluginCheck::checkListed(const QString &file)
{
    if (exempt.contains(file) || isShelf(file)) {
        return;
    }
    if (!QDir::cleanPath(file).startsWith(QDir::cleanPath(target) + QLatin1Char('/'))) {
        add(Kind::OutsideFolder, file,
            QStringLiteral("The manifest names a file outside of the plug-in's folder."));
        return;
    }
    static_cast<void>(isThere(file, lookAtCopy(file)));
}

QList<Problem> PluginCheck::run(std::optional<int> installed)
{
    readManifest();
    if (isShippedVersion(installed)) {
        const QStringList names = shippedFiles(source);
        for (const QString &name : names) {
            checkShipped(name);
        }
    }
    if (!isEverythingListed) {
        add(Kind::ManifestIncomplete, target + manifestName,
            QStringLiteral("The manifest does not list every file."));
    }
    for (const QString &file : std::as_const(manifest)) {
        if (!looked.contains(file)) {
            looked.insert(file);
            checkListed(file);
        }
    }
    return problems;
}

} // namespace

QStringList shippedFiles(const QString &source)
{
    QStringList files;
    if (!source.isEmpty()) {
        listShipped(source, QString(), files);
    }
    return files;
}

QStringList unlistedFiles(const PluginPathStruct &target, const QString &manifest)
{
    return PluginCheck(target, Look::Outside).unlisted(manifest);
}

QList<Problem> checkPluginFiles(const PluginPathStruct &target, std::optional<int> installed,
                                Look look)
{
    return PluginCheck(target, look).run(installed);
}
