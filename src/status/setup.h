// SPDX-License-Identifier: MIT
#pragma once

#include "hostcatalogue.h"
#include "managersettings.h"
#include "status/answer.h"
#include "status/options.h"

#include <QSet>

#include <functional>

/// \file
/// What the manager's folder asks for.

/// The settings of the manager and the install targets that they name.
struct Setup {
    QString folder;                  ///< the manager's
    QString user;                    ///< empty when logged out
    QString projects;                ///< the local projects folder
    bool copyTexFiles = true;        ///< whether textures are sent along
    QList<PluginPathStruct> targets; ///< in the order of the settings, those not asked for as well
    QList<Problem> problems;         ///< what keeps the settings from being read
};

/// Reads the settings in the folder that \a options name.
Setup readSetup(const Options &options);

/// Says which folder a text leads to.
using FolderName = std::function<QString(const QString &)>;

/// The one name of \a folder, all links in it resolved; what is not there yet keeps its words.
QString oneName(const QString &folder);

/// The plug-in folders that more than one of \a targets has, whatever their names: \a nameOf knows
/// which are the same.
QSet<QString> sharedFolders(const QList<PluginPathStruct> &targets,
                            const FolderName &nameOf = oneName);

/// An answer to the command of \a options, with nothing in it yet.
Answer emptyAnswer(const Options &options);

/// What can be said of \a target before anybody looks at it, with the version that is there.
HostAnswer describe(const PluginPathStruct &target);
