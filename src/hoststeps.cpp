// SPDX-License-Identifier: MIT
#include "hoststeps.h"

#include "globals.h"
#include "installer/plugininstaller.h"
#include "logging.h"

#include <QDebug>
#include <QFile>
#include <QSettings>

namespace {

/// Deliberate: empty. The packages of these hosts in the field bring their extra files themselves.
constexpr QLatin1String extraFilesFolder("");

// clang-format off
/// Files of earlier Cinema 4D plug-ins. Deliberate: "Grex.cfl64" is the name that once shipped.
constexpr QLatin1String legacyCinema4dFiles[] = {
    QLatin1String("/plugins/Grex.cdl"),
    QLatin1String("/plugins/Grex.cfl64"),
    QLatin1String("/plugins/Grex10.dylib"),
    QLatin1String("/plugins/Grex11.cdl"),
    QLatin1String("/plugins/Grex11.cdl64"),
    QLatin1String("/plugins/Grex11.dylib"),
    QLatin1String("/plugins/Grex12.cdl"),
    QLatin1String("/plugins/Grex12.cdl64"),
    QLatin1String("/plugins/Grex12.dylib"),
    QLatin1String("/plugins/Grex15.cdl64"),
    QLatin1String("/plugins/Grex15.dylib"),
    QLatin1String("/plugins/Grex18.cdl64"),
    QLatin1String("/plugins/Grex18.dylib"),
    QLatin1String("/plugins/grex20.xdl64"),
    QLatin1String("/plugins/grex20.xlib"),
    QLatin1String("/plugins/grex21.xdl64"),
    QLatin1String("/plugins/grex21.xlib"),
};
// clang-format on

void removeIfThere(const QString &path)
{
    static_cast<void>(QFile::remove(path));
}

/// A file that is there already stays as it is.
void copyExtraFile(QLatin1String name, const QString &target)
{
    static_cast<void>(QFile::copy(extraFilesFolder + name, target));
}

int installMaya(const PluginPathStruct &host)
{
    const QString target = host.targetFolder();
    const QString templateFile = target + QLatin1String("/drask_userSetup.py");
    if (PluginInstaller::copyMayaUserSetup(templateFile, target) > 0) {
        writeErrorFile(QLatin1String("Could not copy userSetup.py file to: ") + target);
        return ExitCode::configurationNotWritten;
    }
    return 0;
}

void registerRhinoPlugin(QSettings &registry, const QString &pluginFile)
{
    const QLatin1String plugin("5f0c2a71-9e3d-4b68-a2c4-7d81e6b39f20");
    registry.setValue(plugin + QLatin1String("/Name"), QStringLiteral("Drask"));
    registry.setValue(plugin + QLatin1String("/FileName"), pluginFile);
}

int installRhino(const PluginPathStruct &host)
{
    const QString target = host.targetFolder();
    const QString pluginFile = target + QLatin1String("/Drask.rhp");

    QSettings machine(QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\McNeel\\Rhinoceros\\5.0x64"
                                     "\\Plug-ins"),
                      QSettings::NativeFormat);
    registerRhinoPlugin(machine, pluginFile);
    // Deliberate: "Software" here and "SOFTWARE" above, as Rhino's own installer writes them.
    QSettings user(QStringLiteral("HKEY_CURRENT_USER\\Software\\McNeel\\Rhinoceros\\5.0x64"
                                  "\\Plug-ins"),
                   QSettings::NativeFormat);
    registerRhinoPlugin(user, pluginFile);

    copyExtraFile(QLatin1String("/Drask.rhp"), pluginFile);
    copyExtraFile(QLatin1String("/Drask_tb.rui"), target + QLatin1String("/Drask_tb.rui"));
    return 0;
}

int installRevit(const PluginPathStruct &host)
{
    const QString target = host.targetFolder();
    // Deliberate: no slash before the dots; the add-in files in the field lie where this leads.
    copyExtraFile(QLatin1String("/DraskRevitUpload.addin"),
                  target + QLatin1String("../DraskRevitUpload.addin"));
    copyExtraFile(QLatin1String("/DraskRevitUpload.dll"),
                  target + QLatin1String("/DraskRevitUpload.dll"));
    return 0;
}

int installHoudini(const PluginPathStruct &host)
{
    // Deliberate: a houdini.env that cannot be edited is no failure of the installation.
    static_cast<void>(PluginInstaller::editHoudiniEnv(extraFilesFolder,
                                                      host.path + QLatin1String("/houdini.env")));
    return 0;
}

struct HostStep {
    QLatin1String key;
    int (*run)(const PluginPathStruct &host);
};

// clang-format off
constexpr HostStep hostSteps[] = {
    {QLatin1String("maya"),    installMaya},
    {QLatin1String("rhino"),   installRhino},
    {QLatin1String("revit"),   installRevit},
    {QLatin1String("houdini"), installHoudini},
};
// clang-format on

} // namespace

bool isCinema4d(const PluginPathStruct &host)
{
    return host.applicationName == QLatin1String("c4d")
        || host.applicationName == QLatin1String("c4d14")
        || host.applicationName == QLatin1String("c4d21");
}

void removeLegacyCinema4dFiles(const PluginPathStruct &host)
{
    if (host.applicationName != QLatin1String("c4d")) {
        return;
    }
    const QString target = host.targetFolder();
    if (!target.contains(QLatin1String("R21"))) {
        removeIfThere(target + QLatin1String("/grex21.xlib"));
        removeIfThere(target + QLatin1String("/grex21.xdl64"));
    }
    for (const QLatin1String name : legacyCinema4dFiles) {
        removeIfThere(host.path + name);
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
    qDebug() << host.applicationName + QLatin1String(" plugin installed in: ")
             << host.targetFolder();
    return exitCode;
}
