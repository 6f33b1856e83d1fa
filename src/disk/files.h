// SPDX-License-Identifier: MIT
#pragma once

#include "disk/folderlisting.h"

#include <QFile>
#include <QIODevice>
#include <QSettings>
#include <QString>

#include <memory>

/// \file
/// What a run asks the disk, and does to it, beyond copies and whole texts. Each goes to the
/// OtherDisk if there is one in place. Nothing here logs.

/// The folder that the program lies in, without a trailing slash.
QString toolFolder();

/// True when something is at \a path, links followed.
bool fileExists(const QString &path);

/// True when a folder is at \a path, links followed. An empty text is the working directory.
bool isFolder(const QString &path);

/// Makes the folder \a path with all that are missing above it. Returns whether it is there now.
bool makePath(const QString &path);

/// Removes the file or link \a path. Returns false if there is none, or if it stays.
bool removeFile(const QString &path);

/// Copies the file \a source to \a target with the outcome of QFile::copy().
bool copyFile(const QString &source, const QString &target);

/// Hands each entry of the folder \a path to \a visit, as visitEntries() does.
bool visitFolder(const QString &path, const EntryVisitor &visit);

/// Opens \a file for writing and empties it; makes it if it is missing. Returns whether it is open.
bool openAnew(QFile &file);

/// Writes \a text behind what \a file, which openAnew() opened, holds already. Returns whether all
/// that was written to it so far has left the program.
bool addTo(QFile &file, const QByteArray &text);

/// Opens the file \a path with \a mode, for reading. Returns null if it cannot be opened; \a
/// reason, if given, becomes Qt's words for that.
std::unique_ptr<QIODevice> openToRead(const QString &path, QIODevice::OpenMode mode,
                                      QString *reason = nullptr);

/// Settings in the platform's own format. What is set is stored when the object goes away.
class NativeSettings {
public:
    /// \a name is the way to the settings, as QSettings takes it.
    explicit NativeSettings(const QString &name);
    ~NativeSettings();
    NativeSettings(const NativeSettings &) = delete;
    NativeSettings &operator=(const NativeSettings &) = delete;
    NativeSettings(NativeSettings &&) = delete;
    NativeSettings &operator=(NativeSettings &&) = delete;

    /// Gives \a key the value \a value.
    void set(const QString &key, const QString &value);

private:
    const QString file;
    std::unique_ptr<QSettings> settings; ///< none on an imagined disk
    QList<QPair<QString, QString>> values;
};
