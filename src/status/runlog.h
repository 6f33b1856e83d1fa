// SPDX-License-Identifier: MIT
#pragma once

#include "hostcatalogue.h"
#include "status/answer.h"

#include <functional>

/// \file
/// The story of a run of the installer, as its log and its error file tell it.

/// What the last run in a log did.
struct RunStory {
    RunFacts run;            ///< its mode and its end
    QList<HostAnswer> hosts; ///< in the order of the log
    QList<Problem> problems; ///< of the whole run
};

/// Gives the install targets of a host, by key and folder.
using TargetLookUp = std::function<QList<PluginPathStruct>(const QString &, const QString &)>;

/// Reads the text of plugin.log and, for what the log does not tell, that of pluginError.txt.
/// \a targetsOf says where the plug-ins of the hosts named in the log go. Of several runs in one
/// log the last is told. Lines that mean nothing here are passed over.
RunStory readRun(const QString &log, const QString &errors, const TargetLookUp &targetsOf);
