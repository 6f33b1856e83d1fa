// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace test {

/// What a file has besides its content, as one text to compare: rights, owner, group, and extended
/// attributes, of which the access list is one. Links are followed.
QString looksOf(const QString &path);

void giveTo(const QString &path, unsigned user, unsigned group);
void setRights(const QString &path, unsigned rights);

/// Gives a file an extended attribute. Returns false where there are none.
bool setAttribute(const QString &path, const QByteArray &name, const QByteArray &value);

/// Gives a file or, as that of new files in it, a folder an access list in which one more user may
/// read. Returns false where there are none.
bool setAccessList(const QString &path);
bool setAccessListOfNewFiles(const QString &folder);

/// Makes another name for the file \a path.
void addName(const QString &path, const QString &name);

} // namespace test
