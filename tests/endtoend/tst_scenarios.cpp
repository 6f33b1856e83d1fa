// SPDX-License-Identifier: MIT
#include "inmemory.h"
#include "ordinaryuser.h"
#include "scenario.h"
#include "smalldisk.h"
#include "testprogram.h"
#include "workstation.h"

#include <QDir>
#include <QProcess>
#include <QtTest>

#include <algorithm>
#include <memory>

using test::Section;
using test::Sections;
using test::Tree;

/// Plays the scenarios, a row of data each; README.md describes them. With --accept, what the runs
/// gave is written into their files.
class tst_Scenarios : public QObject {
    Q_OBJECT

private slots:
    void scenario_data();
    void scenario();
};

namespace {

const QString folder = QStringLiteral(DRASK_SCENARIOS);
bool accepts = false;
QString pattern = QStringLiteral("*");

/// A manifest has the order in which the file system lists a folder.
Tree withSortedManifests(Tree tree)
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

/// How the program is started, and what is told of it; null where nothing is.
struct Run {
    const Section *log = nullptr;
    const Section *errors = nullptr;
    const Section *changes = nullptr;
    const Section *last = nullptr; ///< where a second run that is not told would be
    QString from = "tool";
    QStringList words;
    int code = 0;
    bool asNobody = false;
};

class Player {
public:
    Player(const QString &path, const test::Values &valuesOfTheRow)
        : file(path)
        , row(valuesOfTheRow)
        , accepted(test::readSections(path))
    {
        vocabulary.values = row;
        vocabulary.values["version"] = DRASK_VERSION;
        vocabulary.sandbox = workstation.path();
        vocabulary.values["registered"] = workstation.path().replace(QChar(0xe9), "\\\\xe9");
    }
    ~Player();
    Player(const Player &) = delete;
    Player &operator=(const Player &) = delete;

    /// Plays until something is wrong.
    void play(const Sections &sections);

    QString problem;
    QString skipped; ///< why this machine cannot play the scenario

private:
    void make(const Section &section);
    void give(const QString &path, const QString &attribute);
    int playRuns(const Sections &sections, int at);
    void readHeader(Run &run, const QString &text) const;
    test::RunResult start(const Run &run) const;
    void hold(const Run &run);
    QStringList change(Tree &tree, const QStringList &lines) const;
    QStringList changesBetween(const Tree &before, const Tree &after) const;
    void accept(const Run &run, const QStringList &log, const QStringList &errors,
                const QStringList &changes);
    QString name(const QString &text) const
    {
        return QString::fromUtf8(test::unescaped(vocabulary.expanded(text)));
    }
    QStringList told(const Section *section) const
    {
        QStringList lines = section == nullptr ? QStringList() : section->lines;
        lines = vocabulary.expanded(lines);
        lines.removeAll(QString());
        return lines;
    }

    QString file;
    test::Values row;
    Sections accepted;
    test::Workstation workstation;
    std::unique_ptr<test::SmallDisk> disk;
    test::Vocabulary vocabulary;
    QString shellLine;
    QStringList aged;
    QStringList restricted;
    QStringList logOfRunBefore;
};

Player::~Player()
{
    // A folder that may not be written could not be taken away.
    for (const QString &path : qAsConst(restricted)) {
        QFile::setPermissions(path, QFile::Permissions(0x7777));
    }
}

void Player::play(const Sections &sections)
{
    for (int at = 0; at < sections.size() && problem.isEmpty() && skipped.isEmpty(); ++at) {
        const Section &section = sections.at(at);
        if (section.kind == "use") {
            play(test::readSections(folder + "/starts/" + section.text + ".txt"));
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
            Run run;
            readHeader(run, section.text + " -> 0");
            problem = start(run).exitCode == 0 ? QString() : section.header + " failed";
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
        lines << vocabulary.expanded(line);
    }
    if (section.kind == "file") {
        workstation.write(path, test::contentOf(lines));
    } else if (section.kind == "folder") {
        workstation.makeFolder(path);
    } else if (section.kind == "link") {
        workstation.makeLink(name(parts.first().section(" -> ", 1)), path);
    } else if (section.kind == "script") {
        const test::WorkingFolder there(workstation.path());
        problem = QProcess::execute("/bin/bash", {"-e", "-c", lines.join('\n')}) == 0
            ? QString()
            : "the script failed";
    } else if (section.kind == "disk") {
        const QStringList words = section.text.split(", ");
        disk = std::make_unique<test::SmallDisk>(workstation.path(words.first()),
                                                 words.mid(1).join(",").toUtf8());
        skipped = disk->isMounted() ? QString() : "only root may mount a disk, and only on Linux";
    } else if (section.kind == "remove") {
        workstation.remove(path);
    } else if (section.kind == "settings") {
        lines = vocabulary.expanded(section.lines);
        QString array;
        for (const QString &host : lines.filter(QRegularExpression("^host "))) {
            lines.removeOne(host);
            array += QString("\n%1\\application=%2\n%1\\path=\"%3\"")
                         .arg(array.count('\n') / 2 + 1)
                         .arg(host.section(' ', 1, 1), host.section(' ', 2));
        }
        lines << "[pluginpaths]" << QString("size=%1").arg(array.count('\n') / 2) + array;
        workstation.write("tool/settings.ini", lines.join('\n').toUtf8() + '\n');
    } else if (section.kind != "age") {
        problem = "nobody knows what this is: " + section.header;
    }
    for (const QString &attribute : section.kind == "age" ? QStringList("aged") : parts.mid(1)) {
        give(path, attribute);
    }
}

/// Gives "aged", "of nobody" or a mode such as "555" to a file, or age to all files of a folder.
void Player::give(const QString &path, const QString &attribute)
{
    const QString whole = workstation.path(path);
    if (attribute == "of nobody") {
        test::giveToOrdinaryUser(whole);
    } else if (attribute != "aged") {
        const int mode = attribute.toInt(nullptr, 16);
        restricted << whole;
        QFile::setPermissions(whole, QFile::Permissions(mode | (mode & 0x700) << 4));
    } else if (QFileInfo(whole).isDir()) {
        const QStringList names = test::readTree(whole).keys();
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
    static const QStringList removals{"uninstallAllPlugins", "uninstallPlugin", "ov3uninstall"};
    Run run;
    readHeader(run, sections.at(at).text);
    Run again = run;
    run.log = &sections.at(at);
    bool isOnce = removals.contains(run.words.value(0));
    QStringList lines = run.log->lines;
    for (++at; at < sections.size(); ++at) {
        const Section &section = sections.at(at);
        if (section.kind == "again") {
            again.log = &section;
            again.code = section.text.isEmpty() ? run.code : name(section.text.mid(3)).toInt();
        } else if (section.kind == "errors") {
            (again.log == nullptr ? run : again).errors = &section;
        } else if (section.kind == "changes") {
            (again.log == nullptr ? run : again).changes = &section;
        } else if (section.kind == "once") {
            isOnce = true;
        } else {
            break;
        }
        lines += section.lines;
    }
    if (lines.filter(QRegularExpression("^! ")).isEmpty()) {
        problem = "no line is given by hand below " + run.log->header;
        return at;
    }
    hold(run);
    if (problem.isEmpty() && (again.log != nullptr || !isOnce)) {
        if (again.log == nullptr) {
            again.log = run.log;
            again.errors = run.errors;
            again.last = &sections.at(at - 1);
        }
        hold(again);
        problem += problem.isEmpty() ? "" : "\n(the second run)";
    }
    return at - 1;
}

void Player::readHeader(Run &run, const QString &text) const
{
    static const QRegularExpression form("^(?:in ([^:,]+))?(?:, )?(as nobody)?:? ?(.*?) ?-> (.*)$");
    const QRegularExpressionMatch match = form.match(text);
    run.from = match.captured(1).isEmpty() ? run.from : name(match.captured(1));
    run.asNobody = !match.captured(2).isEmpty();
    run.code = name(match.captured(4)).toInt();
    test::Vocabulary valuesAlone = vocabulary;
    valuesAlone.sandbox = "@";
    const QStringList words = QProcess::splitCommand(valuesAlone.expanded(match.captured(3)));
    std::transform(words.cbegin(), words.cend(), std::back_inserter(run.words),
                   [this](const QString &word) { return name(word); });
}

test::RunResult Player::start(const Run &run) const
{
    test::RunOptions options;
    options.workingFolder = workstation.path(run.from);
    options.asOrdinaryUser = run.asNobody;
    if (!shellLine.isEmpty()) {
        options.through = QStringList{"/bin/bash", "-c", shellLine + "; exec \"$@\"", "bash"};
    }
    return workstation.run(run.words, options);
}

/// Runs, and wants everything to be as it is told.
void Player::hold(const Run &run)
{
    const Tree before = workstation.treeWithoutLogs();
    const bool adds = run.from != "tool"; // to the logs that are there
    const QByteArray logBefore = adds ? workstation.read("tool/plugin.log") : QByteArray();
    const QByteArray errorsBefore = adds ? workstation.errors() : QByteArray();
    const test::RunResult result = start(run);
    const Tree after = workstation.treeWithoutLogs();
    const QByteArray log = workstation.read("tool/plugin.log");
    const QByteArray errors = workstation.errors();

    Tree expected = before;
    QStringList wrong = change(expected, told(run.changes));
    const QStringList lines = test::linesOf(log.mid(logBefore.size()));
    const QStringList messages = test::linesOf(errors.mid(errorsBefore.size()));
    wrong << test::differenceOf(told(run.log), lines)
          << test::differenceOf(test::linesOf(test::contentOf(told(run.errors))), messages)
          << test::treeDifference(withSortedManifests(after), withSortedManifests(expected));
    if (errors.isNull() != (run.errors == nullptr && errorsBefore.isNull())) {
        wrong << "an error file that should not be, or none";
    }
    wrong.removeAll(QString());
    // A table is brought up to date by hand.
    if (accepts && !wrong.isEmpty() && row.isEmpty()) {
        accept(run, lines, messages, changesBetween(before, withSortedManifests(after)));
        wrong.clear();
    }
    for (const QString &path : QStringList(aged)) {
        if (after.value(path) != before.value(path)) {
            aged.removeAll(path);
        } else if (!workstation.isAged(path)) {
            wrong << "written without a change: " + path;
        }
    }
    if (!log.startsWith(logBefore) || !errors.startsWith(errorsBefore)) {
        wrong << "what was logged before is gone";
    }
    if (!result.ended || result.crashed || !result.console.isEmpty()) {
        wrong << "the program crashed, did not end or spoke: " + QString(result.console);
    } else if (result.exitCode != run.code) {
        wrong << QString("the exit code is %1 instead of %2").arg(result.exitCode).arg(run.code);
    }
    problem = wrong.join('\n').replace(vocabulary.sandbox, "@");
}

/// Makes the told changes in \a tree; returns what is wrong with them.
QStringList Player::change(Tree &tree, const QStringList &lines) const
{
    static const QRegularExpression form("^([-+*]) (.*?)(?: (=|:|->) ?(.*))?$");
    QStringList wrong;
    for (int at = 0; at < lines.size(); ++at) {
        const QRegularExpressionMatch match = form.match(lines.at(at));
        const QString text = match.captured(4);
        const QString path = QString::fromUtf8(test::unescaped(match.captured(2)))
            + (match.captured(3) == "->" ? "@" : "");
        QStringList below;
        for (; lines.value(at + 1).startsWith('|'); ++at) {
            below << lines.at(at + 1).mid(2);
        }
        const QStringList block = vocabulary.expanded(QStringList(text));
        const QByteArray content = match.captured(3) == "="
            ? tree.value(QString::fromUtf8(test::unescaped(text)))
            : text.isEmpty()             ? test::contentOf(below)
            : block == QStringList(text) ? test::unescaped(text)
                                         : test::contentOf(block);
        const QString sign = match.captured(1);
        const Tree before = tree;
        if (sign == "-") {
            tree.remove(path);
            for (const QString &name : path.endsWith("/*") ? before.keys() : QStringList()) {
                if (name.startsWith(path.chopped(1)) && !name.endsWith('/')) {
                    tree.remove(name);
                }
            }
        } else if ((sign == "+") != before.contains(path)) {
            test::put(tree, path, content);
            for (const QString &name : text.endsWith('/') ? before.keys() : QStringList()) {
                if (name.startsWith(text)) {
                    test::put(tree, path + name.mid(text.size()), before.value(name));
                }
            }
        }
        if (tree == before) {
            wrong << "cannot be so: " + lines.at(at);
        }
    }
    return wrong;
}

/// The lines that tell how \a after differs from \a before.
QStringList Player::changesBetween(const Tree &before, const Tree &after) const
{
    QStringList lines;
    for (auto entry = before.cbegin(); entry != before.cend(); ++entry) {
        QString name = QString(entry.key()).replace('\\', "\\\\").replace('\n', "\\n");
        name.replace(QRegularExpression("@$"), " ->");
        lines << (after.contains(entry.key()) ? QString() : "- " + name);
    }
    for (auto entry = after.cbegin(); entry != after.cend(); ++entry) {
        const auto next = std::next(entry);
        const bool holdsMore = next != after.cend() && entry.key().endsWith('/')
            && next.key().startsWith(entry.key());
        if (holdsMore
            || withSortedManifests(before).value(entry.key(), "no such file") == entry.value()) {
            continue;
        }
        const QString source = entry->isEmpty() ? QString() : before.key(*entry);
        QString text = QString::fromUtf8(*entry).replace('\\', "\\\\").replace('\r', "\\r");
        text.replace(DRASK_VERSION, "@version@")
            .replace(vocabulary.values["registered"], "@registered@");
        lines << (before.contains(entry.key()) ? "* " : "+ ")
                + QString(entry.key()).replace('\\', "\\\\").replace('\n', "\\n");
        if (entry.key().endsWith('@')) {
            lines.last().replace(QRegularExpression("@$"), " -> " + text);
        } else if (!source.isEmpty()) {
            lines.last() += " = " + source;
        } else if (text.count('\n') < 2 && !text.isEmpty()) {
            lines.last() += " : " + text.replace('\n', "\\n");
        } else {
            const QStringList content = test::linesOf(text.toUtf8());
            const QString block = vocabulary.folded(content).join('\n');
            lines.last() += block.startsWith('<') ? " : " + block : QString();
            lines += block.startsWith('<')
                ? QStringList()
                : QStringList(content).replaceInStrings(QRegularExpression("^"), "| ");
        }
    }
    lines.removeAll(QString());
    return lines;
}

/// Puts what a run gave into the scenario, all but the lines that are given by hand.
void Player::accept(const Run &run, const QStringList &log, const QStringList &errors,
                    const QStringList &changes)
{
    const auto write = [this](const Section *section, const QString &header, QStringList lines,
                              const Section *above) {
        if (section == nullptr && !lines.isEmpty()) {
            accepted[above->place].lines += QStringList(header) + vocabulary.folded(lines);
        } else if (section != nullptr) {
            const QStringList byHand = section->lines.filter(QRegularExpression("^! "));
            for (const QString &line : byHand.filter(QRegularExpression("^! [^<]"))) {
                const auto place = lines.indexOf(vocabulary.expanded(line.mid(2)));
                lines.insert(qMax(0, int(place)), line);
                lines.removeOne(vocabulary.expanded(line.mid(2)));
            }
            lines = vocabulary.folded(lines);
            for (const QString &line : byHand.filter(QRegularExpression("^! <"))) {
                const auto place = lines.indexOf(line.mid(2));
                lines.insert(qMax(0, int(place)), line);
                lines.removeOne(line.mid(2));
            }
            accepted[section->place].lines = lines;
        }
    };
    const bool isNew = run.last != nullptr;
    if (isNew && log == logOfRunBefore && changes.isEmpty()) {
        return;
    }
    logOfRunBefore = log;
    const Section *last = isNew ? run.last : run.log;
    write(isNew ? nullptr : run.log, "-- again --", log, last);
    write(isNew ? nullptr : run.errors, "-- errors --", errors, last);
    last = isNew || run.errors == nullptr ? last : run.errors;
    write(isNew ? nullptr : run.changes, "-- changes --", changes, last);

    QStringList lines;
    for (const Section &section : qAsConst(accepted)) {
        lines += QStringList(section.header) + section.lines;
    }
    QFile text(file);
    if (!text.open(QIODevice::WriteOnly)
        || text.write(lines.join('\n').mid(1).toUtf8() + '\n') < 0) {
        qFatal("%s cannot be written", qPrintable(file));
    }
}

} // namespace

void tst_Scenarios::scenario_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<test::Values>("row");

    const QString scenarios = folder + "/scenarios/";
    for (const QString &name : QDir(scenarios).entryList({pattern + ".txt"}, QDir::Files)) {
        for (const test::Values &row : test::rowsOf(test::readSections(scenarios + name))) {
            const QString tag = name.chopped(4) + (row.isEmpty() ? "" : "/") + row.value("name");
            QTest::newRow(qPrintable(tag)) << scenarios + name << row;
        }
    }
}

void tst_Scenarios::scenario()
{
    QFETCH(QString, file);
    QFETCH(test::Values, row);
    Player player(file, row);

    player.play(test::readSections(folder + "/starts/common.txt"));
    player.play(test::readSections(file));

    if (!player.skipped.isEmpty()) {
        QSKIP(qPrintable(player.skipped));
    }
    if (!player.problem.isEmpty()) {
        qInfo("%s", qPrintable(player.problem));
        QFAIL("not as it is told");
    }
}

namespace {

/// Qt Test does not know "--accept" and "--only NAME", which may be a pattern.
int runScenarios(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    accepts = arguments.removeAll("--accept") > 0;
    const auto only = arguments.indexOf("--only");
    if (only > 0 && only + 1 < arguments.size()) {
        pattern = arguments.takeAt(only + 1);
        arguments.removeAt(only);
    }
    if (accepts && qEnvironmentVariableIsSet("CI")) {
        qFatal("Nothing is accepted in CI.");
    }
    const test::InMemory memory;
    tst_Scenarios scenarios;
    return QTest::qExec(&scenarios, arguments);
}

const test::Registration registration(__FILE__, test::Place::AsBuilt, runScenarios);

} // namespace

#include "tst_scenarios.moc"
