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

/// Changes whom this process acts as; root can be taken back.
bool actAs(uid_t user, gid_t group, bool groupFirst)
{
#ifdef Q_OS_LINUX
    // access() asks for the real user, so that one has to change as well.
    const auto setGroup = [group] { return setresgid(group, group, 0) == 0; };
    const auto setUser = [user] { return setresuid(user, user, 0) == 0; };
#else
    const auto setGroup = [group] { return setegid(group) == 0; };
    const auto setUser = [user] { return seteuid(user) == 0; };
#endif
    return groupFirst ? setGroup() && setUser() : setUser() && setGroup();
}

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
    if (wasRoot && !actAs(ordinaryUserId, ordinaryGroupId, true)) {
        qWarning("The rights of root could not be given up");
    }
}

OrdinaryUser::~OrdinaryUser()
{
    if (wasRoot && !actAs(0, 0, false)) {
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
