// SPDX-License-Identifier: MIT
#pragma once

#include "logcapture.h"
#include "ordinaryuser.h"
#include "sandbox.h"
#include "testprogram.h"

#include <QtTest>

/// What most classes of unit cases need.
namespace test {

/// The table of a case: its columns are added when it is made, its rows one by one.
template<typename... Types> class Table {
public:
    /// \a columns are the names that the case fetches its values by.
    template<typename... Names> explicit Table(Names... columns)
    {
        (QTest::addColumn<Types>(columns), ...);
    }

    void row(const char *name, const Types &...values) const
    {
        (QTest::newRow(name) << ... << values);
    }
};

} // namespace test

/// \a sandbox holds what the tree says that comes next, and nothing else.
#define VERIFY_TREE(sandbox, ...)                                                                  \
    QCOMPARE(test::treeDifference((sandbox).tree(), __VA_ARGS__), QString())

/// The list \a actual has the lines that come next, and no others.
#define VERIFY_LINES(actual, ...) QCOMPARE(QStringList(actual), (QStringList{__VA_ARGS__}))
