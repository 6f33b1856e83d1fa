// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

/// \file
/// The removal of an installed plug-in.

/// Removes an installed plug-in by the manifest that its installation left in the plug-in folder.
class PluginUninstaller : public QObject {
    Q_OBJECT

public:
    /// \a parent, if there is one, owns the object. It holds no data.
    explicit PluginUninstaller(QObject *parent = nullptr);

    /// Deletes every file that \a folder + "/uninstall.ini" lists (UTF-8, one path a line, used
    /// exactly as written), then the manifest itself and \a folder + "/manager.cfg". \a folder has
    /// no trailing slash. Folders stay, empty or not; a missing manifest lists nothing.
    ///
    /// Returns 0, or 2 when a listed file exists but could not be deleted, which a listed folder
    /// never can; the rest of the list is processed all the same. Logs "begin uninstall", the
    /// manifest's name, and what could not be opened or deleted of the manifest and manager.cfg.
    int uninstallPlugin(const QString &folder);
};
