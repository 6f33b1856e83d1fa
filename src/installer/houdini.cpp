// SPDX-License-Identifier: MIT
#include "installer/houdini.h"

#include "installer/plugininstaller.h"
#include "literals.h"
#include "textfile.h"

#include <QTextStream>

namespace {

/// The text up to the line after the marker, which is the assignment that an earlier run added.
struct EarlierAddition {
    QString text;
    QString assignment; ///< empty when there is none
    bool markerSeen = false;

    /// Adds \a line. Returns whether the line after it counts as well.
    bool take(const QString &line)
    {
        text += line + QLatin1Char('\n');
        if (line.contains(installedMarker)) {
            markerSeen = true;
        } else if (markerSeen) {
            assignment = line;
            return false;
        }
        return true;
    }
};

EarlierAddition earlierAddition(QString environment)
{
    EarlierAddition found;
    QTextStream lines(&environment);
    QString line;
    while (lines.readLineInto(&line) && found.take(line)) { }
    return found;
}

/// What counts of the file \a envFile; the rest is not even read. Empty where it cannot be read.
QString readEnvironment(const QString &envFile)
{
    EarlierAddition found;
    const bool isRead = visitLines(envFile,
                                   [&found](const QString &line) { return found.take(line); });
    return isRead ? found.text : QString();
}

} // namespace

ScriptEdit houdiniEdit(const QString &environment, const QString &folder)
{
    const QString newLine = "HOUDINI_PATH = \""_l1 + folder + ";$HOUDINI_PATH\""_l1;
    const EarlierAddition earlier = earlierAddition(environment);
    if (!earlier.assignment.isEmpty()) {
        // Deliberate (houdini-drops-the-rest): lines after the assignment go with an update.
        return lineUpdate(earlier.text, earlier.assignment, newLine);
    }
    return {ScriptEdit::Kind::Append,
            QLatin1Char('\n') + installedMarker + QLatin1Char('\n') + newLine + QLatin1Char('\n')};
}

int PluginInstaller::editHoudiniEnv(const QString &folder, const QString &envFile)
{
    const ScriptEdit edit = houdiniEdit(readEnvironment(envFile), folder);
    switch (edit.kind) {
    case ScriptEdit::Kind::Leave:
        break;
    case ScriptEdit::Kind::Append:
        return extendReadableScript(envFile, edit.text);
    case ScriptEdit::Kind::Rewrite:
        return rewriteScript(envFile, edit.text);
    }
    return 0;
}
