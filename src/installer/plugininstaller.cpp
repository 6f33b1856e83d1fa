// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"

#include "globals.h"
#include "literals.h"
#include "textfile.h"

#include <QCoreApplication>
#include <QDebug>
#include <QProcess>

#include <utility>

namespace {

constexpr int versionFileNotWritten = 3;
constexpr int cpuTypeTimeoutMs = 30000;

/// Where the system has no room for one more process, QProcess itself takes the failure for a child
/// with the number -1, and later ends it, which ends every process of the user. For subclasses it
/// forks in a way that tells.
class CpuTypeProcess // clazy:exclude=missing-qobject-macro,ctor-missing-parent-argument
    : public QProcess { };

} // namespace

PluginInstaller::PluginInstaller(QString appDir, QString user, QString projects, bool configOnly,
                                 bool withTextures)
    : userName(std::move(user))
    , appDirPath(std::move(appDir))
    , projectsFolder(std::move(projects))
    , onlyWriteConfig(configOnly)
    , copyTexFiles(withTextures)
{
    qDebug() << "version: " << pluginVersion;
}

void PluginInstaller::readCPUinfo()
{
    const QString program = QCoreApplication::applicationDirPath() + "/cputype"_l1;
    cpuType.clear();
    // A start that must fail would cost a run with nothing to do as much as all its other steps.
    if (!QFile::exists(program)) {
        return;
    }
    CpuTypeProcess process;
    process.start(program, QStringList(), QIODevice::ReadWrite);
    // A program that hangs is killed when the process object goes away.
    static_cast<void>(process.waitForFinished(cpuTypeTimeoutMs));
    cpuType = process.readAllStandardOutput();
}

int PluginInstaller::writeVersionFile(const QString &folder, const QString &version)
{
    QFile file(folder + "/version.txt"_l1);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        qDebug() << "error writing version file: " << folder;
        return versionFileNotWritten;
    }
    Utf8Stream(&file) << version;
    return 0;
}
