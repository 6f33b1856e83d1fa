// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"

#include "disk/files.h"
#include "disk/otherdisk.h"
#include "disk/wholefile.h"
#include "globals.h"
#include "literals.h"
#include "messages.h"
#include "results.h"
#include "textfile.h"

#include <QDebug>
#include <QProcess>

#include <memory>
#include <utility>

namespace {

constexpr int cpuTypeTimeoutMs = 30000;

/// Starts \a program, waits for its end, and returns what it wrote to its standard output.
QByteArray outputOf(const QString &program)
{
    if (OtherDisk *const other = OtherDisk::inPlace()) {
        return other->outputOf(program);
    }
    auto process = std::make_unique<QProcess>();
    process->start(program, QStringList(), QIODevice::ReadWrite);
    if (process->processId() == -1) {
        // The system has no room for one more process, which QProcess takes for a child with this
        // number. To end that child, as its destructor would, is to end every process of the user.
        static_cast<void>(process.release());
        return {};
    }
    // A program that hangs is killed when the process object goes away.
    static_cast<void>(process->waitForFinished(cpuTypeTimeoutMs));
    return process->readAllStandardOutput();
}

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
    const QString program = toolFolder() + "/cputype"_l1;
    cpuType.clear();
    // A start that must fail would cost a run with nothing to do as much as all its other steps.
    if (!fileExists(program)) {
        return;
    }
    cpuType = outputOf(program);
}

int PluginInstaller::writeVersionFile(const QString &folder, const QString &version)
{
    if (!writeWhole(folder + "/version.txt"_l1, QIODevice::WriteOnly | QIODevice::Text,
                    toUtf8(version))) {
        qDebug() << Message::versionNotWritten << folder;
        return Result::configurationNotWritten;
    }
    return 0;
}
