// SPDX-License-Identifier: MIT
#include "status/commands.h"

#include "literals.h"
#include "managersettings.h"
#include "status/filelook.h"
#include "status/runlog.h"
#include "status/setup.h"

namespace {

Answer withoutLog(Answer answer, Kind kind, const QString &logFile, const QString &text)
{
    answer.problems.append({kind, logFile, text});
    return answer;
}

} // namespace

Answer report(const Options &options)
{
    Answer answer = emptyAnswer(options);
    const QString logFile = options.folder + "/plugin.log"_l1;
    const Found found = lookAt(logFile);
    if (found == Found::Nothing) {
        return withoutLog(answer, Kind::LogMissing, logFile, QStringLiteral("There is no log."));
    }
    if (found != Found::File) {
        return withoutLog(answer, Kind::LogUnreadable, logFile,
                          QStringLiteral("The log cannot be read."));
    }
    const ManagerSettings settings(options.folder);
    const auto targetsOf = [&](const QString &key, const QString &path) {
        return installTargets(key, path, options.folder, settings);
    };
    const RunStory story = readRun(wholeText(logFile),
                                   wholeText(options.folder + "/pluginError.txt"_l1), targetsOf);
    if (story.run.mode.isEmpty()) {
        return withoutLog(answer, Kind::LogMissing, logFile,
                          QStringLiteral("The log holds no run."));
    }
    answer.run = story.run;
    answer.problems = story.problems;
    for (const HostAnswer &host : story.hosts) {
        if (options.wants(host.key)) {
            answer.hosts.append(host);
        }
    }
    return answer;
}
