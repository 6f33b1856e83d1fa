// SPDX-License-Identifier: MIT
#include "hostcatalogue.h"

#include "literals.h"
#include "managersettings.h"
#include "wholenumber.h"

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
//   host key        folder inside the host           in plugins/      key of the version
    {"c4d"_l1,       "/plugins/drask"_l1,             "Cinema4D"_l1,   "plugins/versionCinema4d"_l1},
    {"c4d14"_l1,     "/plugins/drask"_l1,             "Cinema4D14"_l1, "plugins/versionCinema4d14"_l1},
    {"c4d21"_l1,     "/plugins/drask"_l1,             "Cinema4D21"_l1, "plugins/versionCinema4d21"_l1},
    {"blender"_l1,   "/scripts/startup/adrask"_l1,    "Blender"_l1,    "plugins/versionBlender"_l1},
    {"blender28"_l1, "/scripts/startup/adrask"_l1,    "Blender28"_l1,  "plugins/versionBlender28"_l1},
    {"xsi"_l1,       "/Application/Plugins/drask"_l1, "xsi"_l1,        "plugins/versionXSI"_l1},
    {"lightwave"_l1, "/Plugins/drask"_l1,             "lightwave"_l1,  "plugins/versionLightwave"_l1},
    {"maya"_l1,      "/scripts/drask"_l1,             "maya"_l1,       "plugins/versionMaya"_l1},
    {"modo"_l1,      "/Scripts/drask"_l1,             "modo"_l1,       "plugins/versionModo"_l1},
    {"rhino"_l1,     "/Plug-ins/Drask"_l1,            "rhino"_l1,      "plugins/versionRhino"_l1},
    {"revit"_l1,     "/Plugins/drask"_l1,             "revit"_l1,      "plugins/versionRevit"_l1},
    {"houdini"_l1,   "/Plugins/drask"_l1,             "houdini"_l1,    "plugins/versionHoudini"_l1},
    {"sketchup"_l1,  ""_l1,                           "sketchup"_l1,   "plugins/versionSketchup"_l1},
    {"clarisse"_l1,  "/drask"_l1,                     "clarisse"_l1,   "plugins/versionClarisse"_l1},
};

// 3ds Max keeps one start-up folder a language. Deliberate (slash-in-version-key): its key
// begins with a slash.
constexpr HostRow maxRow =
    {"3dsmax"_l1,    "/scripts/startup/drask"_l1,     "3ds"_l1,        "/plugins/version3ds"_l1};
// clang-format on

constexpr QLatin1String maxLanguages[] = {
    "CHS"_l1, "DEU"_l1, "ENU"_l1, "FRA"_l1, "JPN"_l1, "KOR"_l1,
};

void fillIn(PluginPathStruct &record, const HostRow &row, const ManagerSettings &settings)
{
    const QString pluginRoot = QCoreApplication::applicationDirPath() + "/plugins/"_l1;
    record.pluginSubFolder = row.subFolder;
    record.sourceFolder = pluginRoot + row.sourceName;
    record.version = numberOfSetting(settings.value(row.versionKey));
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
    // Deliberate (unknown-host-is-a-target): the install pass reports it to the user.
    return {record};
}
