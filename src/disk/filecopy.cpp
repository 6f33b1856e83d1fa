// SPDX-License-Identifier: MIT
#include "disk/filecopy.h"

#include "disk/diskwait.h"
#include "disk/otherdisk.h"
#include "disk/standin.h"
#include "qtversions.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <utility>

namespace {

/// Each wait for the disk is for so many files. More save little, and the log needs handles too.
std::size_t filesForOneWait()
{
    constexpr long enough = 64;
    const long allowed = sysconf(_SC_OPEN_MAX);
    return static_cast<std::size_t>(allowed < 0 ? enough : std::clamp(allowed / 4, 1L, enough));
}

void waitForFolder(const QString &path)
{
    const Descriptor folder(open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
    // Not all file systems have this for folders. The names come onto the disk later then.
    static_cast<void>(fsync(folder.number()));
}

#ifdef Q_OS_LINUX

/// Copies \a source from \a offset to its end behind what \a target has.
bool readAndWrite(int source, off_t offset, int target)
{
    std::array<char, 65536> block; // NOLINT(cppcoreguidelines-pro-type-member-init)
    ssize_t size = 0;
    while ((size = pread(source, block.data(), block.size(), offset)) > 0) {
        offset += size;
        if (!writeBytes(target, block.data(), static_cast<std::size_t>(size))) {
            return false;
        }
    }
    return size == 0;
}

/// Copies \a source, which says that it has \a size bytes, into the empty \a target.
bool copyBytes(int source, off_t size, int target)
{
    off_t offset = 0;
    while (offset < size
           && copy_file_range(source, &offset, target, nullptr,
                              static_cast<std::size_t>(size - offset), 0)
               > 0) { }
    // Not all systems copy between all files, and files that the system makes up have no size.
    return (size > 0 && offset == size) || readAndWrite(source, offset, target);
}

/// Gives the file without a name the name \a target. Nothing is returned if it cannot be said
/// whether QFile::copy() could have made the copy.
std::optional<bool> giveName(int file, const QByteArray &target)
{
    const char *const name = target.constData();
    int result = linkat(file, "", AT_FDCWD, name, AT_EMPTY_PATH);
    // So older systems refuse it to all but root. The way through /proc is the longer one.
    if (result != 0 && errno == ENOENT) {
        const QByteArray unnamed = "/proc/self/fd/" + QByteArray::number(file);
        result = linkat(AT_FDCWD, unnamed.constData(), AT_FDCWD, name, AT_SYMLINK_FOLLOW);
    }
    if (result == 0) {
        return true;
    }
    return errno == EEXIST ? std::optional(false) : std::nullopt;
}

#endif

} // namespace

FileCopier::FileCopier(QString source, const QString &spareFolder)
    : path(std::move(source))
    , spareName(spareFolder.isEmpty() ? QByteArray() : unfinishedName(spareFolder))
{
}

FileCopier::~FileCopier()
{
    dropSpare();
}

void FileCopier::dropSpare()
{
    if (spare.isOpen()) {
        static_cast<void>(unlink(spareName.constData()));
        spare = Descriptor();
    }
}

bool FileCopier::copyTo(const QString &target)
{
    if (OtherDisk *const other = OtherDisk::inPlace()) {
        return other->copyFile(path, target);
    }
#ifdef Q_OS_LINUX
    if (const auto isCopied = copyThroughUnnamedFile(QFile::encodeName(target))) {
        return *isCopied;
    }
#endif
    return copyToFreeName(path, target);
}

#ifdef Q_OS_LINUX
bool FileCopier::open()
{
    struct stat status = {};
    const QByteArray name = QFile::encodeName(path);
    // Asked before it is opened: a pipe would take that for a reader who goes away again.
    if (!file.isOpen() && stat(name.constData(), &status) == 0 && S_ISREG(status.st_mode)) {
        file = Descriptor(::open(name.constData(), O_RDONLY | O_CLOEXEC));
        size = status.st_size;
        permissions = status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
    }
    return file.isOpen();
}

/// Returns nothing where it has to be left to QFile::copy().
std::optional<bool> FileCopier::copyThroughUnnamedFile(const QByteArray &target)
{
    if (const auto isPlaced = placeSpare(target)) {
        return *isPlaced;
    }
    if (!open()) {
        return std::nullopt;
    }
    const QByteArray folder = target.left(target.lastIndexOf('/') + 1) + '.';
    Descriptor copy(
        ::open(folder.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!copy.isOpen()) {
        return std::nullopt;
    }
    if (!copyBytes(file.number(), size, copy.number())) {
        return false;
    }
    // Some file systems have no permissions to give. As with QFile::copy(), that is no failure.
    static_cast<void>(fchmod(copy.number(), permissions));
    const std::optional<bool> isNamed = giveName(copy.number(), target);
    if (isNamed == true) {
        keepSpare(std::move(copy));
    }
    return isNamed;
}

/// Gives the file \a copy its second name. Where that is impossible, the bytes go twice.
void FileCopier::keepSpare(Descriptor copy)
{
    // Locked before it has the name, so that no other run takes it for a leftover.
    if (!spareName.isEmpty() && flock(copy.number(), LOCK_EX | LOCK_NB) == 0
        && giveName(copy.number(), spareName) == true) {
        spare = std::move(copy);
    }
}

/// Makes the copy that has the second name the file \a target. Returns nothing where there is no
/// such copy, or where it cannot be moved.
std::optional<bool> FileCopier::placeSpare(const QByteArray &target)
{
    if (!spare.isOpen()) {
        return std::nullopt;
    }
    if (renameat2(AT_FDCWD, spareName.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE)
        == 0) {
        spare = Descriptor();
        return true;
    }
    const bool isTaken = errno == EEXIST;
    dropSpare();
    return isTaken ? std::optional(false) : std::nullopt;
}
#endif

PlacedFiles::PlacedFiles()
    : filesAWait(filesForOneWait())
{
}

PlacedFiles::~PlacedFiles()
{
    bringOpenFilesToDisk();
}

bool PlacedFiles::open(const QString &path)
{
    if (OtherDisk *const other = OtherDisk::inPlace()) {
        return other->openPlaced(path);
    }
    constexpr int everyone = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    const QByteArray name = QFile::encodeName(path);
    int descriptor = ::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, everyone);
    const bool isOpen = descriptor >= 0;
    if (!isOpen) {
        // A file that may only be read has to reach the disk too.
        descriptor = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    }
    if (descriptor >= 0) {
        files.push_back({descriptor, path});
    }
    if (files.size() >= filesAWait) {
        bringOpenFilesToDisk();
    }
    return isOpen;
}

QStringList PlacedFiles::bringToDisk()
{
    bringOpenFilesToDisk();
    return std::exchange(lost, {});
}

void PlacedFiles::bringOpenFilesToDisk()
{
#ifdef Q_OS_LINUX
    // What is under way already is not waited for one after the other.
    for (const Placed &file : files) {
        static_cast<void>(sync_file_range(file.descriptor, 0, 0, SYNC_FILE_RANGE_WRITE));
    }
#endif
    QString folder;
    for (const Placed &file : files) {
        if (!waitForDisk(file.descriptor)) {
            lost << file.path;
        }
        static_cast<void>(close(file.descriptor));
        if (const QString own = QFileInfo(file.path).path(); own != folder) {
            folder = own;
            waitForFolder(folder);
        }
    }
    files.clear();
}
