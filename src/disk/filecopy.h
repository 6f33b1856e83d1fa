// SPDX-License-Identifier: MIT
#pragma once

#include "disk/descriptor.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <vector>

/// \file
/// How a copied file comes onto the disk.

/// Makes copies of one file. Where the system has files without a name, a copy takes a quarter of
/// the calls of QFile::copy(), and it is left to PlacedFiles to wait for the disk.
///
/// A copy that is made only to be removed and made again need not carry the bytes twice: until
/// then it has a second name, that of a StandIn in a folder of the caller's choice. A run that is
/// killed in between leaves it there, for clearUnfinished() to find.
class FileCopier {
public:
    /// \a source is the file to copy: a full name. It is opened by the first copy. The second name
    /// of that copy is in \a spareFolder, without a trailing slash; if empty, there is none.
    explicit FileCopier(QString source, const QString &spareFolder = {});
    /// Takes the second name away.
    ~FileCopier();
    FileCopier(const FileCopier &) = delete;
    FileCopier &operator=(const FileCopier &) = delete;
    FileCopier(FileCopier &&) = delete;
    FileCopier &operator=(FileCopier &&) = delete;

    /// Copies the file to \a target, with the outcome of QFile::copy(): where there is a \a target
    /// already, a dangling link included, nothing happens; otherwise it gets the content and the
    /// permission bits of the file, and nobody ever sees half of it. Returns whether \a target is
    /// a copy now. A false leaves nothing behind. Logs nothing.
    bool copyTo(const QString &target);

private:
    std::optional<bool> copyThroughUnnamedFile(const QByteArray &target);
    std::optional<bool> placeSpare(const QByteArray &target);
    void keepSpare(Descriptor copy);
    void dropSpare();
    bool open();

    QString path;
    Descriptor file; ///< the source, once it was opened
    qint64 size = 0;
    unsigned int permissions = 0;
    const QByteArray spareName; ///< what the second name would be
    Descriptor spare;           ///< the copy that has it; none while nothing has
};

/// The files that a copy has placed and that may have yet to reach the disk. To wait for many at
/// once is cheaper than to wait for each. It holds some dozens of files open, however many there
/// are, and at most a quarter of those that the process may.
class PlacedFiles {
public:
    PlacedFiles();
    /// Calls bringToDisk().
    ~PlacedFiles();
    PlacedFiles(const PlacedFiles &) = delete;
    PlacedFiles &operator=(const PlacedFiles &) = delete;
    PlacedFiles(PlacedFiles &&) = delete;
    PlacedFiles &operator=(PlacedFiles &&) = delete;

    /// Opens the file \a path for reading and writing, which makes an empty one where there is
    /// none, and keeps it in mind; one that may only be read, too. Returns whether it could be
    /// opened for both. Logs nothing.
    bool open(const QString &path);

    /// Waits until all the files, and their names in their folders, are on the disk. Returns those
    /// whose content could not be written since the last call. Logs nothing.
    QStringList bringToDisk();

private:
    struct Placed {
        int descriptor;
        QString path;
    };

    void bringOpenFilesToDisk();

    const std::size_t filesAWait;
    std::vector<Placed> files;
    QStringList lost;
};
