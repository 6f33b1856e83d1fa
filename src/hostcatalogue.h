// SPDX-License-Identifier: MIT
#pragma once

#include "literals.h"

#include <QList>
#include <QString>
#include <QStringList>

class ManagerSettings;

/// \file
/// The hosts that the program knows: where each one's plug-in comes from and where it goes.

/// One install target.
struct PluginPathStruct {
    QString applicationName;         ///< host key, such as "maya"
    QString path;                    ///< the host's installation folder, without a trailing slash
    QString pluginSubFolder = ""_l1; ///< the plug-in's folder inside path: begins with
                                     ///< "/", or is empty
    QString sourceFolder = ""_l1;    ///< the shipped plug-in; empty for an unknown host
    int version = -9999; ///< the version that the manager wants; -9999 for an unknown host

    /// Where the plug-in goes: path and pluginSubFolder, joined as they stand. No trailing slash,
    /// unless path has one and pluginSubFolder is empty.
    QString targetFolder() const;
};

/// Returns the install targets of the host \a applicationName (a key of the host table, compared
/// case-sensitively) that is installed in the folder \a path, with the versions that the manager's
/// settings record (0 where they have none, or no number):
/// - a known host: one record;
/// - "3dsmax": six records, one a language, in the order CHS, DEU, ENU, FRA, JPN, KOR;
/// - an unknown key: one record with no folders of the plug-in and the version -9999.
///
/// \a path is kept as it stands; nothing here asks whether it exists. Logs "applicationName" and
/// "path" with their values. The tool's folder is the program's own.
QList<PluginPathStruct> getPluginInfoList(QString applicationName, QString path);

/// The same with the \a settings of the manager, for those who ask for many hosts: to open them
/// anew for each is felt.
QList<PluginPathStruct> getPluginInfoList(QString applicationName, QString path,
                                          const ManagerSettings &settings);

/// The settings' keys of all versions, as they stand in the file: "plugins/versionMaya" and so on.
QStringList versionKeys();

/// The same as getPluginInfoList() for the tool in the folder \a folder (no trailing slash)
/// with its \a settings. Logs nothing.
QList<PluginPathStruct> installTargets(QString applicationName, QString path, const QString &folder,
                                       const ManagerSettings &settings);
