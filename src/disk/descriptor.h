// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <utility>

#include <sys/types.h>
#include <unistd.h>

/// \file
/// The system's number of an open file.

/// Owns an open file, and closes it when it goes away.
class Descriptor {
public:
    /// Takes over the open file \a number; a negative one stands for none.
    explicit Descriptor(int number = -1)
        : value(number)
    {
    }
    ~Descriptor()
    {
        if (isOpen()) {
            static_cast<void>(close(value));
        }
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    /// Takes over what \a other owns.
    Descriptor(Descriptor &&other) noexcept
        : value(std::exchange(other.value, -1))
    {
    }
    /// Takes over what \a other owns, which gets what was owned here.
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(value, other.value);
        return *this;
    }

    /// True when it owns an open file.
    bool isOpen() const
    {
        return value >= 0;
    }

    /// The number of the file; negative when there is none.
    int number() const
    {
        return value;
    }

private:
    int value;
};

/// Writes \a size bytes from \a bytes to the open file \a file. Returns false, with the reason in
/// errno, when it takes only a part.
inline bool writeBytes(int file, const char *bytes, std::size_t size)
{
    for (std::size_t written = 0; written < size;) {
        // NOLINTNEXTLINE(cppcoreguidelines-pro-bounds-pointer-arithmetic)
        const ssize_t count = write(file, bytes + written, size - written);
        if (count < 0) {
            return false;
        }
        written += static_cast<std::size_t>(count);
    }
    return true;
}
