// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QtTest>

/// \file
/// A test program holds many classes of cases, one in each tst_NAME.cpp. Started as
///
///     PROGRAM tst_NAME [WORDS FOR QT TEST…]
///
/// it runs one of them, in a process of its own; without words it lists them.

namespace test {

/// Where the program lies while it runs a class.
enum class Place {
    AsBuilt,   ///< in the build folder
    OwnFolder, ///< copied to a temporary folder of its own; see ProgramFolder
};

using Main = int (*)(int argc, char *argv[]);

/// Makes something that a test program can run known to it; for objects that live as long as the
/// program does.
class Registration {
public:
    /// \a file is the source file; its name without folder and ending is the name to start it by.
    Registration(const char *file, Place place, Main main);
    /// \a name is what the program is started by when it plays another part in a case.
    Registration(const char *name, Main main);
};

/// The main function of a class of cases.
template<class TestClass> int runClass(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    TestClass tests;
    return QTest::qExec(&tests, argc, argv);
}

/// The same, for code under test that makes the application object itself.
template<class TestClass> int runClassWithoutApplication(int argc, char *argv[])
{
    TestClass tests;
    return QTest::qExec(&tests, argc, argv);
}

} // namespace test

/// Registers a class of cases; last but for the moc file in its source.
#define DRASK_TEST(TestClass)                                                                      \
    static const test::Registration registration(__FILE__, test::Place::AsBuilt,                   \
                                                 test::runClass<TestClass>);
/// The same, for code that finds its files beside the running program.
#define DRASK_TEST_IN_OWN_FOLDER(TestClass)                                                        \
    static const test::Registration registration(__FILE__, test::Place::OwnFolder,                 \
                                                 test::runClass<TestClass>);
/// The same, for code that makes the application object as well.
#define DRASK_TEST_WITHOUT_APPLICATION(TestClass)                                                  \
    static const test::Registration registration(__FILE__, test::Place::OwnFolder,                 \
                                                 test::runClassWithoutApplication<TestClass>);
