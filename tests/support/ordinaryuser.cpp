// SPDX-License-Identifier: MIT
#include "ordinaryuser.h"

#include <QFile>

#include <grp.h>
#include <unistd.h>

namespace test {

namespace {

/// The identity of "nobody"; any number that owns nothing serves.
constexpr uid_t ordinaryUserId = 65534;
constexpr gid_t ordinaryGroupId = 65534;

constexpr QFile::Permissions writeForAll = QFile::WriteOwner | QFile::WriteUser | QFile::WriteGroup
    | QFile::WriteOther;

} // namespace

void becomeOrdinaryUser()
{
    if (geteuid() == 0
        && (setgroups(0, nullptr) != 0 || setgid(ordinaryGroupId) != 0
            || setuid(ordinaryUserId) != 0)) {
        _exit(126);
    }
}

void giveToOrdinaryUser(const QString &path)
{
    if (geteuid() == 0
        && chown(QFile::encodeName(path).constData(), ordinaryUserId, ordinaryGroupId) != 0) {
        qFatal("The owner of %s could not be changed", qPrintable(path));
    }
}

OrdinaryUser::OrdinaryUser()
    : wasRoot(geteuid() == 0)
{
    if (wasRoot && (setegid(ordinaryGroupId) != 0 || seteuid(ordinaryUserId) != 0)) {
        qWarning("The rights of root could not be given up");
    }
}

OrdinaryUser::~OrdinaryUser()
{
    if (wasRoot && (seteuid(0) != 0 || setegid(0) != 0)) {
        qFatal("The rights of root could not be taken back");
    }
}

bool OrdinaryUser::isActive() const
{
    return geteuid() != 0;
}

ReadOnly::ReadOnly(const QString &path)
    : name(path)
{
    QFile::setPermissions(name, QFile::permissions(name) & ~writeForAll);
}

ReadOnly::~ReadOnly()
{
    QFile::setPermissions(name, QFile::permissions(name) | QFile::WriteOwner);
}

} // namespace test
