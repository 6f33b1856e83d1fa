// SPDX-License-Identifier: MIT
#include "installer/maya.h"

#include "disk/files.h"
#include "installer/plugininstaller.h"
#include "installer/scriptedit.h"
#include "literals.h"
#include "messages.h"
#include "results.h"
#include "textfile.h"

#include <QDebug>
#include <QTextStream>

#include <optional>

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

/// The path line of an earlier run's addition; empty when none is recognised.
QString oldPathLine(QString script)
{
    QTextStream lines(&script);
    QString line;
    QString found;
    bool markerSeen = false;
    while (lines.readLineInto(&line)) {
        markerSeen = markerSeen || line.contains(installedMarker);
        if (markerSeen && line.startsWith(pathLinePrefix)) {
            found = line;
        }
    }
    return found;
}

/// Puts \a block in the place of the block that an earlier run added, which reaches from the marker
/// to the end of the deferred call.
MayaUpdate blockUpdate(const QString &script, const QString &block)
{
    const auto start = script.indexOf(installedMarker);
    if (start < 0) {
        return {MayaUpdate::Part::Lost, QString()};
    }
    const auto end = script.indexOf(deferredCall) + deferredCall.size();
    const QLatin1String frame("\r\n");
    return {MayaUpdate::Part::Block, script.left(start) + frame + block + frame + script.mid(end)};
}

/// The text of the script \a target now. A long one that is still \a before is held only once.
QString readAgain(const QString &target, const QString &before)
{
    const QString now = readText(target);
    return now == before ? before : now;
}

/// What is to become of the script \a target; nothing when it has no addition yet.
std::optional<MayaUpdate> dueUpdate(const QString &target, const QString &templateFile,
                                    const QString &pluginFolder)
{
    const QString script = readText(target);
    if (!hasMayaAddition(script)) {
        return std::nullopt;
    }
    const QString templateText = readText(templateFile);
    return mayaUpdate(script, readAgain(target, script), templateText, pluginFolder);
}

int updateUserSetup(const QString &target, const MayaUpdate &update)
{
    switch (update.part) {
    case MayaUpdate::Part::None:
        break;
    case MayaUpdate::Part::PathLine:
        return rewriteScript(target, update.script);
    case MayaUpdate::Part::Block:
        return rewriteScript(target, update.script, Message::blockNotReplaced);
    case MayaUpdate::Part::Lost:
        qDebug() << Message::blockNotFound;
        return Result::scriptNotInstalled;
    }
    return 0;
}

int addToUserSetup(const QString &target, const QString &backup, const QString &templateFile,
                   const QString &pluginFolder)
{
    if (!fileExists(backup)) {
        // NOLINTNEXTLINE(readability-suspicious-call-argument): the target is what is kept.
        static_cast<void>(copyFile(target, backup));
    }
    QString templateText;
    if (!readWholeText(templateFile, templateText)) {
        qDebug() << Message::templateNotOpened << templateFile;
        return Result::scriptNotInstalled;
    }
    // Deliberate (maya-nothing-before-block): not even a missing line end is written in front.
    const QString addition = mayaAddition(templateText, pluginFolder);
    return addition.isEmpty() ? 0 : extendScript(target, addition);
}

} // namespace

QString mayaStartUpScript(const QString &pluginFolder)
{
    return pluginFolder + "/../userSetup.py"_l1;
}

bool hasMayaAddition(const QString &script)
{
    return !oldPathLine(script).isEmpty();
}

QString mayaAddition(const QString &templateText, const QString &pluginFolder)
{
    const QString path = escapedPath(pluginFolder);
    return editedLines(templateText, [&path](const QString &line) { return withPath(line, path); });
}

MayaUpdate mayaUpdate(const QString &script, const QString &scriptNow, const QString &templateText,
                      const QString &pluginFolder)
{
    const QString path = escapedPath(pluginFolder);
    if (templateText.contains(shelfCall) && scriptNow.contains(deferredCall)) {
        return blockUpdate(scriptNow, withPath(templateText, path));
    }
    const ScriptEdit edit = lineUpdate(script, oldPathLine(script),
                                       pathLinePrefix + "u'"_l1 + path + "'))"_l1);
    if (edit.kind == ScriptEdit::Kind::Leave) {
        return {};
    }
    return {MayaUpdate::Part::PathLine, edit.text};
}

int PluginInstaller::copyMayaUserSetup(const QString &templateFile, const QString &pluginFolder)
{
    const QString target = mayaStartUpScript(pluginFolder);
    // Deliberate (maya-backup-place): the backup lies in the plug-in folder, not beside the script.
    const QString backup = pluginFolder + "/userSetup.py.draskbackup"_l1;

    const std::optional<MayaUpdate> update = dueUpdate(target, templateFile, pluginFolder);
    return update ? updateUserSetup(target, *update)
                  : addToUserSetup(target, backup, templateFile, pluginFolder);
}
