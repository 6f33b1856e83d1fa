// SPDX-License-Identifier: MIT
#pragma once

#include "status/answer.h"

#include <QStringList>

namespace test {

/// The kinds of \a problems, in their order. With a \a folder, those of things in it as "kind
/// path", the path relative to it.
inline QStringList kindsOf(const QList<Problem> &problems, const QString &folder = QString())
{
    QStringList kinds;
    for (const Problem &problem : problems) {
        const bool isInside = !folder.isEmpty() && problem.path.startsWith(folder + '/');
        kinds << kindName(problem.kind)
                + (isInside ? ' ' + problem.path.mid(folder.size() + 1) : QString());
    }
    return kinds;
}

} // namespace test
