// SPDX-License-Identifier: MIT
#include "managersettings.h"

#include <QCoreApplication>

ManagerSettings::ManagerSettings()
    : QSettings(QCoreApplication::applicationDirPath() + QLatin1String("/settings.ini"),
                QSettings::IniFormat)
{
    setIniCodec("UTF-8");
}
