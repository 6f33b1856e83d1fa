// SPDX-License-Identifier: MIT
#include "smalldisk.h"

#include <QFile>

#include <utility>

#ifdef Q_OS_LINUX
#include <sched.h>
#include <sys/mount.h>
#endif

namespace test {

namespace {

#ifdef Q_OS_LINUX
bool mountDisk(const QString &folder, unsigned long flags, const QByteArray &options)
{
    return mount("none", QFile::encodeName(folder).constData(), "tmpfs", flags, options.constData())
        == 0;
}

/// Keeps what this process mounts to itself.
bool havePrivateMounts()
{
    static const bool done = unshare(CLONE_NEWNS) == 0
        && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    return done;
}
#endif

} // namespace

SmallDisk::SmallDisk(QString folder, const QByteArray &options)
    : home(std::move(folder))
#ifdef Q_OS_LINUX
    , mounted(havePrivateMounts() && mountDisk(home, 0, options))
#else
    , mounted(false)
#endif
{
    Q_UNUSED(options)
}

SmallDisk::~SmallDisk()
{
#ifdef Q_OS_LINUX
    if (mounted && umount2(QFile::encodeName(home).constData(), MNT_DETACH) != 0) {
        qFatal("The disk could not be taken away");
    }
#endif
}

bool SmallDisk::isMounted() const
{
    return mounted;
}

void SmallDisk::fill() const
{
    QFile file(filler());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        qFatal("The disk could not be filled");
    }
    const QByteArray block(1024, 'x');
    while (file.write(block) == block.size()) { }
}

void SmallDisk::makeRoom() const
{
    QFile::remove(filler());
}

void SmallDisk::change(const QByteArray &options) const
{
#ifdef Q_OS_LINUX
    if (!mountDisk(home, MS_REMOUNT, options)) {
        qFatal("The disk could not be changed");
    }
#else
    Q_UNUSED(options)
#endif
}

QString SmallDisk::filler() const
{
    return home + "/filler";
}

} // namespace test
