// SPDX-License-Identifier: MIT
#include "driver.h"

#include "commandline.h"
#include "globals.h"
#include "hostcatalogue.h"
#include "installpass.h"
#include "literals.h"
#include "logging.h"
#include "managersettings.h"
#include "uninstaller/ov3uninstaller.h"
#include "uninstaller/pluginuninstaller.h"
#include "wholenumber.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>

// Deliberate (globals): the modes set them once, and everything below only reads them.
QString username;
QString localProjectsFolder;
bool onlyWriteConfig = false;
const int pluginVersion = 24;

namespace {

/// Deliberate (log-in-working-folder): looks in the working directory, while the log is written
/// beside the program; a run from elsewhere therefore adds to the log that support already has.
void removePreviousLogs()
{
    const QString log = QStringLiteral("plugin.log");
    if (QFile::exists(log)) {
        static_cast<void>(QFile::remove(log));
    }
    static_cast<void>(QFile::remove(QStringLiteral("pluginError.txt")));
}

int removeLegacyPlugins(const QString &listFile)
{
    const int result = Ov3Uninstaller::deleteOldPlugins(listFile);
    qDebug() << result;
    if (result > 0) {
        writeErrorFile(QStringLiteral("Removal of old plugins failed, please remove manually."));
    }
    return result;
}

/// \a operand names the host and its folder: "(maya) /path/of/maya".
int uninstallOneHost(const QString &operand)
{
    const auto keyEnd = operand.lastIndexOf(QLatin1Char(')'));
    const QString keyPart = operand.left(keyEnd);
    const QString key = keyPart.mid(keyPart.indexOf(QLatin1Char('(')) + 1);
    const QString path = operand.mid(keyEnd + 2);

    int exitCode = 0;
    const QList<PluginPathStruct> hosts = getPluginInfoList(key, path);
    for (const PluginPathStruct &host : hosts) {
        const int result = uninstallPluginFunction(host.targetFolder());
        if (result > 0) {
            exitCode = result;
        }
    }
    return exitCode;
}

int uninstallAllHosts(const QList<PluginPathStruct> &hosts)
{
    int exitCode = 0;
    for (const PluginPathStruct &host : hosts) {
        // Deliberate (uninstall-all-removes-nothing): with the key before it, the folder names
        // nothing, and the plug-ins stay.
        const int result = uninstallPluginFunction(QLatin1Char('(') + host.applicationName + ") "_l1
                                                   + host.targetFolder());
        if (result > 0) {
            exitCode = result;
        }
    }
    return exitCode;
}

void readUser(const ManagerSettings &settings)
{
    username = settings.value(QStringLiteral("UserData/username")).toString();
    const QVariant loggedOut = settings.value(QStringLiteral("UserData/loggedOut"));
    if (!loggedOut.isNull() && loggedOut.toBool()) {
        username = ""_l1;
    }
    localProjectsFolder = settings.value(QStringLiteral("PathOptions/localProjectsFolder"))
                              .toString();
}

QList<PluginPathStruct> readHosts(ManagerSettings &settings)
{
    QList<PluginPathStruct> hosts;
    const int size = numberOfSetting(settings.value(QStringLiteral("pluginpaths/size")));
    static_cast<void>(settings.beginReadArray(QStringLiteral("pluginpaths")));
    for (int index = 0; index < size; ++index) {
        settings.setArrayIndex(index);
        hosts += getPluginInfoList(settings.value(QStringLiteral("application")).toString(),
                                   settings.value(QStringLiteral("path")).toString());
    }
    settings.endArray();
    return hosts;
}

int serveListedHosts(RunMode mode)
{
    const ManagerSettings settings;
    qDebug() << "settings loaded";
    readUser(settings);
    ManagerSettings hostSettings;
    const QList<PluginPathStruct> hosts = readHosts(hostSettings);

    int exitCode = 0;
    if (mode == RunMode::UninstallAll || mode == RunMode::Reinstall) {
        exitCode = uninstallAllHosts(hosts);
    }
    if (mode == RunMode::UninstallAll) {
        return exitCode;
    }
    const CopyWhen copyWhen = mode == RunMode::Reinstall ? CopyWhen::Always
                                                         : CopyWhen::VersionDiffers;
    return runInstallPass(hosts, settings, copyWhen, exitCode);
}

int runMode(const CommandLine &commandLine)
{
    switch (commandLine.mode) {
    case RunMode::Ov3Uninstall:
        return removeLegacyPlugins(commandLine.operand);
    case RunMode::UninstallPlugin:
        return uninstallOneHost(commandLine.operand);
    case RunMode::OnlyWriteConfig:
        qDebug() << "only write config";
        onlyWriteConfig = true;
        break;
    case RunMode::Reinstall:
        qDebug() << "forceReinstall";
        break;
    case RunMode::Install:
    case RunMode::UninstallAll:
        break;
    }
    return serveListedHosts(commandLine.mode);
}

} // namespace

int runDriver(int argc, char *argv[])
{
    removePreviousLogs();
    // Qt takes options of its own out of argv; the words of the manager are ours to read.
    const std::vector<const char *> words(argv, argv + argc);
    const QCoreApplication application(argc, argv);
    qInstallMessageHandler(myMessageOutput);
    keepEveryMessage();
    return runMode(readCommandLine(words));
}

int uninstallPluginFunction(const QString &folder)
{
    if (!folder.contains(QLatin1Char('/'))) {
        qDebug() << "nothing to uninstall for " << folder;
        return 0;
    }
    PluginUninstaller uninstaller;
    const int result = uninstaller.uninstallPlugin(folder);
    qDebug() << "uninstallPlugin " << result;
    return result;
}
