// SPDX-License-Identifier: MIT
#include "status/foretolddisk.h"

#include <QSettings>

namespace {

constexpr int longestName = 255;

/// True if Qt would write the text \a text of a settings file again as it is: nothing but sections
/// and keys, with an empty line between sections.
bool isQtsOwn(const QByteArray &text)
{
    const QList<QByteArray> lines = text.split('\n');
    for (int index = 0; index + 1 < lines.size(); ++index) {
        const QByteArray &line = lines.at(index);
        const bool isSection = line.startsWith('[') && line.endsWith(']');
        const bool isBetween = line.isEmpty() && lines.at(index + 1).startsWith('[') && index > 0;
        if (!isSection && !isBetween && (line.startsWith(';') || line.indexOf('=') <= 0)) {
            return false;
        }
    }
    return lines.last().isEmpty();
}

QMap<QString, QString> readRegistry(const QString &file)
{
    QMap<QString, QString> values;
    const QSettings settings(file, QSettings::NativeFormat);
    const QStringList keys = settings.allKeys();
    for (const QString &key : keys) {
        values.insert(key, settings.value(key).toString());
    }
    return values;
}

} // namespace

void ForetoldDisk::storeNative(const QString &file, const QList<QPair<QString, QString>> &values)
{
    const Place place = find(file, LastLink::Follow);
    // A lock is put beside the file, so its folder must be writable too.
    if (!place.isReachable || !mayAddTo(place.folder)
        || QFile::encodeName(file).size() + 5 > longestName) {
        return;
    }
    const bool isThere = place.node->type != EntryType::Nothing;
    if (isThere && (place.node->type != EntryType::File || !mayReadNode(place))) {
        return;
    }
    const QString path = place.path;
    const QMap<QString, QString> before = readRegistry(path);
    if (!registries.contains(path)) {
        registries.insert(path, before);
    }
    const NodePointer node = openToWrite(file, QIODevice::ReadWrite);
    if (node == nullptr) {
        return;
    }
    for (const auto &value : values) {
        registries[path].insert(value.first, value.second);
    }
    QByteArray original;
    QFile real(path);
    if (isThere && real.open(QIODevice::ReadOnly)) {
        original = real.readAll();
    }
    // What Qt makes of the file is its own business; only whether it differs is of interest.
    const bool isSame = registries.value(path) == before && isQtsOwn(original);
    node->bytes = isSame ? original : original + "\n; other values";
    node->origin.clear();
}
