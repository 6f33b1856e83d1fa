// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

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

    /// Each detector recognises its host by a word anywhere in \a path, in any letter case.
    static bool isC4DPath(const QString &path);
    static bool isMaxPath(const QString &path);
    static bool isMayaPath(const QString &path);
    static bool isXsiPath(const QString &path);
    static bool isLwvPath(const QString &path);
    static bool isModoPath(const QString &path);
    static bool isBlenderPath(const QString &path);

    /// Each getter returns the old plug-in folder of the host program \a path, which lies in the
    /// host's installation folder.
    static QString getC4DPath(const QString &path);
    static QString getMaxPath(const QString &path);
    static QString getMayaPath(const QString &path);
    static QString getXsiPath(const QString &path);
    static QString getLwvPath(const QString &path);
    static QString getModoPath(const QString &path);

    /// As above, in the highest version folder from "2.99" down to "2.58" that exists; an empty
    /// text when there is none.
    static QString getBlenderPath(const QString &path);
};
