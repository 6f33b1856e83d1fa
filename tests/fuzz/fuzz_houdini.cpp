// SPDX-License-Identifier: MIT
#include "fuzzsandbox.h"
#include "installer/plugininstaller.h"
#include "promisedtext.h"

namespace {

constexpr char envFile[] = "houdini/houdini.env";
const QString marker = QStringLiteral("#drask_installed");

QString assignment(const QString &folder)
{
    return "HOUDINI_PATH = \"" + folder + ";$HOUDINI_PATH\"";
}

/// The lines up to the first one behind the marker that is no marker itself; all of them without
/// such a line, and then none is returned in \a oldLine.
QStringList linesUpToOldLine(const QByteArray &content, QString &oldLine)
{
    QStringList lines = fuzz::linesOf(content);
    bool markerSeen = false;
    for (int index = 0; index < lines.size(); ++index) {
        const bool isMarker = lines.at(index).contains(marker);
        if (markerSeen && !isMarker) {
            oldLine = lines.at(index);
            return lines.mid(0, index + 1);
        }
        markerSeen = markerSeen || isMarker;
    }
    return lines;
}

QByteArray promisedContent(const QByteArray &before, const QString &newLine)
{
    QString oldLine;
    QStringList lines = linesUpToOldLine(before, oldLine);
    if (oldLine.isEmpty()) {
        return before + '\n' + fuzz::written({marker, newLine});
    }
    return oldLine == newLine ? before : fuzz::written(lines.replaceInStrings(oldLine, newLine));
}

/// Runs the edit once, holds it to what it must do, and returns what is in the file then.
QByteArray edit(const fuzz::Sandbox &sandbox, const QString &folder)
{
    const QByteArray before = sandbox.read(envFile);
    QByteArray after = promisedContent(before, assignment(folder));
    fuzz::Tree expected = sandbox.tree();
    expected.insert(envFile, after);
    if (!before.isNull()) {
        sandbox.age(envFile);
    }

    fuzz::promise(PluginInstaller::editHoudiniEnv(folder, sandbox.path(envFile)) == 0,
                  "an environment in a writable folder can be edited");
    sandbox.promiseTree(expected, "the assignment is appended or brought up to date");
    fuzz::promise(after != before || sandbox.isAged(envFile),
                  "an environment with the assignment is not written");
    return after;
}

/// The input is the houdini.env; a second part is the folder of a later installation.
void check(const fuzz::Sandbox &sandbox, const fuzz::Input &input)
{
    const QByteArray original = input.part(0);
    sandbox.makeFolder("houdini");
    sandbox.write(envFile, original);
    sandbox.write("houdini/houdini.env.own", "#drask_installed\nHOUDINI_PATH = \"x\"\n");
    sandbox.write("other.env", "HOUDINI_PATH = \"y\"\n");

    const bool isFirst = !fuzz::textModeTextOf(original).contains(marker);
    const QByteArray once = edit(sandbox, QString());
    const QByteArray twice = edit(sandbox, QString());
    if (isFirst) {
        fuzz::promise(once.startsWith(original), "a first edit keeps what was there");
        fuzz::promise(twice == once || fuzz::hasForeignByteOrderMark(original),
                      "the assignment is added once");
    }
    edit(sandbox, QString::fromUtf8(input.part(1)));
}

} // namespace

DRASK_FUZZ_TARGET(check)
