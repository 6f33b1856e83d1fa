// SPDX-License-Identifier: MIT
#include "player.h"

#include "localecodec.h"
#include "ordinaryuser.h"

#include <QFileInfo>
#include <QProcess>

#include <algorithm>
#include <utility>

namespace test {

namespace {

const QString folder = QStringLiteral(DRASK_SCENARIOS);
const QStringList removals{"uninstallAllPlugins", "uninstallPlugin", "ov3uninstall"};

/// A manifest has the order in which the file system lists a folder: here, its lines are sorted.
Tree sorted(Tree tree)
{
    for (auto file = tree.begin(); file != tree.end(); ++file) {
        if (file.key().endsWith("uninstall.ini")) {
            QList<QByteArray> lines = file->split('\n');
            std::sort(lines.begin(), lines.end() - 1);
            *file = lines.join('\n');
        }
    }
    return tree;
}

QString textOf(const QString &written)
{
    return QString::fromUtf8(unescaped(written));
}

/// Takes away a file, or for "FOLDER/*" all files in a folder and below.
void removeFrom(Tree &tree, const QString &path)
{
    tree.remove(path);
    for (const QString &name : path.endsWith("/*") ? tree.keys() : QStringList()) {
        if (name.startsWith(path.chopped(1)) && !name.endsWith('/')) {
            tree.remove(name);
        }
    }
}

/// The lines in which two texts differ; those that are expected with a "~ " may stand anywhere,
/// more than once.
QString differenceOf(QStringList expected, QStringList actual)
{
    QString lines;
    for (const QString &line : expected.filter(QRegularExpression("^~ "))) {
        expected.removeOne(line);
        lines += actual.removeAll(line.mid(2)) > 0 ? QString() : "- " + line + '\n';
    }
    const bool isOther = expected != actual;
    for (const QString &line : QStringList(expected)) {
        lines += actual.removeOne(line) ? QString() : "- " + line + '\n';
    }
    lines += actual.replaceInStrings(QRegularExpression("^"), "+ ").join('\n');
    return lines.isEmpty() && isOther ? "the same lines in another order" : lines;
}

/// The \a log of a first run as the second one has it, which finds what the first one left: the
/// configurations are "kept", or whole plug-ins are "found".
QStringList logOfSecondRun(const QStringList &log, const QString &what)
{
    static const QRegularExpression config(
        "(Debug: cannot read config file, create new\n)?Debug: 161 write cfg file\\.\\.\\.\n");
    static const QRegularExpression plugin(
        "Debug: open file:  .*\nDebug: not necessary to write cfg\n"
        "Debug: \".* plugin installed in: \" (.*)\n");
    QString text = log.join('\n') + '\n';
    text.replace(config, "Debug: not necessary to write cfg\n");
    if (what == "found") {
        text.replace(plugin,
                     "Debug: version already installed:  \\1\nDebug: not necessary to write cfg\n");
    }
    return text.chopped(1).split('\n');
}

} // namespace

Player::Player(const QString &path, const Values &valuesOfTheRow, Purpose whatFor)
    : file(path)
    , row(valuesOfTheRow)
    , purpose(whatFor)
    , accepted(readSections(path))
{
    vocabulary.values = row;
    vocabulary.values["version"] = DRASK_VERSION;
    vocabulary.sandbox = workstation.path();
    vocabulary.values["registered"] = inStoreOfSettings(workstation.path()).replace('\\', "\\\\");
}

Player::~Player()
{
    // A folder that may not be written could not be taken away.
    for (const QString &path : std::as_const(restricted)) {
        QFile::setPermissions(path, QFile::Permissions(0x7777));
    }
}

void Player::play(const Sections &sections)
{
    for (int at = 0; at < sections.size() && problem.isEmpty() && skipped.isEmpty(); ++at) {
        const Section &section = sections.at(at);
        if (section.kind == "use") {
            play(readSections(folder + "/starts/" + section.text + ".txt"));
        } else if (section.kind == "value") {
            const QString name = section.text.section(" = ", 0, 0);
            vocabulary.values[name] = row.value(name, section.text.section(" = ", 1));
        } else if (section.kind == "lines") {
            vocabulary.blocks[section.text] = section.lines;
        } else if (section.kind == "shell") {
            shellLine = vocabulary.expanded(section.text);
        } else if (section.kind == "needs") {
#ifndef Q_OS_LINUX
            skipped = section.text;
#endif
        } else if (section.kind == "prepare") {
            const bool isDone = start(readHeader(section.text + " -> 0")).exitCode == 0;
            problem = isDone ? QString() : section.header + " failed";
        } else if (section.kind == "run") {
            at = playRuns(sections, at);
        } else if (section.kind != "remark" && section.kind != "rows") {
            make(section);
        }
    }
}

void Player::make(const Section &section)
{
    const QStringList parts = section.text.split("; ");
    const QString path = name(parts.first().section(" -> ", 0, 0));
    QStringList lines;
    for (const QString &line : section.lines) {
        const bool isBlock = line.startsWith('<');
        lines += isBlock ? vocabulary.expanded(QStringList(line))
                         : QStringList(vocabulary.expanded(line));
    }
    if (section.kind == "file") {
        workstation.write(path, contentOf(lines));
    } else if (section.kind == "folder") {
        workstation.makeFolder(path);
    } else if (section.kind == "link") {
        workstation.makeLink(name(parts.first().section(" -> ", 1)), path);
    } else if (section.kind == "script") {
        const WorkingFolder there(workstation.path());
        const bool isDone = QProcess::execute("/bin/bash", {"-e", "-c", lines.join('\n')}) == 0;
        problem = isDone ? QString() : "the script failed";
    } else if (section.kind == "disk") {
        disk = std::make_unique<SmallDisk>(workstation.path(path.section(", ", 0, 0)),
                                           path.section(", ", 1).toUtf8());
        skipped = disk->isMounted() ? QString() : "only root may mount a disk, and only on Linux";
    } else if (section.kind == "remove") {
        workstation.remove(path);
    } else if (section.kind == "settings") {
        writeSettings(section.lines);
    } else if (section.kind != "age") {
        problem = "nobody knows what this is: " + section.header;
    }
    for (const QString &attribute : section.kind == "age" ? QStringList("aged") : parts.mid(1)) {
        give(path, attribute);
    }
}

/// Writes the settings of \a lines, where "host KEY FOLDER" is the next entry of the host list, and
/// notes what a run will say of these entries.
void Player::writeSettings(const QStringList &lines)
{
    static const QRegularExpression hostForm("^host (\\S+) (.*)$");
    QString text;
    QString array;
    for (const QString &line : vocabulary.expanded(lines)) {
        const QRegularExpressionMatch host = hostForm.match(line);
        const QString entry = "%1\\application=%2\n%1\\path=\"%3\"\n";
        text += host.hasMatch() ? "" : line + '\n';
        array += host.hasMatch()
            ? entry.arg(array.count('\n') / 2 + 1).arg(host.captured(1), host.captured(2))
            : "";
    }
    text += QString("[pluginpaths]\nsize=%1\n").arg(array.count('\n') / 2) + array;
    workstation.write("tool/settings.ini", text.toUtf8());
    QStringList hosts = lines.filter(hostForm);
    hosts.replaceInStrings(hostForm, "<host: \\1 \\2>");
    vocabulary.blocks["look-up"] = hosts;
}

/// Gives "aged", "of nobody" or a mode such as "555" to a file, or age to all files of a folder.
void Player::give(const QString &path, const QString &attribute)
{
    const QString whole = workstation.path(path);
    if (attribute == "of nobody") {
        giveToOrdinaryUser(whole);
    } else if (attribute != "aged") {
        const int mode = attribute.toInt(nullptr, 16);
        restricted << whole;
        QFile::setPermissions(whole, QFile::Permissions(mode | (mode & 0x700) << 4));
    } else if (QFileInfo(whole).isDir()) {
        const QStringList names = readTree(whole).keys();
        for (const QString &below : names.filter(QRegularExpression("[^/@]$"))) {
            give(path + '/' + below, attribute);
        }
    } else {
        workstation.age(path);
        aged << path;
    }
}

/// Plays the run at \a at, and once more if it installs; returns the last section that tells of it.
int Player::playRuns(const Sections &sections, int at)
{
    static const QStringList more{"errors", "changes", "again", "once"};
    const QString header = sections.at(at).header;
    QVector<Run> runs{readHeader(sections.at(at).text)};
    QStringList lines;
    do {
        lines += sections.at(at).lines;
        tell(runs, sections.at(at), at);
    } while (more.contains(sections.value(++at).kind));
    Run again = runs.first();
    if (lines.filter(QRegularExpression("^! ")).isEmpty()) {
        problem = "no line is given by hand below " + header;
    } else if (runs.size() == 1 && !again.told.contains("once")
               && !removals.contains(again.words.value(0))) {
        again.told.remove("changes");
        again.places.clear();
        runs << again;
    }
    for (int run = 0; run < runs.size() && problem.isEmpty(); ++run) {
        hold(runs.at(run));
        problem += problem.isEmpty() || run == 0 ? "" : "\n(the second run)";
    }
    return at - 1;
}

/// Puts down what \a section says of the last of \a runs, or of one more.
void Player::tell(QVector<Run> &runs, const Section &section, int place) const
{
    static const QRegularExpression form("^(kept|found)? ?(?:-> (.*))?$");
    const Run first = runs.first();
    QStringList lines = vocabulary.expanded(section.lines);
    lines.removeAll(QString());
    if (section.kind == "again") {
        const QRegularExpressionMatch match = form.match(section.text);
        runs << first;
        runs.last().told.clear();
        runs.last().places.clear();
        runs.last().code = match.captured(2).isEmpty() ? first.code : match.captured(2).toInt();
        if (!match.captured(1).isEmpty()) {
            lines = logOfSecondRun(first.told["run"], match.captured(1));
            runs.last().told = first.told;
            runs.last().told.remove("changes");
        }
    }
    const QString kind = section.kind == "again" ? "run" : section.kind;
    runs.last().told[kind] = lines;
    runs.last().places[kind] = runs.last().last = place;
}

Run Player::readHeader(const QString &text) const
{
    static const QRegularExpression form("^(?:in ([^:,]+))?(?:, )?(as nobody)?:? ?(.*?) ?-> (.*)$");
    const QRegularExpressionMatch match = form.match(text);
    Run run;
    run.from = match.captured(1).isEmpty() ? run.from : name(match.captured(1));
    run.asNobody = !match.captured(2).isEmpty();
    run.code = name(match.captured(4)).toInt();
    Vocabulary valuesAlone = vocabulary;
    valuesAlone.sandbox = "@";
    for (const QString &word : QProcess::splitCommand(valuesAlone.expanded(match.captured(3)))) {
        run.words << name(word);
    }
    return run;
}

RunResult Player::start(const Run &run) const
{
    RunOptions options;
    options.workingFolder = workstation.path(run.from);
    options.asOrdinaryUser = run.asNobody;
    if (!shellLine.isEmpty()) {
        options.through = QStringList{"/bin/bash", "-c", shellLine + "; exec \"$@\"", "bash"};
    }
    return workstation.run(run.words, options);
}

Player::Left Player::look(bool withLogs) const
{
    return {workstation.treeWithoutLogs(),
            withLogs ? workstation.read("tool/plugin.log") : QByteArray(),
            withLogs ? workstation.errors() : QByteArray()};
}

/// Runs, and wants everything to be as it is told.
void Player::hold(const Run &run)
{
    const Left before = look(run.from != "tool"); // a run elsewhere adds to the logs that are there
    const RunResult result = start(run);
    const Left after = look(true);
    QMap<QString, QStringList> given{
        {"run", linesOf(after.log.mid(before.log.size()))},
        {"errors", linesOf(after.errors.mid(before.errors.size()))},
    };
    Tree expected = before.tree;
    QMap<QString, QString> wrong{
        {"run", differenceOf(run.told["run"], given["run"])},
        {"errors", differenceOf(linesOf(contentOf(run.told["errors"])), given["errors"])},
        {"changes", change(expected, run.told["changes"])},
    };
    wrong["changes"] += treeDifference(sorted(after.tree), sorted(expected));
    if (after.errors.isNull() == (run.told.contains("errors") || !before.errors.isNull())) {
        wrong["errors"] += "an error file that should not be, or none";
    }
    // A table is brought up to date by hand.
    if (purpose == Purpose::Accept && row.isEmpty()) {
        given["changes"] = changesBetween(sorted(before.tree), sorted(after.tree));
        accept(run, given, wrong);
        wrong.clear();
    }
    problem = (wrong.values() + complaints(run, result, before, after)).join('\n').trimmed();
    problem.replace(vocabulary.sandbox, "@");
}

/// What is wrong with a run that nothing tells of.
QStringList Player::complaints(const Run &run, const RunResult &result, const Left &before,
                               const Left &after)
{
    QStringList wrong;
    if (!after.log.startsWith(before.log) || !after.errors.startsWith(before.errors)) {
        wrong << "what was logged before is gone";
    }
    if (!result.ended || result.crashed || !result.console.isEmpty()) {
        wrong << "the program crashed, did not end or spoke: " + QString(result.console);
    } else if (result.exitCode != run.code) {
        wrong << QString("the exit code is %1 instead of %2").arg(result.exitCode).arg(run.code);
    }
    for (const QString &path : QStringList(aged)) {
        if (after.tree.value(path) != before.tree.value(path)) {
            aged.removeAll(path);
        } else if (!workstation.isAged(path)) {
            wrong << "written without a change: " + path;
        }
    }
    return wrong;
}

/// Makes the told changes in \a tree; returns what is wrong with them.
QString Player::change(Tree &tree, const QStringList &lines) const
{
    static const QRegularExpression form("^([-+*]) (.*?)(?: (=|:|->) ?(.*))?$");
    QString wrong;
    for (int at = 0; at < lines.size(); ++at) {
        const QString line = lines.at(at);
        const QRegularExpressionMatch match = form.match(line);
        const QString path = textOf(match.captured(2)) + (match.captured(3) == "->" ? "@" : "");
        const QString text = match.captured(4);
        QStringList content;
        if (!text.isEmpty()) {
            content = vocabulary.expanded(QStringList(text));
        }
        const bool isText = !text.isEmpty() && content == QStringList(text);
        for (; lines.value(at + 1).startsWith('|'); ++at) {
            content << lines.at(at + 1).mid(2);
        }
        const Tree before = tree;
        if (match.captured(1) == "-") {
            removeFrom(tree, path);
        } else if ((match.captured(1) == "+") != before.contains(path)) {
            put(tree, path,
                match.captured(3) == "=" ? before.value(textOf(text))
                    : isText             ? unescaped(text)
                                         : contentOf(content));
            for (const QString &name : text.endsWith('/') ? before.keys() : QStringList()) {
                if (name.startsWith(text)) {
                    put(tree, path + name.mid(text.size()), before.value(name));
                }
            }
        }
        wrong += tree == before ? "cannot be so: " + line + '\n' : QString();
    }
    return wrong;
}

} // namespace test
