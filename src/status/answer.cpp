// SPDX-License-Identifier: MIT
#include "status/answer.h"

#include "literals.h"

#include <algorithm>

namespace {

struct KindRow {
    Kind kind = Kind::CannotLook;
    Gravity gravity = Gravity::Note;
    QLatin1String name;
};

// clang-format off
constexpr KindRow kindTable[] = {
    {Kind::SettingsMissing,             Gravity::Unknown, "settingsMissing"_l1},
    {Kind::SettingsUnreadable,          Gravity::Unknown, "settingsUnreadable"_l1},
    {Kind::UnknownHost,                 Gravity::Fails,   "unknownHost"_l1},
    {Kind::PathWithoutSlash,            Gravity::Look,    "pathWithoutSlash"_l1},
    {Kind::SharedFolder,                Gravity::Fails,   "sharedFolder"_l1},
    {Kind::CpuTypeUnknown,              Gravity::Note,    "cpuTypeUnknown"_l1},
    {Kind::CannotLook,                  Gravity::Unknown, "cannotLook"_l1},

    {Kind::HostNotListed,               Gravity::Unknown, "hostNotListed"_l1},
    {Kind::PluginNotCopied,             Gravity::Fails,   "pluginNotCopied"_l1},
    {Kind::CopyLeftOut,                 Gravity::Fails,   "copyLeftOut"_l1},
    {Kind::ManifestNotWritten,          Gravity::Fails,   "manifestNotWritten"_l1},
    {Kind::FileNotRemoved,              Gravity::Fails,   "fileNotRemoved"_l1},
    {Kind::FileNotCopied,               Gravity::Fails,   "fileNotCopied"_l1},
    {Kind::FileNotWritable,             Gravity::Fails,   "fileNotWritable"_l1},
    {Kind::ConfigNotWritten,            Gravity::Fails,   "configNotWritten"_l1},
    {Kind::UserSetupNotWritten,         Gravity::Fails,   "userSetupNotWritten"_l1},
    {Kind::HoudiniEnvNotWritten,        Gravity::Fails,   "houdiniEnvNotWritten"_l1},
    {Kind::VersionNotWritten,           Gravity::Note,    "versionNotWritten"_l1},

    {Kind::LogMissing,                  Gravity::Unknown, "logMissing"_l1},
    {Kind::LogUnreadable,               Gravity::Unknown, "logUnreadable"_l1},
    {Kind::RunNotEnded,                 Gravity::Look,    "runNotEnded"_l1},
    {Kind::RunsMixed,                   Gravity::Fails,   "runsMixed"_l1},
    {Kind::OlderRuns,                   Gravity::Note,    "olderRuns"_l1},
    {Kind::ExitCode,                    Gravity::Fails,   "exitCode"_l1},
    {Kind::UninstallFailed,             Gravity::Fails,   "uninstallFailed"_l1},

    {Kind::NotInstalled,                Gravity::Look,    "notInstalled"_l1},
    {Kind::OtherVersion,                Gravity::Look,    "otherVersion"_l1},
    {Kind::ManifestMissing,             Gravity::Fails,   "manifestMissing"_l1},
    {Kind::ManifestUnreadable,          Gravity::Fails,   "manifestUnreadable"_l1},
    {Kind::ManifestIncomplete,          Gravity::Fails,   "manifestIncomplete"_l1},
    {Kind::OutsideFolder,               Gravity::Fails,   "outsideFolder"_l1},
    {Kind::FileMissing,                 Gravity::Fails,   "fileMissing"_l1},
    {Kind::FileDiffers,                 Gravity::Fails,   "fileDiffers"_l1},
    {Kind::FileEmpty,                   Gravity::Fails,   "fileEmpty"_l1},
    {Kind::FileUnreadable,              Gravity::Fails,   "fileUnreadable"_l1},
    {Kind::FileNotListed,               Gravity::Fails,   "fileNotListed"_l1},
    {Kind::ConfigMissing,               Gravity::Fails,   "configMissing"_l1},
    {Kind::ConfigUnreadable,            Gravity::Fails,   "configUnreadable"_l1},
    {Kind::ConfigDiffers,               Gravity::Fails,   "configDiffers"_l1},
    {Kind::UserSetupMissing,            Gravity::Fails,   "userSetupMissing"_l1},
    {Kind::UserSetupUnreadable,         Gravity::Fails,   "userSetupUnreadable"_l1},
    {Kind::UserSetupWithoutBlock,       Gravity::Fails,   "userSetupWithoutBlock"_l1},
    {Kind::UserSetupTwoBlocks,          Gravity::Fails,   "userSetupTwoBlocks"_l1},
    {Kind::UserSetupOtherPath,          Gravity::Fails,   "userSetupOtherPath"_l1},
    {Kind::HoudiniEnvMissing,           Gravity::Fails,   "houdiniEnvMissing"_l1},
    {Kind::HoudiniEnvUnreadable,        Gravity::Fails,   "houdiniEnvUnreadable"_l1},
    {Kind::HoudiniEnvWithoutAssignment, Gravity::Fails,   "houdiniEnvWithoutAssignment"_l1},
    {Kind::LeftOver,                    Gravity::Fails,   "leftOver"_l1},

    {Kind::UnknownSection,              Gravity::Note,    "unknownSection"_l1},
    {Kind::UnknownKey,                  Gravity::Look,    "unknownKey"_l1},
    {Kind::UnquotedList,                Gravity::Fails,   "unquotedList"_l1},
    {Kind::AtValue,                     Gravity::Look,    "atValue"_l1},
    {Kind::SizeMissing,                 Gravity::Fails,   "sizeMissing"_l1},
    {Kind::SizeWrong,                   Gravity::Fails,   "sizeWrong"_l1},
    {Kind::NotUtf8,                     Gravity::Fails,   "notUtf8"_l1},
    {Kind::PathWithTrailingSlash,       Gravity::Look,    "pathWithTrailingSlash"_l1},
    {Kind::PathMissing,                 Gravity::Look,    "pathMissing"_l1},
    {Kind::PathWithBracket,             Gravity::Look,    "pathWithBracket"_l1},
    {Kind::PathRelative,                Gravity::Look,    "pathRelative"_l1},
    {Kind::LineBreak,                   Gravity::Look,    "lineBreak"_l1},
    {Kind::PluginMissing,               Gravity::Fails,   "pluginMissing"_l1},
    {Kind::ShippedVersionMissing,       Gravity::Look,    "shippedVersionMissing"_l1},
    {Kind::ShippedVersionNoNumber,      Gravity::Look,    "shippedVersionNoNumber"_l1},
    {Kind::ShippedVersionOther,         Gravity::Look,    "shippedVersionOther"_l1},
    {Kind::ShippedHidden,               Gravity::Look,    "shippedHidden"_l1},
    {Kind::ShippedReadOnly,             Gravity::Fails,   "shippedReadOnly"_l1},
    {Kind::ShippedUnreadable,           Gravity::Fails,   "shippedUnreadable"_l1},
    {Kind::ShippedLink,                 Gravity::Look,    "shippedLink"_l1},
    {Kind::ShippedReservedName,         Gravity::Look,    "shippedReservedName"_l1},
    {Kind::TemplateMissing,             Gravity::Fails,   "templateMissing"_l1},
    {Kind::TemplateRule,                Gravity::Look,    "templateRule"_l1},
    {Kind::UserSetupUnrecognised,       Gravity::Look,    "userSetupUnrecognised"_l1},
    {Kind::FolderNotWritable,           Gravity::Fails,   "folderNotWritable"_l1},
    {Kind::DiskFull,                    Gravity::Fails,   "diskFull"_l1},
    {Kind::CpuTypeMissing,              Gravity::Look,    "cpuTypeMissing"_l1},
    {Kind::CpuTypeNotExecutable,        Gravity::Look,    "cpuTypeNotExecutable"_l1},
};

struct StateRow {
    State state = State::Unknown;
    QLatin1String name;
    QLatin1String words;
};

constexpr StateRow stateTable[] = {
    {State::Skipped,       "skipped"_l1,       "passed over"_l1},
    {State::UpToDate,      "upToDate"_l1,      "up to date"_l1},
    {State::Install,       "install"_l1,       "would be installed"_l1},
    {State::Update,        "update"_l1,        "would be updated"_l1},
    {State::CopyAgain,     "copyAgain"_l1,     "would be copied again"_l1},
    {State::Configuration, "configuration"_l1, "would be configured"_l1},
    {State::Fails,         "fails"_l1,         "would fail"_l1},
    {State::Copied,        "copied"_l1,        "copied"_l1},
    {State::FoundUpToDate, "foundUpToDate"_l1, "was up to date"_l1},
    {State::LeftOut,       "leftOut"_l1,       "configured only"_l1},
    {State::Uninstalled,   "uninstalled"_l1,   "uninstalled"_l1},
    {State::Failed,        "failed"_l1,        "failed"_l1},
    {State::Interrupted,   "interrupted"_l1,   "interrupted"_l1},
    {State::Whole,         "whole"_l1,         "whole"_l1},
    {State::Damaged,       "damaged"_l1,       "damaged"_l1},
    {State::NotInstalled,  "notInstalled"_l1,  "not installed"_l1},
    {State::OtherVersion,  "otherVersion"_l1,  "another version"_l1},
    {State::Fine,          "fine"_l1,          "fine"_l1},
    {State::Look,          "look"_l1,          "look at it"_l1},
    {State::WillFail,      "willFail"_l1,      "will fail"_l1},
    {State::Unknown,       "unknown"_l1,       "unknown"_l1},
};

constexpr QLatin1String actionNames[] = {
    "make"_l1, "replace"_l1, "remove"_l1, "makeFolder"_l1,
};

constexpr QLatin1String resultNames[] = {
    "nothing"_l1, "unknown"_l1, "changes"_l1, "problems"_l1,
};
// clang-format on

const KindRow &rowOf(Kind kind)
{
    return *std::find_if(std::begin(kindTable), std::end(kindTable),
                         [kind](const KindRow &row) { return row.kind == kind; });
}

const StateRow &rowOf(State state)
{
    return *std::find_if(std::begin(stateTable), std::end(stateTable),
                         [state](const StateRow &row) { return row.state == state; });
}

bool isToBeDone(const HostAnswer &host)
{
    return host.state == State::Install || host.state == State::Update
        || host.state == State::CopyAgain;
}

bool anyDiffers(const QList<Change> &changes)
{
    return std::any_of(changes.cbegin(), changes.cend(),
                       [](const Change &change) { return change.differs; });
}

} // namespace

QLatin1String kindName(Kind kind)
{
    return rowOf(kind).name;
}

Gravity gravityOf(Kind kind)
{
    return rowOf(kind).gravity;
}

QLatin1String stateName(State state)
{
    return rowOf(state).name;
}

QLatin1String stateWords(State state)
{
    return rowOf(state).words;
}

QLatin1String actionName(Action action)
{
    return actionNames[static_cast<int>(action)];
}

QLatin1String resultName(Result result)
{
    return resultNames[exitCodeOf(result)];
}

int exitCodeOf(Result result)
{
    return static_cast<int>(result);
}

Gravity heaviest(const QList<Problem> &problems)
{
    Gravity gravity = Gravity::Note;
    for (const Problem &problem : problems) {
        gravity = std::max(gravity, gravityOf(problem.kind));
    }
    return gravity;
}

State judged(const QList<Problem> &problems, const Verdicts &verdicts)
{
    switch (heaviest(problems)) {
    case Gravity::Fails:
        return verdicts.fails;
    case Gravity::Unknown:
        return State::Unknown;
    case Gravity::Look:
        return verdicts.look;
    case Gravity::Note:
        break;
    }
    return verdicts.fine;
}

Result Answer::result() const
{
    Gravity gravity = heaviest(problems);
    bool toBeDone = anyDiffers(changes);
    for (const HostAnswer &host : hosts) {
        gravity = std::max(gravity, heaviest(host.problems));
        toBeDone = toBeDone || isToBeDone(host) || anyDiffers(host.changes);
    }
    if (gravity == Gravity::Fails) {
        return Result::Problems;
    }
    if (gravity == Gravity::Unknown) {
        return Result::Unknown;
    }
    return toBeDone || gravity == Gravity::Look ? Result::Changes : Result::Nothing;
}
