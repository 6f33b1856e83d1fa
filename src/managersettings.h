// SPDX-License-Identifier: MIT
#pragma once

#include "disk/files.h"

#include <QList>
#include <QSettings>
#include <QString>

/// \file
/// The settings file of the manager, as everyone here opens it.

/// One entry of the array "pluginpaths".
struct HostEntry {
    QString application; ///< the host's key
    QString path;        ///< the folder that it is installed in, as it stands there
};

/// The manager's "settings.ini" beside the program: INI format, UTF-8. It belongs to the manager;
/// this program never sets a value in it. A file that is missing, unreadable or malformed reads as
/// an empty one. Objects that are open at the same time share one parsed copy.
class ManagerSettings : public QSettings {
    Q_OBJECT

public:
    /// Opens the file in \a folder (no trailing slash), which is the program's own if none is
    /// given. The core application object must exist.
    explicit ManagerSettings(const QString &folder = toolFolder(), QObject *parent = nullptr);

    /// The user's name; empty for a user who is logged out.
    QString userName() const;
    /// The user's local projects folder, as it stands.
    QString localProjectsFolder() const;
    /// Whether textures are sent along: true unless the settings say otherwise.
    bool copyTexFiles() const;
    /// The hosts that the manager has found, in the order of the file.
    QList<HostEntry> hostEntries();
};
