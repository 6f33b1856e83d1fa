// SPDX-License-Identifier: MIT
#include "status/tableoutput.h"

#include "literals.h"
#include "status/answer.h"

#include <QMap>
#include <QStringList>

#include <algorithm>

namespace {

constexpr int lineWidth = 80;
constexpr int entriesShown = 10;
constexpr QChar ellipsis(0x2026);
constexpr QLatin1String gap = "  "_l1;

using Row = QStringList;

/// \a text in at most \a width characters; what is cut off at its start shows as "…".
QString endOf(const QString &text, int width)
{
    return text.size() <= width ? text : ellipsis + text.right(std::max(1, width - 1));
}

QString versionsOf(const HostAnswer &host)
{
    const auto numberOf = [](std::optional<int> version) {
        return version ? QString::number(*version) : QStringLiteral("-");
    };
    const QString installed = numberOf(host.installed);
    const QString wanted = numberOf(host.wanted);
    return installed == wanted ? wanted : installed + " -> "_l1 + wanted;
}

QLatin1String colourOf(const HostAnswer &host)
{
    switch (heaviest(host.problems)) {
    case Gravity::Fails:
        return "\033[31m"_l1;
    case Gravity::Look:
    case Gravity::Unknown:
        return "\033[33m"_l1;
    case Gravity::Note:
        break;
    }
    return "\033[32m"_l1;
}

/// The width that column \a column needs in \a rows.
int widthOf(const QList<Row> &rows, int column)
{
    int width = 0;
    for (const Row &row : rows) {
        width = std::max(width, static_cast<int>(row.at(column).size()));
    }
    return width;
}

QString tableOf(const Answer &answer, Paint paint)
{
    QList<Row> rows{{QStringLiteral("HOST"), QStringLiteral("VERSION"), QStringLiteral("STATE"),
                     QStringLiteral("FOLDER")}};
    for (const HostAnswer &host : answer.hosts) {
        rows.append({host.key, versionsOf(host), stateWords(host.state), host.target});
    }
    const int keyWidth = widthOf(rows, 0);
    const int versionWidth = widthOf(rows, 1);
    const int stateWidth = widthOf(rows, 2);
    const int rest = lineWidth - keyWidth - versionWidth - stateWidth
        - 3 * static_cast<int>(gap.size());
    QString text;
    for (int index = 0; index < rows.size(); ++index) {
        const Row &row = rows.at(index);
        QString state = row.at(2).leftJustified(stateWidth);
        if (paint == Paint::Coloured && index > 0) {
            state = colourOf(answer.hosts.at(index - 1)) + state + "\033[0m"_l1;
        }
        text += row.at(0).leftJustified(keyWidth) + gap + row.at(1).leftJustified(versionWidth)
            + gap + state + gap + endOf(row.at(3), rest) + QLatin1Char('\n');
    }
    return text;
}

/// "3 up to date, 1 damaged", in the order in which the states first appear.
QString countsOf(const QList<HostAnswer> &hosts)
{
    QList<State> states;
    QMap<State, int> counts;
    for (const HostAnswer &host : hosts) {
        if (++counts[host.state] == 1) {
            states.append(host.state);
        }
    }
    QStringList parts;
    for (const State state : states) {
        parts << QString::number(counts.value(state)) + QLatin1Char(' ') + stateWords(state);
    }
    return parts.join(", "_l1);
}

QString plural(qsizetype count, QLatin1String one, QLatin1String many)
{
    return QString::number(count) + QLatin1Char(' ') + (count == 1 ? one : many);
}

/// \a path as seen from \a folder, if it lies below.
QString relativeTo(const QString &folder, const QString &path)
{
    const QString start = folder + QLatin1Char('/');
    return !folder.isEmpty() && path.startsWith(start) ? path.mid(start.size()) : path;
}

/// Some lines with a headline that counts them, the first ten unless all are wanted.
QString listed(const QString &headline, const QStringList &lines, Listing listing)
{
    QString text = gap + headline + ":\n"_l1;
    const qsizetype shown = listing == Listing::All
        ? lines.size()
        : std::min<qsizetype>(lines.size(), entriesShown);
    for (qsizetype index = 0; index < shown; ++index) {
        text += gap + gap + lines.at(static_cast<int>(index)) + QLatin1Char('\n');
    }
    if (shown < lines.size()) {
        text += QStringLiteral("    %1 and %2 more (--all lists them)\n")
                    .arg(ellipsis)
                    .arg(lines.size() - shown);
    }
    return text;
}

// clang-format off
struct ChangeWords {
    Action action = Action::Make;
    bool differs = false;
    QLatin1String one;
    QLatin1String many;
};

constexpr ChangeWords changeWords[] = {
    {Action::MakeFolder, true,  "folder would be made"_l1,             "folders would be made"_l1},
    {Action::Make,       true,  "file would be made"_l1,               "files would be made"_l1},
    {Action::Replace,    true,  "file would change"_l1,                "files would change"_l1},
    {Action::Remove,     true,  "file would be removed"_l1,            "files would be removed"_l1},
    {Action::Replace,    false, "file would be written as it is"_l1,   "files would be written as they are"_l1},
};
// clang-format on

QString textOf(const QList<Change> &changes, const QString &folder, Listing listing)
{
    QString text;
    for (const ChangeWords &words : changeWords) {
        QStringList paths;
        for (const Change &change : changes) {
            if (change.action == words.action && change.differs == words.differs) {
                paths << relativeTo(folder, change.path);
            }
        }
        if (!paths.isEmpty()) {
            text += listed(plural(paths.size(), words.one, words.many), paths, listing);
        }
    }
    return text;
}

/// \a text in lines that are not too long, all but the first indented.
QString wrapped(const QString &text)
{
    QString lines;
    QString line;
    const QStringList words = text.split(QLatin1Char(' '));
    for (const QString &word : words) {
        if (!line.isEmpty() && line.size() + word.size() + 1 + gap.size() > lineWidth) {
            lines += line + QLatin1Char('\n') + gap;
            line.clear();
        }
        line += (line.isEmpty() ? QString() : QStringLiteral(" ")) + word;
    }
    return lines + line;
}

/// One problem: its sentence, and its path if it has one.
QString told(const QString &sentence, const QString &path)
{
    if (path.isEmpty()) {
        return gap + wrapped(sentence + QLatin1Char('.')) + QLatin1Char('\n');
    }
    const QString line = gap + sentence + ": "_l1 + path;
    return line.size() <= lineWidth ? line + QLatin1Char('\n')
                                    : gap + wrapped(sentence + QLatin1Char(':')) + QLatin1Char('\n')
            + gap + gap + path + QLatin1Char('\n');
}

/// What the problems of one kind say, in their order, and of which files.
struct Sentences {
    QStringList order;
    QMap<QString, QStringList> pathsOf;

    void add(const Problem &problem, const QString &folder)
    {
        const QString sentence = problem.text.endsWith(QLatin1Char('.')) ? problem.text.chopped(1)
                                                                         : problem.text;
        if (!pathsOf.contains(sentence)) {
            order << sentence;
        }
        const bool isSaid = problem.path.isEmpty() || problem.path == folder;
        pathsOf[sentence] << (isSaid ? QString() : relativeTo(folder, problem.path));
    }
};

Sentences sentencesOf(Kind kind, const QList<Problem> &problems, const QString &folder)
{
    Sentences sentences;
    for (const Problem &problem : problems) {
        if (problem.kind == kind) {
            sentences.add(problem, folder);
        }
    }
    return sentences;
}

/// One line for each problem of the kind \a kind; those that share a sentence share its headline.
QString textOf(Kind kind, const QList<Problem> &problems, const QString &folder, Listing listing)
{
    const Sentences sentences = sentencesOf(kind, problems, folder);
    QString text;
    int left = listing == Listing::All ? static_cast<int>(sentences.order.size()) : entriesShown;
    for (const QString &sentence : sentences.order) {
        const QStringList paths = sentences.pathsOf.value(sentence);
        if (left-- == 0) {
            return text
                + QStringLiteral("  %1 and more of this kind (--all lists them)\n").arg(ellipsis);
        }
        if (paths.size() > 1) {
            text += listed(QStringLiteral("%1 (%2)").arg(sentence).arg(paths.size()), paths,
                           listing);
        } else {
            text += told(sentence, paths.first());
        }
    }
    return text;
}

QString textOf(const QList<Problem> &problems, const QString &folder, Listing listing)
{
    QString text;
    QList<Kind> done;
    for (const Problem &problem : problems) {
        if (!done.contains(problem.kind)) {
            done.append(problem.kind);
            text += textOf(problem.kind, problems, folder, listing);
        }
    }
    return text;
}

QString headOf(const Answer &answer)
{
    QString text = answer.command + ": "_l1 + answer.folder + QLatin1Char('\n');
    if (answer.run) {
        text += QStringLiteral("mode %1, ").arg(answer.run->mode)
            + (answer.run->exitCode ? QStringLiteral("exit code %1").arg(*answer.run->exitCode)
                                    : QStringLiteral("no exit code"))
            + QLatin1Char('\n');
    }
    const QString counts = countsOf(answer.hosts);
    return text + (counts.isEmpty() ? QStringLiteral("no hosts") : counts) + "\n"_l1;
}

} // namespace

QString toText(const Answer &answer, Listing listing, Paint paint)
{
    QString text = headOf(answer);
    text += textOf(answer.problems, answer.folder, listing);
    text += textOf(answer.changes, answer.folder, listing);
    if (!answer.hosts.isEmpty()) {
        text += QLatin1Char('\n') + tableOf(answer, paint);
    }
    for (const HostAnswer &host : answer.hosts) {
        if (!host.problems.isEmpty() || !host.changes.isEmpty()) {
            text += QLatin1Char('\n') + host.key + gap + host.target + QLatin1Char('\n')
                + textOf(host.problems, host.target, listing)
                + textOf(host.changes, host.target, listing);
        }
    }
    return text;
}
