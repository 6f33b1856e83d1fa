// SPDX-License-Identifier: MIT
#include "startupfiles.h"

#include <QByteArrayList>

namespace test {

namespace {

const QByteArray marker = "#drask_installed";
const QByteArray shelfCall = "draskshelf.init()";
const QByteArray deferredCall = "maya.utils.executeDeferred(\"searchTab()\")";

} // namespace

StartUpFile StartUpFile::maya(const QByteArray &block, const QByteArray &pathLine)
{
    StartUpFile file;
    file.added = block;
    file.newLine = pathLine;
    file.prefix = "\tsys.path.append( importable_path(";
    return file;
}

StartUpFile StartUpFile::houdini()
{
    StartUpFile file;
    file.newLine = "HOUDINI_PATH = \";$HOUDINI_PATH\"";
    file.added = "\n" + marker + "\n" + file.newLine + "\n";
    file.endsWithOldLine = true;
    return file;
}

QByteArray StartUpFile::oldLine(const QByteArray &content) const
{
    QByteArray found;
    bool markerSeen = false;
    const QByteArrayList lines = content.split('\n');
    for (const QByteArray &line : lines) {
        const bool isMarker = line.contains(marker);
        markerSeen = markerSeen || isMarker;
        if (!markerSeen || (endsWithOldLine && isMarker) || !line.startsWith(prefix)) {
            continue;
        }
        found = line;
        if (endsWithOldLine) {
            break;
        }
    }
    return found;
}

bool StartUpFile::isReplacedAsAWhole(const QByteArray &content) const
{
    return added.contains(shelfCall) && content.contains(deferredCall);
}

QByteArray StartUpFile::withNewLine(const QByteArray &content) const
{
    const QByteArray line = oldLine(content);
    if (line.isEmpty()) {
        return content;
    }
    QByteArray lines = QByteArray(content).replace("\r", "");
    if (endsWithOldLine) {
        lines.truncate(lines.indexOf(line, lines.indexOf(marker)) + line.size());
    }
    if (!lines.endsWith('\n')) {
        lines += '\n';
    }
    return lines.replace(line, newLine);
}

NextContent StartUpFile::afterNextRun(const QByteArray &content) const
{
    const QByteArray line = oldLine(content);
    if (line.isEmpty()) {
        return {content + added, true};
    }
    if (isReplacedAsAWhole(content)) {
        const QByteArray text = QByteArray(content).replace("\r", "");
        const QByteArray frame = "\r\n";
        return {text.left(text.indexOf(marker)) + frame + added + frame
                    + text.mid(text.indexOf(deferredCall) + deferredCall.size()),
                false};
    }
    return {line == newLine ? content : withNewLine(content), false};
}

} // namespace test
