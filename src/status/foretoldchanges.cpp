// SPDX-License-Identifier: MIT
#include "status/foretolddisk.h"

#include "status/filelook.h"

#include <QFileInfo>

namespace {

constexpr int ownerReads = 0400;

} // namespace

Change ForetoldDisk::changeAt(const QString &path, const Node &node) const
{
    const EntryFacts before = factsOf(QFile::encodeName(path));
    if (node.type == EntryType::Nothing) {
        return {path, Action::Remove, before.type != EntryType::Nothing};
    }
    if (before.type == EntryType::Nothing) {
        return {path, node.type == EntryType::Folder ? Action::MakeFolder : Action::Make, true};
    }
    bool isSame = before.type == node.type && before.mode == node.mode;
    if (isSame && node.origin.isEmpty()) {
        QFile file(path);
        isSame = file.open(QIODevice::ReadOnly) && file.readAll() == node.bytes;
    } else if (isSame && node.origin != path) {
        isSame = QFileInfo(path).size() == QFileInfo(node.origin).size()
            && compareFiles(path, node.origin) == Sameness::Same;
    }
    return {path, Action::Replace, !isSame};
}

QList<Change> ForetoldDisk::changes() const
{
    QList<Change> all;
    for (const QString &path : order) {
        const Change change = changeAt(path, *nodes.value(path));
        if (change.action != Action::Remove || change.differs) {
            all.append(change);
        }
    }
    return all;
}

Found ForetoldDisk::look(const QString &path)
{
    const Place place = find(path, LastLink::Follow);
    if (!place.isReachable || place.node->type == EntryType::Nothing) {
        return find(path, LastLink::Keep).node && exists(path) ? Found::Unreadable : Found::Nothing;
    }
    if (place.node->type != EntryType::File) {
        return Found::NoFile;
    }
    return mayReadNode(place) && (place.node->mode & ownerReads) != 0 ? Found::File
                                                                      : Found::Unreadable;
}

QString ForetoldDisk::realName(const QString &path)
{
    const Place place = find(path, LastLink::Follow);
    return place.isReachable ? place.path : absolute(path);
}
