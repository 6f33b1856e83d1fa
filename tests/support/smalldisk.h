// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace test {

/// A small disk in memory, mounted on a folder; only this process and its children see it. Make it
/// after the sandbox that holds the folder, so that it goes away first.
class SmallDisk {
public:
    /// \a options are those of tmpfs, such as "size=64k".
    SmallDisk(QString folder, const QByteArray &options);
    ~SmallDisk();
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    /// False where nothing may be mounted: skip the case, and say so.
    bool isMounted() const
    {
        return mounted;
    }

    /// Writes a file until nothing more fits.
    void fill() const;

    /// Makes the file \a name of the disk one that is mounted by itself; false where that cannot
    /// be.
    bool mountByItself(const QString &name) const;

    /// Gives the disk other \a options while it is in use.
    void change(const QByteArray &options) const;

private:
    QString home;
    bool mounted;
};

/// While it lives, nothing below a folder can be written, not even by root; only this process and
/// its children see it so. Make it after the sandbox that holds the folder.
class ReadOnlyFolder {
public:
    explicit ReadOnlyFolder(QString folder);
    ~ReadOnlyFolder();
    ReadOnlyFolder(const ReadOnlyFolder &) = delete;
    ReadOnlyFolder &operator=(const ReadOnlyFolder &) = delete;

    /// False where nothing may be mounted: skip the case, and say so.
    bool isMounted() const
    {
        return mounted;
    }

private:
    QString home;
    bool mounted;
};

} // namespace test
