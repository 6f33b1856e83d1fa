// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>

/// \file
/// How a file gets a new content: whole or not at all.

/// Gives the file \a path the content \a content, or adds it to what is there when \a mode appends.
/// \a mode is how the file would be opened for that, and decides which files are refused. A file
/// that is missing is made, a missing folder is not.
///
/// Returns true when all of it is on the disk. Otherwise the file is as it was, and \a reason, if
/// given, becomes Qt's words for what failed. Logs nothing.
///
/// A run that is killed leaves the old content or the new one, since another file takes the old
/// one's place; see StandIn. Rights, owner, group, access list and attributes stay, and a link goes
/// on leading to the file. The file is written in place where another cannot take over all of
/// these:
/// - no file can be made in its folder;
/// - it has several names, or is mounted by itself;
/// - its owner, group, access list or an attribute cannot be given to another file;
/// - it may be added to, but not be read;
/// - it is added to while somebody else goes on writing to it.
/// A write in place that fails puts the old content back, if that may be read; a kill can leave any
/// part of it.
bool writeWhole(const QString &path, QIODevice::OpenMode mode, const QByteArray &content,
                QString *reason = nullptr);
