// SPDX-License-Identifier: MIT
#include "installpass.h"

#include "disk/files.h"
#include "disk/standin.h"
#include "globals.h"
#include "hoststeps.h"
#include "installer/plugininstaller.h"
#include "literals.h"
#include "logging.h"
#include "managersettings.h"
#include "messages.h"
#include "results.h"
#include "versionfile.h"

#include <QDebug>

namespace {

void makeTargetFolder(const QString &target)
{
    if (!isFolder(target)) {
        // A folder that cannot be made shows when the plug-in is copied.
        static_cast<void>(makePath(target));
    }
}

QString configFileOf(const PluginPathStruct &host)
{
    return host.targetFolder() + "/manager.cfg"_l1;
}

/// Also where nothing is to be written, or what a killed run left would stay.
void clearUnfinishedFiles(const PluginPathStruct &host)
{
    clearUnfinished(configFileOf(host));
    clearUnfinishedStartUpFile(host);
}

bool isInstalled(const PluginPathStruct &host)
{
    if (readVersionTxt(host.targetFolder()) != host.version) {
        return false;
    }
    qDebug() << Message::alreadyInstalled << host.targetFolder();
    return true;
}

int copyPlugin(PluginInstaller &installer, const PluginPathStruct &host)
{
    if (installer.copyFolder(host.sourceFolder, host.targetFolder(), false) > 0) {
        writeErrorFile(Message::copyFailed + host.targetFolder());
        return ExitCode::pluginNotCopied;
    }
    return 0;
}

int writeManagerConfig(const PluginInstaller &installer, const PluginPathStruct &host)
{
    const QString target = host.targetFolder();
    if (installer.writeConfig(configFileOf(host), installerVersion, isCinema4d(host)) > 0) {
        // Deliberate (config-message-without-slash): no slash before the name.
        writeErrorFile(Message::configFailed + target + "manager.cfg"_l1);
        return ExitCode::configurationNotWritten;
    }
    return 0;
}

/// Serves one host. Each step that fails overwrites \a exitCode; none stops those behind it.
void installHost(PluginInstaller &installer, const PluginPathStruct &host, CopyWhen copyWhen,
                 int &exitCode)
{
    const auto judge = [&exitCode](int stepResult) {
        if (stepResult > 0) {
            exitCode = stepResult;
        }
    };
    makeTargetFolder(host.targetFolder());
    clearUnfinishedFiles(host);
    const bool alreadyInstalled = copyWhen == CopyWhen::VersionDiffers && isInstalled(host);
    if (!alreadyInstalled) {
        judge(copyPlugin(installer, host));
    }
    judge(writeManagerConfig(installer, host));
    removeLegacyCinema4dFiles(host);
    if (!alreadyInstalled) {
        judge(runHostSteps(host));
    }
}

} // namespace

int runInstallPass(const QList<PluginPathStruct> &hosts, const ManagerSettings &settings,
                   CopyWhen copyWhen, int exitCode)
{
    qDebug().noquote() << Message::passStarts
                       << loggedForm(
                              settings.value(QStringLiteral("PathOptions/localProjectsFolder")));
    const QString programFolder = toolFolder();
    PluginInstaller installer(programFolder, username, localProjectsFolder, onlyWriteConfig,
                              settings.copyTexFiles());
    installer.readCPUinfo();

    for (const PluginPathStruct &host : hosts) {
        if (host.path.contains(QLatin1Char('/'))) {
            installHost(installer, host, copyWhen, exitCode);
        } else {
            qDebug() << Message::nothingToCopy << host.applicationName;
        }
    }
    static_cast<void>(PluginInstaller::writeVersionFile(programFolder, installerVersion));
    qDebug() << exitCode;
    return exitCode;
}
