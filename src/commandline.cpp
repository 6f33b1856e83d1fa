// SPDX-License-Identifier: MIT
#include "commandline.h"

#include "literals.h"

#include <QLatin1String>

namespace {

struct ModeWord {
    QLatin1String word;
    RunMode mode = RunMode::Install;
    bool takesOperand = false;
};

// clang-format off
constexpr ModeWord modeWords[] = {
    {"ov3uninstall"_l1,        RunMode::Ov3Uninstall,    true},
    {"uninstallPlugin"_l1,     RunMode::UninstallPlugin, true},
    {"onlyWriteConfig"_l1,     RunMode::OnlyWriteConfig, false},
    {"uninstallAllPlugins"_l1, RunMode::UninstallAll,    false},
    {"reinstall"_l1,           RunMode::Reinstall,       false},
    // Deliberate (quoted-reinstall): the word may come with its quotes.
    {"\"reinstall\""_l1,       RunMode::Reinstall,       false},
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
