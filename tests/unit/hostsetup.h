// SPDX-License-Identifier: MIT
#pragma once

#include "expectedlog.h"
#include "hostcatalogue.h"

namespace test {

/// A host with that key, installed in \a folder, whose plug-in goes to \a subFolder in it.
inline PluginPathStruct hostAt(const QString &folder, const QString &key, const QString &subFolder)
{
    PluginPathStruct host;
    host.applicationName = key;
    host.path = folder;
    host.pluginSubFolder = subFolder;
    return host;
}

inline PluginPathStruct rhinoAt(const QString &folder)
{
    return hostAt(folder, "rhino", "/Plug-ins/Drask");
}

inline PluginPathStruct revitAt(const QString &folder)
{
    return hostAt(folder, "revit", "/Plugins/drask");
}

inline QString installedLine(const PluginPathStruct &host)
{
    return installedLine(host.applicationName, host.targetFolder());
}

} // namespace test
