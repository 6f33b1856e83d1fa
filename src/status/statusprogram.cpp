// SPDX-License-Identifier: MIT
#include "status/statusprogram.h"

#include "disk/terminal.h"
#include "literals.h"
#include "status/commands.h"
#include "status/jsonoutput.h"
#include "status/tableoutput.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>

namespace {

/// Lines that the installer's own operations would log belong into no log here.
void dropMessage(QtMsgType /*type*/, const QMessageLogContext & /*context*/,
                 const QString & /*message*/)
{
}

void print(std::FILE *stream, const QByteArray &text)
{
    static_cast<void>(
        std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stream));
    static_cast<void>(std::fflush(stream));
}

/// Says on a terminal what is looked at, always on one line.
void showProgress(int done, int all, const QString &what)
{
    const QString line = done < all
        ? QStringLiteral("%1 of %2: %3").arg(done + 1).arg(all).arg(what)
        : QString();
    print(stderr, ("\r\033[K"_l1 + line).toUtf8());
}

void noProgress(int /*done*/, int /*all*/, const QString & /*what*/)
{
}

struct CommandRun {
    QLatin1String name;
    Answer (*run)(const Options &options, const Progress &progress) = nullptr;
};

// clang-format off
constexpr CommandRun commandRuns[] = {
    {"plan"_l1, [](const Options &options, const Progress &) { return plan(options); }},
    {"verify"_l1, verify},
    {"report"_l1, [](const Options &options, const Progress &) { return report(options); }},
    {"doctor"_l1, [](const Options &options, const Progress &) { return doctor(options); }},
};
// clang-format on

/// Says of each host that was asked for whether there is one.
void addUnlistedHosts(const Options &options, Answer &answer)
{
    for (const QString &key : options.hosts) {
        const bool isListed = std::any_of(
            answer.hosts.cbegin(), answer.hosts.cend(),
            [&key](const HostAnswer &host) { return host.key == key; });
        if (!isListed) {
            answer.problems.append({Kind::HostNotListed, QString(),
                                    QStringLiteral("There is no host \"%1\".").arg(key)});
        }
    }
}

Answer answerTo(const Options &options)
{
    const Progress progress = isTerminal(stderr) ? showProgress : noProgress;
    for (const CommandRun &command : commandRuns) {
        if (options.command == command.name) {
            return command.run(options, progress);
        }
    }
    return {};
}

} // namespace

int runStatus(int argc, char *argv[])
{
    // As in the installer: Qt complains of locale and pattern on the console.
    static_cast<void>(qunsetenv("QT_MESSAGE_PATTERN"));
    qInstallMessageHandler(dropMessage);
    const QCoreApplication application(argc, argv);
    const ParsedWords words = parseWords(QCoreApplication::arguments());
    if (!words.error.isEmpty()) {
        print(stderr, words.error.toLocal8Bit());
        return exitCodeOf(Result::Unknown);
    }
    if (!words.help.isEmpty()) {
        print(stdout, words.help.toLocal8Bit());
        return 0;
    }
    const Options &options = words.options;
    Answer answer = answerTo(options);
    addUnlistedHosts(options, answer);
    if (options.output == Output::Machines) {
        print(stdout, toJson(answer));
    } else {
        const bool isColoured = options.colour == Colour::IfTerminal && isTerminal(stdout);
        print(
            stdout,
            toText(answer, options.listing, isColoured ? Paint::Coloured : Paint::Plain).toUtf8());
    }
    return exitCodeOf(answer.result());
}
