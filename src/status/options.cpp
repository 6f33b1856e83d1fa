// SPDX-License-Identifier: MIT
#include "status/options.h"

#include "globals.h"
#include "literals.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

struct CommandRow {
    QLatin1String name;
    QLatin1String question;
    QLatin1String exitCodes;
};

// clang-format off
constexpr CommandRow commands[] = {
    {"plan"_l1, "What would a run of the installer do now?"_l1,
     "Ends with 0: nothing to do, 2: something to do, 3: it would fail or be incomplete, 1: cannot be found out."_l1},
    {"verify"_l1, "Is what is installed whole?"_l1,
     "Ends with 0: whole, 3: damaged, 2: not installed or another version, 1: cannot be found out."_l1},
    {"report"_l1, "What did the last run of the installer do?"_l1,
     "Ends with 0: all hosts complete, 3: a host failed or is incomplete, 2: the run did not end, 1: no log."_l1},
    {"doctor"_l1, "What is wrong with the set-up?"_l1,
     "Ends with 0: nothing, 3: something will fail, 2: something to look at, 1: cannot be found out."_l1},
};
// clang-format on

constexpr QLatin1String modes[] = {"install"_l1, "reinstall"_l1, "onlyWriteConfig"_l1};

const CommandRow *findCommand(const QString &name)
{
    const auto *const row = std::find_if(
        std::begin(commands), std::end(commands),
        [&name](const CommandRow &candidate) { return name == candidate.name; });
    return row == std::end(commands) ? nullptr : row;
}

QString listOfCommands()
{
    QString text = QStringLiteral("\nCommands:\n");
    for (const CommandRow &row : commands) {
        text += "  "_l1 + QString(row.name).leftJustified(8) + row.question + QLatin1Char('\n');
    }
    return text + "\n\"drask-status COMMAND --help\" tells more of each.\n"_l1;
}

void addCommonOptions(QCommandLineParser &parser)
{
    parser.addOption({QStringLiteral("folder"),
                      QStringLiteral("The manager's folder, with settings.ini and plugins/. "
                                     "Default: the folder of this program."),
                      QStringLiteral("DIR")});
    parser.addOption({QStringLiteral("host"),
                      QStringLiteral("Only this host, such as \"maya\". May be repeated."),
                      QStringLiteral("KEY")});
    parser.addOption({QStringLiteral("json"), QStringLiteral("Print one JSON object.")});
    parser.addOption(
        {QStringLiteral("all"), QStringLiteral("List everything, not the first ten.")});
    parser.addOption({QStringLiteral("no-colour"), QStringLiteral("Never use colour.")});
    parser.addOption(
        {{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help.")});
    parser.addOption({QStringLiteral("version"), QStringLiteral("Print the version.")});
}

/// The parser of the command \a row; of the program itself for none.
void setUp(QCommandLineParser &parser, const CommandRow *row)
{
    addCommonOptions(parser);
    if (row == nullptr) {
        parser.setApplicationDescription(
            QStringLiteral("Looks at the Drask plug-ins of this machine. It changes nothing."));
        parser.addPositionalArgument(QStringLiteral("COMMAND"),
                                     QStringLiteral("One of those below."),
                                     QStringLiteral("COMMAND"));
        return;
    }
    parser.setApplicationDescription(row->question + QLatin1Char('\n') + row->exitCodes);
    parser.addPositionalArgument(row->name, row->question, row->name);
    if (row->name == "plan"_l1) {
        parser.addOption({QStringLiteral("mode"),
                          QStringLiteral("How the installer would be started: install (the "
                                         "default), reinstall or onlyWriteConfig."),
                          QStringLiteral("MODE"), modes[0]});
    }
}

/// \a folder as the installer would name it, if it lay there.
QString realPath(const QString &folder)
{
    const QFileInfo info(folder);
    const QString path = info.canonicalFilePath();
    return path.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : path;
}

Options readOptions(const QCommandLineParser &parser, const CommandRow &row)
{
    Options options;
    options.command = row.name;
    const QString folder = parser.value(QStringLiteral("folder"));
    options.folder = folder.isEmpty() ? QCoreApplication::applicationDirPath() : realPath(folder);
    options.mode = row.name == "plan"_l1 ? parser.value(QStringLiteral("mode")) : QString();
    options.hosts = parser.values(QStringLiteral("host"));
    options.output = parser.isSet(QStringLiteral("json")) ? Output::Machines : Output::People;
    options.listing = parser.isSet(QStringLiteral("all")) ? Listing::All : Listing::First;
    const bool neverColour = parser.isSet(QStringLiteral("no-colour"))
        || !qEnvironmentVariableIsEmpty("NO_COLOR");
    options.colour = neverColour ? Colour::Never : Colour::IfTerminal;
    return options;
}

/// What is wrong with the words of \a parser; empty for nothing.
QString errorOf(const QCommandLineParser &parser, const CommandRow *row)
{
    const QStringList names = parser.positionalArguments();
    if (names.isEmpty()) {
        return QStringLiteral("A command is missing.");
    }
    if (row == nullptr) {
        return QStringLiteral("There is no command \"%1\".").arg(names.first());
    }
    if (names.size() > 1) {
        return QStringLiteral("\"%1\" is one word too many.").arg(names.at(1));
    }
    if (parser.isSet(QStringLiteral("folder"))
        && parser.value(QStringLiteral("folder")).isEmpty()) {
        return QStringLiteral("--folder needs the name of a folder.");
    }
    if (row->name == "plan"_l1
        && std::find(std::begin(modes), std::end(modes), parser.value(QStringLiteral("mode")))
            == std::end(modes)) {
        return QStringLiteral("There is no mode \"%1\".").arg(parser.value(QStringLiteral("mode")));
    }
    return {};
}

/// The first word that is no option and no option's value: the name of the command.
QString commandAmong(const QStringList &words)
{
    QCommandLineParser parser;
    addCommonOptions(parser);
    parser.addOption({QStringLiteral("mode"), QString(), QStringLiteral("MODE")});
    static_cast<void>(parser.parse(words));
    return parser.positionalArguments().value(0);
}

} // namespace

bool Options::wants(const QString &key) const
{
    return hosts.isEmpty() || hosts.contains(key);
}

ParsedWords parseWords(const QStringList &words)
{
    const CommandRow *const row = findCommand(commandAmong(words));
    QCommandLineParser parser;
    setUp(parser, row);
    ParsedWords parsed;
    if (!parser.parse(words)) {
        parsed.error = parser.errorText();
    } else if (parser.isSet(QStringLiteral("version"))) {
        parsed.help = "drask-status "_l1 + installerVersion + QLatin1Char('\n');
    } else if (parser.isSet(QStringLiteral("help"))) {
        parsed.help = parser.helpText() + (row == nullptr ? listOfCommands() : QString());
    } else {
        parsed.error = errorOf(parser, row);
    }
    if (parsed.error.isEmpty() && parsed.help.isEmpty()) {
        parsed.options = readOptions(parser, *row);
    } else if (!parsed.error.isEmpty()) {
        parsed.error += "\nTry \"drask-status --help\".\n"_l1;
    }
    return parsed;
}
