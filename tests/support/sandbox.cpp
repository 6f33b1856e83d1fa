// SPDX-License-Identifier: MIT
#include "sandbox.h"

#include "entriesbelow.h"
#include "redfolders.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QtTest>

#include <filesystem>
#include <utility>

namespace test {

namespace {

// 2001-02-03 04:05:06 UTC
const QDateTime longAgo = QDateTime::fromSecsSinceEpoch(981173106);

/// Tests must not go on with a sandbox that is not as they made it.
void require(bool done, const QString &what)
{
    if (!done) {
        qFatal("The sandbox could not %s", qPrintable(what));
    }
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return QByteArray();
    }
    const QByteArray content = file.readAll();
    return content.isNull() ? QByteArray("") : content;
}

QString shown(const QByteArray &content)
{
    return content.isEmpty() ? "(empty)" : QString::fromUtf8(content.left(2000));
}

} // namespace

QStringList entriesBelow(const QString &folder)
{
    QStringList paths;
    std::error_code failure;
    const std::string root = QFile::encodeName(folder).toStdString();
    for (const auto &entry : std::filesystem::recursive_directory_iterator(root, failure)) {
        paths << QFile::decodeName(entry.path().c_str());
    }
    return paths;
}

Tree readTree(const QString &folder)
{
    Tree tree;
    const QStringList paths = entriesBelow(folder);
    for (const QString &path : paths) {
        const QString name = QDir(folder).relativeFilePath(path);
        const QFileInfo info(path);
        if (info.isSymLink()) {
            tree.insert(name + QLatin1Char('@'), info.symLinkTarget().toUtf8());
        } else if (info.isDir()) {
            tree.insert(name + QLatin1Char('/'), QByteArray(""));
        } else {
            tree.insert(name, contentOf(path));
        }
    }
    return tree;
}

void put(Tree &tree, const QString &path, const QByteArray &content)
{
    for (auto slash = path.indexOf('/'); slash >= 0; slash = path.indexOf('/', slash + 1)) {
        tree.insert(path.left(slash + 1), "");
    }
    tree.insert(path, content);
}

QStringList filesInCopyOrder(const QString &folder)
{
    const QDir dir(folder);
    QStringList files = dir.entryList(QDir::Files, QDir::Unsorted);
    const QStringList subFolders = dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString &subFolder : subFolders) {
        const QStringList below = filesInCopyOrder(folder + QLatin1Char('/') + subFolder);
        for (const QString &file : below) {
            files << subFolder + QLatin1Char('/') + file;
        }
    }
    return files;
}

QString treeDifference(const Tree &actual, const Tree &expected)
{
    QStringList lines;
    for (auto entry = expected.cbegin(); entry != expected.cend(); ++entry) {
        if (!actual.contains(entry.key())) {
            lines << "missing: " + entry.key();
        } else if (actual.value(entry.key()) != entry.value()) {
            lines << QStringLiteral("differs: %1\n--- expected\n%2\n--- actual\n%3")
                         .arg(entry.key(), shown(entry.value()), shown(actual.value(entry.key())));
        }
    }
    for (auto entry = actual.cbegin(); entry != actual.cend(); ++entry) {
        if (!expected.contains(entry.key())) {
            lines << "unexpected: " + entry.key();
        }
    }
    return lines.join(QLatin1Char('\n'));
}

Folder::Folder(QString folder)
    : root(std::move(folder))
{
}

QString Folder::path(const QString &relative) const
{
    return relative.isEmpty() ? root : root + QLatin1Char('/') + relative;
}

void Folder::write(const QString &relative, const QByteArray &content) const
{
    const QString name = path(relative);
    require(QDir().mkpath(QFileInfo(name).path()), "make folders for " + name);
    QFile file(name);
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(),
            "write " + name);
}

QByteArray Folder::read(const QString &relative) const
{
    return contentOf(path(relative));
}

bool Folder::exists(const QString &relative) const
{
    return QFileInfo::exists(path(relative));
}

void Folder::makeFolder(const QString &relative) const
{
    require(QDir().mkpath(path(relative)), "make " + relative);
}

void Folder::makeLink(const QString &target, const QString &relative) const
{
    require(QDir().mkpath(QFileInfo(path(relative)).path()) && QFile::link(target, path(relative)),
            "link " + relative);
}

void Folder::remove(const QString &relative) const
{
    const QFileInfo info(path(relative));
    require(info.isDir() && !info.isSymLink() ? QDir(path(relative)).removeRecursively()
                                              : QFile::remove(path(relative)),
            "remove " + relative);
}

void Folder::age(const QString &relative) const
{
    QFile file(path(relative));
    require(file.open(QIODevice::ReadWrite)
                && file.setFileTime(longAgo, QFileDevice::FileModificationTime),
            "age " + relative);
}

bool Folder::isAged(const QString &relative) const
{
    return QFileInfo(path(relative)).lastModified().toUTC() == longAgo;
}

Tree Folder::tree() const
{
    return readTree(path());
}

Sandbox::Sandbox()
    : Folder(makeTemporaryFolder("drask tést"))
{
    require(!root.isEmpty(), "be made");
    // Other users, as whom permission cases run, must be able to reach what is theirs.
    QFile::setPermissions(root,
                          QFile::permissions(root) | QFile::ReadGroup | QFile::ExeGroup
                              | QFile::ReadOther | QFile::ExeOther);
}

Sandbox::~Sandbox()
{
    if (QTest::currentTestFailed()) {
        qInfo("The sandbox stays: %s", qPrintable(keepRedFolder(root)));
    } else if (!QDir(root).removeRecursively()) {
        // What an ordinary user may not write could not be taken away.
        QProcess::execute("chmod", {"-R", "u+rwx", root});
        if (!QDir(root).removeRecursively()) {
            qWarning("The sandbox could not be removed: %s", qPrintable(root));
        }
    }
}

WorkingFolder::WorkingFolder(const QString &folder)
    : before(QDir::currentPath())
{
    require(QDir::setCurrent(folder), "enter " + folder);
}

WorkingFolder::~WorkingFolder()
{
    require(QDir::setCurrent(before), "go back to " + before);
}

} // namespace test
