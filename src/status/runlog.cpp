// SPDX-License-Identifier: MIT
#include "status/runlog.h"

#include "literals.h"
#include "messages.h"
#include "qtversions.h"
#include "status/logline.h"
#include "status/setup.h"

#include <algorithm>

namespace {

// clang-format off
/// What a line of a copy says of the one file or folder that it names.
struct FileTrouble {
    const char *message = nullptr;
    Kind kind = Kind::FileNotCopied;
    QLatin1String sentence;
};

constexpr FileTrouble fileTroubles[] = {
    {Message::cannotOpen,      Kind::ManifestNotWritten, "The manifest cannot be written."_l1},
    {Message::folderNotListed, Kind::FileNotCopied,      "The folder cannot be listed."_l1},
    {Message::fileNotRemoved,  Kind::FileNotRemoved,     "The old file cannot be removed."_l1},
    {Message::fileLost,        Kind::FileNotCopied,      "The file did not reach the disk."_l1},
    {Message::fileNotListed,   Kind::FileNotListed,      "The manifest does not list the file."_l1},
    {Message::manifestLost,    Kind::ManifestNotWritten, "The manifest did not reach the disk."_l1},
    {Message::fileNotWritable, Kind::FileNotWritable,    "The file cannot be opened for writing after the copy."_l1},
};
// clang-format on

HostAnswer describe(const PluginPathStruct &target, State state)
{
    HostAnswer host = describe(target);
    host.state = state;
    return host;
}

/// Follows the lines of a log.
class RunReader {
public:
    explicit RunReader(const TargetLookUp &look)
        : targetsOf(look)
    {
    }

    void read(LogLine line);
    RunStory finish(const QString &errors);

private:
    enum class Stage { None, Start, Removal, Pass, Ended };

    void beginRun(const char *mode);
    void addTargets(const QString &path);
    bool readStart(LogLine &line);
    bool readRemoval(LogLine &line);
    bool readHost(LogLine &line);
    bool readCopy(LogLine &line);
    bool readEdit(LogLine &line);
    void readEnd(int code);
    HostAnswer &host();
    void openHost(State state);
    void add(Kind kind, const QString &path, const QString &text);
    void finishRemoval();
    void finishPass();
    void blame(const QString &errors);

    const TargetLookUp &targetsOf;
    RunStory story;
    Stage stage = Stage::None;
    QString key;
    QList<PluginPathStruct> targets;
    int nextTarget = 0;
    bool hostIsOpen = false;
    bool mixed = false;
    bool olderRuns = false;
    int removals = 0;
};

void RunReader::beginRun(const char *mode)
{
    const bool modeWasNamed = story.run.mode == "reinstall"_l1
        || story.run.mode == "onlyWriteConfig"_l1;
    if (stage == Stage::Start && targets.isEmpty() && modeWasNamed
        && qstrcmp(mode, "install") == 0) {
        return; // "settings loaded" after the line that names the mode
    }
    if (stage != Stage::None) {
        olderRuns = true;
        mixed = mixed || (stage != Stage::Ended && stage != Stage::Removal);
    }
    story = RunStory();
    story.run.mode = QLatin1String(mode);
    stage = Stage::Start;
    targets.clear();
    nextTarget = 0;
    hostIsOpen = false;
    removals = 0;
}

void RunReader::addTargets(const QString &path)
{
    targets += targetsOf(key, path);
}

void RunReader::read(LogLine line)
{
    int code = 0;
    if (!line.isDebug() || readStart(line) || readRemoval(line)) {
        return;
    }
    // A run that has ended says no more of its hosts: that is another one.
    if ((stage == Stage::Pass || stage == Stage::Ended)
        && (readHost(line) || readCopy(line) || readEdit(line))) {
        mixed = mixed || stage == Stage::Ended;
        stage = Stage::Pass;
        return;
    }
    if (line.takeNumber(code) && line.isAtEnd()) {
        readEnd(code);
    }
}

bool RunReader::readStart(LogLine &line)
{
    QString text;
    if (line.takeLabel(Message::onlyWriteConfig)) {
        beginRun("onlyWriteConfig");
    } else if (line.takeLabel(Message::forceReinstall)) {
        beginRun("reinstall");
    } else if (line.takeLabel(Message::settingsLoaded)) {
        beginRun("install");
    } else if (line.takeLabel(Message::applicationName) && line.takeText(text)) {
        if (stage == Stage::None || stage == Stage::Ended || stage == Stage::Removal) {
            beginRun("uninstallPlugin");
        }
        key = text;
    } else if (line.takeLabel(Message::path) && line.takeText(text)) {
        addTargets(text);
    } else if (line.takeLabel(Message::passStarts)) {
        stage = Stage::Pass;
    } else {
        return false;
    }
    return true;
}

bool RunReader::readRemoval(LogLine &line)
{
    int result = 0;
    QString text;
    const bool isSkipped = line.takeLabel(Message::nothingToUninstall) && line.takeText(text);
    if (line.takeLabel(Message::beginUninstall)) {
        stage = Stage::Removal;
        return true;
    }
    if (!isSkipped && !(line.takeLabel(Message::uninstalled) && line.takeNumber(result))) {
        return false;
    }
    stage = Stage::Removal;
    if (removals < targets.size() && story.run.mode != "reinstall"_l1) {
        const PluginPathStruct &target = targets.at(removals);
        story.hosts.append(describe(target, State::Uninstalled));
        if (result > 0) {
            add(Kind::UninstallFailed, target.targetFolder(),
                QStringLiteral("A file that the manifest lists could not be deleted."));
        }
    }
    ++removals;
    if (result > 0) {
        story.run.exitCode = result;
    }
    return true;
}

HostAnswer &RunReader::host()
{
    if (!hostIsOpen) {
        openHost(State::Unknown);
    }
    return story.hosts.last();
}

void RunReader::openHost(State state)
{
    // A second opening without an end in between is the line of another run.
    mixed = mixed || hostIsOpen || nextTarget >= targets.size();
    story.hosts.append(describe(targets.value(nextTarget++), state));
    hostIsOpen = true;
}

void RunReader::add(Kind kind, const QString &path, const QString &text)
{
    QList<Problem> &problems = story.hosts.last().problems;
    const bool isKnown = std::any_of(problems.cbegin(), problems.cend(),
                                     [&path](const Problem &known) { return known.path == path; });
    if (!isKnown) {
        problems.append({kind, path, text});
    }
}

bool RunReader::readHost(LogLine &line)
{
    QString text;
    if (line.takeLabel(Message::nothingToCopy)) {
        openHost(State::Skipped);
        hostIsOpen = false;
    } else if (line.takeLabel(Message::alreadyInstalled)) {
        openHost(State::FoundUpToDate);
    } else if (line.takeLabel(Message::copyLeftOut)) {
        openHost(State::LeftOut);
        add(Kind::CopyLeftOut, story.hosts.last().target,
            QStringLiteral("Only the configuration is written; the wanted version is not there."));
    } else if (line.takeLabel(Message::copyStarts)) {
        openHost(State::Copied);
    } else if (line.takeLabel(Message::configAbsent)) {
        static_cast<void>(host());
    } else if (line.takeLabel(Message::configKept) || line.takeLabel(Message::configWritten)) {
        if (host().state == State::FoundUpToDate) {
            hostIsOpen = false;
        }
    } else if (line.takeText(text) && text.endsWith(Message::installedIn)) {
        static_cast<void>(host());
        hostIsOpen = false;
    } else {
        return false;
    }
    return true;
}

bool RunReader::readCopy(LogLine &line)
{
    QString file;
    QString target;
    for (const FileTrouble &trouble : fileTroubles) {
        if (line.takeLabel(trouble.message) && line.takeText(file)) {
            static_cast<void>(host());
            add(trouble.kind, file, trouble.sentence);
            return true;
        }
    }
    if (line.takeLabel(Message::fileNotCopied) && line.takeText(file)
        && line.takeLabel(Message::copiedTo) && line.takeText(target)) {
        static_cast<void>(host());
        add(Kind::FileNotCopied, target, QStringLiteral("The file cannot be copied."));
        return true;
    }
    return false;
}

bool RunReader::readEdit(LogLine &line)
{
    QString reason;
    const bool isTemplate = line.takeLabel(Message::templateNotOpened);
    const bool isTarget = line.takeLabel(Message::targetNotOpened)
        || line.takeLabel(Message::blockNotReplaced);
    if (!isTemplate && !isTarget && !line.takeLabel(Message::blockNotFound)) {
        return false;
    }
    static_cast<void>(line.takeText(reason));
    const HostAnswer &current = host();
    if (current.key == "houdini"_l1) {
        add(Kind::HoudiniEnvNotWritten, current.startUpFile,
            QStringLiteral("houdini.env cannot be written: %1.").arg(reason));
    } else {
        add(Kind::UserSetupNotWritten, current.startUpFile,
            isTemplate ? QStringLiteral("The template drask_userSetup.py cannot be opened.")
                       : QStringLiteral("userSetup.py cannot be written. %1").arg(reason));
    }
    return true;
}

void RunReader::readEnd(int code)
{
    if (stage == Stage::Ended && mixed) {
        return; // the other run's end
    }
    if (stage == Stage::None || stage == Stage::Ended) {
        beginRun("ov3uninstall");
    }
    mixed = mixed || hostIsOpen;
    story.run.ended = true;
    story.run.exitCode = code;
    stage = Stage::Ended;
}

/// Nothing but the number of results tells whether a removal came to its end.
void RunReader::finishRemoval()
{
    if (story.run.mode == "install"_l1) {
        story.run.mode = "uninstallAllPlugins"_l1;
        for (HostAnswer &current : story.hosts) {
            current.state = State::Skipped;
        }
    }
    story.run.ended = story.run.mode != "reinstall"_l1 && removals == targets.size();
    if (story.run.ended && !story.run.exitCode) {
        story.run.exitCode = 0;
    }
}

void RunReader::finishPass()
{
    if (hostIsOpen) {
        story.hosts.last().state = State::Interrupted;
        hostIsOpen = false;
    }
    while (nextTarget < targets.size()) {
        openHost(State::Unknown);
        hostIsOpen = false;
    }
}

/// Adds what only the error file tells.
void RunReader::blame(const QString &errors)
{
    // Entries of older runs may be among them; a run that ended well has none.
    const QString text = story.run.exitCode.value_or(1) == 0 ? QString()
                                                             : QLatin1Char('\n') + errors;
    const auto says = [&text](QLatin1String message, const QString &path) {
        return text.contains(QLatin1Char('\n') + message + path + QLatin1Char('\n'));
    };
    for (HostAnswer &current : story.hosts) {
        QList<Problem> &problems = current.problems;
        const auto isKnown = [&problems](Kind kind) {
            return std::any_of(problems.cbegin(), problems.cend(),
                               [kind](const Problem &problem) { return problem.kind == kind; });
        };
        if (says(Message::copyFailed, current.target) && current.state != State::LeftOut
            && heaviest(problems) != Gravity::Fails) {
            problems.append({Kind::PluginNotCopied, current.target,
                             QStringLiteral("The plug-in was not copied, or not all of it.")});
        }
        if (says(Message::configFailed, current.target + "manager.cfg"_l1)) {
            problems.append({Kind::ConfigNotWritten, current.target + "/manager.cfg"_l1,
                             QStringLiteral("manager.cfg was not written.")});
        }
        if (says(Message::userSetupFailed, current.target) && !isKnown(Kind::UserSetupNotWritten)) {
            problems.append({Kind::UserSetupNotWritten, current.startUpFile,
                             QStringLiteral("userSetup.py was not written.")});
        }
        if (heaviest(problems) == Gravity::Fails && current.state != State::LeftOut) {
            current.state = State::Failed;
        }
    }
}

RunStory RunReader::finish(const QString &errors)
{
    if (stage == Stage::Removal) {
        finishRemoval();
    } else if (stage != Stage::None && story.run.mode != "ov3uninstall"_l1) {
        finishPass();
    }
    blame(errors);
    if (mixed) {
        story.problems.append({Kind::RunsMixed,
                               {},
                               QStringLiteral("Two runs wrote this log at the same time, or one of "
                                              "them was cut off.")});
    } else if (olderRuns) {
        story.problems.append({Kind::OlderRuns,
                               {},
                               QStringLiteral("The log also holds older runs. The last is told.")});
    }
    if (!story.run.ended) {
        story.problems.append(
            {Kind::RunNotEnded, {}, QStringLiteral("The run did not come to its end.")});
    }
    const bool isBlamed = std::any_of(
        story.hosts.cbegin(), story.hosts.cend(),
        [](const HostAnswer &current) { return current.state == State::Failed; });
    if (story.run.exitCode.value_or(0) != 0 && !isBlamed) {
        story.problems.append({Kind::ExitCode,
                               {},
                               QStringLiteral("The run ended with exit code %1, and nothing says "
                                              "why.")
                                   .arg(*story.run.exitCode)});
    }
    return story;
}

} // namespace

RunStory readRun(const QString &log, const QString &errors, const TargetLookUp &targetsOf)
{
    RunReader reader(targetsOf);
    TextPosition begin = 0;
    // A last line without its end was cut off.
    for (auto end = log.indexOf(QLatin1Char('\n')); end >= 0;
         end = log.indexOf(QLatin1Char('\n'), begin)) {
        reader.read(LogLine(log.mid(begin, end - begin)));
        begin = end + 1;
    }
    return reader.finish(errors);
}
