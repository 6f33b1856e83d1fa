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

    /// The tree that a finished installation of all hosts makes of \a before.
    Tree installed(const Tree &before) const;

    /// The lines of a manager.cfg that the settings ask for.
    QByteArray configOf(const QString &key) const;

    /// The manifest of a plug-in in the folder \a target of the host \a key.
    QByteArray manifestOf(const QString &key, const QString &target) const;

    /// The log of an installation of all hosts: the first one, or one that found all of them
    /// installed already.
    QStringList logOfFirstRun() const;
    QStringList logOfLaterRun() const;

    /// Sets the time of every file of the hosts back; writtenFiles() names those written since.
    void ageHosts() const;
    QStringList writtenFiles() const;
};

} // namespace test
