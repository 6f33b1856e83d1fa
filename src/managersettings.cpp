// SPDX-License-Identifier: MIT
#include "managersettings.h"

#include "literals.h"
#include "qtversions.h"
#include "wholenumber.h"

ManagerSettings::ManagerSettings(const QString &folder, QObject *parent)
    : QSettings(folder + "/settings.ini"_l1, QSettings::IniFormat, parent)
{
    useUtf8(*this);
}

QString ManagerSettings::userName() const
{
    const QVariant loggedOut = value(QStringLiteral("UserData/loggedOut"));
    if (!loggedOut.isNull() && loggedOut.toBool()) {
        return ""_l1;
    }
    return value(QStringLiteral("UserData/username")).toString();
}

QString ManagerSettings::localProjectsFolder() const
{
    return value(QStringLiteral("PathOptions/localProjectsFolder")).toString();
}

bool ManagerSettings::copyTexFiles() const
{
    return value(QStringLiteral("Settings/copyTexFiles"), true).toBool();
}

QList<HostEntry> ManagerSettings::hostEntries()
{
    QList<HostEntry> entries;
    const int size = numberOfSetting(value(QStringLiteral("pluginpaths/size")));
    static_cast<void>(beginReadArray(QStringLiteral("pluginpaths")));
    for (int index = 0; index < size; ++index) {
        setArrayIndex(index);
        entries.append({value(QStringLiteral("application")).toString(),
                        value(QStringLiteral("path")).toString()});
    }
    endArray();
    return entries;
}
