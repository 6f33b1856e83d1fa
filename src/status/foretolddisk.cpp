// SPDX-License-Identifier: MIT
#include "status/foretolddisk.h"

#include "disk/standin.h"
#include "literals.h"

#include <utility>

namespace {

constexpr int longestName = 255;
constexpr int longestPath = 4095;
constexpr int mostLinks = 40;
constexpr int nineBits = 0777;
constexpr int ownerReads = 0400;
constexpr int ownerWrites = 0200;
constexpr int ownerSearches = 0100;

QByteArray encoded(const QString &path)
{
    return QFile::encodeName(path);
}

QString joined(const QString &folder, const QString &name)
{
    return folder == "/"_l1 ? folder + name : folder + QLatin1Char('/') + name;
}

QString folderOf(const QString &path)
{
    const int slash = static_cast<int>(path.lastIndexOf(QLatin1Char('/')));
    return slash <= 0 ? QStringLiteral("/") : path.left(slash);
}

QStringList partsOf(const QString &path)
{
    return path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

/// True if \a text has more than \a limit bytes as a name on the disk.
bool isLonger(const QString &text, int limit)
{
    constexpr int mostBytesEach = 3;
    return text.size() > limit / mostBytesEach && encoded(text).size() > limit;
}

bool hasBit(int mode, int bit)
{
    return !isStoppedByBits() || (mode & bit) != 0;
}

} // namespace

ForetoldDisk::ForetoldDisk(QString folder, QByteArray cpuType)
    : tool(std::move(folder))
    , cpu(std::move(cpuType))
{
}

QString ForetoldDisk::toolFolder() const
{
    return tool;
}

QByteArray ForetoldDisk::outputOf(const QString & /*program*/)
{
    return cpu;
}

QString ForetoldDisk::absolute(const QString &path) const
{
    return path.startsWith(QLatin1Char('/')) ? path : joined(tool, path);
}

ForetoldDisk::NodePointer ForetoldDisk::nodeAt(const QString &path) const
{
    const auto known = nodes.constFind(path);
    if (known != nodes.constEnd()) {
        return *known;
    }
    const auto folder = realFolders.constFind(path);
    if (folder != realFolders.constEnd()) {
        return *folder;
    }
    const EntryFacts facts = factsOf(encoded(path));
    auto node = std::make_shared<Node>();
    node->type = facts.type;
    node->mode = facts.mode;
    node->origin = path;
    if (facts.type == EntryType::Folder) {
        realFolders.insert(path, node);
    }
    return node;
}

/// True when a path may lead through the folder \a folder.
bool ForetoldDisk::enter(const QString &folder, const NodePointer &node) const
{
    if (node->type != EntryType::Folder) {
        return false;
    }
    if (node->isOurs) {
        return hasBit(node->mode, ownerSearches);
    }
    if (!node->maySearch) {
        node->maySearch = maySearch(encoded(folder));
    }
    return *node->maySearch;
}

ForetoldDisk::Place ForetoldDisk::placeOf(const QString &path) const
{
    return {true, false, folderOf(path), path, nodeAt(path)};
}

/// The place of \a name, which may be a dot or two, in \a folder.
ForetoldDisk::Place ForetoldDisk::stepTo(const QString &folder, const QString &name) const
{
    if (name == "."_l1) {
        return placeOf(folder);
    }
    return placeOf(name == ".."_l1 ? folderOf(folder) : joined(folder, name));
}

/// Where the way goes on after \a link: from the place that is returned, by the names in \a left.
ForetoldDisk::Place ForetoldDisk::follow(const Place &link, QStringList &left) const
{
    const QString text = QFile::decodeName(linkText(encoded(link.path)));
    left = partsOf(text) + left;
    return placeOf(text.startsWith(QLatin1Char('/')) ? QStringLiteral("/") : link.folder);
}

/// Goes from the folder \a start by the names \a left.
ForetoldDisk::Place ForetoldDisk::walk(const QString &start, QStringList left,
                                       LastLink lastLink) const
{
    Place place = placeOf(start);
    bool isBehindLink = false;
    int links = 0;
    while (!left.isEmpty()) {
        if (!enter(place.path, place.node) || isLonger(left.first(), longestName)) {
            return {};
        }
        place = stepTo(place.path, left.takeFirst());
        const bool isLast = left.isEmpty();
        if (place.node->type == EntryType::Link && !(isLast && lastLink == LastLink::Keep)) {
            if (++links > mostLinks) {
                return {};
            }
            isBehindLink = isBehindLink || isLast;
            place = follow(place, left);
        }
    }
    place.isBehindLink = isBehindLink || place.node->type == EntryType::Link;
    return place;
}

ForetoldDisk::Place ForetoldDisk::find(const QString &path, LastLink lastLink)
{
    if (path.isEmpty() || isLonger(path, longestPath) || path.contains(QChar(0))) {
        return {};
    }
    const QString whole = absolute(path);
    const int lastSlash = static_cast<int>(whole.lastIndexOf(QLatin1Char('/')));
    const QString words = whole.left(lastSlash);
    const QString lastName = whole.mid(lastSlash + 1);
    const QString known = knownFolders.value(words);
    Place place = known.isEmpty() ? walk(QStringLiteral("/"), partsOf(whole), lastLink)
                                  : walk(known, partsOf(lastName), lastLink);
    const bool isName = !lastName.isEmpty() && lastName != "."_l1 && lastName != ".."_l1;
    if (place.isReachable && !place.isBehindLink && isName) {
        if (known.isEmpty()) {
            knownFolders.insert(words, place.folder);
        }
        if (place.node->type == EntryType::Folder) {
            knownFolders.insert(whole, place.path);
        }
    }
    return place;
}

bool ForetoldDisk::mayAddTo(const QString &folder) const
{
    const NodePointer node = nodeAt(folder);
    if (node->type != EntryType::Folder) {
        return false;
    }
    return node->isOurs ? hasBit(node->mode, ownerWrites) && hasBit(node->mode, ownerSearches)
                        : mayWrite(encoded(folder)) && maySearch(encoded(folder));
}

bool ForetoldDisk::mayReadNode(const Place &place) const
{
    return place.node->isOurs ? hasBit(place.node->mode, ownerReads) : mayRead(encoded(place.path));
}

bool ForetoldDisk::mayWriteNode(const Place &place) const
{
    return place.node->isOurs ? hasBit(place.node->mode, ownerWrites)
                              : mayWrite(encoded(place.path));
}

QByteArray ForetoldDisk::contentOf(const Node &node) const
{
    if (node.origin.isEmpty()) {
        return node.bytes;
    }
    QFile file(node.origin);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

ForetoldDisk::NodePointer ForetoldDisk::put(const Place &place, EntryType type, int mode)
{
    auto node = std::make_shared<Node>();
    node->type = type;
    node->mode = mode;
    node->isOurs = true;
    if (!nodes.contains(place.path)) {
        order << place.path;
        changedNames[place.folder] << place.path.mid(place.path.lastIndexOf(QLatin1Char('/')) + 1);
    }
    nodes.insert(place.path, node);
    return node;
}

bool ForetoldDisk::exists(const QString &path)
{
    const Place place = find(path, LastLink::Follow);
    return place.isReachable && place.node->type != EntryType::Nothing;
}

bool ForetoldDisk::isFolder(const QString &path)
{
    const Place place = find(path, LastLink::Follow);
    return place.isReachable && place.node->type == EntryType::Folder;
}

bool ForetoldDisk::makePath(const QString &path)
{
    QString trimmed = path;
    while (trimmed.size() > 1 && trimmed.endsWith(QLatin1Char('/'))) {
        trimmed.chop(1);
    }
    if (isFolder(trimmed)) {
        return true;
    }
    const QString parent = folderOf(absolute(trimmed));
    if (parent == trimmed || (!isFolder(parent) && !makePath(parent))) {
        return false;
    }
    const Place place = find(trimmed, LastLink::Keep);
    if (!place.isReachable || place.node->type != EntryType::Nothing || !mayAddTo(place.folder)) {
        return false;
    }
    put(place, EntryType::Folder, nineBits & ~mask);
    return true;
}

bool ForetoldDisk::removeFile(const QString &path)
{
    const Place place = find(path, LastLink::Keep);
    if (!place.isReachable || place.node->type == EntryType::Nothing
        || place.node->type == EntryType::Folder || !mayAddTo(place.folder)
        || (!place.node->isOurs && isKeptBySticky(encoded(place.folder), encoded(place.path)))) {
        return false;
    }
    put(place, EntryType::Nothing, 0);
    return true;
}

bool ForetoldDisk::copyFile(const QString &source, const QString &target)
{
    const Place from = find(source, LastLink::Follow);
    const Place to = find(target, LastLink::Keep);
    if (!to.isReachable || to.node->type != EntryType::Nothing || !mayAddTo(to.folder)
        || !from.isReachable || from.node->type != EntryType::File || !mayReadNode(from)) {
        return false;
    }
    const NodePointer original = from.node;
    const NodePointer copy = put(to, EntryType::File, original->mode & nineBits);
    copy->origin = original->origin;
    copy->bytes = original->bytes;
    return true;
}

bool ForetoldDisk::openPlaced(const QString &path)
{
    const Place place = find(path, LastLink::Follow);
    if (place.isReachable && place.node->type == EntryType::Nothing) {
        return openToWrite(path, QIODevice::ReadWrite) != nullptr;
    }
    return place.isReachable && place.node->type != EntryType::Folder && mayReadNode(place)
        && mayWriteNode(place);
}

bool ForetoldDisk::visitEntries(const QString &folder, const EntryVisitor &visit)
{
    const Place place = find(folder, LastLink::Follow);
    if (!place.isReachable || place.node->type != EntryType::Folder) {
        return false;
    }
    bool isComplete = true;
    const QStringList changed = changedNames.value(place.path);
    if (!place.node->isOurs) {
        isComplete = ::visitEntries(encoded(place.path),
                                    [&](const QByteArray &name, EntryKind kind) {
                                        if (!changed.contains(nameOf(name))) {
                                            visit(name, kind);
                                        }
                                    });
    }
    // In which order the system would list these is not known.
    for (const QString &name : changed) {
        const EntryType type = nodes.value(joined(place.path, name))->type;
        if (type != EntryType::Nothing && !name.startsWith(QLatin1Char('.'))) {
            visit(encoded(name), type == EntryType::Folder ? EntryKind::Folder : EntryKind::File);
        }
    }
    return isComplete;
}

bool ForetoldDisk::readBytes(const QString &path, QByteArray &bytes)
{
    const Place place = find(path, LastLink::Follow);
    if (!place.isReachable || place.node->type != EntryType::File || !mayReadNode(place)) {
        return false;
    }
    bytes = contentOf(*place.node);
    return true;
}

/// The file that would be open for writing; null if it cannot be opened.
ForetoldDisk::NodePointer ForetoldDisk::openToWrite(const QString &path, QIODevice::OpenMode mode)
{
    const Place place = find(path, LastLink::Follow);
    const bool isRead = (mode & QIODevice::ReadOnly) != 0;
    if (!place.isReachable || place.node->type == EntryType::Folder) {
        return nullptr;
    }
    if (place.node->type == EntryType::Nothing) {
        constexpr int readAndWrite = 0666;
        return mayAddTo(place.folder) ? put(place, EntryType::File, readAndWrite & ~mask) : nullptr;
    }
    if (!mayWriteNode(place) || (isRead && !mayReadNode(place))) {
        return nullptr;
    }
    if (!nodes.contains(place.path)) {
        NodePointer node = put(place, place.node->type, place.node->mode);
        node->isOurs = false;
        node->origin = place.path;
        return node;
    }
    return place.node;
}

bool ForetoldDisk::writeWhole(const QString &path, QIODevice::OpenMode mode,
                              const QByteArray &content)
{
    clearUnfinished(path);
    return writeInto(path, mode, content);
}

bool ForetoldDisk::writeInto(const QString &path, QIODevice::OpenMode mode,
                             const QByteArray &content)
{
    const NodePointer node = openToWrite(path, mode);
    if (node == nullptr) {
        return false;
    }
    const QByteArray before = (mode & QIODevice::Append) != 0 ? contentOf(*node) : QByteArray();
    node->bytes = before + content;
    node->origin.clear();
    return true;
}

bool ForetoldDisk::appendTo(const QString &path, const QByteArray &bytes)
{
    return writeInto(path, QIODevice::WriteOnly | QIODevice::Append, bytes);
}

void ForetoldDisk::clearUnfinished(const QString &path)
{
    const QString folder = find(path, LastLink::Follow).folder;
    for (int number = 1; number <= unfinishedNames && !folder.isEmpty(); ++number) {
        const QString name = QFile::decodeName(unfinishedName(folder, number));
        const Place place = find(name, LastLink::Keep);
        if (place.isReachable && place.node->type == EntryType::File && mayReadNode(place)) {
            static_cast<void>(removeFile(name));
        }
    }
}

bool ForetoldDisk::openAnew(QFile &file)
{
    const NodePointer node = openToWrite(file.fileName(), QIODevice::WriteOnly);
    if (node == nullptr) {
        return false;
    }
    node->bytes.clear();
    node->origin.clear();
    openFiles.insert(&file, node);
    return true;
}

bool ForetoldDisk::addTo(QFile &file, const QByteArray &text)
{
    // The file stays open, and is written to, even if another takes its name meanwhile.
    const NodePointer node = openFiles.value(&file);
    if (node != nullptr) {
        node->bytes += text;
    }
    return node != nullptr;
}
