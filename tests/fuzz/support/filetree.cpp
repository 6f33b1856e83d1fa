// SPDX-License-Identifier: MIT
#include "filetree.h"

#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fuzz {

namespace {

int openFolder(int parent, const char *name)
{
    const int folder = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    require(folder >= 0, name);
    return folder;
}

mode_t kindOf(int parent, const char *name)
{
    struct stat status = {};
    require(fstatat(parent, name, &status, AT_SYMLINK_NOFOLLOW) == 0, name);
    return status.st_mode & S_IFMT;
}

/// Hands every entry of the open folder \a folder, which is closed then, to \a visit.
template<typename Visitor> void visitEntries(int folder, const Visitor &visit)
{
    DIR *entries = fdopendir(folder);
    require(entries != nullptr, "A folder of the sandbox cannot be read");
    while (const dirent *entry = readdir(entries)) {
        const char *name = &entry->d_name[0];
        if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0
            && std::strcmp(name, overlookedName) != 0) {
            visit(name);
        }
    }
    closedir(entries);
}

QByteArray contentOf(int file)
{
    struct stat status = {};
    require(fstat(file, &status) == 0, "A file of the sandbox cannot be looked at");
    QByteArray content(static_cast<int>(status.st_size), Qt::Uninitialized);
    require(read(file, content.data(), static_cast<size_t>(content.size())) == content.size(),
            "A file of the sandbox cannot be read");
    close(file);
    return content;
}

QByteArray linkTarget(int parent, const char *name)
{
    std::array<char, PATH_MAX> target = {};
    const ssize_t size = readlinkat(parent, name, target.data(), target.size());
    require(size >= 0, name);
    return {target.data(), static_cast<int>(size)};
}

void addFolder(Tree &tree, int folder, const QString &prefix)
{
    visitEntries(folder, [&tree, folder, &prefix](const char *name) {
        const QString path = prefix + QString::fromUtf8(name);
        const mode_t kind = kindOf(folder, name);
        if (kind == S_IFLNK) {
            tree.insert(path + QLatin1Char('@'), linkTarget(folder, name));
        } else if (kind == S_IFDIR) {
            tree.insert(path + QLatin1Char('/'), QByteArray(""));
            addFolder(tree, openFolder(folder, name), path + QLatin1Char('/'));
        } else {
            tree.insert(path, contentOf(openat(folder, name, O_RDONLY | O_CLOEXEC)));
        }
    });
}

void removeEntries(int folder)
{
    visitEntries(folder, [folder](const char *name) {
        const bool isFolder = kindOf(folder, name) == S_IFDIR;
        if (isFolder) {
            removeEntries(openFolder(folder, name));
        }
        // The folder of an overlooked file stays with it.
        const bool removed = unlinkat(folder, name, isFolder ? AT_REMOVEDIR : 0) == 0;
        require(removed || errno == ENOTEMPTY, name);
    });
}

int openForWriting(const QByteArray &path)
{
    return open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
}

} // namespace

void require(bool done, const char *what)
{
    if (!done) {
        std::perror(what);
        std::_Exit(EXIT_FAILURE);
    }
}

Tree readTree(const QByteArray &folder)
{
    Tree tree;
    addFolder(tree, openFolder(AT_FDCWD, folder.constData()), QString());
    return tree;
}

void emptyFolder(const QByteArray &folder)
{
    removeEntries(openFolder(AT_FDCWD, folder.constData()));
}

void makeFolders(const QByteArray &folder)
{
    if (mkdir(folder.constData(), 0700) != 0 && errno == ENOENT) {
        makeFolders(folder.left(folder.lastIndexOf('/')));
        require(mkdir(folder.constData(), 0700) == 0, folder.constData());
    }
}

QByteArray readFile(const QByteArray &path)
{
    const int file = open(path.constData(), O_RDONLY | O_CLOEXEC);
    return file < 0 ? QByteArray() : contentOf(file);
}

void writeFile(const QByteArray &path, const QByteArray &content)
{
    int file = openForWriting(path);
    if (file < 0) {
        makeFolders(path.left(path.lastIndexOf('/')));
        file = openForWriting(path);
    }
    require(::write(file, content.constData(), static_cast<size_t>(content.size()))
                == content.size(),
            path.constData());
    close(file);
}

} // namespace fuzz
