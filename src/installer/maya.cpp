// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"

#include "installer/scriptedit.h"
#include "literals.h"
#include "results.h"
#include "textfile.h"

#include <QDebug>

namespace {

constexpr QLatin1String pathLinePrefix = "\tsys.path.append( importable_path("_l1;
constexpr QLatin1String shelfCall = "draskshelf.init()"_l1;
constexpr QLatin1String deferredCall = "maya.utils.executeDeferred(\"searchTab()\")"_l1;

/// \a folder as it may stand inside a single-quoted Python string.
QString escapedPath(const QString &folder)
{
    return QString(folder).replace(QLatin1Char('\''), "\\'"_l1);
}

QString withPath(QString text, const QString &path)
{
    return text.replace("__scriptpath__"_l1, path)
        .replace("__scriptPath__"_l1, path)
        .replace("__ScriptPath__"_l1, path);
}

ScriptScan scanUserSetup(const QString &target)
{
    ScriptScan scan;
    const bool wasRead = visitLines(target, [&scan](const QString &line) {
        scan.content += line + "\r\n"_l1;
        scan.markerSeen = scan.markerSeen || line.contains(installedMarker);
        if (scan.markerSeen && line.startsWith(pathLinePrefix)) {
            scan.oldLine = line;
        }
        return true;
    });
    // Half a script must not be written back in the place of the whole.
    return wasRead ? scan : ScriptScan();
}

/// Puts \a block in the place of the block that an earlier run added to \a targetText, which
/// reaches from the marker to the end of the deferred call.
int replaceBlock(const QString &target, const QString &targetText, const QString &block)
{
    const int start = targetText.indexOf(installedMarker);
    const int end = targetText.indexOf(deferredCall) + deferredCall.size();
    if (start < 0 || end < 0) {
        qDebug() << "old positions not found";
        return Result::scriptNotInstalled;
    }
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        qDebug() << "Could not open target file2" << file.errorString();
        return Result::scriptNotInstalled;
    }
    const QLatin1String frame("\r\n");
    Utf8Stream(&file) << targetText.left(start) << frame << block << frame << targetText.mid(end);
    return 0;
}

int updateUserSetup(const QString &target, ScriptScan &scan, const QString &templateFile,
                    const QString &path)
{
    const QString templateText = readText(templateFile);
    const QString targetText = readText(target);
    if (templateText.contains(shelfCall) && targetText.contains(deferredCall)) {
        return replaceBlock(target, targetText, withPath(templateText, path));
    }
    const QString newLine = pathLinePrefix + "u'"_l1 + path + "'))"_l1;
    return replaceOldLine(target, scan, newLine);
}

int addToUserSetup(const QString &target, const QString &backup, const QString &templateFile,
                   const QString &path)
{
    if (!QFile::exists(backup)) {
        static_cast<void>(QFile::copy(target, backup));
    }
    QFile templateLines(templateFile);
    if (!templateLines.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug() << "1635 error " << templateFile;
        return Result::scriptNotInstalled;
    }
    Utf8Stream source(&templateLines);
    // Deliberate: nothing is written in front of the block, not even a missing line end; Maya
    // artists' scripts end with one.
    return writeLines(source, target, QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text,
                      [&path](const QString &line) { return withPath(line, path); });
}

} // namespace

int PluginInstaller::copyMayaUserSetup(const QString &templateFile, const QString &pluginFolder)
{
    const QString target = pluginFolder + "/../userSetup.py"_l1;
    // Deliberate: the backup lies in the plug-in folder, not beside the script.
    const QString backup = pluginFolder + "/userSetup.py.draskbackup"_l1;
    const QString path = escapedPath(pluginFolder);

    ScriptScan scan = scanUserSetup(target);
    return scan.hasOldLine() ? updateUserSetup(target, scan, templateFile, path)
                             : addToUserSetup(target, backup, templateFile, path);
}
