// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

/// \file
/// The removal of plug-ins of an earlier generation, which left no manifest.

/// Removes the files of plug-ins of an earlier generation. It is given a list of host programs,
/// works out where each host kept the old plug-in, and deletes there every file whose name is on
/// the legacy file list. Folders stay, hidden entries are not looked at, and linked folders are not
/// entered. Nothing here fails or logs: what is missing or cannot be deleted is passed over.
class Ov3Uninstaller {
public:
    /// Deletes the legacy files of all hosts that \a listFile names (see findPluginFolders()).
    /// Always returns 0.
    static int deleteOldPlugins(QString listFile);

    /// Reads the file \a listFile (local 8-bit encoding) and returns the old plug-in folders that
    /// exist, in file order and with repetitions. Each line that begins with "path" names one host
    /// program: the text behind the first "=", or the whole line without one, trimmed. An
    /// unreadable file names none.
    static QList<QString> findPluginFolders(const QString &listFile);

    /// Returns the full paths of all files anywhere below \a folder whose name is on the legacy
    /// file list (case-sensitive), in the order of the walk.
    static QList<QString> findPluginFiles(const QString &folder);

    /// Returns the old plug-in folder of the host program \a path, whether or not it exists; or an
    /// empty text for a path in which no host is recognised. The detectors below are asked in the
    /// order in which they stand, and the first that says yes decides.
    static QString getProgramPluginFolder(const QString &path);

    /// \name Detectors
    /// Each recognises its host by a word anywhere in the path of a host program, folders included,
    /// in any letter case.
    /// \{

    /// Cinema 4D: \a path holds "cinema" or "c4d".
    static bool isC4DPath(const QString &path);
    /// 3ds Max: \a path holds "3ds".
    static bool isMaxPath(const QString &path);
    /// Maya: \a path holds "maya".
    static bool isMayaPath(const QString &path);
    /// Softimage XSI: \a path holds "xsi".
    static bool isXsiPath(const QString &path);
    /// LightWave: \a path holds "lightwav" or "layout".
    static bool isLwvPath(const QString &path);
    /// Modo: \a path holds "modo".
    static bool isModoPath(const QString &path);
    /// Blender: \a path holds "blender".
    static bool isBlenderPath(const QString &path);
    /// \}

    /// \name Getters
    /// Each returns the folder of the old plug-in for the path of a host program, whether or not it
    /// exists: a folder beside the program, made absolute, without a trailing slash.
    /// \{

    /// Returns "/Plugins/Drask" beside the program \a path.
    static QString getC4DPath(const QString &path);
    /// Returns "/scripts/startup/drask" beside the program \a path.
    static QString getMaxPath(const QString &path);
    /// Returns "/scripts/Drask" beside the program \a path.
    static QString getMayaPath(const QString &path);
    /// Returns "/Plugins" beside the program \a path, the folder of all plug-ins.
    static QString getXsiPath(const QString &path);
    /// Returns "/Plugins/Drask" beside the program \a path.
    static QString getLwvPath(const QString &path);
    /// Returns "/drask" beside the program \a path.
    static QString getModoPath(const QString &path);
    /// Returns "/scripts/startup/adrask" in the highest version folder from "2.99" down to "2.58"
    /// that exists beside the program \a path; an empty text when none does.
    static QString getBlenderPath(const QString &path);
    /// \}
};
