// SPDX-License-Identifier: MIT
#pragma once

#include "workstation.h"

#include <QJsonObject>
#include <QStringList>

/// \file
/// drask-status, started as people and machines start it.
namespace test {

/// A template of Maya's start-up script that keeps all rules.
inline constexpr char mayaTemplate[] = "#drask_installed\n"
                                       "import sys, maya.utils\n"
                                       "def searchTab():\n"
                                       "\tsys.path.append( importable_path(u'__scriptpath__'))\n"
                                       "\timport draskshelf\n"
                                       "\tdraskshelf.init()\n"
                                       "maya.utils.executeDeferred(\"searchTab()\")\n";

/// What a run of drask-status left on the console.
struct StatusRun {
    int exitCode = -1;
    QByteArray output;
    QByteArray errors;
    QJsonObject json; ///< the output, if --json was among the words

    /// The host number \a index of the answer.
    QJsonObject host(int index = 0) const;
    /// The kinds of all problems, sorted; those of hosts as "key: kind".
    QStringList kinds() const;
    /// The paths of all problems of the kind \a kind.
    QStringList pathsOf(const QString &kind) const;
};

/// Whether this machine has what holds an output against the schema.
bool hasSchemaValidator();

/// What of the schema \a object does not keep; "ok" for nothing.
QByteArray judgementOf(const QJsonObject &object);

/// Runs drask-status for the tool's folder of \a workstation and holds every JSON output against
/// the schema, where that is possible: one that does not keep it ends the test program.
StatusRun runStatus(const Workstation &workstation, const QStringList &words,
                    const RunOptions &options = {});

} // namespace test
