// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/// \file
/// What lies in a folder.

/// What an entry of a folder is. A link is what it leads to.
enum class EntryKind {
    File,         ///< a plain file, or a link to one
    Folder,       ///< a folder itself
    LinkedFolder, ///< a link to a folder
    LinkedDevice, ///< a link to a pipe, a socket or a device
};

/// Is handed the name of an entry, in the local 8-bit encoding and good for this call only.
using EntryVisitor = std::function<void(const QByteArray &name, EntryKind kind)>;

/// The text of \a entry, which is a name in the local 8-bit encoding. A byte-order mark stays.
QString nameOf(const QByteArray &entry);

/// Hands each entry of \a folder (encoded as by QFile::encodeName()) to \a visit, in the order of
/// the file system. Left out are hidden entries, dangling links, pipes, sockets and devices, and
/// names that are no text in the local encoding, which Qt could not hand back to the system.
/// Returns false when the folder cannot be read, or not to its end. Logs nothing. The folder is
/// open meanwhile.
///
/// Qt's own listings make an object for each entry, and from some version of Qt 6 on they end at
/// the first name that is no text.
bool visitEntries(const QByteArray &folder, const EntryVisitor &visit);
