// SPDX-License-Identifier: MIT
#pragma once

#include "scenario.h"
#include "smalldisk.h"
#include "workstation.h"

#include <memory>

namespace test {

/// Whether a run is held against what is told of it, or told anew.
enum class Purpose { Hold, Accept };

/// How the program is started, and the lines of what is told of it: "run" (the log), "errors",
/// "changes".
struct Run {
    QString from = "tool";
    QStringList words;
    int code = 0;
    bool asNobody = false;
    QMap<QString, QStringList> told;
    QMap<QString, int> places; ///< of what is told, in the file
    int last = 0;              ///< the place where more would be told
};

/// Plays a scenario on a workstation of its own.
class Player {
public:
    Player(const QString &path, const Values &valuesOfTheRow, Purpose whatFor);
    ~Player();
    Player(const Player &) = delete;
    Player &operator=(const Player &) = delete;

    /// Plays until something is wrong.
    void play(const Sections &sections);

    QString problem;
    QString skipped; ///< why this machine cannot play the scenario

private:
    /// What a run finds, or leaves.
    struct Left {
        Tree tree;
        QByteArray log;
        QByteArray errors;
    };

    void make(const Section &section);
    void writeSettings(const QStringList &lines);
    void give(const QString &path, const QString &attribute);
    int playRuns(const Sections &sections, int at);
    void tell(QVector<Run> &runs, const Section &section, int place) const;
    Run readHeader(const QString &text) const;
    RunResult start(const Run &run) const;
    Left look(bool withLogs) const;
    void hold(const Run &run);
    QStringList complaints(const Run &run, const RunResult &result, const Left &before,
                           const Left &after);
    QStringList changesBetween(const Tree &before, const Tree &after) const;
    QString change(Tree &tree, const QStringList &lines) const;
    void accept(const Run &run, const QMap<QString, QStringList> &given,
                const QMap<QString, QString> &wrong);
    QString name(const QString &text) const
    {
        return QString::fromUtf8(unescaped(vocabulary.expanded(text)));
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
};

} // namespace test
