// SPDX-License-Identifier: MIT
#pragma once

#include "disk/folderlisting.h"

#include <QByteArray>
#include <QFile>
#include <QIODevice>
#include <QList>
#include <QPair>
#include <QString>

/// \file
/// A disk that is only imagined.

/// While one is in place, all that the program would do to the machine goes to it: everything in
/// src/disk asks it first, and so does the start of a companion program. So a run can be foretold
/// by the very code that does it. The installer never puts one in place.
///
/// Each operation answers for what src/disk promises of the one of the same name.
class OtherDisk {
public:
    OtherDisk() = default;
    virtual ~OtherDisk() = default;
    OtherDisk(const OtherDisk &) = delete;
    OtherDisk &operator=(const OtherDisk &) = delete;
    OtherDisk(OtherDisk &&) = delete;
    OtherDisk &operator=(OtherDisk &&) = delete;

    /// The one in place; null when the real disk is meant.
    static OtherDisk *inPlace();

    /// While it lives, \a disk is in place.
    class Guard {
    public:
        /// Puts \a disk in place.
        explicit Guard(OtherDisk &disk);
        ~Guard();
        Guard(const Guard &) = delete;
        Guard &operator=(const Guard &) = delete;
        Guard(Guard &&) = delete;
        Guard &operator=(Guard &&) = delete;
    };

    /// The folder that the tool is taken to lie in, without a trailing slash.
    virtual QString toolFolder() const = 0;
    /// What the program \a program would write to its standard output.
    virtual QByteArray outputOf(const QString &program) = 0;

    /// fileExists()
    virtual bool exists(const QString &path) = 0;
    /// isFolder() of files.h
    virtual bool isFolder(const QString &path) = 0;
    /// makePath() of files.h
    virtual bool makePath(const QString &path) = 0;
    /// removeFile() of files.h
    virtual bool removeFile(const QString &path) = 0;
    /// copyFile() of files.h, and FileCopier
    virtual bool copyFile(const QString &source, const QString &target) = 0;
    /// PlacedFiles::open()
    virtual bool openPlaced(const QString &path) = 0;
    /// visitFolder()
    virtual bool visitEntries(const QString &folder, const EntryVisitor &visit) = 0;
    /// openToRead(): \a bytes becomes all that the file holds. Returns false if it cannot be
    /// opened.
    virtual bool readBytes(const QString &path, QByteArray &bytes) = 0;
    /// writeWhole() of wholefile.h
    virtual bool writeWhole(const QString &path, QIODevice::OpenMode mode,
                            const QByteArray &content) = 0;
    /// appendToFile()
    virtual bool appendTo(const QString &path, const QByteArray &bytes) = 0;
    /// clearUnfinished() of standin.h
    virtual void clearUnfinished(const QString &path) = 0;
    /// openAnew() of files.h
    virtual bool openAnew(QFile &file) = 0;
    /// addTo() of files.h
    virtual bool addTo(QFile &file, const QByteArray &text) = 0;
    /// NativeSettings: \a values are the keys and what they are set to.
    virtual void storeNative(const QString &file, const QList<QPair<QString, QString>> &values) = 0;
};
