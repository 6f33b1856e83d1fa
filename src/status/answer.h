// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>
#include <QList>
#include <QString>

#include <optional>

/// \file
/// The answer to a command, as both outputs print it. docs/status.md lists the names.

/// What becomes of a file or a folder.
enum class Action { Make, Replace, Remove, MakeFolder };

/// One file or folder that a run would touch.
struct Change {
    QString path;                 ///< absolute, with the links of its folder resolved
    Action action = Action::Make; ///< what the run does there
    bool differs = true;          ///< false: the same bytes with the same mode are put there
};

/// How much a problem weighs.
enum class Gravity {
    Note,    ///< worth knowing; changes no result
    Look,    ///< something to look at, or to do
    Unknown, ///< keeps the answer from being found out
    Fails,   ///< something is broken, or will fail
};

/// What kind a problem is of. Each has a name for machines and a gravity: see kindName() and
/// gravityOf().
enum class Kind {
    // the manager's folder
    SettingsMissing,
    SettingsUnreadable,
    UnknownHost,
    PathWithoutSlash,
    SharedFolder,
    CpuTypeUnknown,
    CannotLook,
    HostNotListed,
    // what a run meets
    PluginNotCopied,
    CopyLeftOut,
    ManifestNotWritten,
    FileNotRemoved,
    FileNotCopied,
    FileNotWritable,
    ConfigNotWritten,
    UserSetupNotWritten,
    HoudiniEnvNotWritten,
    VersionNotWritten,
    // what a log tells
    LogMissing,
    LogUnreadable,
    RunNotEnded,
    RunsMixed,
    OlderRuns,
    ExitCode,
    UninstallFailed,
    // what is installed
    NotInstalled,
    OtherVersion,
    ManifestMissing,
    ManifestUnreadable,
    ManifestIncomplete,
    OutsideFolder,
    FileMissing,
    FileDiffers,
    FileEmpty,
    FileUnreadable,
    FileNotListed,
    ConfigMissing,
    ConfigUnreadable,
    ConfigDiffers,
    UserSetupMissing,
    UserSetupUnreadable,
    UserSetupWithoutBlock,
    UserSetupTwoBlocks,
    UserSetupOtherPath,
    HoudiniEnvMissing,
    HoudiniEnvUnreadable,
    HoudiniEnvWithoutAssignment,
    LeftOver,
    // what is wrong with the set-up
    UnknownSection,
    UnknownKey,
    UnquotedList,
    AtValue,
    SizeMissing,
    SizeWrong,
    NotUtf8,
    PathWithTrailingSlash,
    PathMissing,
    PathWithBracket,
    PathRelative,
    LineBreak,
    PluginMissing,
    ShippedVersionMissing,
    ShippedVersionNoNumber,
    ShippedVersionOther,
    ShippedHidden,
    ShippedReadOnly,
    ShippedUnreadable,
    ShippedLink,
    ShippedReservedName,
    TemplateMissing,
    TemplateRule,
    UserSetupUnrecognised,
    FolderNotWritable,
    DiskFull,
    CpuTypeMissing,
    CpuTypeNotExecutable,
};

/// The name of \a kind for machines: lower camel case, the same for ever.
QLatin1String kindName(Kind kind);
/// How much each problem of \a kind weighs.
Gravity gravityOf(Kind kind);

/// Something that is not as it should be.
struct Problem {
    Kind kind = Kind::CannotLook; ///< for machines
    QString path;                 ///< the file or folder in question; empty where there is none
    QString text;                 ///< a sentence for people, without the path
};

/// How a host is, or what becomes of it.
enum class State {
    // what a run would do
    Skipped,
    UpToDate,
    Install,
    Update,
    CopyAgain,
    Configuration,
    Fails,
    // what a run did
    Copied,
    FoundUpToDate,
    LeftOut,
    Uninstalled,
    Failed,
    Interrupted,
    // what is installed
    Whole,
    Damaged,
    NotInstalled,
    OtherVersion,
    // the set-up
    Fine,
    Look,
    WillFail,
    // any
    Unknown,
};

/// The name of \a state for machines.
QLatin1String stateName(State state);
/// \a state for people.
QLatin1String stateWords(State state);

/// The name of \a action for machines.
QLatin1String actionName(Action action);

/// What is said of one install target.
struct HostAnswer {
    QString key;                  ///< the host's, as the settings have it
    QString path;                 ///< the host's folder, as the settings have it
    QString target;               ///< the folder of the plug-in
    QString startUpFile;          ///< the user's file that is edited for it; empty for none
    State state = State::Unknown; ///< in the terms of the command
    std::optional<int> installed; ///< the version that is there
    std::optional<int> wanted;  ///< the version that the settings ask for; none for an unknown host
    QList<Change> changes = {}; ///< what a run would touch for this target
    QList<Problem> problems = {}; ///< what is wrong with it
};

/// What a command found out, in a word. Each is one exit code: see exitCodeOf().
enum class Result { Nothing, Unknown, Changes, Problems };

/// The name of \a result for machines.
QLatin1String resultName(Result result);
/// 0 for Nothing, 1 for Unknown, 2 for Changes and 3 for Problems.
int exitCodeOf(Result result);

/// A run of the installer, past or foretold.
struct RunFacts {
    QString mode;                ///< the mode's word; "install" for none
    bool ended = false;          ///< false: it was cut off
    std::optional<int> exitCode; ///< none for a run that did not end
};

/// The answer to a command.
struct Answer {
    QString command;             ///< its word
    QString folder;              ///< the manager's
    std::optional<RunFacts> run; ///< for the commands that speak of a run
    QList<HostAnswer> hosts;     ///< one for each install target, in the order of the settings
    QList<Change> changes;       ///< of the run, not of a host
    QList<Problem> problems;     ///< of the whole, not of a host

    /// What all problems and changes come to: Problems if one Fails, else Unknown, else Changes if
    /// something is to be done or looked at.
    Result result() const;
};

/// The heaviest gravity among \a problems; Note for none.
Gravity heaviest(const QList<Problem> &problems);

/// What a command calls a host by the heaviest of its problems.
struct Verdicts {
    State fine;  ///< for none, or notes
    State look;  ///< for what has to be looked at
    State fails; ///< for what fails
};

/// The one of \a verdicts that \a problems lead to; Unknown where something cannot be found out.
State judged(const QList<Problem> &problems, const Verdicts &verdicts);
