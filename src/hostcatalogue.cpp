// SPDX-License-Identifier: MIT
#include "hostcatalogue.h"

#include "managersettings.h"

#include <QCoreApplication>
#include <QDebug>

namespace {

struct HostRow {
    QLatin1String key;
    QLatin1String subFolder;
    QLatin1String sourceName;
    QLatin1String versionKey;
};

// clang-format off
constexpr HostRow hostTable[] = {
//   host key                    folder inside the host                      folder in plugins/             key of the version
    {QLatin1String("c4d"),       QLatin1String("/plugins/drask"),            QLatin1String("Cinema4D"),     QLatin1String("plugins/versionCinema4d")},
    {QLatin1String("c4d14"),     QLatin1String("/plugins/drask"),            QLatin1String("Cinema4D14"),   QLatin1String("plugins/versionCinema4d14")},
    {QLatin1String("c4d21"),     QLatin1String("/plugins/drask"),            QLatin1String("Cinema4D21"),   QLatin1String("plugins/versionCinema4d21")},
    {QLatin1String("blender"),   QLatin1String("/scripts/startup/adrask"),   QLatin1String("Blender"),      QLatin1String("plugins/versionBlender")},
    {QLatin1String("blender28"), QLatin1String("/scripts/startup/adrask"),   QLatin1String("Blender28"),    QLatin1String("plugins/versionBlender28")},
    {QLatin1String("xsi"),       QLatin1String("/Application/Plugins/drask"), QLatin1String("xsi"),         QLatin1String("plugins/versionXSI")},
    {QLatin1String("lightwave"), QLatin1String("/Plugins/drask"),            QLatin1String("lightwave"),    QLatin1String("plugins/versionLightwave")},
    {QLatin1String("maya"),      QLatin1String("/scripts/drask"),            QLatin1String("maya"),         QLatin1String("plugins/versionMaya")},
    {QLatin1String("modo"),      QLatin1String("/Scripts/drask"),            QLatin1String("modo"),         QLatin1String("plugins/versionModo")},
    {QLatin1String("rhino"),     QLatin1String("/Plug-ins/Drask"),           QLatin1String("rhino"),        QLatin1String("plugins/versionRhino")},
    {QLatin1String("revit"),     QLatin1String("/Plugins/drask"),            QLatin1String("revit"),        QLatin1String("plugins/versionRevit")},
    {QLatin1String("houdini"),   QLatin1String("/Plugins/drask"),            QLatin1String("houdini"),      QLatin1String("plugins/versionHoudini")},
    {QLatin1String("sketchup"),  QLatin1String(""),                          QLatin1String("sketchup"),     QLatin1String("plugins/versionSketchup")},
    {QLatin1String("clarisse"),  QLatin1String("/drask"),                    QLatin1String("clarisse"),     QLatin1String("plugins/versionClarisse")},
};

// 3ds Max keeps one start-up folder a language. Deliberate: its version key begins with a slash.
constexpr HostRow maxRow =
    {QLatin1String("3dsmax"),    QLatin1String("/scripts/startup/drask"),    QLatin1String("3ds"),          QLatin1String("/plugins/version3ds")};
// clang-format on

constexpr QLatin1String maxLanguages[] = {
    QLatin1String("CHS"), QLatin1String("DEU"), QLatin1String("ENU"),
    QLatin1String("FRA"), QLatin1String("JPN"), QLatin1String("KOR"),
};

void fillIn(PluginPathStruct &record, const HostRow &row, const ManagerSettings &settings)
{
    const QString pluginRoot = QCoreApplication::applicationDirPath() + QLatin1String("/plugins/");
    record.pluginSubFolder = row.subFolder;
    record.sourceFolder = pluginRoot + row.sourceName;
    record.version = settings.value(row.versionKey).toInt();
}

QList<PluginPathStruct> maxRecords(PluginPathStruct record, const ManagerSettings &settings)
{
    fillIn(record, maxRow, settings);
    QList<PluginPathStruct> records;
    for (const QLatin1String language : maxLanguages) {
        record.pluginSubFolder = QLatin1Char('/') + language + maxRow.subFolder;
        records.append(record);
    }
    return records;
}

} // namespace

QString PluginPathStruct::targetFolder() const
{
    return path + pluginSubFolder;
}

QList<PluginPathStruct> getPluginInfoList(QString applicationName, QString path)
{
    const ManagerSettings settings;
    PluginPathStruct record;
    record.applicationName = std::move(applicationName);
    record.path = std::move(path);
    qDebug() << "applicationName" << record.applicationName;
    qDebug() << "path" << record.path;

    if (record.applicationName == maxRow.key) {
        return maxRecords(record, settings);
    }
    for (const HostRow &row : hostTable) {
        if (record.applicationName == row.key) {
            fillIn(record, row, settings);
        }
    }
    // Deliberate: an unknown host is a target too; the install pass reports it to the user.
    return {record};
}
