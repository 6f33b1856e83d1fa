// SPDX-License-Identifier: MIT
#include "hostcatalogue.h"

#include "disk/files.h"
#include "literals.h"
#include "managersettings.h"
#include "messages.h"
#include "wholenumber.h"

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

/// A tool: its folder and what its manager wants.
struct Tool {
    const QString &folder;
    const ManagerSettings &settings;
};

void fillIn(PluginPathStruct &record, const HostRow &row, Tool tool)
{
    record.pluginSubFolder = row.subFolder;
    record.sourceFolder = tool.folder + "/plugins/"_l1 + row.sourceName;
    record.version = numberOfSetting(tool.settings.value(row.versionKey));
}

QList<PluginPathStruct> maxRecords(PluginPathStruct record, Tool tool)
{
    fillIn(record, maxRow, tool);
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
    return getPluginInfoList(std::move(applicationName), std::move(path),
                             ManagerSettings(toolFolder()));
}

QList<PluginPathStruct> getPluginInfoList(QString applicationName, QString path,
                                          const ManagerSettings &settings)
{
    qDebug() << Message::applicationName << applicationName;
    qDebug() << Message::path << path;
    return installTargets(std::move(applicationName), std::move(path), toolFolder(), settings);
}

QStringList versionKeys()
{
    QStringList keys{QString(maxRow.versionKey).mid(1)};
    for (const HostRow &row : hostTable) {
        keys << row.versionKey;
    }
    return keys;
}

QList<PluginPathStruct> installTargets(QString applicationName, QString path, const QString &folder,
                                       const ManagerSettings &settings)
{
    PluginPathStruct record;
    record.applicationName = std::move(applicationName);
    record.path = std::move(path);
    const Tool tool{folder, settings};
    if (record.applicationName == maxRow.key) {
        return maxRecords(record, tool);
    }
    for (const HostRow &row : hostTable) {
        if (record.applicationName == row.key) {
            fillIn(record, row, tool);
        }
    }
    // Deliberate (unknown-host-is-a-target): the install pass reports it to the user.
    return {record};
}
