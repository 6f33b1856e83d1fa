// SPDX-License-Identifier: MIT
#pragma once

#include "disk/otherdisk.h"
#include "disk/rights.h"
#include "status/answer.h"
#include "status/filelook.h"

#include <QHash>
#include <QMap>
#include <QStringList>

#include <memory>
#include <optional>

/// \file
/// The disk as a run would leave it.

/// Starts as the real disk, which it reads and never changes, and remembers what a run would do to
/// it: with the rights of this user, in the working directory \a folder.
class ForetoldDisk : public OtherDisk {
public:
    /// The tool lies in \a folder (absolute, links resolved) and \a cpuType is what its companion
    /// would say.
    ForetoldDisk(QString folder, QByteArray cpuType);

    QString toolFolder() const override;
    QByteArray outputOf(const QString &program) override;
    bool exists(const QString &path) override;
    bool isFolder(const QString &path) override;
    bool makePath(const QString &path) override;
    bool removeFile(const QString &path) override;
    bool copyFile(const QString &source, const QString &target) override;
    bool openPlaced(const QString &path) override;
    bool visitEntries(const QString &folder, const EntryVisitor &visit) override;
    bool readBytes(const QString &path, QByteArray &bytes) override;
    bool writeWhole(const QString &path, QIODevice::OpenMode mode,
                    const QByteArray &content) override;
    bool appendTo(const QString &path, const QByteArray &bytes) override;
    void clearUnfinished(const QString &path) override;
    bool openAnew(QFile &file) override;
    bool addTo(QFile &file, const QByteArray &text) override;
    void storeNative(const QString &file, const QList<QPair<QString, QString>> &values) override;

    /// What lookAt() will say of \a path.
    Found look(const QString &path);

    /// \a path with all links resolved, as far as it is there.
    QString realName(const QString &path);

    /// Everything that the run would touch, in the order in which it would first do so.
    QList<Change> changes() const;

private:
    /// Something in a folder. The real disk's own have no bytes here, but \a origin.
    struct Node {
        EntryType type = EntryType::Nothing;
        int mode = 0;
        bool isOurs = false; ///< made by the run, so that this user owns it
        QString origin;      ///< the real file whose content it has; else bytes are its content
        QByteArray bytes;
        std::optional<bool> maySearch; ///< once that was asked of one of the real disk's folders
    };
    using NodePointer = std::shared_ptr<Node>;

    /// Where a path leads.
    struct Place {
        bool isReachable = false;  ///< all folders on the way are there
        bool isBehindLink = false; ///< the last name is a link, followed or not
        QString folder;            ///< the one that the last name stands in, links resolved
        QString path;              ///< folder and last name
        NodePointer node;          ///< never null if it is reachable
    };

    enum class LastLink { Follow, Keep };

    Place find(const QString &path, LastLink lastLink);
    Place walk(const QString &start, QStringList left, LastLink lastLink) const;
    Place stepTo(const QString &folder, const QString &name) const;
    Place follow(const Place &link, QStringList &left) const;
    Place placeOf(const QString &path) const;
    bool enter(const QString &folder, const NodePointer &node) const;
    NodePointer nodeAt(const QString &path) const;
    QString absolute(const QString &path) const;
    bool mayAddTo(const QString &folder) const;
    bool mayReadNode(const Place &place) const;
    bool mayWriteNode(const Place &place) const;
    QByteArray contentOf(const Node &node) const;
    NodePointer put(const Place &place, EntryType type, int mode);
    NodePointer openToWrite(const QString &path, QIODevice::OpenMode mode);
    bool writeInto(const QString &path, QIODevice::OpenMode mode, const QByteArray &content);
    Change changeAt(const QString &path, const Node &node) const;

    const QString tool;
    const QByteArray cpu;
    const int mask = modeMask();
    QHash<QString, NodePointer> nodes;               ///< what the run touched, by real path
    mutable QHash<QString, NodePointer> realFolders; ///< what it only went through
    QStringList order;
    QMap<QString, QStringList> changedNames; ///< by folder
    QHash<QString, QString> knownFolders;    ///< real paths of folders, by the words for them
    QHash<const QFile *, NodePointer> openFiles;
    QHash<QString, QMap<QString, QString>> registries;
};
