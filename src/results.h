// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// What the operations that can fail return, and what the manager reads in the exit code.

/// The results of operations. Callers ask only whether one is greater than 0.
namespace Result {
/// All done, or nothing was to be done.
inline constexpr int success = 0;

/// The copy of a plug-in: the manifest could not be written, or a file from before not replaced.
inline constexpr int notReplaced = 1;
/// An edit of a start-up file or script: a file could not be opened, read or written, or the
/// place of an earlier addition was not found.
inline constexpr int scriptNotInstalled = 1;

/// The copy of a plug-in: a placed file cannot be opened for reading and writing.
inline constexpr int rightsProblem = 2;
/// A removal: a listed file is there and could not be deleted.
inline constexpr int fileNotDeleted = 2;

/// A manager.cfg or a version.txt could not be written, or LightWave's configuration not opened.
inline constexpr int configurationNotWritten = 3;

/// The copy of a plug-in: there is no such source folder.
inline constexpr int sourceMissing = 4;
} // namespace Result

/// What the exit code tells the manager, beyond 0 for success and the results of removals.
namespace ExitCode {
/// The files of a plug-in could not be copied, or not all of them.
inline constexpr int pluginNotCopied = 2;
/// A manager.cfg or Maya's start-up script could not be written.
inline constexpr int configurationNotWritten = 3;
} // namespace ExitCode
