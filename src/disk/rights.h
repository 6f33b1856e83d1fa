// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// \file
/// What an entry of a folder is, and what this user may do with it. Nothing here opens or changes
/// anything. Paths are encoded as by QFile::encodeName().

/// What lies at a path, the link itself if it is one.
enum class EntryType { Nothing, File, Folder, Link, Other };

/// What is known of a path without opening it.
struct EntryFacts {
    EntryType type = EntryType::Nothing; ///< of the link itself if it is one
    int mode = 0;                        ///< permission bits, with those above the nine
};

/// What lies at \a path; links are not followed.
EntryFacts factsOf(const QByteArray &path);

/// What lies at \a path, or where it leads if it is a link.
EntryFacts factsBehind(const QByteArray &path);

/// What the link \a path says, as it stands.
QByteArray linkText(const QByteArray &path);

/// Whether this user may read what lies at \a path; links are followed.
bool mayRead(const QByteArray &path);
/// Whether this user may write it.
bool mayWrite(const QByteArray &path);
/// Whether this user may search the folder \a path.
bool maySearch(const QByteArray &path);

/// Whether a sticky folder \a folder keeps this user from removing its entry \a path.
bool isKeptBySticky(const QByteArray &folder, const QByteArray &path);

/// Whether permission bits stop this user: they do not stop root.
bool isStoppedByBits();

/// The permission bits that new files and folders do not get.
int modeMask();
