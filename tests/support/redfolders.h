// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// \file
/// Where cases work, and what stays of the red ones: the last ten of their folders, in "drask-red"
/// in the folder for temporary files.

namespace test {

/// Makes an empty folder in the folder for temporary files and returns its path. Its name is \a
/// name, the number of this process, and something random. Empty when there is none to be had.
QString makeTemporaryFolder(const QString &name);

/// Keeps the folder of a red case and returns where it is now; the oldest folder that is kept
/// beyond the tenth goes.
QString keepRedFolder(const QString &folder);

/// Keeps the folders of processes that did not come to their end, as if they were red.
void keepFoldersOfEndedProcesses();

} // namespace test
