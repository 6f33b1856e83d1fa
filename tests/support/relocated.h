// SPDX-License-Identifier: MIT
#pragma once

#include "sandbox.h"

#include <QCoreApplication>
#include <QtTest>

namespace test {

/// Runs a test program from a temporary folder of its own. For code that finds its files beside the
/// running program: what such a case puts there is in nobody's way. The folder has a blank and a
/// non-ASCII letter in its name; it stays, and is named, when a case is red.
int runRelocated(int argc, char *argv[], int (*runTests)(int argc, char *argv[]));

/// The folder of a relocated test program, where the code under test looks for its files and leaves
/// its own. A new object clears it of what the case before left there.
class ProgramFolder : public Folder {
public:
    ProgramFolder();

    /// Everything in the folder but the test program.
    Tree tree() const;
};

} // namespace test

/// The main function of such a test program.
#define DRASK_RELOCATED_TEST_MAIN(TestClass)                                                       \
    int main(int argc, char *argv[])                                                               \
    {                                                                                              \
        return test::runRelocated(argc, argv, [](int count, char *words[]) {                       \
            const QCoreApplication application(count, words);                                      \
            TestClass tests;                                                                       \
            return QTest::qExec(&tests, count, words);                                             \
        });                                                                                        \
    }
