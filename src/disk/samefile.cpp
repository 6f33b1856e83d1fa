// SPDX-License-Identifier: MIT
#include "disk/samefile.h"

#include "disk/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstring>

namespace {

constexpr std::size_t blockSize = 65536;

Descriptor openToCompare(const QByteArray &path)
{
    // Not to wait for whoever may write into a pipe.
    return Descriptor(open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
}

/// Whether the next \a size bytes of both files are the same.
bool haveSameBytes(int one, int other, off_t size)
{
    // Kept, because clearing them would cost more than a small file.
    static std::array<char, blockSize> bytes;
    static std::array<char, blockSize> otherBytes;
    while (size > 0) {
        const ssize_t count = read(one, bytes.data(), blockSize);
        if (count <= 0 || read(other, otherBytes.data(), static_cast<std::size_t>(count)) != count
            || std::memcmp(bytes.data(), otherBytes.data(), static_cast<std::size_t>(count)) != 0) {
            return false;
        }
        size -= count;
    }
    return true;
}

} // namespace

bool isSoundCopy(const QByteArray &copy, const QByteArray &original)
{
    const Descriptor one = openToCompare(copy);
    const Descriptor other = openToCompare(original);
    struct stat facts = {};
    struct stat otherFacts = {};
    return one.isOpen() && other.isOpen() && fstat(one.number(), &facts) == 0
        && fstat(other.number(), &otherFacts) == 0 && S_ISREG(facts.st_mode)
        && S_ISREG(otherFacts.st_mode) && (facts.st_mode & S_IRUSR) != 0
        && facts.st_size == otherFacts.st_size
        && haveSameBytes(one.number(), other.number(), facts.st_size);
}
