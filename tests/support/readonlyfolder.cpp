// SPDX-License-Identifier: MIT
#include "readonlyfolder.h"

#include <QFile>

#include <utility>

#ifdef Q_OS_LINUX
#include <sched.h>
#include <sys/mount.h>
#endif

namespace test {

ReadOnlyFolder::ReadOnlyFolder(QString folder)
    : home(std::move(folder))
{
#ifdef Q_OS_LINUX
    const QByteArray name = QFile::encodeName(home);
    // Kept to this process; then mounted on itself, for reading only.
    if (unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
        && mount(name.constData(), name.constData(), nullptr, MS_BIND, nullptr) == 0) {
        mounted = true;
        const unsigned long readOnly = MS_REMOUNT | MS_BIND | MS_RDONLY;
        if (mount(nullptr, name.constData(), nullptr, readOnly, nullptr) != 0) {
            qFatal("The folder could not be made read-only");
        }
    }
#endif
}

ReadOnlyFolder::~ReadOnlyFolder()
{
#ifdef Q_OS_LINUX
    if (mounted && umount2(QFile::encodeName(home).constData(), MNT_DETACH) != 0) {
        qFatal("The folder could not be made writable again");
    }
#endif
}

bool ReadOnlyFolder::isMounted() const
{
    return mounted;
}

} // namespace test
