// SPDX-License-Identifier: MIT
#include "player.h"

#include "ordinaryuser.h"

#include <QFileInfo>
#include <QProcess>

#include <algorithm>
#include <iterator>
#include <utility>

namespace test {

namespace {

const QString folder = QStringLiteral(DRASK_SCENARIOS);

/// The settings of \a lines, where "host KEY FOLDER" is the next entry of the host list.
QByteArray settingsOf(QStringList lines)
{
    QString array;
    for (const QString &host : lines.filter(QRegularExpression("^host "))) {
        lines.removeOne(host);
        array += QString("\n%1\\application=%2\n%1\\path=\"%3\"")
                     .arg(array.count('\n') / 2 + 1)
                     .arg(host.section(' ', 1, 1), host.section(' ', 2));
    }
    lines << "[pluginpaths]" << QString("size=%1").arg(array.count('\n') / 2) + array;
    return lines.join('\n').toUtf8() + '\n';
}

} // namespace

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
        workstation.write(path, contentOf(lines));
    } else if (section.kind == "folder") {
        workstation.makeFolder(path);
    } else if (section.kind == "link") {
        workstation.makeLink(name(parts.first().section(" -> ", 1)), path);
    } else if (section.kind == "script") {
        const WorkingFolder there(workstation.path());
        problem = QProcess::execute("/bin/bash", {"-e", "-c", lines.join('\n')}) == 0
            ? QString()
            : "the script failed";
    } else if (section.kind == "disk") {
        const QStringList words = section.text.split(", ");
        disk = std::make_unique<SmallDisk>(workstation.path(words.first()),
                                           words.mid(1).join(",").toUtf8());
        skipped = disk->isMounted() ? QString() : "only root may mount a disk, and only on Linux";
    } else if (section.kind == "remove") {
        workstation.remove(path);
    } else if (section.kind == "settings") {
        workstation.write("tool/settings.ini", settingsOf(vocabulary.expanded(section.lines)));
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
    Vocabulary valuesAlone = vocabulary;
    valuesAlone.sandbox = "@";
    const QStringList words = QProcess::splitCommand(valuesAlone.expanded(match.captured(3)));
    std::transform(words.cbegin(), words.cend(), std::back_inserter(run.words),
                   [this](const QString &word) { return name(word); });
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

/// Runs, and wants everything to be as it is told.
void Player::hold(const Run &run)
{
    const Tree before = workstation.treeWithoutLogs();
    const bool adds = run.from != "tool"; // to the logs that are there
    const QByteArray logBefore = adds ? workstation.read("tool/plugin.log") : QByteArray();
    const QByteArray errorsBefore = adds ? workstation.errors() : QByteArray();
    const RunResult result = start(run);
    const Tree after = workstation.treeWithoutLogs();
    const QByteArray log = workstation.read("tool/plugin.log");
    const QByteArray errors = workstation.errors();

    Tree expected = before;
    QStringList wrong = change(expected, told(run.changes));
    const QStringList lines = linesOf(log.mid(logBefore.size()));
    const QStringList messages = linesOf(errors.mid(errorsBefore.size()));
    wrong << differenceOf(told(run.log), lines)
          << differenceOf(linesOf(contentOf(told(run.errors))), messages)
          << treeDifference(withSortedManifests(after), withSortedManifests(expected));
    if (errors.isNull() != (run.errors == nullptr && errorsBefore.isNull())) {
        wrong << "an error file that should not be, or none";
    }
    wrong.removeAll(QString());
    // A table is brought up to date by hand.
    if (purpose == Purpose::Accept && !wrong.isEmpty() && row.isEmpty()) {
        accept(run, lines, messages, changesBetween(before, withSortedManifests(after)));
        wrong.clear();
    }
    wrong << writtenForNothing(before, after);
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

/// What was old, and was written by a run that did not change it.
QStringList Player::writtenForNothing(const Tree &before, const Tree &after)
{
    QStringList wrong;
    for (const QString &path : QStringList(aged)) {
        if (after.value(path) != before.value(path)) {
            aged.removeAll(path);
        } else if (!workstation.isAged(path)) {
            wrong << "written without a change: " + path;
        }
    }
    return wrong;
}

/// Makes the told changes in \a tree; returns what is wrong with them.
QStringList Player::change(Tree &tree, const QStringList &lines) const
{
    static const QRegularExpression form("^([-+*]) (.*?)(?: (=|:|->) ?(.*))?$");
    QStringList wrong;
    for (int at = 0; at < lines.size(); ++at) {
        const QRegularExpressionMatch match = form.match(lines.at(at));
        const QString text = match.captured(4);
        const QString path = QString::fromUtf8(unescaped(match.captured(2)))
            + (match.captured(3) == "->" ? "@" : "");
        QStringList below;
        for (; lines.value(at + 1).startsWith('|'); ++at) {
            below << lines.at(at + 1).mid(2);
        }
        const QStringList block = vocabulary.expanded(QStringList(text));
        const QByteArray content = match.captured(3) == "="
            ? tree.value(QString::fromUtf8(unescaped(text)))
            : text.isEmpty()             ? contentOf(below)
            : block == QStringList(text) ? unescaped(text)
                                         : contentOf(block);
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
            put(tree, path, content);
            for (const QString &name : text.endsWith('/') ? before.keys() : QStringList()) {
                if (name.startsWith(text)) {
                    put(tree, path + name.mid(text.size()), before.value(name));
                }
            }
        }
        if (tree == before) {
            wrong << "cannot be so: " + lines.at(at);
        }
    }
    return wrong;
}

} // namespace test
