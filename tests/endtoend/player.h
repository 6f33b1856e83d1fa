// SPDX-License-Identifier: MIT
#pragma once

#include "localecodec.h"
#include "scenario.h"
#include "smalldisk.h"
#include "workstation.h"

#include <memory>

namespace test {

/// Whether a run is held against what is told of it, or told anew.
enum class Purpose { Hold, Accept };

/// A manifest has the order in which the file system lists a folder: here, its lines are sorted.
Tree withSortedManifests(Tree tree);

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

/// Plays a scenario on a workstation of its own.
class Player {
public:
    Player(const QString &path, const Values &valuesOfTheRow, Purpose whatFor)
        : file(path)
        , row(valuesOfTheRow)
        , purpose(whatFor)
        , accepted(readSections(path))
    {
        vocabulary.values = row;
        vocabulary.values["version"] = DRASK_VERSION;
        vocabulary.sandbox = workstation.path();
        vocabulary.values["registered"] = inStoreOfSettings(workstation.path())
                                              .replace('\\', "\\\\");
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
    RunResult start(const Run &run) const;
    void hold(const Run &run);
    QStringList writtenForNothing(const Tree &before, const Tree &after);
    QStringList change(Tree &tree, const QStringList &lines) const;
    QStringList changesBetween(const Tree &before, const Tree &after) const;
    void accept(const Run &run, const QStringList &log, const QStringList &errors,
                const QStringList &changes);
    QString name(const QString &text) const
    {
        return QString::fromUtf8(unescaped(vocabulary.expanded(text)));
    }
    QStringList told(const Section *section) const
    {
        QStringList lines = section == nullptr ? QStringList() : section->lines;
        lines = vocabulary.expanded(lines);
        lines.removeAll(QString());
        return lines;
    }

    QString file;
    Values row;
    Purpose purpose;
    Sections accepted;
    Workstation workstation;
    std::unique_ptr<SmallDisk> disk;
    Vocabulary vocabulary;
    QString shellLine;
    QStringList aged;
    QStringList restricted;
    QStringList logOfRunBefore;
};

} // namespace test
