// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

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
    /// Returns 0, or 3 when the file cannot be opened; that logs "error writing version file: ".
    static int writeVersionFile(const QString &folder, const QString &version);

    /// Copies all files of the folder \a src and of its subfolders into \a dst, replacing what is
    /// there, and lists every placed file in the manifest \a dst + "/uninstall.ini" (UTF-8, one
    /// path a line, each ended by "\n"). Callers pass false for \a nested; only the calls for
    /// subfolders pass true, and add to the manifest of the outermost folder.
    ///
    /// Returns
    /// - 0: done, or nothing to do because only configuration is written;
    /// - 1: the manifest could not be opened, and nothing was copied; or an old file could not be
    ///   removed from a folder without subfolders;
    /// - 2: a placed file in a folder without subfolders cannot be opened for reading and writing;
    /// - 4: \a src, or one of its folders, does not exist; nothing is logged.
    ///
    /// Hidden files and folders are not copied; links are followed.
    int copyFolder(const QString &src, const QString &dst, bool nested);

    /// Writes the plug-in's configuration to the file \a path (a full name, "…/manager.cfg"): seven
    /// lines of UTF-8, ended by "\r\n" with \a windowsLineEnds and by "\n" without, the last by
    /// nothing. Line 4 is \a version. A file whose first seven lines say the same already is left
    /// as it is. Returns 0, or 3 when the file cannot be opened for writing.
    int writeConfig(const QString &path, const QString &version, bool windowsLineEnds) const;

    /// Adds the lines of the file \a templateFile to Maya's start-up script, the "userSetup.py" one
    /// level above the plug-in folder \a pluginFolder, or brings an earlier addition up to date.
    /// The user's script is kept once as "userSetup.py.draskbackup" in the plug-in folder.
    /// Returns 0 when the script is as it should be, 1 when a file cannot be opened.
    static int copyMayaUserSetup(const QString &templateFile, const QString &pluginFolder);

    /// Puts \a folder on Houdini's search path: adds a HOUDINI_PATH assignment to the file
    /// \a envFile ("…/houdini.env"), or updates the one that an earlier run added.
    /// Returns 0 when the file is as it should be, 1 when it cannot be opened.
    static int editHoudiniEnv(const QString &folder, const QString &envFile);

    /// Adds the line "import drask" to the Clarisse start-up script \a script, once.
    /// Returns 0 when the line is there, 1 when the file cannot be opened. Logs nothing.
    static int editClarisseStartup(const QString &script);

    /// Registers the plug-in in LightWave's configuration: its menu entry in the menu file of the
    /// folder \a folder (a name "LW….CFG") and its module, \a folder, in the extension file (a name
    /// "LW…EXT….CFG"). Files are UTF-8 with "\r\n" line ends. A file that mentions the plug-in is
    /// not changed. Returns 0, or 3 when a configuration file cannot be opened, which is logged.
    ///
    /// What is written depends on the backups (name + "_bak"): see backUpAndWrite() in
    /// lightwave.cpp.
    static int editLwvCfgFile(const QString &folder);

    /// Installs the three scripts of the XSI plug-in from \a sourceFolder into \a destFolder, with
    /// their place-holders replaced by paths in \a destFolder. Existing targets are overwritten;
    /// a source without lines leaves its target alone. Returns 0, or 1 at the first script that
    /// cannot be read or written, which is logged; scripts written before it stay.
    static int copyXSIPlugin(const QString &sourceFolder, const QString &destFolder);

private:
    bool openManifest(const QString &dst);
    int copySubFolders(const QString &src, const QString &dst, const QStringList &names);
    QStringList configLines(const QString &version) const;

    QString userName;
    QString appDirPath;
    QString projectsFolder;
    bool onlyWriteConfig;
    QByteArray cpuType;
    bool copyTexFiles;
    QFile uninstallFile;
};
