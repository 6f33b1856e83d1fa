// SPDX-License-Identifier: MIT
#include "installpass.h"

#include "disk/standin.h"
#include "globals.h"
#include "hoststeps.h"
#include "installer/plugininstaller.h"
#include "literals.h"
#include "logging.h"
#include "managersettings.h"
#include "results.h"
#include "versionfile.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>

namespace {

void makeTargetFolder(const QString &target)
{
    if (!QDir(target).exists()) {
        // A folder that cannot be made shows when the plug-in is copied.
        static_cast<void>(QDir().mkpath(target));
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
    qDebug() << "version already installed: " << host.targetFolder();
    return true;
}

int copyPlugin(PluginInstaller &installer, const PluginPathStruct &host)
{
    if (installer.copyFolder(host.sourceFolder, host.targetFolder(), false) > 0) {
        writeErrorFile("Could not copy file to: \n"_l1 + host.targetFolder());
        return ExitCode::pluginNotCopied;
    }
    return 0;
}

int writeManagerConfig(const PluginInstaller &installer, const PluginPathStruct &host)
{
    const QString target = host.targetFolder();
    if (installer.writeConfig(configFileOf(host), installerVersion, isCinema4d(host)) > 0) {
        // Deliberate (config-message-without-slash): no slash before the name.
        writeErrorFile("Could not write config file in: \n"_l1 + target + "manager.cfg"_l1);
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
    qDebug().noquote() << "!!!settings local: "
                       << loggedForm(
                              settings.value(QStringLiteral("PathOptions/localProjectsFolder")));
    const bool copyTexFiles = settings.value(QStringLiteral("Settings/copyTexFiles"), true)
                                  .toBool();
    const QString programFolder = QCoreApplication::applicationDirPath();
    PluginInstaller installer(programFolder, username, localProjectsFolder, onlyWriteConfig,
                              copyTexFiles);
    installer.readCPUinfo();

    for (const PluginPathStruct &host : hosts) {
        if (host.path.contains(QLatin1Char('/'))) {
            installHost(installer, host, copyWhen, exitCode);
        } else {
            qDebug() << "nothing to copy for " << host.applicationName;
        }
    }
    static_cast<void>(PluginInstaller::writeVersionFile(programFolder, installerVersion));
    qDebug() << exitCode;
    return exitCode;
}
