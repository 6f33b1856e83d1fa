// SPDX-License-Identifier: MIT
#include "disk/diskwait.h"

#include "disk/otherdisk.h"

#include <cerrno>
#include <system_error>

#include <unistd.h>

namespace {

/// Some disks of a network tell only when a file is closed that it could not be written.
bool closesWell(int handle)
{
    const int duplicate = dup(handle);
    return duplicate >= 0 && close(duplicate) == 0;
}

QString wordsFor(int error)
{
    return QString::fromLocal8Bit(std::generic_category().message(error).c_str());
}

} // namespace

bool waitForDisk(int handle)
{
    // Not every file is on a disk, and not every disk can be asked.
    return fsync(handle) == 0 || errno == EINVAL || errno == ENOTSUP;
}

bool bringToDisk(QFileDevice &file, QString *reason)
{
    if (OtherDisk::inPlace() != nullptr) {
        return true;
    }
    const bool isFlushed = file.flush();
    if (isFlushed && waitForDisk(file.handle()) && closesWell(file.handle())) {
        return true;
    }
    if (reason != nullptr) {
        *reason = isFlushed ? wordsFor(errno) : file.errorString();
    }
    return false;
}
