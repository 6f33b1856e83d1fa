// SPDX-License-Identifier: MIT
#include "driver.h"

#include "commandline.h"
#include "disk/files.h"
#include "globals.h"
#include "hostcatalogue.h"
#include "installpass.h"
#include "literals.h"
#include "logging.h"
#include "managersettings.h"
#include "messages.h"
#include "uninstaller/ov3uninstaller.h"
#include "uninstaller/pluginuninstaller.h"

#include <QCoreApplication>
#include <QDebug>

// Deliberate (globals): the modes set them once, and everything below only reads them.
QString username;
QString localProjectsFolder;
bool onlyWriteConfig = false;
const int pluginVersion = 24;

namespace {

int removeLegacyPlugins(const QString &listFile)
{
    const int result = Ov3Uninstaller::deleteOldPlugins(listFile);
    qDebug() << result;
    if (result > 0) {
        writeErrorFile(Message::removalFailed);
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

QList<PluginPathStruct> readHosts(ManagerSettings &settings)
{
    QList<PluginPathStruct> hosts;
    const QList<HostEntry> entries = settings.hostEntries();
    for (const HostEntry &entry : entries) {
        hosts += getPluginInfoList(entry.application, entry.path, settings);
    }
    return hosts;
}

int serveListedHosts(RunMode mode)
{
    const ManagerSettings settings;
    qDebug() << Message::settingsLoaded;
    username = settings.userName();
    localProjectsFolder = settings.localProjectsFolder();
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

} // namespace

void removePreviousLogs()
{
    // Deliberate (log-in-working-folder): looks in the working directory, while the log is written
    // beside the program; a run from elsewhere therefore adds to the log that support already has.
    const QString log = QStringLiteral("plugin.log");
    if (fileExists(log)) {
        static_cast<void>(removeFile(log));
    }
    static_cast<void>(removeFile(QStringLiteral("pluginError.txt")));
}

void dropMessage(QtMsgType /*type*/, const QMessageLogContext & /*context*/,
                 const QString & /*message*/)
{
}

int runMode(const CommandLine &commandLine)
{
    switch (commandLine.mode) {
    case RunMode::Ov3Uninstall:
        return removeLegacyPlugins(commandLine.operand);
    case RunMode::UninstallPlugin:
        return uninstallOneHost(commandLine.operand);
    case RunMode::OnlyWriteConfig:
        qDebug() << Message::onlyWriteConfig;
        onlyWriteConfig = true;
        break;
    case RunMode::Reinstall:
        qDebug() << Message::forceReinstall;
        break;
    case RunMode::Install:
    case RunMode::UninstallAll:
        break;
    }
    return serveListedHosts(commandLine.mode);
}

int runDriver(int argc, char *argv[])
{
    removePreviousLogs();
    // Qt takes options of its own out of argv; the words of the manager are ours to read.
    const std::vector<const char *> words(argv, argv + argc);
    // Qt 6.5 and later complain of the machine's locale before there is a log, and of a pattern
    // that is none even with one. Nobody reads the console.
    static_cast<void>(qunsetenv("QT_MESSAGE_PATTERN"));
    qInstallMessageHandler(dropMessage);
    const QCoreApplication application(argc, argv);
    qInstallMessageHandler(myMessageOutput);
    keepEveryMessage();
    return runMode(readCommandLine(words));
}

int uninstallPluginFunction(const QString &folder)
{
    if (!folder.contains(QLatin1Char('/'))) {
        qDebug() << Message::nothingToUninstall << folder;
        return 0;
    }
    PluginUninstaller uninstaller;
    const int result = uninstaller.uninstallPlugin(folder);
    qDebug() << Message::uninstalled << result;
    return result;
}
