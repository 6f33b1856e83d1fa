// SPDX-License-Identifier: MIT
#include "status/commands.h"

#include "commandline.h"
#include "driver.h"
#include "installer/managerconfig.h"
#include "literals.h"
#include "logging.h"
#include "status/filelook.h"
#include "status/foretolddisk.h"
#include "status/plugincheck.h"
#include "status/runlog.h"
#include "status/setup.h"
#include "status/startupcheck.h"
#include "textfile.h"

#include <algorithm>
#include <utility>

namespace {

/// Collects what the run would log, while it lives.
class ForetoldLog {
public:
    ForetoldLog()
        : before(qInstallMessageHandler(collect))
    {
        text = &lines;
        keepEveryMessage();
    }
    ~ForetoldLog()
    {
        qInstallMessageHandler(before);
        text = nullptr;
    }
    ForetoldLog(const ForetoldLog &) = delete;
    ForetoldLog &operator=(const ForetoldLog &) = delete;
    ForetoldLog(ForetoldLog &&) = delete;
    ForetoldLog &operator=(ForetoldLog &&) = delete;

    /// All of them so far.
    QString all() const
    {
        return lines;
    }

private:
    static void collect(QtMsgType type, const QMessageLogContext & /*context*/,
                        const QString &message)
    {
        *text += logLine(type, message) + QLatin1Char('\n');
    }

    static QString *text;

    QString lines;
    QtMessageHandler before = nullptr;
};

QString *ForetoldLog::text = nullptr;

/// What cputype will say is not known without starting it. The plug-ins that are installed were
/// told the last time.
QByteArray lastCpuType(const Setup &setup)
{
    if (lookAt(setup.folder + "/cputype"_l1) == Found::Nothing) {
        return {};
    }
    for (const PluginPathStruct &target : setup.targets) {
        const QString config = target.targetFolder() + "/manager.cfg"_l1;
        if (target.path.contains(QLatin1Char('/')) && lookAt(config) == Found::File) {
            const QString line = readText(config).split(QLatin1Char('\n')).value(cpuTypeLine);
            return QByteArray::fromBase64(line.toLatin1(), QByteArray::Base64UrlEncoding);
        }
    }
    return {};
}

RunMode modeOf(const QString &word)
{
    return word == "install"_l1 ? RunMode::Install
                                : readCommandLine({"", word.toLatin1().constData()}).mode;
}

/// What is wrong with a file, once the run has left it. Without a \a check, only whether it can be
/// read is asked.
QList<Problem> checkForetold(ForetoldDisk &disk, const QString &file, Kind unreadable,
                             const std::function<QList<Problem>(const FileText &)> &check = {})
{
    switch (disk.look(file)) {
    case Found::NoFile:
    case Found::Unreadable:
        return {{unreadable, file, QStringLiteral("The file cannot be read.")}};
    case Found::Nothing:
        return check ? check({}) : QList<Problem>();
    case Found::File:
        break;
    }
    if (!check) {
        return {};
    }
    QByteArray bytes;
    static_cast<void>(disk.readBytes(file, bytes));
    return check(textOf(bytes));
}

/// What is wrong with the manifest \a file that the run will have written.
QList<Problem> checkManifest(const PluginPathStruct &target, const FileText &text,
                             const QString &file)
{
    if (!text || unlistedFiles(target, *text).isEmpty()) {
        return {};
    }
    return {
        {Kind::ManifestIncomplete, file, QStringLiteral("The manifest will not list every file.")}};
}

/// What the run leaves incomplete without a word.
QList<Problem> findSilentLosses(const HostAnswer &host, const PluginPathStruct &target,
                                ForetoldDisk &disk)
{
    QList<Problem> problems = checkForetold(disk, host.target + "/manager.cfg"_l1,
                                            Kind::ConfigUnreadable);
    if (host.state == State::FoundUpToDate) {
        problems += checkPluginFiles(target, host.installed, Look::Outside);
    } else {
        const QString manifest = host.target + "/uninstall.ini"_l1;
        problems += checkForetold(
            disk, manifest, Kind::ManifestUnreadable, [&](const FileText &text) {
                return host.state == State::Copied ? checkManifest(target, text, manifest)
                                                   : QList<Problem>();
            });
    }
    if (!host.startUpFile.isEmpty()) {
        problems += checkForetold(
            disk, host.startUpFile, unreadableStartUpFile(host),
            [&](const FileText &text) { return checkStartUpFile(host, text); });
    }
    return problems;
}

/// The state before the run, and what it then does, in one word.
State planned(const HostAnswer &host)
{
    const bool differs = std::any_of(host.changes.cbegin(), host.changes.cend(),
                                     [](const Change &change) { return change.differs; });
    if (heaviest(host.problems) == Gravity::Fails) {
        return State::Fails;
    }
    switch (host.state) {
    case State::Skipped:
        return State::Skipped;
    case State::Copied:
        break;
    default:
        return differs ? State::Configuration : State::UpToDate;
    }
    if (!host.installed) {
        return State::Install;
    }
    return host.installed == host.wanted ? State::CopyAgain : State::Update;
}

bool isInside(const QString &path, const QString &folder)
{
    return path == folder || path.startsWith(folder + QLatin1Char('/'));
}

/// The index of the longest of \a folders that \a path is in; -1 if it is in none.
int innermost(const QString &path, const QStringList &folders)
{
    int found = -1;
    for (int index = 0; index < folders.size(); ++index) {
        if (isInside(path, folders.at(index))
            && (found < 0 || folders.at(index).size() > folders.at(found).size())) {
            found = index;
        }
    }
    return found;
}

/// The index of the host to which \a path belongs: the one whose plug-in folder it is in or leads
/// to, or whose own folder it is in; -1 for none.
int ownerOf(const QString &path, const QStringList &targets, const QStringList &folders)
{
    const int owner = innermost(path, targets);
    if (owner >= 0) {
        return owner;
    }
    const auto leadsTo = [&path](const QString &target) {
        // NOLINTNEXTLINE(readability-suspicious-call-argument): the target is looked for in it.
        return isInside(target, path);
    };
    const auto led = std::find_if(targets.cbegin(), targets.cend(), leadsTo);
    return led != targets.cend() ? static_cast<int>(led - targets.cbegin())
                                 : innermost(path, folders);
}

/// Hands the changes to the hosts that they belong to; the rest stays the run's.
void distribute(ForetoldDisk &disk, Answer &answer)
{
    QStringList targets;
    QStringList folders;
    for (const HostAnswer &host : std::as_const(answer.hosts)) {
        targets << disk.realName(host.target);
        folders << disk.realName(host.path);
    }
    const QStringList logs{answer.folder + "/plugin.log"_l1, answer.folder + "/pluginError.txt"_l1};
    const QList<Change> changes = disk.changes();
    for (const Change &change : changes) {
        if (logs.contains(change.path)) {
            continue;
        }
        const int owner = ownerOf(change.path, targets, folders);
        (owner < 0 ? answer.changes : answer.hosts[owner].changes).append(change);
        if (change.action == Action::Replace && !mayRead(QFile::encodeName(change.path))) {
            (owner < 0 ? answer.problems : answer.hosts[owner].problems)
                .append({Kind::CannotLook, change.path,
                         QStringLiteral("The file cannot be read; it is taken to change.")});
        }
    }
}

void judge(ForetoldDisk &disk, const Setup &setup, Answer &answer)
{
    const QSet<QString> shared = sharedFolders(
        setup.targets, [&disk](const QString &folder) { return disk.realName(folder); });
    for (int index = 0; index < answer.hosts.size() && index < setup.targets.size(); ++index) {
        HostAnswer &host = answer.hosts[index];
        const PluginPathStruct &target = setup.targets.at(index);
        if (host.state != State::Skipped && host.state != State::Failed
            && !target.sourceFolder.isEmpty()) {
            host.problems += findSilentLosses(host, target, disk);
        }
        if (host.state != State::Skipped && shared.contains(host.target)) {
            host.problems.append({Kind::SharedFolder, host.target,
                                  QStringLiteral("Two hosts have their plug-in in this folder.")});
        }
        host.state = planned(host);
    }
}

/// Keeps the hosts that were asked for.
QList<HostAnswer> wantedHosts(const QList<HostAnswer> &hosts, const Options &options)
{
    QList<HostAnswer> wanted;
    std::copy_if(hosts.cbegin(), hosts.cend(), std::back_inserter(wanted),
                 [&options](const HostAnswer &host) { return options.wants(host.key); });
    return wanted;
}

} // namespace

Answer plan(const Options &options)
{
    // While one is open, all others share what it has read.
    const ManagerSettings settings(options.folder);
    const Setup setup = readSetup(options);
    ForetoldDisk disk(options.folder, lastCpuType(setup));
    int exitCode = 0;
    QString lines;
    {
        const OtherDisk::Guard foretold(disk);
        const ForetoldLog log;
        removePreviousLogs();
        exitCode = runMode({modeOf(options.mode), QString()});
        lines = log.all();
    }
    QByteArray errors;
    static_cast<void>(disk.readBytes(options.folder + "/pluginError.txt"_l1, errors));
    const RunStory story = readRun(lines, QString::fromUtf8(errors),
                                   [&](const QString &key, const QString &path) {
                                       return installTargets(key, path, options.folder, settings);
                                   });
    Answer answer = emptyAnswer(options);
    answer.run = RunFacts{options.mode, true, exitCode};
    answer.hosts = story.hosts;
    answer.problems = setup.problems;
    if (lookAt(options.folder + "/cputype"_l1) != Found::Nothing) {
        answer.problems.append({Kind::CpuTypeUnknown, options.folder + "/cputype"_l1,
                                QStringLiteral("cputype is not started; it is taken to say what it "
                                               "said the last time.")});
    }
    distribute(disk, answer);
    judge(disk, setup, answer);
    answer.hosts = wantedHosts(answer.hosts, options);
    return answer;
}
