// SPDX-License-Identifier: MIT
#pragma once

#include "workstation.h"

#include <QStringList>

#include <cstdint>
#include <iterator>
#include <random>

/// \file
/// Workstations that nobody would set up on purpose.
namespace test {

/// A workstation made by chance: some hosts, some of them installed already, some plug-ins, and
/// everything that can be in the way. The same seed makes the same one.
class RandomWorld : public Workstation {
public:
    explicit RandomWorld(std::uint32_t seed);

    /// The user of all runs.
    RunOptions user() const;
    /// The word with which the installer is started; empty for none.
    QString mode() const;

private:
    int below(int number);
    bool chance(int percent);
    template<class List> auto oneOf(const List &list)
    {
        return *std::next(list.begin(), below(static_cast<int>(list.size())));
    }

    void makePlugin(const QString &source, int version, const QString &key);
    void makeMayaTemplate(const QString &source);
    void addRandomHost(const QString &key);
    void makeStartUpFiles(const QString &key, const QString &folder);
    void disturbAll();
    void disturb(const QString &folder);
    void makeAnyLink(const QString &relative);
    void disturbFile(const QString &relative);
    void replaceFile(const QString &relative);
    QString anyEntry(const QString &folder);
    void give();

    std::mt19937 dice;
    bool asOrdinaryUser = false;
    QString modeWord;
    QStringList folders;
    QStringList plugins;
};

/// An entry of a tree with all that a run can change of it.
struct Leaf {
    char type = ' '; ///< 'f', 'd', 'l' or 'o'
    unsigned mode = 0;
    QByteArray content; ///< of a file; what a link says
    quint64 inode = 0;
    qint64 changed = 0; ///< when the content last changed, in nanoseconds

    /// Bytes, mode and kind.
    bool isAs(const Leaf &other) const;
    /// Neither written nor put there anew.
    bool isUntouched(const Leaf &other) const;
};

/// Everything below \a folder, links not followed, by absolute path.
QMap<QString, Leaf> leavesOf(const QString &folder);

} // namespace test
