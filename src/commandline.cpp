// SPDX-License-Identifier: MIT
#include "commandline.h"

#include <QLatin1String>

namespace {

struct ModeWord {
    QLatin1String word;
    RunMode mode;
    bool takesOperand;
};

// clang-format off
constexpr ModeWord modeWords[] = {
    {QLatin1String("ov3uninstall"),       RunMode::Ov3Uninstall,    true},
    {QLatin1String("uninstallPlugin"),    RunMode::UninstallPlugin, true},
    {QLatin1String("onlyWriteConfig"),    RunMode::OnlyWriteConfig, false},
    {QLatin1String("uninstallAllPlugins"), RunMode::UninstallAll,   false},
    {QLatin1String("reinstall"),          RunMode::Reinstall,       false},
    // Deliberate: managers in the field pass this word with its quotes.
    {QLatin1String("\"reinstall\""),      RunMode::Reinstall,       false},
};
// clang-format on

} // namespace

CommandLine readCommandLine(const std::vector<const char *> &words)
{
    if (words.size() < 2) {
        return {};
    }
    const QString first = QString::fromLocal8Bit(words[1]);
    const QString second = words.size() > 2 ? QString::fromLocal8Bit(words[2]) : QString();
    for (const ModeWord &candidate : modeWords) {
        if (first == candidate.word && (!candidate.takesOperand || words.size() > 2)) {
            return {candidate.mode, candidate.takesOperand ? second : QString()};
        }
    }
    return {};
}
