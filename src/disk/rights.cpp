// SPDX-License-Identifier: MIT
#include "disk/rights.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>

namespace {

EntryFacts factsIn(const struct stat &status)
{
    const int mode = static_cast<int>(status.st_mode & 07777U);
    switch (status.st_mode & S_IFMT) {
    case S_IFREG:
        return {EntryType::File, mode};
    case S_IFDIR:
        return {EntryType::Folder, mode};
    case S_IFLNK:
        return {EntryType::Link, mode};
    default:
        return {EntryType::Other, mode};
    }
}

} // namespace

EntryFacts factsOf(const QByteArray &path)
{
    struct stat status = {};
    return lstat(path.constData(), &status) == 0 ? factsIn(status) : EntryFacts();
}

EntryFacts factsBehind(const QByteArray &path)
{
    struct stat status = {};
    return stat(path.constData(), &status) == 0 ? factsIn(status) : EntryFacts();
}

QByteArray linkText(const QByteArray &path)
{
    std::array<char, PATH_MAX> text{};
    const ssize_t size = readlink(path.constData(), text.data(), text.size());
    return size < 0 ? QByteArray() : QByteArray(text.data(), static_cast<int>(size));
}

bool mayRead(const QByteArray &path)
{
    return access(path.constData(), R_OK) == 0;
}

bool mayWrite(const QByteArray &path)
{
    return access(path.constData(), W_OK) == 0;
}

bool maySearch(const QByteArray &path)
{
    return access(path.constData(), X_OK) == 0;
}

bool isKeptBySticky(const QByteArray &folder, const QByteArray &path)
{
    struct stat ofFolder = {};
    struct stat ofEntry = {};
    if (geteuid() == 0 || stat(folder.constData(), &ofFolder) != 0
        || (ofFolder.st_mode & S_ISVTX) == 0 || lstat(path.constData(), &ofEntry) != 0) {
        return false;
    }
    return ofFolder.st_uid != geteuid() && ofEntry.st_uid != geteuid();
}

bool isStoppedByBits()
{
    return geteuid() != 0;
}

int modeMask()
{
    // There is no other way to ask than to set it.
    const mode_t mask = umask(0);
    umask(mask);
    return static_cast<int>(mask);
}
