// SPDX-License-Identifier: MIT
#include "testprogram.h"

#include "programfolder.h"
#include "redfolders.h"

#include <cstdio>
#include <map>

namespace test {

namespace {

struct Entry {
    Place place;
    Main main;
};

/// What the program can run, by name. Registrations come before main(), in any order.
std::map<QByteArray, Entry> &entries()
{
    static std::map<QByteArray, Entry> all;
    return all;
}

void add(const QByteArray &name, const Entry &entry)
{
    if (!entries().emplace(name, entry).second) {
        qFatal("Two test classes are called %s", name.constData());
    }
}

QByteArray baseName(const QByteArray &file)
{
    const QByteArray name = file.mid(file.lastIndexOf('/') + 1);
    return name.left(name.indexOf('.'));
}

int listEntries(const char *program)
{
    std::printf("%s NAME [WORDS FOR QT TEST…]\n\n", program);
    for (const auto &entry : entries()) {
        std::printf("%s\n", entry.first.constData());
    }
    return 2;
}

} // namespace

Registration::Registration(const char *file, Place place, Main main)
{
    add(baseName(file), {place, main});
}

Registration::Registration(const char *name, Main main)
{
    add(name, {Place::AsBuilt, main});
}

} // namespace test

int main(int argc, char *argv[])
{
    const bool isInOwnFolder = test::takeProofOfOwnFolder(argc, argv);
    const auto entry = test::entries().find(argc > 1 ? argv[1] : "");
    if (entry == test::entries().end()) {
        return test::listEntries(argv[0]);
    }
    test::keepFoldersOfEndedProcesses();
    if (entry->second.place == test::Place::OwnFolder && !isInOwnFolder) {
        test::goToOwnFolder(argc, argv);
    }
    // Qt Test does not know the name of the class.
    argv[1] = argv[0];
    const int result = entry->second.main(argc - 1, argv + 1);
    if (isInOwnFolder) {
        test::leaveOwnFolder(argc, argv, result);
    }
    return result;
}
