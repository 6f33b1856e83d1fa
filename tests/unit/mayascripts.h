// SPDX-License-Identifier: MIT
#pragma once

#include "installer/plugininstaller.h"
#include "logcapture.h"
#include "sandbox.h"

/// Maya's scripts folder with the plug-in's folder and template in it.
struct MayaScripts : test::Sandbox {
    MayaScripts()
    {
        makeFolder(pluginName);
    }

    QString plugin() const
    {
        return path(pluginName);
    }

    /// The plug-in's folder as the files hold it.
    QByteArray pluginBytes() const
    {
        return plugin().toUtf8();
    }

    void writeTemplate(const QByteArray &content) const
    {
        write(templateName, content);
    }

    int install() const
    {
        return PluginInstaller::copyMayaUserSetup(path(templateName), plugin());
    }

    const QString pluginName = "scripts/Drask";
    const QString templateName = "scripts/Drask/drask_userSetup.py";
    const QString script = "scripts/userSetup.py";
    const QString backup = "scripts/Drask/userSetup.py.draskbackup";
    const test::LogCapture log;
};

/// The line by which the plug-in's folder gets onto Maya's search path, without its line end.
inline QByteArray pathLine(const QByteArray &folder)
{
    return "\tsys.path.append( importable_path(u'" + folder + "'))";
}
