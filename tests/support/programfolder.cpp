// SPDX-License-Identifier: MIT
#include "programfolder.h"

#include "redfolders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QUuid>

#include <algorithm>
#include <vector>

#include <unistd.h>

namespace test {

namespace {

constexpr char secretOption[] = "-in-own-folder";
constexpr char secretFile[] = "secret";
constexpr char programFolder[] = "prögram folder";

/// The secret that this process was started with.
QByteArray &secret()
{
    static QByteArray given;
    return given;
}

/// Asks the disk each time: no emptied folder can be worth more than a look at a file.
bool isProved(const Folder &home)
{
    return !secret().isEmpty() && home.read(secretFile) == secret();
}

/// The folder around the program's folder.
QString homePath(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return QFileInfo(QCoreApplication::applicationDirPath()).path();
}

void startOver(QByteArray program, int argc, char *argv[])
{
    QByteArray option = secretOption;
    std::vector<char *> words(argv, argv + argc);
    words.front() = program.data();
    words.insert(words.begin() + 1, {option.data(), secret().data()});
    words.push_back(nullptr);
    execv(program.constData(), words.data());
}

} // namespace

void goToOwnFolder(int argc, char *argv[])
{
    QByteArray program;
    {
        const QCoreApplication application(argc, argv);
        const QFileInfo built(QCoreApplication::applicationFilePath());
        secret() = QUuid::createUuid().toByteArray();
        const Folder home(makeTemporaryFolder("drask hömé"));
        home.write(secretFile, secret());
        home.makeFolder(programFolder);
        const QString copy = home.path(programFolder) + QLatin1Char('/') + built.fileName();
        if (!QFile::copy(built.filePath(), copy)) {
            qFatal("The test program could not be copied to %s", qPrintable(copy));
        }
        program = QFile::encodeName(copy);
    }
    startOver(program, argc, argv);
    qFatal("The copy of the test program could not be started: %s", program.constData());
}

bool takeProofOfOwnFolder(int &argc, char *argv[])
{
    if (argc < 3 || qstrcmp(argv[1], secretOption) != 0) {
        return false;
    }
    secret() = argv[2];
    std::copy(argv + 3, argv + argc + 1, argv + 1);
    argc -= 2;
    return isProved(Folder(homePath(argc, argv)));
}

void leaveOwnFolder(int argc, char *argv[], int result)
{
    const QString home = homePath(argc, argv);
    if (result != 0) {
        qInfo("The folder stays: %s", qPrintable(keepRedFolder(home)));
    } else if (isProved(Folder(home))) {
        QDir(home).removeRecursively();
    }
}

ProgramFolder::ProgramFolder()
    : Folder(QCoreApplication::applicationDirPath())
{
    if (!isProved(Folder(QFileInfo(path()).path()))) {
        qFatal("This program does not lie in a folder of its own: %s", qPrintable(path()));
    }
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    const QStringList names = QDir(path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                                     | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        if (name != program) {
            remove(name);
        }
    }
}

Tree ProgramFolder::tree() const
{
    Tree everything = Folder::tree();
    everything.remove(QFileInfo(QCoreApplication::applicationFilePath()).fileName());
    return everything;
}

} // namespace test
