// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

/// What the program was started for.
enum class RunMode {
    Install,
    OnlyWriteConfig,
    Reinstall,
    UninstallAll,
    UninstallPlugin,
    Ov3Uninstall,
};

/// The command line, understood.
struct CommandLine {
    RunMode mode = RunMode::Install;
    QString operand; ///< of the modes that take one; else empty
};

/// Reads the command line \a words (the program's name first, in the local 8-bit encoding). Mode
/// words match whole and case-sensitively; one that needs an operand counts only when that follows.
/// Whatever is unknown is ignored and means Install.
CommandLine readCommandLine(const std::vector<const char *> &words);
