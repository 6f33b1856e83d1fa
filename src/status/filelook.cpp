// SPDX-License-Identifier: MIT
#include "status/filelook.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cstring>

namespace {

constexpr qint64 blockSize = 65536;

} // namespace

Found lookAt(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return info.isSymLink() ? Found::Unreadable : Found::Nothing;
    }
    if (!info.isFile()) {
        return Found::NoFile;
    }
    // Root may read everything; the host's user may not.
    return info.isReadable() && (info.permissions() & QFile::ReadOwner) != 0 ? Found::File
                                                                             : Found::Unreadable;
}

QString wholeText(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromUtf8(file.readAll());
}

Sameness compareFiles(const QString &first, const QString &second)
{
    QFile one(first);
    QFile other(second);
    const QIODevice::OpenMode mode = QIODevice::ReadOnly | QIODevice::Unbuffered;
    if (!one.open(mode) || !other.open(mode)) {
        return Sameness::CannotTell;
    }
    static std::array<char, blockSize> bytes;
    static std::array<char, blockSize> otherBytes;
    while (true) {
        const qint64 size = one.read(bytes.data(), blockSize);
        const qint64 otherSize = other.read(otherBytes.data(), blockSize);
        if (size < 0 || otherSize < 0) {
            return Sameness::CannotTell;
        }
        if (size != otherSize
            || std::memcmp(bytes.data(), otherBytes.data(), static_cast<std::size_t>(size)) != 0) {
            return Sameness::Different;
        }
        if (size == 0) {
            return Sameness::Same;
        }
    }
}
