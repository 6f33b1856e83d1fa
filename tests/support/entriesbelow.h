// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace test {

/// The paths of all entries below \a folder, hidden ones included. Links are not followed. Some
/// versions of Qt 6 end a listing of their own at a name that is no UTF-8.
QStringList entriesBelow(const QString &folder);

} // namespace test
