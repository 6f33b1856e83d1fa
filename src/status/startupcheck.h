// SPDX-License-Identifier: MIT
#pragma once

#include "status/answer.h"

#include <optional>

/// \file
/// Whether hosts' start-up files hold what an installation puts into them.

/// A text, or nothing where there is no file.
using FileText = std::optional<QString>;

/// What is wrong with the start-up file of \a host, whose text is \a text.
QList<Problem> checkStartUpFile(const HostAnswer &host, const FileText &text);

/// The kind of a start-up file of \a host that cannot be read.
Kind unreadableStartUpFile(const HostAnswer &host);

/// What is wrong with Maya's start-up script \a file, whose text is \a script, for the plug-in in
/// \a pluginFolder.
QList<Problem> checkUserSetup(const FileText &script, const QString &file,
                              const QString &pluginFolder);

/// What is wrong with Houdini's environment file \a file, whose text is \a environment.
QList<Problem> checkHoudiniEnv(const FileText &environment, const QString &file);
