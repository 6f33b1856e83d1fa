// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFileInfo>

namespace test {

/// While it lives, sandboxes are made in memory where that is possible. Every file that is copied
/// is flushed to its disk, and a disk takes minutes for ten thousand.
class InMemory {
public:
    InMemory()
        : before(qgetenv("TMPDIR"))
    {
        if (QFileInfo(memory).isWritable()) {
            qputenv("TMPDIR", memory);
        }
    }
    ~InMemory()
    {
        if (before.isNull()) {
            qunsetenv("TMPDIR");
        } else {
            qputenv("TMPDIR", before);
        }
    }
    InMemory(const InMemory &) = delete;
    InMemory &operator=(const InMemory &) = delete;

private:
    const char *memory = "/dev/shm";
    QByteArray before;
};

} // namespace test
