// SPDX-License-Identifier: MIT
#pragma once

#include "workstation.h"

#include <QVector>

namespace test {

/// One host of the studio. Folders are relative to the sandbox.
struct StudioHost {
    QString key;
    QString folder;         ///< where the host is installed
    QStringList subFolders; ///< where its plug-in goes, inside folder
    QString plugin;         ///< the shipped plug-in, in tool/plugins
    QString versionKey;     ///< in the settings' section "plugins"
    int version;            ///< shipped and wanted at first

    /// The plug-in folders.
    QStringList targets() const;
};

/// What an install does for a host, as its log tells it.
struct Served {
    enum Copy { Copied, FoundInstalled, NotShipped, LeftOut };
    enum Config { ConfigMade, ConfigKept, ConfigChanged };

    Copy copy;
    Config config;
    QStringList hostStep = {}; ///< lines of the steps of that host alone
};

/// A workstation with a plug-in and an installation of each of the fifteen hosts. The hosts hold
/// files of a user's own, among them start-up files that an installation edits.
class Studio : public Workstation {
public:
    /// Sets up everything, settings included.
    Studio();

    static const QVector<StudioHost> &hosts();
    static StudioHost host(const QString &key);

    /// The absolute path of the (first) plug-in folder of the host \a key, or of something in it.
    QString target(const QString &key, const QString &relative = QString()) const;

    /// Ships and wants another version of the plug-in of \a key, with \a files added or changed.
    void ship(const QString &key, int version, const Tree &files = {}) const;

    /// Replaces a line of the settings.
    void changeSetting(const QByteArray &line, const QByteArray &newLine) const;

    /// The tree that a finished installation of all hosts makes of \a before. Where Rhino's
    /// registry has a form of the platform's own, it is taken as the run left it: call this behind
    /// the run.
    Tree installed(const Tree &before) const;

    /// The lines of a manager.cfg that the settings ask for.
    QByteArray configOf(const QString &key) const;

    /// The manifest of a plug-in in the folder \a target of the host \a key.
    QByteArray manifestOf(const QString &key, const QString &target) const;

    /// The log of an installation of all hosts: the first one, or one that found all of them
    /// installed already.
    QStringList logOfFirstRun() const;
    QStringList logOfLaterRun() const;

    /// The log of an install that does \a served for every host but for those in \a others, which
    /// are named by their keys; reinstall looks for manifests before it.
    QStringList logOfInstall(const Served &served, const QMap<QString, Served> &others = {},
                             int code = 0) const;
    QStringList logOfReinstall(const Served &served) const;

    /// The log of a removal of all hosts, none of which is found.
    QStringList logOfRemovalOfAll() const;

    /// Sets the time of every file of the hosts back; writtenFiles() names those written since.
    void ageHosts() const;
    QStringList writtenFiles() const;
};

} // namespace test

/// One more run, which finds everything installed and leaves \a expectedTree.
#define VERIFY_LATER_RUN(studio, expectedTree)                                                     \
    do {                                                                                           \
        VERIFY_RUN((studio).run(), 0);                                                             \
        VERIFY_LEFT(studio, expectedTree, (studio).logOfLaterRun(), QByteArray());                 \
    } while (false)

/// The installation of all hosts, and one more run: what each of them leaves.
#define VERIFY_INSTALLATION(studio)                                                                \
    do {                                                                                           \
        const test::Tree treeBefore = (studio).treeWithoutLogs();                                  \
        VERIFY_RUN((studio).run(), 0);                                                             \
        const test::Tree treeBehind = (studio).installed(treeBefore);                              \
        VERIFY_LEFT(studio, treeBehind, (studio).logOfFirstRun(), QByteArray());                   \
        VERIFY_LATER_RUN(studio, treeBehind);                                                      \
    } while (false)

/// One more reinstall, which does everything over again and leaves \a expectedTree.
#define VERIFY_LATER_REINSTALL(studio, expectedTree)                                               \
    do {                                                                                           \
        VERIFY_RUN((studio).run({"reinstall"}), 0);                                                \
        const test::Served doneAgain{test::Served::Copied, test::Served::ConfigKept};              \
        VERIFY_LEFT(studio, expectedTree, (studio).logOfReinstall(doneAgain), QByteArray());       \
    } while (false)
