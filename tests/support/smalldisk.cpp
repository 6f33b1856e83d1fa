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
bool mountOn(const QString &folder, const char *type, unsigned long flags,
             const QByteArray &options = {})
{
    // What this process mounts, it keeps to itself.
    static const bool isPrivate = unshare(CLONE_NEWNS) == 0
        && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    const QByteArray place = QFile::encodeName(folder);
    return isPrivate
        && mount(place.constData(), place.constData(), type, flags, options.constData()) == 0;
}

void takeAway(const QString &folder)
{
    if (umount2(QFile::encodeName(folder).constData(), MNT_DETACH) != 0) {
        qFatal("What is mounted could not be taken away");
    }
}
#else
enum { MS_BIND, MS_REMOUNT, MS_RDONLY };

bool mountOn(const QString &, const char *, unsigned long, const QByteArray & = {})
{
    return false;
}

void takeAway(const QString &)
{
}
#endif

} // namespace

SmallDisk::SmallDisk(QString folder, const QByteArray &options)
    : home(std::move(folder))
    , mounted(mountOn(home, "tmpfs", 0, options))
{
}

SmallDisk::~SmallDisk()
{
    if (mounted) {
        takeAway(home);
    }
}

void SmallDisk::fill() const
{
    QFile file(home + "/filler");
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        qFatal("The disk could not be filled");
    }
    const QByteArray block(1024, 'x');
    while (file.write(block) == block.size()) { }
}

bool SmallDisk::mountByItself(const QString &name) const
{
    return mountOn(home + '/' + name, nullptr, MS_BIND);
}

void SmallDisk::change(const QByteArray &options) const
{
    if (!mountOn(home, "tmpfs", MS_REMOUNT, options)) {
        qFatal("The disk could not be changed");
    }
}

ReadOnlyFolder::ReadOnlyFolder(QString folder)
    : home(std::move(folder))
    , mounted(mountOn(home, nullptr, MS_BIND)) // on itself, then for reading only
{
    if (mounted && !mountOn(home, nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY)) {
        qFatal("The folder could not be made read-only");
    }
}

ReadOnlyFolder::~ReadOnlyFolder()
{
    if (mounted) {
        takeAway(home);
    }
}

} // namespace test
