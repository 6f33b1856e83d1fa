// SPDX-License-Identifier: MIT
#include "disk/folderlisting.h"

#include <QFile>

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>

namespace {

struct FolderCloser {
    void operator()(DIR *folder) const
    {
        static_cast<void>(closedir(folder));
    }
};

bool isHidden(const QByteArray &folder, const char *name)
{
#ifdef Q_OS_DARWIN
    // The Finder hides by a flag as well.
    struct stat status = {};
    if (stat((folder + '/' + name).constData(), &status) == 0
        && (status.st_flags & UF_HIDDEN) != 0) {
        return true;
    }
#else
    Q_UNUSED(folder)
#endif
    return *name == '.';
}

bool isText(const QByteArray &name)
{
#ifdef Q_OS_DARWIN
    // The system sees to it. What Qt decodes and encodes may come back as other bytes here.
    Q_UNUSED(name)
    return true;
#else
    const auto isAscii = [](char letter) { return static_cast<signed char>(letter) >= 0; };
    return std::all_of(name.cbegin(), name.cend(), isAscii)
        || QFile::encodeName(nameOf(name)) == name;
#endif
}

/// The type of the entry \a path, as in a listing, if \a ask, which is stat or lstat, can tell;
/// otherwise DT_UNKNOWN.
int typeOf(const QByteArray &path, int (*ask)(const char *, struct stat *))
{
    struct stat status = {};
    return ask(path.constData(), &status) == 0 ? static_cast<int>(IFTODT(status.st_mode))
                                               : DT_UNKNOWN;
}

std::optional<EntryKind> kindOf(const QByteArray &folder, const dirent &entry)
{
    int type = entry.d_type;
    if (type == DT_UNKNOWN) {
        type = typeOf(folder + '/' + entry.d_name, lstat);
    }
    const bool isLink = type == DT_LNK;
    if (isLink) {
        // By its whole path: a folder that links to itself ends where the system follows no more.
        type = typeOf(folder + '/' + entry.d_name, stat);
    }
    switch (type) {
    case DT_REG:
        return EntryKind::File;
    case DT_DIR:
        return isLink ? EntryKind::LinkedFolder : EntryKind::Folder;
    case DT_UNKNOWN:
        return std::nullopt;
    default:
        return isLink ? std::optional(EntryKind::LinkedDevice) : std::nullopt;
    }
}

/// The next entry of \a listing. Nothing is returned at its end, with an errno of 0, and where it
/// cannot be read on.
const dirent *nextEntry(DIR *listing)
{
    errno = 0;
    // Only this thread reads this listing.
    // NOLINTNEXTLINE(concurrency-mt-unsafe)
    return readdir(listing);
}

} // namespace

QString nameOf(const QByteArray &entry)
{
    // The slash keeps a byte-order mark from being taken for one.
    return QFile::decodeName('/' + entry).mid(1);
}

bool visitEntries(const QByteArray &folder, const EntryVisitor &visit)
{
    const std::unique_ptr<DIR, FolderCloser> listing(opendir(folder.constData()));
    if (!listing) {
        return false;
    }
    while (const dirent *entry = nextEntry(listing.get())) {
        if (isHidden(folder, entry->d_name)) {
            continue;
        }
        const std::optional<EntryKind> kind = kindOf(folder, *entry);
        const QByteArray name = QByteArray::fromRawData(
            entry->d_name, static_cast<int>(std::strlen(entry->d_name)));
        if (kind && isText(name)) {
            visit(name, *kind);
        }
    }
    return errno == 0;
}
