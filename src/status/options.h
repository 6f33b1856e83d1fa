// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// \file
/// The command line of drask-status, understood.

/// Who the answer is for.
enum class Output { People, Machines };

/// Whether colour may be used where the output is a terminal.
enum class Colour { IfTerminal, Never };

/// How many entries of a kind are listed.
enum class Listing { First, All };

/// What the command line asks for.
struct Options {
    QString command;                ///< a name of the table of commands
    QString folder;                 ///< the manager's folder, absolute, without a trailing slash
    QString mode;                   ///< of plan: the word with which the installer would be started
    QStringList hosts = {};         ///< only these keys; empty: all
    Output output = Output::People; ///< machines with --json
    Colour colour = Colour::IfTerminal; ///< never with --no-colour
    Listing listing = Listing::First;   ///< all with --all

    /// True when the host \a key is asked for.
    bool wants(const QString &key) const;
};

/// What becomes of a command line.
struct ParsedWords {
    Options options; ///< what is asked for, if the other two are empty
    QString help;    ///< if not empty: print this, and end with 0
    QString error;   ///< if not empty: print this on the standard error, and end with 1
};

/// Understands \a words, the program's name first.
ParsedWords parseWords(const QStringList &words);
