// SPDX-License-Identifier: MIT
#include "status/commands.h"

#include "hoststeps.h"
#include "installer/maya.h"
#include "installer/scriptedit.h"
#include "literals.h"
#include "status/filelook.h"
#include "status/settingscheck.h"
#include "status/setup.h"
#include "status/shippedcheck.h"
#include "textfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStorageInfo>

namespace {

/// The folder nearest to \a path, upwards, in which something is.
QFileInfo nearestThere(const QString &path)
{
    QString current = QDir::cleanPath(path);
    while (!QFileInfo::exists(current) && current.contains(QLatin1Char('/'))) {
        current = current.left(
            std::max(static_cast<int>(current.lastIndexOf(QLatin1Char('/'))), 0));
        if (current.isEmpty()) {
            current = QStringLiteral("/");
        }
    }
    QFileInfo found(current);
    return found;
}

QList<Problem> checkWritable(const QString &folder)
{
    const QFileInfo nearest = nearestThere(folder);
    if (!nearest.isDir()) {
        return {{Kind::FolderNotWritable, nearest.filePath(),
                 QStringLiteral("Something that is no folder stands in the folder's place.")}};
    }
    if (!nearest.isWritable() || !nearest.isExecutable()) {
        return {{Kind::FolderNotWritable, nearest.filePath(),
                 QStringLiteral("This user cannot write in the folder.")}};
    }
    return {};
}

QList<Problem> checkFileWritable(const QString &file)
{
    const QFileInfo info(file);
    const bool isLost = info.isSymLink() && !info.exists();
    if (isLost || (info.exists() && !(info.isFile() && info.isReadable() && info.isWritable()))) {
        return {{Kind::FolderNotWritable, file,
                 QStringLiteral("This user cannot read and write the file.")}};
    }
    return {};
}

QList<Problem> checkPath(const PluginPathStruct &target)
{
    const QString &path = target.path;
    QList<Problem> problems;
    const auto note = [&](Kind kind, const QString &text) { problems.append({kind, path, text}); };
    if (!path.contains(QLatin1Char('/'))) {
        note(Kind::PathWithoutSlash,
             QStringLiteral("The folder has no slash; every run passes over "
                            "it."));
        return problems;
    }
    if (!path.startsWith(QLatin1Char('/'))) {
        note(Kind::PathRelative,
             QStringLiteral("The folder is looked for in the working directory of each run."));
    }
    if (path.endsWith(QLatin1Char('/'))) {
        note(Kind::PathWithTrailingSlash, QStringLiteral("The folder ends with a slash."));
    }
    if (!QFileInfo(path).isDir()) {
        note(Kind::PathMissing, QStringLiteral("The host's folder is not there; a run makes it."));
    }
    if (path.contains(QLatin1Char(')'))) {
        note(Kind::PathWithBracket,
             QStringLiteral("uninstallPlugin would cut the folder at its last bracket."));
    }
    if (path.contains(QLatin1Char('\n')) || path.contains(QLatin1Char('\r'))) {
        note(Kind::LineBreak, QStringLiteral("The folder has a line break in it."));
    }
    if (path.contains(QChar(QChar::ReplacementCharacter))) {
        note(Kind::NotUtf8, QStringLiteral("The folder is not UTF-8."));
    }
    return problems;
}

QList<Problem> checkStartUpFile(const PluginPathStruct &target)
{
    if (startUpFileOf(target).isEmpty()) {
        return {};
    }
    const QString file = QDir::cleanPath(startUpFileOf(target));
    QList<Problem> problems = checkFileWritable(file);
    if (target.applicationName != "maya"_l1) {
        return checkWritable(target.path) + problems;
    }
    const QString script = readText(file);
    if (script.contains(installedMarker) && !hasMayaAddition(script)) {
        problems.append({Kind::UserSetupUnrecognised, file,
                         QStringLiteral("The plug-in's lines in userSetup.py are not complete; a "
                                        "copy of the plug-in adds them once more.")});
    }
    return problems;
}

QList<Problem> checkSpace(const PluginPathStruct &target)
{
    const QStorageInfo storage(nearestThere(target.targetFolder()).filePath());
    const qint64 size = shippedSize(target.sourceFolder);
    if (storage.isValid() && storage.bytesAvailable() < size) {
        return {{Kind::DiskFull, target.targetFolder(),
                 QStringLiteral("The plug-in has %1 bytes; %2 are free.")
                     .arg(size)
                     .arg(storage.bytesAvailable())}};
    }
    return {};
}

QList<Problem> checkCpuType(const QString &folder)
{
    const QFileInfo program(folder + "/cputype"_l1);
    if (!program.exists()) {
        return {{Kind::CpuTypeMissing, program.filePath(),
                 QStringLiteral("cputype is missing; plug-ins are not told the processor.")}};
    }
    if (!program.isFile() || !program.isExecutable()) {
        return {{Kind::CpuTypeNotExecutable, program.filePath(),
                 QStringLiteral("cputype cannot be started.")}};
    }
    return {};
}

QList<Problem> checkUser(const Setup &setup)
{
    if (setup.user.contains(QLatin1Char('\n')) || setup.projects.contains(QLatin1Char('\n'))) {
        return {
            {Kind::LineBreak, setup.folder + "/settings.ini"_l1,
             QStringLiteral("The user name or the projects folder has a line break in it; every "
                            "run writes manager.cfg again.")}};
    }
    return {};
}

HostAnswer examine(const PluginPathStruct &target, const QSet<QString> &shared)
{
    HostAnswer host = describe(target);
    host.problems = checkPath(target);
    if (target.sourceFolder.isEmpty()) {
        host.problems.append({Kind::UnknownHost, target.path,
                              QStringLiteral("The installer does not know this host.")});
    } else {
        host.problems += checkShippedPlugin(target);
    }
    if (target.path.contains(QLatin1Char('/'))) {
        host.problems += checkWritable(host.target) + checkStartUpFile(target) + checkSpace(target);
        if (shared.contains(host.target)) {
            host.problems.append({Kind::SharedFolder, host.target,
                                  QStringLiteral("Two hosts have their plug-in in this folder.")});
        }
    }
    host.state = judged(host.problems, {State::Fine, State::Look, State::WillFail});
    return host;
}

} // namespace

Answer doctor(const Options &options)
{
    const Setup setup = readSetup(options);
    Answer answer = emptyAnswer(options);
    answer.problems = setup.problems;
    const QString file = options.folder + "/settings.ini"_l1;
    QFile settings(file);
    if (setup.problems.isEmpty() && settings.open(QIODevice::ReadOnly)) {
        answer.problems += checkSettings(settings.readAll(), file);
    }
    answer.problems += checkUser(setup) + checkWritable(options.folder)
        + checkCpuType(options.folder);
    const QSet<QString> shared = sharedFolders(setup.targets);
    for (const PluginPathStruct &target : setup.targets) {
        if (options.wants(target.applicationName)) {
            answer.hosts.append(examine(target, shared));
        }
    }
    return answer;
}
