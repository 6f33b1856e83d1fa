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
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + "/cputype"_l1, QStringList(),
                  QIODevice::ReadWrite);
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
