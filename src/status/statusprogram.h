// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// The program drask-status, from its words to its exit code.

/// Runs the command that the words name, prints its answer on the standard output and returns its
/// exit code (see exitCodeOf()), or 1 for words that make no command, which it says on the standard
/// error. \a argc and \a argv are those of main(). Writes no file and starts no program.
int runStatus(int argc, char *argv[]);
