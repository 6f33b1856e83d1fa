// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

/// \file
/// The installation of one plug-in into one host.

class PlacedFiles;

/// Installs plug-ins into host folders and edits the start-up files of hosts. One object serves a
/// whole run; it holds what its writers share.
///
/// Folders are given without a trailing slash. Every operation that can fail returns 0 for success
/// and a value greater than 0 for failure, and logs what went wrong unless it says otherwise.
class PluginInstaller {
public:
    /// \a appDir is the program's own folder; \a user and \a projects (the local projects folder)
    /// are written to every manager.cfg. With \a configOnly no plug-in files are copied.
    /// \a withTextures is the user's choice to send textures along. Logs "version: " and the
    /// plug-in generation.
    PluginInstaller(QString appDir, QString user, QString projects, bool configOnly,
                    bool withTextures);

    /// Runs the program "cputype" that lies beside this one, for at most 30 seconds, and keeps what
    /// it wrote to its standard output, byte for byte, for line 5 of every manager.cfg. Whatever
    /// fails leaves what has arrived until then. Logs nothing.
    void readCPUinfo();

    /// Writes \a version, as UTF-8 and without a line end, to \a folder + "/version.txt".
    /// An older file is replaced. Returns 0, or 3 when the file cannot be written; that logs "error
    /// writing version file: " and \a folder. No folder is made.
    static int writeVersionFile(const QString &folder, const QString &version);

    /// Copies all files of the folder \a src and of its subfolders into \a dst, replacing what is
    /// there, and lists every placed file in the manifest \a dst + "/uninstall.ini" (UTF-8, one
    /// path a line, each ended by "\n"; PluginUninstaller reads it). A file whose path holds
    /// "drask_uninstall" is copied and not listed. For Maya's plug-in the manifest also names the
    /// shelf that Maya will make. Callers pass false for \a nested; only the calls for
    /// subfolders pass true, and add to the manifest of the outermost folder.
    ///
    /// Returns
    /// - 0: done, or nothing to do because only configuration is written;
    /// - 1: the manifest could not be opened, and nothing was copied; or it could not be written to
    ///   its end; or an old file could not be removed from a folder without subfolders;
    /// - 2: a placed file in a folder without subfolders cannot be opened for reading and writing;
    /// - 4: \a src, or one of its folders, does not exist; nothing is logged.
    ///
    /// Hidden files and folders are not copied; links are followed. All files have reached the disk
    /// when this returns. Logs each file that could not be removed, copied, opened, listed or
    /// brought to the disk, and the name that the manifest had before.
    int copyFolder(const QString &src, const QString &dst, bool nested);

    /// Writes the plug-in's configuration to the file \a path (a full name, "…/manager.cfg"): seven
    /// lines of UTF-8, ended by "\r\n" with \a windowsLineEnds and by "\n" without, the last by
    /// nothing. They are the user, the projects folder, the manager's drop program, \a version, the
    /// CPU type in URL-safe base64, "1", and "1" or "0" for the textures. A file whose first seven
    /// lines say the same already is left as it is. Returns 0, or 3 when the file cannot be
    /// written. Logs whether the file was there, and whether it is written.
    int writeConfig(const QString &path, const QString &version, bool windowsLineEnds) const;

    /// Adds the lines of the file \a templateFile to Maya's start-up script, the "userSetup.py" one
    /// level above the plug-in folder \a pluginFolder, or brings an earlier addition up to date.
    /// The user's script is kept once as "userSetup.py.draskbackup" in the plug-in folder. Both
    /// files are UTF-8. An earlier addition is known by the marker (see installedMarker) and the
    /// path line behind it; the place-holders of the template become \a pluginFolder.
    /// Returns 0 when the script is as it should be, 1 when the template or the script cannot be
    /// opened or the ends of the earlier addition are not found, which is logged.
    static int copyMayaUserSetup(const QString &templateFile, const QString &pluginFolder);

    /// Puts \a folder on Houdini's search path: adds a HOUDINI_PATH assignment to the file
    /// \a envFile ("…/houdini.env", UTF-8), or updates the one that an earlier run added; then
    /// the lines behind it go. \a folder is written as it stands. Returns 0 when the file is as it
    /// should be, 1 when it cannot be written: logged when an assignment was to be updated, silent
    /// when one was to be added.
    static int editHoudiniEnv(const QString &folder, const QString &envFile);

    /// Adds the line "import drask" to the Clarisse start-up script \a script (a full name; UTF-8),
    /// once, and makes the script when there is none. Returns 0 when the line is there, 1 when the
    /// file cannot be written. Logs nothing. Library only: no mode calls it.
    static int editClarisseStartup(const QString &script);

    /// Adds the plug-in's entry to the menu file of LightWave's configuration in the folder
    /// \a folder (a name "LW….CFG"), and writes the menu's text to the extension file (a name
    /// "LW…EXT….CFG") too. Files are UTF-8 with "\r\n" line ends. A file that mentions the plug-in
    /// is not changed. Returns 0, or 3 when a configuration file cannot be opened, which is logged.
    /// Library only: no mode calls it.
    ///
    /// What is written depends on the backups (name + "_bak"): see backUpAndWrite() in
    /// lightwave.cpp.
    static int editLwvCfgFile(const QString &folder);

    /// Installs the three scripts of the XSI plug-in ("grex.js", "drask_main.js" and "drask.js",
    /// UTF-8) from \a sourceFolder into \a destFolder, with their place-holders replaced by paths
    /// in \a destFolder, as it stands. Lines end with "\n". Existing targets are overwritten; a
    /// source without lines leaves its target alone. Returns 0, or 1 at the first script that
    /// cannot be read or written, which is logged; scripts written before it stay. Library only: no
    /// mode calls it.
    static int copyXSIPlugin(const QString &sourceFolder, const QString &destFolder);

private:
    enum class Level { Top, Nested };

    bool openManifest(const QString &dst);
    bool closeManifest();
    int copyTree(const QString &src, const QString &dst, Level level, PlacedFiles &placed);
    int copyFiles(const QByteArray &names, const QString &src, const QString &dst,
                  PlacedFiles &placed);
    int copySubFolders(const QByteArray &names, const QString &src, const QString &dst,
                       PlacedFiles &placed);

    QString userName;
    QString appDirPath;
    QString projectsFolder;
    bool onlyWriteConfig;
    QByteArray cpuType;
    bool copyTexFiles;
    QFile uninstallFile;
};
