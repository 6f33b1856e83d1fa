// SPDX-License-Identifier: MIT
#pragma once

#include <QSettings>

/// \file
/// The settings file of the manager, as everyone here opens it.

/// The manager's "settings.ini" beside the program: INI format, UTF-8. It belongs to the manager;
/// this program never sets a value in it. A file that is missing, unreadable or malformed reads as
/// an empty one. Objects that are open at the same time share one parsed copy.
class ManagerSettings : public QSettings {
    Q_OBJECT

public:
    /// Opens the file. The core application object must exist.
    explicit ManagerSettings(QObject *parent = nullptr);
};
