// SPDX-License-Identifier: MIT
#pragma once

#include "hostcatalogue.h"
#include "managersettings.h"
#include "status/answer.h"
#include "status/options.h"

#include <QSet>

/// \file
/// What the manager's folder asks for.

/// The settings of the manager and the install targets that they name.
struct Setup {
    QString folder;                  ///< the manager's
    QString user;                    ///< empty when logged out
    QString projects;                ///< the local projects folder
    bool copyTexFiles = true;        ///< whether textures are sent along
    QList<PluginPathStruct> targets; ///< in the order of the settings, those not asked for as well
    QSet<QString> sharedFolders;     ///< plug-in folders that more than one target has
    QList<Problem> problems;         ///< what keeps the settings from being read
};

/// Reads the settings in the folder that \a options name.
Setup readSetup(const Options &options);

/// An answer to the command of \a options, with nothing in it yet.
Answer emptyAnswer(const Options &options);

/// What can be said of \a target before anybody looks at it, with the version that is there.
HostAnswer describe(const PluginPathStruct &target);
