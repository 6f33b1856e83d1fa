// SPDX-License-Identifier: MIT
#include "localecodec.h"
#include "ordinaryuser.h"
#include "scenario.h"
#include "smalldisk.h"
#include "testprogram.h"
#include "workstation.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QtTest>

#include <memory>

using namespace test;

namespace {

const QString home = QStringLiteral(DRASK_SCENARIOS);
const QString logFile = "tool/plugin.log";
const QString errorFile = "tool/pluginError.txt";
const QString secondRun = "(the second run)";
const QString changesHeader = "-- changes --\n";
const QStringList removals{"uninstallAllPlugins", "uninstallPlugin", "ov3uninstall"};
const auto multiline = QRegularExpression::MultilineOption;
bool accepts = false;

/// Gives "of nobody", a mode such as "555", or age: to a file, or to all files of a folder.
void give(const QString &path, const QString &attribute)
{
    if (attribute == "of nobody") {
        giveToOrdinaryUser(path);
    } else if (attribute != "aged") {
        QProcess::execute("chmod", {attribute, path});
    } else {
        const QStringList files = readTree(path).keys().filter(QRegularExpression("[^/@]$"));
        for (const QString &file : QFileInfo(path).isDir() ? files : QStringList(QString())) {
            Folder(path).age(file);
        }
    }
}

/// Plays a scenario on a workstation of its own. What a run gave is written as a scenario has it,
/// so that two texts are compared.
class Player {
public:
    explicit Player(int whichRow)
        : row(whichRow)
    {
        values["@"] = workstation.path();
        values["version"] = DRASK_VERSION;
        values["registered"] = inStoreOfSettings(workstation.path()).replace('\\', "\\\\");
    }

    /// Plays the file \a path until something is wrong.
    void play(const QString &path)
    {
        QVector<Section> sections = readSections(path);
        for (int at = 0; at < sections.size() && problem.isEmpty() && skipped.isEmpty(); ++at) {
            const Section section = sections.at(at);
            if (section.kind == "use") {
                play(home + "/starts/" + section.text + ".txt");
            } else if (section.kind == "run" || section.kind == "again") {
                at = playRun(sections, at);
            } else if (section.kind == "rows") {
                chooseRow(section);
            } else if (section.kind == "value") {
                values[section.text.section(" = ", 0, 0)] = section.text.section(" = ", 1);
            } else if (section.kind == "lines") {
                values[section.text] = section.body.chopped(1);
            } else if (section.kind == "shell") {
                const QString line = expanded(section.text, values) + "\nexec \"$@\"";
                options.through = QStringList{"/bin/bash", "-c", line, "bash"};
            } else if (section.kind == "needs") {
                skipped = QSysInfo::kernelType() == "linux" ? "" : section.text;
            } else if (!section.kind.isEmpty() && section.kind != "once") {
                make(section, section.text.split("; "));
            }
        }
        QString text;
        for (const Section &section : std::as_const(sections)) {
            text += section.header + section.body;
        }
        if (accepts) {
            Folder().write(path, text.remove(secondRun).toUtf8());
        }
    }

    QString problem;
    QString skipped;  ///< why this machine cannot play the scenario
    int nextRow = -1; ///< of the table, if there is one

private:
    QString name(const QString &text) const
    {
        return QString::fromUtf8(unescaped(expanded(text, values)));
    }

    void make(const Section &section, const QStringList &parts)
    {
        const QString path = name(parts.first().section(" -> ", 0, 0));
        const QString text = expanded(section.body, values);
        QStringList attributes = parts.mid(1);
        if (section.kind == "file") {
            workstation.write(path, unescaped(text));
        } else if (section.kind == "folder") {
            workstation.makeFolder(path);
        } else if (section.kind == "link") {
            workstation.makeLink(name(parts.first().section(" -> ", 1)), path);
        } else if (section.kind == "remove") {
            workstation.remove(path);
        } else if (section.kind == "settings") {
            writeSettings(section.body);
        } else if (section.kind == "script") {
            QProcess bash;
            bash.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            bash.setWorkingDirectory(workstation.path());
            bash.start("/bin/bash", {"-e", "-c", text});
            problem = bash.waitForFinished(-1) && bash.exitCode() == 0 ? "" : "a script failed";
            values[section.text] = QString::fromUtf8(bash.readAllStandardOutput()).trimmed();
        } else if (section.kind == "disk") {
            disk = std::make_unique<SmallDisk>(workstation.path(path.section(", ", 0, 0)),
                                               path.section(", ", 1).toUtf8());
            skipped = disk->isMounted() ? "" : "only root may mount a disk, and only on Linux";
        } else if (section.kind == "age") {
            attributes << "aged";
        } else {
            problem = "nobody knows what this is: " + section.header;
        }
        for (const QString &attribute : std::as_const(attributes)) {
            give(workstation.path(path), attribute);
        }
    }

    /// In settings, "host KEY FOLDER" is the next entry of the host list. "<look-up>" is what a run
    /// says of these entries.
    void writeSettings(const QString &body)
    {
        static const QRegularExpression form("^host (\\S+) (.*)$");
        const QStringList all = expanded(body, values).split('\n', Qt::SkipEmptyParts);
        QStringList hosts = all.filter(form);
        const QString size = QString("[pluginpaths]\nsize=%1").arg(hosts.size());
        for (int at = 0; at < hosts.size(); ++at) {
            const QString entry = QString("%1\\application=\\1\n%1\\path=\"\\2\"").arg(at + 1);
            hosts[at].replace(form, entry);
        }
        hosts = all.filter(QRegularExpression("^(?!host )")) + QStringList(size) + hosts;
        workstation.write("tool/settings.ini", (hosts.join('\n') + '\n').toUtf8());
        hosts = body.split('\n').filter(form).replaceInStrings(form, "<host entry: \\1 \\2>");
        values["look-up"] = hosts.join('\n');
    }

    void chooseRow(const Section &table)
    {
        const QStringList columns = table.text.split(" | ");
        const QStringList rows = table.body.split('\n', Qt::SkipEmptyParts);
        for (int at = 0; at < columns.size(); ++at) {
            values[columns.at(at)] = rows.at(row).section('|', at, at).trimmed();
        }
        nextRow = row + 1 < rows.size() ? row + 1 : -1;
    }

    /// Plays the run at \a at; returns the last section that tells of it. An install of which
    /// nothing tells that it is run once more gets a section that does.
    int playRun(QVector<Section> &sections, int at)
    {
        static const QRegularExpression byHand("^! ", multiline);
        const Section header = sections.at(at);
        const bool isFirst = header.kind == "run";
        if (isFirst) {
            readHeader(header.text);
        }
        values["again"] = isFirst ? "" : header.text;
        told = values["again"].isEmpty() ? told.section('\n', 0, 0) + '\n' + header.body
                                         : told.section(changesHeader, 0, 0).remove(byHand);
        int next = at + 1;
        for (; QStringList{"errors", "changes"}.contains(sections.value(next).kind); ++next) {
            told += sections.at(next).header + sections.at(next).body;
        }
        run();
        QString wrong = difference(meaning(told), given);
        if (accepts && !wrong.isEmpty() && !values.contains("name")) {
            values["again"] = "";
            sections[at].header = isFirst ? header.header : "-- again --\n";
            sections[at].body = accepted();
            sections.remove(at + 1, next - at - 1);
            next = at + 1;
            wrong = given.startsWith(told.section('\n', 0, 0) + '\n') ? "" : wrong;
        }
        wrong += isFirst && !told.contains("\n! ") ? "no line is given by hand\n" : "";
        problem = wrong.isEmpty() ? ""
                                  : QString(header.header + wrong).replace(workstation.path(), "@");
        const bool isTold = QStringList{"again", "once"}.contains(sections.value(next).kind);
        if (isFirst && !isTold && !removals.contains(words.value(0))) {
            sections.insert(next, {secondRun, "again", "as the first", ""});
        }
        return next - 1;
    }

    /// Takes a header apart, of which the first line of what is told is "-> CODE".
    void readHeader(const QString &text)
    {
        static const QRegularExpression form(
            "^(?:in ([^:,]+))?(?:, )?(as nobody)?:? ?(.*?) ?(-> .*)$");
        const QRegularExpressionMatch match = form.match(text);
        const QString from = match.captured(1).isEmpty() ? "tool" : name(match.captured(1));
        options.workingFolder = workstation.path(from);
        options.asOrdinaryUser = match.capturedLength(2) > 0;
        told = expanded(match.captured(4), values) + '\n';
        words.clear();
        Values alone = values; // the sandbox has a blank in its name
        alone["@"] = "\\@";
        for (const QString &word : QProcess::splitCommand(expanded(match.captured(3), alone))) {
            words << name(word);
        }
    }

    /// Starts the program and writes down what that gave.
    void run()
    {
        found = workstation.tree();
        homes.clear();
        QStringList aged;
        for (const QString &path : found.keys()) {
            homes[inOrder(path, found.value(path))] = path;
            aged += workstation.isAged(path) ? QStringList(path) : QStringList();
        }
        const RunResult result = workstation.run(words, options);
        const QString end = result.ended && !result.crashed ? "-> %1" : "it did not end: %1";
        const Tree after = workstation.tree();
        // A run elsewhere adds to the logs that are there.
        const Tree old = options.workingFolder == workstation.tool() ? Tree() : found;
        given = end.arg(result.exitCode) + escaped(result.console).replace('\n', "\\n") + '\n'
            + added(old.value(logFile), after.value(logFile));
        if (old.contains(errorFile) != after.contains(errorFile)
            || old.value(errorFile) != after.value(errorFile)) {
            given += "-- errors --\n" + added(old.value(errorFile), after.value(errorFile));
        }
        given += changesTo(after, aged);
    }

    /// The changes as scenarios have them.
    QString changesTo(const Tree &after, const QStringList &aged) const
    {
        QStringList changes;
        Tree all = after;
        all.insert(found);
        all.remove(logFile);
        all.remove(errorFile);
        for (const QString &path : all.keys()) {
            const auto next = after.upperBound(path);
            const bool holdsMore = path.endsWith('/') && next != after.cend()
                && next.key().startsWith(path);
            const bool wasThere = found.contains(path);
            const bool isWritten = inOrder(path, found.value(path))
                    != inOrder(path, after.value(path))
                || (aged.contains(path) && !workstation.isAged(path));
            if (!after.contains(path)) {
                changes << change("- ", path, "");
            } else if (wasThere ? isWritten : !holdsMore) {
                changes << change(wasThere ? "* " : "+ ", path, after.value(path));
            }
        }
        changes.sort();
        return changes.isEmpty() ? "" : changesHeader + changes.join("");
    }

    /// A change as scenarios have it. What was somewhere before the run is named.
    QString change(const QString &mark, const QString &path, const QByteArray &bytes) const
    {
        const QByteArray content = inOrder(path, bytes);
        const QString line = mark + escaped(path.toUtf8()).replace('\n', "\\n");
        const QString text = escaped(content);
        if (path.endsWith('@')) {
            return (line.chopped(1) + " -> " + text).trimmed() + '\n';
        }
        if (content.isEmpty() || homes.contains(content)) {
            return line + (content.isEmpty() ? "" : " = " + homes[content]) + '\n';
        }
        return line
            + (text.endsWith('\n') ? "\n| " + text.chopped(1).replace('\n', "\n| ")
                                   : " : " + QString(text).replace('\n', "\\n"))
            + '\n';
    }

    /// The text that a run would give, for one that a scenario tells.
    QString meaning(const QString &lines) const
    {
        static const QRegularExpression marks("^(?:! )?\n|^! ", multiline);
        static const QRegularExpression form("^([-+*] )?(.*?)(?: (=|:|->) ?(.*))?\n((?:\\|.*\n)*)",
                                             multiline);
        const QString text = expanded(lines, values).remove(marks);
        QString log = text.section(changesHeader, 0, 0);
        QStringList changes;
        for (auto places = form.globalMatch(text.section(changesHeader, 1)); places.hasNext();) {
            const QRegularExpressionMatch place = places.next();
            const QString sign = place.captured(3);
            const QString path = name(place.captured(2)) + (sign == "->" ? "@" : "");
            const QString below = place.captured(5).remove(QRegularExpression("^\\| ?", multiline));
            changes << change(place.captured(1), path,
                              sign == "=" ? found.value(name(place.captured(4)), "no such file")
                                          : unescaped(place.captured(4) + below));
        }
        changes.sort();
        log.replace("\\x20", " ").replace("\\x00", QString(1, QChar()));
        return log + (changes.isEmpty() ? "" : changesHeader) + changes.join("");
    }

    /// What the run gave, in the words that told of it where they still hold. What is given by hand
    /// stays.
    QString accepted() const
    {
        static const QRegularExpression end("\n(?!\\|)");
        QString text = '\n' + given.section('\n', 1);
        QString lost;
        QString header;
        for (const QString &before : told.section('\n', 1).chopped(1).split(end)) {
            const QString meant = '\n' + meaning(header + before + '\n').remove(changesHeader);
            const auto place = meant.size() > 1 ? text.indexOf(meant) : -1;
            if (place >= 0) {
                text.replace(place, meant.size(), '\n' + before + '\n');
            } else if (before.startsWith("! ")) {
                lost += before + '\n';
            }
            header = before + '\n' == changesHeader ? changesHeader : header;
        }
        text.replace(values["registered"], "@registered@").replace(DRASK_VERSION, "@version@");
        text.replace(workstation.path(), "@").replace("| \n", "|\n").replace(" \n", "\\x20\n");
        return lost + text.mid(1);
    }

    int row;
    Workstation workstation;
    std::unique_ptr<SmallDisk> disk;
    Values values;
    // The run: how it is started, what is told of it, what it found and what it gave.
    QStringList words;
    RunOptions options;
    QString told;
    Tree found;
    QHash<QByteArray, QString> homes; ///< files that it found, by content
    QString given;
};

} // namespace

/// Plays the scenarios, a row of data each; README.md describes them.
class tst_Scenarios : public QObject {
    Q_OBJECT

private slots:
    void scenario_data()
    {
        QTest::addColumn<QString>("file");
        for (const QString &name : QDir(home + "/scenarios").entryList({"*.txt"})) {
            QTest::newRow(qPrintable(name.chopped(4))) << home + "/scenarios/" + name;
        }
    }

    void scenario()
    {
        QFETCH(QString, file);
        for (int row = 0; row >= 0;) {
            Player player(row);
            player.play(home + "/starts/common.txt");
            player.play(file);
            if (!player.skipped.isEmpty()) {
                QSKIP(qPrintable(player.skipped));
            }
            QVERIFY2(player.problem.isEmpty(), qPrintable('\n' + player.problem));
            row = player.nextRow;
        }
    }
};

namespace {

/// Qt Test does not know "--accept": what is not as it is told is told anew.
int runScenarios(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    accepts = arguments.removeAll("--accept") > 0;
    if (accepts && qEnvironmentVariableIsSet("CI")) {
        qFatal("Nothing is accepted in CI.");
    }
    // Every file that is copied is flushed to its disk, and a disk takes minutes for ten thousand.
    if (QFileInfo("/dev/shm").isWritable()) {
        qputenv("TMPDIR", "/dev/shm");
    }
    tst_Scenarios scenarios;
    return QTest::qExec(&scenarios, arguments);
}

const Registration registration(__FILE__, Place::AsBuilt, runScenarios);

} // namespace

#include "tst_scenarios.moc"
