// SPDX-License-Identifier: MIT
#include "disk/otherdisk.h"

namespace {

OtherDisk *current = nullptr;

} // namespace

OtherDisk::Guard::Guard(OtherDisk &disk)
{
    current = &disk;
}

OtherDisk::Guard::~Guard()
{
    current = nullptr;
}

OtherDisk *OtherDisk::inPlace()
{
    return current;
}
