// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"

#include "literals.h"
#include "results.h"
#include "textfile.h"

#include <QDebug>
#include <QDir>
#include <QDirIterator>

namespace {

/// An empty name would mean the working directory, which is nobody's plug-in.
bool isFolder(const QString &path)
{
    return !path.isEmpty() && QDir(path).exists();
}

bool isReadWritable(const QString &path)
{
    return QFile(path).open(QIODevice::ReadWrite);
}

/// Puts a fresh copy of the file \a source at \a target and says in \a manifest that it did.
int copyFile(const QString &source, const QString &target, QTextStream &manifest)
{
    // Deliberate: a first copy, only to be removed, proves that the folder lets files be replaced.
    static_cast<void>(QFile::copy(source, target));
    int result = Result::success;
    if (QFile::exists(target) && !QFile::remove(target)) {
        qDebug() << "Could not remove file" << target;
        result = Result::notReplaced;
    } else if (!QFile::copy(source, target)) {
        // Deliberate: the result stays as it is; the rights check below decides.
        qDebug() << "Could not copy file " << source << " to " << target;
    } else if (!target.contains("drask_uninstall"_l1)) {
        manifest << target << Qt::endl;
    }
    if (!isReadWritable(target)) {
        qDebug() << "exist check failed - rights problem" << target;
        result = Result::rightsProblem;
    }
    return result;
}

/// The shelf that the Maya plug-in makes for itself, listed so that an uninstall takes it along.
/// Deliberate: once for every folder of the plug-in; uninstallers skip what is gone.
void listMayaShelf(const QString &src, const QString &dst, QTextStream &manifest)
{
    if (src.contains("plugins/maya"_l1)) {
        manifest << dst.left(dst.lastIndexOf("/scripts"_l1)) << "/prefs/shelves/shelf_DraskGrex.mel"
                 << Qt::endl;
    }
}

/// The names of the plain files of \a folder, unsorted, each ended by "/". They are one text, since
/// a list of so many objects would make memory grow with the plug-in.
QString listFiles(const QString &folder)
{
    QString names;
    QDirIterator files(folder, QDir::Files);
    while (files.hasNext()) {
        files.next();
        names += files.fileName() + QLatin1Char('/');
    }
    return names;
}

/// Copies the files \a names. Returns what the last one that failed met.
int copyFiles(const QString &names, const QString &src, const QString &dst, QTextStream &manifest)
{
    int result = Result::success;
    for (int begin = 0; begin < names.size();) {
        const int end = names.indexOf(QLatin1Char('/'), begin);
        const QString name = QLatin1Char('/') + names.mid(begin, end - begin);
        const int fileResult = copyFile(src + name, dst + name, manifest);
        if (fileResult != Result::success) {
            result = fileResult;
        }
        begin = end + 1;
    }
    return result;
}

} // namespace

bool PluginInstaller::openManifest(const QString &dst)
{
    // Deliberate: the name logged is still that of the manifest before; support follows the hosts
    // by it.
    qDebug() << "open file: " << uninstallFile.fileName();
    uninstallFile.setFileName(dst + "/uninstall.ini"_l1);
    if (!uninstallFile.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        qDebug() << "cannot open " << uninstallFile.fileName() << " for writing";
        return false;
    }
    return true;
}

int PluginInstaller::copySubFolders(const QString &src, const QString &dst,
                                    const QStringList &names)
{
    for (const QString &name : names) {
        const QString subFolder = QLatin1Char('/') + name;
        const int result = copyFolder(src + subFolder, dst + subFolder, true);
        if (result > 0) {
            return result;
        }
    }
    return Result::success;
}

int PluginInstaller::copyFolder(const QString &src, const QString &dst, bool nested)
{
    if (onlyWriteConfig) {
        qDebug() << "only write config, do not copy files";
        return Result::success;
    }
    if (!isFolder(src)) {
        return Result::sourceMissing;
    }
    if (!QDir(dst).exists()) {
        static_cast<void>(QDir().mkpath(dst));
    }
    // Listed before anything is written: the two folders may be one and the same.
    const QString files = listFiles(src);
    if (!nested && !openManifest(dst)) {
        return Result::notReplaced;
    }
    // Every line end flushes, so that the lines of the subfolders come behind those of this folder.
    Utf8Stream manifest(&uninstallFile);
    int result = copyFiles(files, src, dst, manifest);
    listMayaShelf(src, dst, manifest);

    const QStringList subFolders = QDir(src).entryList(QDir::Dirs | QDir::NoDotAndDotDot,
                                                       QDir::Unsorted);
    if (!subFolders.isEmpty()) {
        // Deliberate: a folder with subfolders forgets what its own files met.
        result = copySubFolders(src, dst, subFolders);
        if (result > 0) {
            // Deliberate: the manifest stays open; the next host's copy closes it.
            return result;
        }
    }
    if (!nested) {
        uninstallFile.close();
    }
    return result;
}
