// SPDX-License-Identifier: MIT
#include "status/filelook.h"

#include "disk/rights.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cstring>

namespace {

constexpr qint64 blockSize = 65536;
constexpr int ownerReads = 0400;

} // namespace

Found lookAt(const QString &path)
{
    if (path.contains(QChar(0))) {
        return Found::Nothing;
    }
    const QByteArray name = QFile::encodeName(path);
    const EntryFacts facts = factsBehind(name);
    switch (facts.type) {
    case EntryType::Nothing:
        return factsOf(name).type == EntryType::Link ? Found::Unreadable : Found::Nothing;
    case EntryType::File:
        break;
    default:
        return Found::NoFile;
    }
    // Root may read everything; the host's user may not.
    return mayRead(name) && (facts.mode & ownerReads) != 0 ? Found::File : Found::Unreadable;
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
