// SPDX-License-Identifier: MIT
#include "status/answer.h"

#include "literals.h"

#include <algorithm>

namespace {

struct KindRow {
    Kind kind;
    QLatin1String name;
    Gravity gravity;
};

// clang-format off
constexpr KindRow kindTable[] = {
    {Kind::SettingsMissing,             "settingsMissing"_l1,             Gravity::Unknown},
    {Kind::SettingsUnreadable,          "settingsUnreadable"_l1,          Gravity::Unknown},
    {Kind::UnknownHost,                 "unknownHost"_l1,                 Gravity::Fails},
    {Kind::PathWithoutSlash,            "pathWithoutSlash"_l1,            Gravity::Look},
    {Kind::SharedFolder,                "sharedFolder"_l1,                Gravity::Fails},
    {Kind::CpuTypeUnknown,              "cpuTypeUnknown"_l1,              Gravity::Note},
    {Kind::CannotLook,                  "cannotLook"_l1,                  Gravity::Unknown},

    {Kind::HostNotListed,               "hostNotListed"_l1,               Gravity::Unknown},
    {Kind::PluginNotCopied,             "pluginNotCopied"_l1,             Gravity::Fails},
    {Kind::CopyLeftOut,                 "copyLeftOut"_l1,                 Gravity::Fails},
    {Kind::ManifestNotWritten,          "manifestNotWritten"_l1,          Gravity::Fails},
    {Kind::FileNotRemoved,              "fileNotRemoved"_l1,              Gravity::Fails},
    {Kind::FileNotCopied,               "fileNotCopied"_l1,               Gravity::Fails},
    {Kind::FileNotWritable,             "fileNotWritable"_l1,             Gravity::Fails},
    {Kind::ConfigNotWritten,            "configNotWritten"_l1,            Gravity::Fails},
    {Kind::UserSetupNotWritten,         "userSetupNotWritten"_l1,         Gravity::Fails},
    {Kind::HoudiniEnvNotWritten,        "houdiniEnvNotWritten"_l1,        Gravity::Fails},
    {Kind::VersionNotWritten,           "versionNotWritten"_l1,           Gravity::Note},

    {Kind::LogMissing,                  "logMissing"_l1,                  Gravity::Unknown},
    {Kind::LogUnreadable,               "logUnreadable"_l1,               Gravity::Unknown},
    {Kind::RunNotEnded,                 "runNotEnded"_l1,                 Gravity::Look},
    {Kind::RunsMixed,                   "runsMixed"_l1,                   Gravity::Fails},
    {Kind::OlderRuns,                   "olderRuns"_l1,                   Gravity::Note},
    {Kind::ExitCode,                    "exitCode"_l1,                    Gravity::Fails},
    {Kind::UninstallFailed,             "uninstallFailed"_l1,             Gravity::Fails},

    {Kind::NotInstalled,                "notInstalled"_l1,                Gravity::Look},
    {Kind::OtherVersion,                "otherVersion"_l1,                Gravity::Look},
    {Kind::ManifestMissing,             "manifestMissing"_l1,             Gravity::Fails},
    {Kind::ManifestUnreadable,          "manifestUnreadable"_l1,          Gravity::Fails},
    {Kind::ManifestIncomplete,          "manifestIncomplete"_l1,          Gravity::Fails},
    {Kind::OutsideFolder,               "outsideFolder"_l1,               Gravity::Fails},
    {Kind::FileMissing,                 "fileMissing"_l1,                 Gravity::Fails},
    {Kind::FileDiffers,                 "fileDiffers"_l1,                 Gravity::Fails},
    {Kind::FileEmpty,                   "fileEmpty"_l1,                   Gravity::Fails},
    {Kind::FileUnreadable,              "fileUnreadable"_l1,              Gravity::Fails},
    {Kind::FileNotListed,               "fileNotListed"_l1,               Gravity::Fails},
    {Kind::ConfigMissing,               "configMissing"_l1,               Gravity::Fails},
    {Kind::ConfigUnreadable,            "configUnreadable"_l1,            Gravity::Fails},
    {Kind::ConfigDiffers,               "configDiffers"_l1,               Gravity::Fails},
    {Kind::UserSetupMissing,            "userSetupMissing"_l1,            Gravity::Fails},
    {Kind::UserSetupUnreadable,         "userSetupUnreadable"_l1,         Gravity::Fails},
    {Kind::UserSetupWithoutBlock,       "userSetupWithoutBlock"_l1,       Gravity::Fails},
    {Kind::UserSetupTwoBlocks,          "userSetupTwoBlocks"_l1,          Gravity::Fails},
    {Kind::UserSetupOtherPath,          "userSetupOtherPath"_l1,          Gravity::Fails},
    {Kind::HoudiniEnvMissing,           "houdiniEnvMissing"_l1,           Gravity::Fails},
    {Kind::HoudiniEnvUnreadable,        "houdiniEnvUnreadable"_l1,        Gravity::Fails},
    {Kind::HoudiniEnvWithoutAssignment, "houdiniEnvWithoutAssignment"_l1, Gravity::Fails},
    {Kind::LeftOver,                    "leftOver"_l1,                    Gravity::Fails},

    {Kind::UnknownSection,              "unknownSection"_l1,              Gravity::Note},
    {Kind::UnknownKey,                  "unknownKey"_l1,                  Gravity::Look},
    {Kind::UnquotedList,                "unquotedList"_l1,                Gravity::Fails},
    {Kind::AtValue,                     "atValue"_l1,                     Gravity::Look},
    {Kind::SizeMissing,                 "sizeMissing"_l1,                 Gravity::Fails},
    {Kind::SizeWrong,                   "sizeWrong"_l1,                   Gravity::Fails},
    {Kind::NotUtf8,                     "notUtf8"_l1,                     Gravity::Fails},
    {Kind::PathWithTrailingSlash,       "pathWithTrailingSlash"_l1,       Gravity::Look},
    {Kind::PathMissing,                 "pathMissing"_l1,                 Gravity::Look},
    {Kind::PathWithBracket,             "pathWithBracket"_l1,             Gravity::Look},
    {Kind::PathRelative,                "pathRelative"_l1,                Gravity::Look},
    {Kind::LineBreak,                   "lineBreak"_l1,                   Gravity::Look},
    {Kind::PluginMissing,               "pluginMissing"_l1,               Gravity::Fails},
    {Kind::ShippedVersionMissing,       "shippedVersionMissing"_l1,       Gravity::Look},
    {Kind::ShippedVersionNoNumber,      "shippedVersionNoNumber"_l1,      Gravity::Look},
    {Kind::ShippedVersionOther,         "shippedVersionOther"_l1,         Gravity::Look},
    {Kind::ShippedHidden,               "shippedHidden"_l1,               Gravity::Look},
    {Kind::ShippedReadOnly,             "shippedReadOnly"_l1,             Gravity::Fails},
    {Kind::ShippedUnreadable,           "shippedUnreadable"_l1,           Gravity::Fails},
    {Kind::ShippedLink,                 "shippedLink"_l1,                 Gravity::Look},
    {Kind::ShippedReservedName,         "shippedReservedName"_l1,         Gravity::Look},
    {Kind::TemplateMissing,             "templateMissing"_l1,             Gravity::Fails},
    {Kind::TemplateRule,                "templateRule"_l1,                Gravity::Look},
    {Kind::UserSetupUnrecognised,       "userSetupUnrecognised"_l1,       Gravity::Look},
    {Kind::FolderNotWritable,           "folderNotWritable"_l1,           Gravity::Fails},
    {Kind::DiskFull,                    "diskFull"_l1,                    Gravity::Fails},
    {Kind::CpuTypeMissing,              "cpuTypeMissing"_l1,              Gravity::Look},
    {Kind::CpuTypeNotExecutable,        "cpuTypeNotExecutable"_l1,        Gravity::Look},
};

struct StateRow {
    State state;
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
