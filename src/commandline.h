// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

/// \file
/// The words with which the manager starts the program.

/// What the program was started for.
enum class RunMode {
    Install,         ///< bring the plug-ins of all listed hosts to the wanted version
    OnlyWriteConfig, ///< as Install, but no plug-in file is copied
    Reinstall,       ///< as Install, but every plug-in is copied, whatever version is there
    UninstallAll,    ///< go through all listed hosts to uninstall, and stop
    UninstallPlugin, ///< uninstall the plug-in of the one host that the operand names
    Ov3Uninstall,    ///< remove plug-ins of an earlier generation; the operand is a list file
};

/// The command line, understood.
struct CommandLine {
    RunMode mode = RunMode::Install; ///< what to do
    QString operand;                 ///< of the modes that take one; else empty
};

/// Reads the command line \a words (the program's name first, in the local 8-bit encoding). Mode
/// words match whole and case-sensitively; one that needs an operand counts only when that follows.
/// Whatever is unknown is ignored and means Install.
CommandLine readCommandLine(const std::vector<const char *> &words);
