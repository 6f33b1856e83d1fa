// SPDX-License-Identifier: MIT
#include "disk/attributes.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QtGlobal>

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

#ifdef Q_OS_MACOS
#include <copyfile.h>
#elif defined(Q_OS_LINUX)
#include <sys/xattr.h>
#endif

namespace {

constexpr mode_t allRights = 07777;

bool haveSameOwner(const struct stat &one, const struct stat &other)
{
    return one.st_uid == other.st_uid && one.st_gid == other.st_gid;
}

bool haveSameRights(const struct stat &one, const struct stat &other)
{
    return (one.st_mode & allRights) == (other.st_mode & allRights);
}

#ifdef Q_OS_MACOS

/// Access list and extended attributes.
bool copyFurther(int from, int to)
{
    return fcopyfile(from, to, nullptr, COPYFILE_ACL | COPYFILE_XATTR) == 0;
}

#elif defined(Q_OS_LINUX)

/// The names of the extended attributes, of which the access list is one. False when they cannot be
/// told.
bool listAttributes(int file, QByteArrayList &names)
{
    const ssize_t room = flistxattr(file, nullptr, 0);
    if (room <= 0) {
        return room == 0 || errno == ENOTSUP;
    }
    QByteArray list(int(room), '\0');
    const ssize_t size = flistxattr(file, list.data(), std::size_t(room));
    if (size < 0) {
        return false;
    }
    list.truncate(int(size));
    names = list.split('\0');
    names.removeAll(QByteArray());
    return true;
}

bool readAttribute(int file, const QByteArray &name, QByteArray &value)
{
    const ssize_t room = fgetxattr(file, name.constData(), nullptr, 0);
    if (room < 0) {
        return false;
    }
    value.resize(int(room));
    return fgetxattr(file, name.constData(), value.data(), std::size_t(room)) == room;
}

bool copyAttribute(int from, int to, const QByteArray &name)
{
    QByteArray wanted;
    QByteArray present;
    if (!readAttribute(from, name, wanted)) {
        return false;
    }
    // A label that the system gives to every new file may be one that nobody else may give.
    if (readAttribute(to, name, present) && present == wanted) {
        return true;
    }
    return fsetxattr(to, name.constData(), wanted.constData(), std::size_t(wanted.size()), 0) == 0;
}

bool copyFurther(int from, int to)
{
    QByteArrayList wanted;
    QByteArrayList present;
    if (!listAttributes(from, wanted) || !listAttributes(to, present)) {
        return false;
    }
    const bool areGiven = std::all_of(wanted.cbegin(), wanted.cend(), [=](const QByteArray &name) {
        return copyAttribute(from, to, name);
    });
    return areGiven && std::all_of(present.cbegin(), present.cend(), [&](const QByteArray &name) {
               return wanted.contains(name) || fremovexattr(to, name.constData()) == 0;
           });
}

#else

bool copyFurther(int /*from*/, int /*to*/)
{
    return true;
}

#endif

} // namespace

bool copyAttributes(int from, int to)
{
    struct stat wanted = {};
    struct stat given = {};
    if (fstat(from, &wanted) != 0 || fstat(to, &given) != 0) {
        return false;
    }
    if (!haveSameOwner(wanted, given) && fchown(to, wanted.st_uid, wanted.st_gid) != 0) {
        return false;
    }
    // The access list comes first: what it has for the group stands in the rights, too.
    if (!copyFurther(from, to) || fchmod(to, wanted.st_mode & allRights) != 0) {
        return false;
    }
    // Some file systems take an owner or rights without a word, and keep none.
    return fstat(to, &given) == 0 && haveSameOwner(wanted, given) && haveSameRights(wanted, given);
}
