// SPDX-License-Identifier: MIT
#include "status/setup.h"

#include "hoststeps.h"
#include "literals.h"
#include "status/filelook.h"
#include "versionfile.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <utility>

QString oneName(const QString &folder)
{
    QString there = QDir::cleanPath(folder);
    QString missing;
    while (true) {
        const QString real = QFileInfo(there).canonicalFilePath();
        const auto slash = there.lastIndexOf(QLatin1Char('/'));
        if (!real.isEmpty() || slash <= 0) {
            return (real.isEmpty() ? there : real) + missing;
        }
        missing.prepend(there.mid(slash));
        there.truncate(slash);
    }
}

QSet<QString> sharedFolders(const QList<PluginPathStruct> &targets, const FolderName &nameOf)
{
    QHash<QString, QStringList> namesOf;
    for (const PluginPathStruct &target : targets) {
        if (target.path.contains(QLatin1Char('/'))) {
            namesOf[nameOf(target.targetFolder())] << target.targetFolder();
        }
    }
    QSet<QString> shared;
    for (const QStringList &names : std::as_const(namesOf)) {
        if (names.size() > 1) {
            shared += QSet<QString>(names.cbegin(), names.cend());
        }
    }
    return shared;
}

Setup readSetup(const Options &options)
{
    Setup setup;
    setup.folder = options.folder;
    const QString file = options.folder + "/settings.ini"_l1;
    const Found found = lookAt(file);
    if (found == Found::Nothing) {
        setup.problems.append({Kind::SettingsMissing, file,
                               QStringLiteral("There is no settings.ini in the folder.")});
    } else if (found != Found::File) {
        setup.problems.append(
            {Kind::SettingsUnreadable, file, QStringLiteral("settings.ini cannot be read.")});
    }
    ManagerSettings settings(options.folder);
    setup.user = settings.userName();
    setup.projects = settings.localProjectsFolder();
    setup.copyTexFiles = settings.copyTexFiles();
    const QList<HostEntry> entries = settings.hostEntries();
    for (const HostEntry &entry : entries) {
        setup.targets += installTargets(entry.application, entry.path, options.folder, settings);
    }
    return setup;
}

Answer emptyAnswer(const Options &options)
{
    Answer answer;
    answer.command = options.command;
    answer.folder = options.folder;
    return answer;
}

HostAnswer describe(const PluginPathStruct &target)
{
    HostAnswer host;
    host.key = target.applicationName;
    host.path = target.path;
    host.target = target.targetFolder();
    host.startUpFile = startUpFileOf(target);
    if (!target.sourceFolder.isEmpty()) {
        host.wanted = target.version;
    }
    const int version = readVersionTxt(host.target);
    if (version != -1) {
        host.installed = version;
    }
    return host;
}
