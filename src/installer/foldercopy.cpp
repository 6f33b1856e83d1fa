// SPDX-License-Identifier: MIT
#include "installer/foldercopy.h"

#include "disk/diskwait.h"
#include "disk/filecopy.h"
#include "disk/files.h"
#include "installer/plugininstaller.h"
#include "literals.h"
#include "messages.h"
#include "results.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace {

/// An empty name would mean the working directory, which is nobody's plug-in.
bool isShipped(const QString &path)
{
    return !path.isEmpty() && isFolder(path);
}

/// Adds a line to \a manifest, at once: a manager may watch it grow, and a removal after a crash
/// needs it. What could not be written goes out with the next line.
int list(const QString &file, QFile &manifest)
{
    const QByteArray line = file.toUtf8() + '\n';
    if (addTo(manifest, line)) {
        return Result::success;
    }
    qDebug() << Message::fileNotListed << file;
    return Result::notReplaced;
}

/// Puts a fresh copy of the file \a source at \a target and says in \a manifest that it did.
int placeFile(const QString &source, const QString &target, QFile &manifest, PlacedFiles &placed)
{
    const bool wasThere = fileExists(target);
    // A copy that is not removed again needs no second name. Otherwise it gets that in the folder
    // of the manifest, where each run looks for leftovers.
    FileCopier copier(source, wasThere ? QString() : QFileInfo(manifest).path());
    // Deliberate (file-copied-twice): where there is a file already, the first copy does nothing.
    const bool isThere = wasThere || copier.copyTo(target);
    int result = Result::success;
    if (isThere && !removeFile(target)) {
        qDebug() << Message::fileNotRemoved << target;
        result = Result::notReplaced;
    } else if (!copier.copyTo(target)) {
        // Deliberate (failed-copy-is-no-failure): the rights check below decides.
        qDebug() << Message::fileNotCopied << source << Message::copiedTo << target;
    } else if (isListed(target)) {
        result = list(target, manifest);
    }
    if (!placed.open(target)) {
        qDebug() << Message::fileNotWritable << target;
        result = Result::rightsProblem;
    }
    return result;
}

/// Lists the shelf that the Maya plug-in makes for itself, so that an uninstall takes it along.
/// Deliberate (shelf-for-every-folder): uninstallers skip what is gone.
int listMayaShelf(const QString &src, const QString &dst, QFile &manifest)
{
    if (!makesShelf(src)) {
        return Result::success;
    }
    return list(dst.left(dst.lastIndexOf("/scripts"_l1)) + shelfFile, manifest);
}

/// A folder of a plug-in. What cannot be listed is not copied, so the log says so, once.
class ShippedFolder {
public:
    explicit ShippedFolder(QString folder)
        : path(std::move(folder))
    {
    }

    /// The names of its files, or of its folders, each after a "/". They are one text, since a list
    /// of so many objects would make memory grow with the plug-in.
    QByteArray names(EntryKind wanted)
    {
        QByteArray names;
        const bool isComplete = visitFolder(path, [&](const QByteArray &name, EntryKind kind) {
            if (kind == EntryKind::LinkedFolder) {
                kind = EntryKind::Folder;
            }
            // A link to a device is both to Qt: it is copied, and then a folder that is not there.
            if (kind == wanted || kind == EntryKind::LinkedDevice) {
                names += '/' + name;
            }
        });
        if (!isComplete && !std::exchange(isGapLogged, true)) {
            qDebug() << Message::folderNotListed << path;
        }
        return names;
    }

private:
    const QString path;
    bool isGapLogged = false;
};

/// Calls \a act with each of the \a names, the "/" included, until that returns false.
template<typename Act> void forEachName(const QByteArray &names, Act act)
{
    for (auto begin = 0 * names.size(); begin < names.size();) {
        const auto next = names.indexOf('/', begin + 1);
        const auto end = next < 0 ? names.size() : next;
        if (!act(QFile::decodeName(names.mid(begin, end - begin)))) {
            return;
        }
        begin = end;
    }
}

/// A copy of which only later showed that the disk cannot hold it.
void logLostCopies(PlacedFiles &placed)
{
    const QStringList lost = placed.bringToDisk();
    for (const QString &file : lost) {
        qDebug() << Message::fileLost << file;
    }
}

} // namespace

bool isListed(const QString &target)
{
    return !target.contains("drask_uninstall"_l1);
}

bool makesShelf(const QString &source)
{
    return source.contains("plugins/maya"_l1);
}

bool PluginInstaller::openManifest(const QString &dst)
{
    // Deliberate (log-names-manifest-before): the new name is set below.
    qDebug() << Message::copyStarts << uninstallFile.fileName();
    uninstallFile.setFileName(dst + "/uninstall.ini"_l1);
    if (!openAnew(uninstallFile)) {
        qDebug() << Message::cannotOpen << uninstallFile.fileName() << Message::forWriting;
        return false;
    }
    return true;
}

bool PluginInstaller::closeManifest()
{
    const bool isWritten = bringToDisk(uninstallFile);
    if (!isWritten) {
        qDebug() << Message::manifestLost << uninstallFile.fileName();
    }
    uninstallFile.close();
    return isWritten;
}

int PluginInstaller::copyFolder(const QString &src, const QString &dst, bool nested)
{
    if (onlyWriteConfig) {
        qDebug() << Message::copyLeftOut;
        return Result::success;
    }
    PlacedFiles placed;
    const int result = copyTree(src, dst, nested ? Level::Nested : Level::Top, placed);
    logLostCopies(placed);
    return result;
}

int PluginInstaller::copyTree(const QString &src, const QString &dst, Level level,
                              PlacedFiles &placed)
{
    if (!isShipped(src)) {
        return Result::sourceMissing;
    }
    if (!isFolder(dst)) {
        static_cast<void>(makePath(dst));
    }
    // Listed before anything is written: the two folders may be one and the same.
    ShippedFolder shipped(src);
    const QByteArray files = shipped.names(EntryKind::File);
    if (level == Level::Top && !openManifest(dst)) {
        return Result::notReplaced;
    }
    int result = copyFiles(files, src, dst, placed);
    const QByteArray subFolders = shipped.names(EntryKind::Folder);
    if (!subFolders.isEmpty()) {
        // Deliberate (folder-forgets-its-failures): only the subfolders count.
        result = copySubFolders(subFolders, src, dst, placed);
        if (result > Result::success) {
            // Deliberate (open-manifest): the next host's copy closes it.
            return result;
        }
    }
    if (level == Level::Top) {
        logLostCopies(placed);
        if (!closeManifest() && result == Result::success) {
            result = Result::notReplaced;
        }
    }
    return result;
}

int PluginInstaller::copyFiles(const QByteArray &names, const QString &src, const QString &dst,
                               PlacedFiles &placed)
{
    int result = Result::success;
    const auto note = [&](int fileResult) {
        if (fileResult != Result::success) {
            result = fileResult;
        }
        return true;
    };
    forEachName(names, [&](const QString &name) {
        return note(placeFile(src + name, dst + name, uninstallFile, placed));
    });
    note(listMayaShelf(src, dst, uninstallFile));
    return result;
}

int PluginInstaller::copySubFolders(const QByteArray &names, const QString &src, const QString &dst,
                                    PlacedFiles &placed)
{
    int result = Result::success;
    forEachName(names, [&](const QString &name) {
        result = copyTree(src + name, dst + name, Level::Nested, placed);
        return result <= Result::success;
    });
    return result;
}
