// SPDX-License-Identifier: MIT
#include "hoststeps.h"

#include "disk/files.h"
#include "disk/standin.h"
#include "installer/maya.h"
#include "installer/plugininstaller.h"
#include "literals.h"
#include "logging.h"
#include "messages.h"
#include "results.h"

#include <QDebug>

namespace {

// clang-format off
/// Files of earlier Cinema 4D plug-ins. Deliberate (cfl64): "Grex.cfl64" is no slip.
constexpr QLatin1String legacyCinema4dNames[] = {
    "/plugins/Grex.cdl"_l1,
    "/plugins/Grex.cfl64"_l1,
    "/plugins/Grex10.dylib"_l1,
    "/plugins/Grex11.cdl"_l1,
    "/plugins/Grex11.cdl64"_l1,
    "/plugins/Grex11.dylib"_l1,
    "/plugins/Grex12.cdl"_l1,
    "/plugins/Grex12.cdl64"_l1,
    "/plugins/Grex12.dylib"_l1,
    "/plugins/Grex15.cdl64"_l1,
    "/plugins/Grex15.dylib"_l1,
    "/plugins/Grex18.cdl64"_l1,
    "/plugins/Grex18.dylib"_l1,
    "/plugins/grex20.xdl64"_l1,
    "/plugins/grex20.xlib"_l1,
    "/plugins/grex21.xdl64"_l1,
    "/plugins/grex21.xlib"_l1,
};
// clang-format on

void removeIfThere(const QString &path)
{
    static_cast<void>(removeFile(path));
}

/// A file that is there already stays as it is.
void copyExtraFile(QLatin1String name, const QString &target)
{
    static_cast<void>(copyFile(extraFilesFolder + name, target));
}

QString mayaScript(const PluginPathStruct &host)
{
    return mayaStartUpScript(host.targetFolder());
}

QString houdiniEnvironment(const PluginPathStruct &host)
{
    return host.path + "/houdini.env"_l1;
}

int installMaya(const PluginPathStruct &host)
{
    const QString target = host.targetFolder();
    const QString templateFile = target + mayaTemplateFile;
    if (PluginInstaller::copyMayaUserSetup(templateFile, target) > 0) {
        writeErrorFile(Message::userSetupFailed + target);
        return ExitCode::configurationNotWritten;
    }
    return 0;
}

void registerRhinoPlugin(NativeSettings &registry, const QString &pluginFile)
{
    const QLatin1String plugin("5f0c2a71-9e3d-4b68-a2c4-7d81e6b39f20");
    registry.set(plugin + "/Name"_l1, QStringLiteral("Drask"));
    registry.set(plugin + "/FileName"_l1, pluginFile);
}

int installRhino(const PluginPathStruct &host)
{
    const QString target = host.targetFolder();
    const QString pluginFile = target + "/Drask.rhp"_l1;

    NativeSettings machine(QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\5.0x64"
                                          "\\Plug-ins"));
    registerRhinoPlugin(machine, pluginFile);
    // Deliberate (rhino-two-spellings): "Software" here and "SOFTWARE" above.
    NativeSettings user(QStringLiteral("HKEY_CURRENT_USER\\Software\\McNeel\\Rhinoceros\\5.0x64"
                                       "\\Plug-ins"));
    registerRhinoPlugin(user, pluginFile);

    copyExtraFile("/Drask.rhp"_l1, pluginFile);
    copyExtraFile("/Drask_tb.rui"_l1, target + "/Drask_tb.rui"_l1);
    return 0;
}

int installRevit(const PluginPathStruct &host)
{
    const QString target = host.targetFolder();
    // Deliberate (revit-dots): no slash before the dots.
    copyExtraFile("/DraskRevitUpload.addin"_l1, target + "../DraskRevitUpload.addin"_l1);
    copyExtraFile("/DraskRevitUpload.dll"_l1, target + "/DraskRevitUpload.dll"_l1);
    return 0;
}

int installHoudini(const PluginPathStruct &host)
{
    // Deliberate (houdini-failure-ignored): the result does not count.
    static_cast<void>(PluginInstaller::editHoudiniEnv(extraFilesFolder, houdiniEnvironment(host)));
    return 0;
}

struct HostStep {
    QLatin1String key;
    int (*run)(const PluginPathStruct &host) = nullptr;
    /// The user's file that the step edits, if it edits one.
    QString (*startUpFile)(const PluginPathStruct &host) = nullptr;
};

// clang-format off
constexpr HostStep hostSteps[] = {
    {"maya"_l1,    installMaya,    mayaScript},
    {"rhino"_l1,   installRhino,   nullptr},
    {"revit"_l1,   installRevit,   nullptr},
    {"houdini"_l1, installHoudini, houdiniEnvironment},
};
// clang-format on

} // namespace

bool isCinema4d(const PluginPathStruct &host)
{
    return host.applicationName == "c4d"_l1 || host.applicationName == "c4d14"_l1
        || host.applicationName == "c4d21"_l1;
}

QStringList legacyCinema4dFiles(const PluginPathStruct &host)
{
    if (host.applicationName != "c4d"_l1) {
        return {};
    }
    QStringList files;
    const QString target = host.targetFolder();
    if (!target.contains("R21"_l1)) {
        files << target + "/grex21.xlib"_l1 << target + "/grex21.xdl64"_l1;
    }
    for (const QLatin1String name : legacyCinema4dNames) {
        files << host.path + name;
    }
    return files;
}

void removeLegacyCinema4dFiles(const PluginPathStruct &host)
{
    const QStringList files = legacyCinema4dFiles(host);
    for (const QString &file : files) {
        removeIfThere(file);
    }
}

QString startUpFileOf(const PluginPathStruct &host)
{
    for (const HostStep &step : hostSteps) {
        if (host.applicationName == step.key && step.startUpFile != nullptr) {
            return step.startUpFile(host);
        }
    }
    return {};
}

void clearUnfinishedStartUpFile(const PluginPathStruct &host)
{
    const QString file = startUpFileOf(host);
    if (!file.isEmpty()) {
        clearUnfinished(file);
    }
}

int runHostSteps(const PluginPathStruct &host)
{
    int exitCode = 0;
    for (const HostStep &step : hostSteps) {
        if (host.applicationName == step.key) {
            exitCode = step.run(host);
        }
    }
    qDebug() << host.applicationName + Message::installedIn << host.targetFolder();
    return exitCode;
}
