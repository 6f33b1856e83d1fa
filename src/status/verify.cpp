// SPDX-License-Identifier: MIT
#include "status/commands.h"

#include "disk/folderlisting.h"
#include "disk/rights.h"
#include "disk/standin.h"
#include "globals.h"
#include "hoststeps.h"
#include "installer/managerconfig.h"
#include "literals.h"
#include "status/filelook.h"
#include "status/plugincheck.h"
#include "status/setup.h"
#include "status/startupcheck.h"
#include "textfile.h"

#include <QFile>
#include <QSet>

#include <algorithm>
#include <utility>

namespace {

/// Appends what is wrong with a file that cannot be read as \a file, of which \a unreadable is the
/// kind. Returns its text, or nothing where there is no file; \a isReadable says which.
FileText readIfThere(const QString &file, bool &isReadable)
{
    const Found found = lookAt(file);
    isReadable = found == Found::File || found == Found::Nothing;
    return found == Found::File ? FileText(readText(file)) : FileText();
}

QList<Problem> checkConfig(const QString &target, const Setup &setup)
{
    const QString file = target + "/manager.cfg"_l1;
    bool isReadable = false;
    const FileText text = readIfThere(file, isReadable);
    if (!isReadable) {
        return {{Kind::ConfigUnreadable, file, QStringLiteral("manager.cfg cannot be read.")}};
    }
    if (!text) {
        return {{Kind::ConfigMissing, file, QStringLiteral("manager.cfg is missing.")}};
    }
    QStringList lines = managerConfigLines({setup.user, setup.projects, setup.folder,
                                            installerVersion, QByteArray(), setup.copyTexFiles});
    // What cputype would say cannot be known without starting it.
    if (lookAt(setup.folder + "/cputype"_l1) != Found::Nothing) {
        lines[cpuTypeLine] = text->split(QLatin1Char('\n')).value(cpuTypeLine);
    }
    if (!saysAlready(text->split(QLatin1Char('\n')), lines)) {
        return {{Kind::ConfigDiffers, file,
                 QStringLiteral("manager.cfg is not what the settings ask for.")}};
    }
    return {};
}

QList<Problem> checkStartUp(const HostAnswer &host)
{
    if (host.startUpFile.isEmpty()) {
        return {};
    }
    bool isReadable = false;
    const FileText text = readIfThere(host.startUpFile, isReadable);
    return isReadable ? checkStartUpFile(host, text)
                      : QList<Problem>{{unreadableStartUpFile(host), host.startUpFile,
                                        QStringLiteral("The file cannot be read.")}};
}

/// Unfinished files of runs that were cut off, in \a folder alone.
QList<Problem> findLeftOvers(const QString &folder)
{
    QStringList files;
    for (int number = 1; number <= unfinishedNames; ++number) {
        const QByteArray name = unfinishedName(folder, number);
        if (factsOf(name).type == EntryType::File) {
            files << QFile::decodeName(name);
        }
    }
    visitEntries(QFile::encodeName(folder), [&](const QByteArray &name, EntryKind kind) {
        if (kind == EntryKind::File && name.startsWith("qt_temp.")) {
            files << folder + QLatin1Char('/') + nameOf(name);
        }
    });
    QList<Problem> problems;
    for (const QString &file : std::as_const(files)) {
        problems.append(
            {Kind::LeftOver, file, QStringLiteral("A run that was cut off left this file.")});
    }
    return problems;
}

/// The same in every folder in which a run writes for \a target.
QList<Problem> findAllLeftOvers(const PluginPathStruct &target)
{
    const QString folder = target.targetFolder();
    QSet<QString> folders{folder};
    const QString script = startUpFileOf(target);
    if (!script.isEmpty()) {
        folders.insert(script.left(script.lastIndexOf(QLatin1Char('/'))));
    }
    const QStringList names = shippedFiles(target.sourceFolder);
    for (const QString &name : names) {
        const auto slash = name.lastIndexOf(QLatin1Char('/'));
        if (slash > 0) {
            folders.insert(folder + QLatin1Char('/') + name.left(slash));
        }
    }
    QList<Problem> problems;
    for (const QString &each : std::as_const(folders)) {
        problems += findLeftOvers(each);
    }
    return problems;
}

bool nothingIsThere(const QString &target)
{
    const auto names = {"/uninstall.ini"_l1, "/version.txt"_l1, "/manager.cfg"_l1};
    return std::all_of(names.begin(), names.end(), [&target](QLatin1String name) {
        return lookAt(target + name) == Found::Nothing;
    });
}

HostAnswer checkTarget(const PluginPathStruct &target, const Setup &setup,
                       const QSet<QString> &shared)
{
    HostAnswer host = describe(target);
    if (!target.path.contains(QLatin1Char('/'))) {
        host.state = State::Skipped;
        host.problems.append(
            {Kind::PathWithoutSlash, target.path,
             QStringLiteral("The folder has no slash; every run passes over it.")});
        return host;
    }
    if (target.sourceFolder.isEmpty()) {
        host.problems.append({Kind::UnknownHost, host.target,
                              QStringLiteral("The installer does not know this host.")});
    } else if (nothingIsThere(host.target)) {
        host.state = State::NotInstalled;
        host.problems.append(
            {Kind::NotInstalled, host.target, QStringLiteral("The plug-in is not installed.")});
        return host;
    } else {
        host.problems = checkPluginFiles(target, host.installed, Look::Inside)
            + checkConfig(host.target, setup) + checkStartUp(host) + findAllLeftOvers(target);
    }
    if (shared.contains(host.target)) {
        host.problems.append({Kind::SharedFolder, host.target,
                              QStringLiteral("Two hosts have their plug-in in this folder.")});
    }
    if (host.installed != host.wanted) {
        host.problems.append({Kind::OtherVersion, host.target,
                              QStringLiteral("The version is not the one that is wanted.")});
    }
    host.state = judged(host.problems, {State::Whole, State::OtherVersion, State::Damaged});
    return host;
}

} // namespace

Answer verify(const Options &options, const Progress &progress)
{
    const Setup setup = readSetup(options);
    Answer answer = emptyAnswer(options);
    answer.problems = setup.problems;
    const QSet<QString> shared = sharedFolders(setup.targets);
    int done = 0;
    for (const PluginPathStruct &target : setup.targets) {
        progress(done++, static_cast<int>(setup.targets.size()), target.applicationName);
        if (options.wants(target.applicationName)) {
            answer.hosts.append(checkTarget(target, setup, shared));
        }
    }
    progress(done, done, QString());
    return answer;
}
