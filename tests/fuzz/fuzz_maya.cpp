// SPDX-License-Identifier: MIT
#include "fuzzsandbox.h"
#include "installer/plugininstaller.h"
#include "promisedtext.h"

namespace {

constexpr char script[] = "scripts/userSetup.py";
constexpr char backupName[] = "/userSetup.py.draskbackup";
constexpr char templateName[] = "/drask_userSetup.py";

const QString marker = QStringLiteral("#drask_installed");
const QString pathLineBegin = QStringLiteral("\tsys.path.append( importable_path(");
const QString blockEnd = QStringLiteral("maya.utils.executeDeferred(\"searchTab()\")");

/// An installation of the plug-in: its folder, and that folder as Python code has it.
struct Plugin {
    QString folder;
    QString path;
    QString pathInCode;
};

Plugin makePlugin(const fuzz::Sandbox &sandbox, const QString &folder, const QByteArray &lines)
{
    sandbox.makeFolder(folder);
    sandbox.write(folder + templateName, lines);
    const QString path = sandbox.path(folder);
    return {folder, path, path.split(QLatin1Char('\'')).join(QLatin1String("\\'"))};
}

QString filledIn(QString text, const Plugin &plugin)
{
    for (const char *placeHolder : {"__scriptpath__", "__scriptPath__", "__ScriptPath__"}) {
        text.replace(QLatin1String(placeHolder), plugin.pathInCode);
    }
    return text;
}

/// The last path line that stands at or behind the first marker; empty when there is none.
QString recognisedLine(const QByteArray &content)
{
    const QStringList lines = fuzz::linesOf(content);
    for (auto last = lines.size() - 1; last >= 0; --last) {
        if (lines.at(last).startsWith(pathLineBegin)) {
            return lines.mid(0, last + 1).filter(marker).isEmpty() ? QString() : lines.at(last);
        }
    }
    return {};
}

QByteArray withTemplate(const QByteArray &content, const QByteArray &lines, const Plugin &plugin)
{
    const QStringList added = fuzz::linesOf(lines);
    if (added.isEmpty()) {
        return content;
    }
    QStringList filled;
    for (const QString &line : added) {
        filled += filledIn(line, plugin);
    }
    return content + fuzz::written(filled);
}

QByteArray withNewBlock(const QString &text, const QString &lines, const Plugin &plugin)
{
    const auto end = text.indexOf(blockEnd) + blockEnd.size();
    return fuzz::utf8Of(text.left(text.indexOf(marker)) + "\r\n" + filledIn(lines, plugin) + "\r\n"
                        + text.mid(end));
}

QByteArray promisedScript(const QByteArray &content, const QByteArray &lines, const Plugin &plugin)
{
    const QString oldLine = recognisedLine(content);
    if (oldLine.isEmpty()) {
        return withTemplate(content, lines, plugin);
    }
    const QString newBlock = fuzz::textModeTextOf(lines);
    const QString text = fuzz::textModeTextOf(content);
    if (newBlock.contains("draskshelf.init()") && text.contains(blockEnd)) {
        return withNewBlock(text, newBlock, plugin);
    }
    const QString newLine = pathLineBegin + "u'" + plugin.pathInCode + "'))";
    QStringList updated = fuzz::linesOf(content);
    return oldLine == newLine ? content : fuzz::written(updated.replaceInStrings(oldLine, newLine));
}

/// Runs the edit once and holds it to what it must do.
void install(const fuzz::Sandbox &sandbox, const Plugin &plugin)
{
    const QByteArray before = sandbox.read(script);
    const QByteArray lines = sandbox.read(plugin.folder + templateName);
    const bool isFirst = recognisedLine(before).isEmpty();
    const QByteArray after = promisedScript(before, lines, plugin);
    fuzz::Tree expected = sandbox.tree();
    if (!after.isNull()) {
        expected.insert(script, after);
    }
    if (isFirst && !before.isNull() && !expected.contains(plugin.folder + backupName)) {
        expected.insert(plugin.folder + backupName, before);
    }
    if (!before.isNull()) {
        sandbox.age(script);
    }

    const int result = PluginInstaller::copyMayaUserSetup(plugin.path + templateName, plugin.path);
    fuzz::promise(result == (isFirst && lines.isNull() ? 1 : 0),
                  "only a first edit without a template fails");
    sandbox.promiseTree(expected, "the lines are appended or brought up to date");
    fuzz::promise(!isFirst || sandbox.read(script).startsWith(before),
                  "a first edit keeps what was there");
    fuzz::promise(after != before || before.isNull() || sandbox.isAged(script),
                  "a script that is up to date is not written");
}

/// A script whose one addition is that of \a plugin, with the plug-in's template telling no block
/// to replace, is final.
bool isFinal(const QByteArray &content, const QByteArray &lines, const Plugin &plugin)
{
    return recognisedLine(content) == pathLineBegin + "u'" + plugin.pathInCode + "'))"
        && !fuzz::textModeTextOf(lines).contains("draskshelf.init()");
}

/// The input is the template, the userSetup.py and a backup of an earlier installation.
void check(const fuzz::Sandbox &sandbox, const fuzz::Input &input)
{
    const Plugin plugin = makePlugin(sandbox, "scripts/dra'sk", input.part(0));
    const Plugin moved = makePlugin(sandbox, "scripts/moved '", input.part(0));
    sandbox.write(script, input.part(1));
    sandbox.write(plugin.folder + backupName, input.part(2));
    sandbox.write("scripts/userSetup.mel", "// stays\n");
    sandbox.write("userSetup.py", "# stays\n");

    install(sandbox, plugin);
    const QByteArray once = sandbox.read(script);
    install(sandbox, plugin);
    fuzz::promise(sandbox.read(script) == once || !isFinal(once, input.part(0), plugin),
                  "a recognised addition is not made again");
    install(sandbox, moved);
}

} // namespace

DRASK_FUZZ_TARGET(check)
