// SPDX-License-Identifier: MIT
#pragma once

#include "globals.h"
#include "hostsetup.h"
#include "installpass.h"
#include "logcapture.h"
#include "managersettings.h"
#include "programfolder.h"

/// What the tests of the install pass share.
namespace test {

/// A folder for hosts, the program's own, and the log; the globals are as they start.
struct PassCase : Sandbox {
    PassCase()
    {
        username.clear();
        localProjectsFolder.clear();
        onlyWriteConfig = false;
    }

    const ProgramFolder program;
    const LogCapture log;
};

/// A host in a folder of \a sandbox that bears its key, whose plug-in is shipped in the folder
/// "shipped KEY" in the version 7.
inline PluginPathStruct hostIn(const Sandbox &sandbox, const QString &key, const QString &subFolder)
{
    PluginPathStruct host = hostAt(sandbox.path(key), key, subFolder);
    host.sourceFolder = sandbox.path("shipped " + key);
    host.version = 7;
    return host;
}

/// What every pass logs before its first host.
inline QStringList linesBefore(const QString &projectsFolder = "QVariant(Invalid)")
{
    return {"Debug: !!!settings local:  " + projectsFolder, "Debug: version:  24"};
}

inline int runPass(const QList<PluginPathStruct> &hosts,
                   CopyWhen copyWhen = CopyWhen::VersionDiffers, int exitCode = 0)
{
    const ManagerSettings settings;
    return runInstallPass(hosts, settings, copyWhen, exitCode);
}

/// The manager.cfg that a pass writes when nothing is set and no program tells the CPU type.
inline QByteArray plainConfig(const ProgramFolder &folder, const QByteArray &lineEnd = "\n")
{
    const QByteArray dropProgram = folder.path("DraskDrop").toUtf8();
    return QList<QByteArray>{"", "", dropProgram, DRASK_VERSION, "", "1", "1"}.join(lineEnd);
}

} // namespace test
