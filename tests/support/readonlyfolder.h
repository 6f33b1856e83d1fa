// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace test {

/// While it lives, nothing below a folder can be written, not even by root; only this process and
/// its children see it so. Make it after the sandbox that holds the folder.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(QString folder);
    ~ReadOnlyFolder();
    ReadOnlyFolder(const ReadOnlyFolder &) = delete;
    ReadOnlyFolder &operator=(const ReadOnlyFolder &) = delete;

    /// False where nothing may be mounted: skip the case, and say so.
    bool isMounted() const;

private:
    QString home;
    bool mounted = false;
};

} // namespace test
