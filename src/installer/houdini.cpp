// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"

#include "installer/scriptedit.h"
#include "literals.h"
#include "textfile.h"

namespace {

/// Reads up to the line behind the marker, which is the assignment that an earlier run added.
ScriptScan scanEnvironment(const QString &envFile)
{
    ScriptScan scan;
    const bool wasRead = visitLines(envFile, [&scan](const QString &line) {
        scan.content += line + "\r\n"_l1;
        if (line.contains(installedMarker)) {
            scan.markerSeen = true;
        } else if (scan.markerSeen) {
            scan.oldLine = line;
            return false;
        }
        return true;
    });
    // Half a file must not be written back in the place of the whole.
    return wasRead ? scan : ScriptScan();
}

} // namespace

int PluginInstaller::editHoudiniEnv(const QString &folder, const QString &envFile)
{
    const QString newLine = "HOUDINI_PATH = \""_l1 + folder + ";$HOUDINI_PATH\""_l1;
    ScriptScan scan = scanEnvironment(envFile);
    if (scan.hasOldLine()) {
        // Deliberate: lines behind the assignment were not read and go with an update; the plug-in
        // in the field expects its assignment to be the last.
        return replaceOldLine(envFile, scan, newLine);
    }
    return appendText(envFile,
                      QLatin1Char('\n') + installedMarker + QLatin1Char('\n') + newLine
                          + QLatin1Char('\n'));
}
