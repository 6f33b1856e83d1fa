// SPDX-License-Identifier: MIT
#include "driver.h"
#include "fuzzsandbox.h"
#include "globals.h"
#include "hostcatalogue.h"

#include <QCoreApplication>
#include <QSettings>

namespace {

struct Host {
    const char *key;
    const char *subFolder; ///< "LANGUAGE" in it stands for each language
    const char *source;
    const char *versionKey;
};

constexpr Host hosts[] = {
#include "hosts.inc"
};

/// More entries than these would only cost time: each is a round of its own.
constexpr int mostEntries = 40;

/// What the settings say, read without the program.
struct Settings {
    QString user;
    QString projects;
    QList<QPair<QString, QString>> entries;
    int size = 0;
};

struct SettingsFile : QSettings {
    explicit SettingsFile(const QString &path)
        : QSettings(path, QSettings::IniFormat)
    {
        setIniCodec("UTF-8");
    }
};

Settings readSettings(const QString &path)
{
    SettingsFile file(path);
    Settings settings;
    const QVariant loggedOut = file.value("UserData/loggedOut");
    const bool hasUser = loggedOut.isNull() || !loggedOut.toBool();
    settings.user = hasUser ? file.value("UserData/username").toString() : QString();
    settings.projects = file.value("PathOptions/localProjectsFolder").toString();
    settings.size = file.value("pluginpaths/size").toInt();
    for (int number = 1; number <= qMin(settings.size, mostEntries); ++number) {
        const QString group = "pluginpaths/" + QString::number(number);
        settings.entries.append({file.value(group + "/application").toString(),
                                 file.value(group + "/path").toString()});
    }
    return settings;
}

QStringList subFoldersOf(const Host &host)
{
    const QString subFolder = host.subFolder;
    if (!subFolder.contains("LANGUAGE")) {
        return {subFolder};
    }
    QStringList folders;
    for (const char *language : {"CHS", "DEU", "ENU", "FRA", "JPN", "KOR"}) {
        folders.append(QString(subFolder).replace("LANGUAGE", language));
    }
    return folders;
}

/// The row of \a key; null for an unknown host.
const Host *hostOf(const QString &key)
{
    for (const Host &host : hosts) {
        if (key == host.key) {
            return &host;
        }
    }
    return nullptr;
}

/// How many plug-in folders the entries stand for.
int folderCount(const Settings &settings)
{
    int count = 0;
    for (const auto &entry : settings.entries) {
        const Host *host = hostOf(entry.first);
        count += host == nullptr ? 1 : int(subFoldersOf(*host).size());
    }
    return count;
}

/// The mode that reads the settings and changes nothing.
void promiseDriverReads(const fuzz::Sandbox &sandbox, const Settings &settings)
{
    char program[] = "drask-installer";
    char mode[] = "uninstallAllPlugins";
    char *words[] = {program, mode, nullptr};
    fuzz::Tree expected = sandbox.tree();
    expected.remove("plugin.log");
    expected.remove("pluginError.txt");

    fuzz::promise(runDriver(2, words) == 0, "uninstalling by settings never fails");
    fuzz::promise(username == settings.user, "the user is read, and forgotten when logged out");
    fuzz::promise(localProjectsFolder == settings.projects, "the projects folder is read");
    const QByteArray log = sandbox.read("tool/plugin.log");
    const int handled = log.count("\nDebug: uninstallPlugin ")
        + log.count("\nDebug: nothing to uninstall for ");
    fuzz::promise(handled == folderCount(settings), "each host of the list is handled once");
    expected.insert("tool/plugin.log", log);
    sandbox.promiseTree(expected, "uninstalling by settings leaves everything where it is");
    fuzz::promise(sandbox.isAged("tool/settings.ini"), "the settings are never written");
}

void promiseKnown(const QList<PluginPathStruct> &records, const Host &host, const QString &tool)
{
    const SettingsFile file(tool + "/settings.ini");
    QStringList subFolders;
    for (const PluginPathStruct &record : records) {
        subFolders.append(record.pluginSubFolder);
        fuzz::promise(record.sourceFolder == tool + "/plugins/" + host.source,
                      "a known host has its source");
        fuzz::promise(record.version == file.value("plugins/" + QString(host.versionKey)).toInt(),
                      "a known host has the version that the settings record");
    }
    fuzz::promise(subFolders == subFoldersOf(host), "a known host has its folders");
}

void promiseRecords(const QString &key, const QString &path, const QString &tool)
{
    const QList<PluginPathStruct> records = getPluginInfoList(key, path);
    for (const PluginPathStruct &record : records) {
        fuzz::promise(record.applicationName == key && record.path == path,
                      "a record says what it was asked for");
    }
    if (const Host *host = hostOf(key)) {
        promiseKnown(records, *host, tool);
    } else {
        fuzz::promise(records.size() == 1 && records.first().version == -9999
                          && records.first().targetFolder() == path
                          && records.first().sourceFolder.isEmpty(),
                      "an unknown host has a record that says so");
    }
}

/// The input is the settings.ini.
void check(const fuzz::Sandbox &sandbox, const fuzz::Input &input)
{
    sandbox.write("tool/settings.ini", input.whole());
    // Settings that were read in this process before are told apart by their time.
    sandbox.age("tool/settings.ini");
    const Settings settings = readSettings(sandbox.path("tool/settings.ini"));
    if (settings.size > mostEntries) {
        return;
    }
    sandbox.write("plugin.log", "of the previous run");
    sandbox.write("pluginError.txt", "of the previous run");
    sandbox.write("maya/scripts/drask/uninstall.ini", "maya/scripts/drask/drask.py\n");
    sandbox.write("maya/scripts/drask/manager.cfg", "stays");
    sandbox.write("maya/scripts/drask/drask.py", "stays");
    promiseDriverReads(sandbox, settings);

    int count = 0;
    char *noWords[] = {nullptr};
    const QCoreApplication application(count, noWords);
    for (const auto &[key, path] : settings.entries) {
        promiseRecords(key, path, sandbox.path("tool"));
    }
}

} // namespace

DRASK_RELOCATED_FUZZ_TARGET(check)
