// SPDX-License-Identifier: MIT
#include "disk/standin.h"

#include "disk/attributes.h"
#include "disk/otherdisk.h"

#include <QFile>

#include <cerrno>
#include <climits>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int linksToFollow = 40;

constexpr mode_t anyNewFile = 0666;
constexpr mode_t ownerOnly = 0600;

QByteArray folderOf(const QByteArray &path)
{
    return path.left(path.lastIndexOf('/') + 1);
}

QByteArray candidate(const QByteArray &folder, int number)
{
    const QByteArray first = folder + ".drask-unfinished";
    return number == 1 ? first : first + '-' + QByteArray::number(number);
}

/// The name behind all links; empty when it cannot be told.
QByteArray followed(const QString &path)
{
    // To Qt such a name is no file of the disk.
    if (path.startsWith(QLatin1Char(':'))) {
        return {};
    }
    QByteArray name = QFile::encodeName(path);
    for (int links = 0; links < linksToFollow && !name.contains('\0'); ++links) {
        char text[PATH_MAX];
        const ssize_t length = readlink(name.constData(), text, sizeof text);
        if (length < 0) {
            return name;
        }
        if (length == sizeof text) {
            break;
        }
        const QByteArray next(text, int(length));
        name = next.startsWith('/') ? next : folderOf(name) + next;
    }
    return {};
}

bool isSameFile(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool isUnchanged(const struct stat &before, const struct stat &now)
{
#ifdef Q_OS_MACOS
    const timespec &one = before.st_mtimespec;
    const timespec &other = now.st_mtimespec;
#else
    const timespec &one = before.st_mtim;
    const timespec &other = now.st_mtim;
#endif
    return isSameFile(before, now) && before.st_size == now.st_size && one.tv_sec == other.tv_sec
        && one.tv_nsec == other.tv_nsec;
}

/// Keeps other runs from taking the new file \a handle for a leftover. Returns false when one has.
bool claim(int handle)
{
    struct stat now = {};
    const bool isFree = flock(handle, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
    // A file that cannot be asked is taken for one's own, and so goes again if it comes to nothing.
    return isFree && (fstat(handle, &now) != 0 || now.st_nlink > 0);
}

/// Takes the file \a name away if no run works on it.
void removeLeftover(const QByteArray &name)
{
    // A pipe of that name must not hold the run up.
    const Descriptor file(open(name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen()) {
        return;
    }
    struct stat locked = {};
    struct stat named = {};
    // Before it was locked, the file may have taken its place, and the name have become another's.
    if (flock(file.number(), LOCK_EX | LOCK_NB) == 0 && fstat(file.number(), &locked) == 0
        && S_ISREG(locked.st_mode) && lstat(name.constData(), &named) == 0
        && isSameFile(locked, named)) {
        static_cast<void>(unlink(name.constData()));
    }
}

void removeLeftovers(const QByteArray &folder)
{
    for (int number = 1; number <= unfinishedNames; ++number) {
        removeLeftover(candidate(folder, number));
    }
}

} // namespace

struct StandIn::Seen {
    struct stat old = {};
};

StandIn::StandIn(const QString &path)
    : target(followed(path))
    , seen(std::make_unique<Seen>())
{
    if (target.isEmpty()) {
        return;
    }
    removeLeftovers(folderOf(target));
    if (stat(target.constData(), &seen->old) == 0) {
        kind = S_ISREG(seen->old.st_mode) ? Place::Plain : Place::Other;
    } else {
        kind = errno == ENOENT ? Place::Free : Place::Plain;
    }
}

StandIn::~StandIn()
{
    giveUp();
}

void StandIn::giveUp()
{
    if (!name.isEmpty()) {
        static_cast<void>(unlink(name.constData()));
        name.clear();
    }
    file = Descriptor();
}

void StandIn::clearPlace() const
{
    static_cast<void>(unlink(target.constData()));
}

StandIn::Place StandIn::place() const
{
    return kind;
}

bool StandIn::makeNamed(const QByteArray &candidate)
{
    const mode_t rights = kind == Place::Free ? anyNewFile : ownerOnly;
    Descriptor made(open(candidate.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, rights));
    if (!made.isOpen()) {
        return false;
    }
    if (!claim(made.number())) {
        // Whoever took the file for a leftover takes it away.
        errno = EEXIST;
        return false;
    }
    file = std::move(made);
    name = candidate;
    return true;
}

bool StandIn::make()
{
    if (kind == Place::Other) {
        return false;
    }
    const QByteArray folder = folderOf(target);
    for (int number = 1; number <= unfinishedNames; ++number) {
        if (makeNamed(candidate(folder, number))) {
            return true;
        }
        if (errno != EEXIST) {
            return false;
        }
    }
    return false;
}

int StandIn::handle() const
{
    return file.number();
}

bool StandIn::becomeLike(int old) const
{
    struct stat now = {};
    return fstat(old, &now) == 0 && now.st_nlink == 1 && copyAttributes(old, file.number());
}

bool StandIn::isPlaceAsSeen() const
{
    struct stat now = {};
    const bool isThere = stat(target.constData(), &now) == 0;
    return kind == Place::Free ? !isThere : isThere && isUnchanged(seen->old, now);
}

bool StandIn::takePlace()
{
    if (rename(name.constData(), target.constData()) != 0) {
        return false;
    }
    name.clear();
    return true;
}

QByteArray unfinishedName(const QString &folder, int number)
{
    return candidate(QFile::encodeName(folder) + '/', number);
}

void clearUnfinished(const QString &path)
{
    if (OtherDisk *const other = OtherDisk::inPlace()) {
        other->clearUnfinished(path);
        return;
    }
    const QByteArray target = followed(path);
    if (!target.isEmpty()) {
        removeLeftovers(folderOf(target));
    }
}

bool touch(int handle)
{
    return futimens(handle, nullptr) == 0;
}
