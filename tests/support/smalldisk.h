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
    bool isMounted() const;

    /// Writes a file until nothing more fits; makeRoom() takes it away.
    void fill() const;
    void makeRoom() const;

    /// Gives the disk other \a options while it is in use.
    void change(const QByteArray &options) const;

private:
    QString filler() const;

    QString home;
    bool mounted;
};

} // namespace test
