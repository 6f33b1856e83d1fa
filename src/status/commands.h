// SPDX-License-Identifier: MIT
#pragma once

#include "status/answer.h"
#include "status/options.h"

#include <functional>

/// \file
/// The commands of drask-status. Each looks at the folder that the options name and changes
/// nothing.

/// Is told how far a command is: so many of so many, and what is looked at.
using Progress = std::function<void(int done, int all, const QString &what)>;

/// What a run of the installer would do now, in the mode that \a options name.
Answer plan(const Options &options);

/// Whether what is installed is whole, target by target.
Answer verify(const Options &options, const Progress &progress);

/// What the last run did, as its log and its error file tell it.
Answer report(const Options &options);

/// What is wrong with the set-up: the settings, the shipped plug-ins, the folders.
Answer doctor(const Options &options);
