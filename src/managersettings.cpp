// SPDX-License-Identifier: MIT
#include "managersettings.h"

#include "literals.h"

#include <QCoreApplication>

ManagerSettings::ManagerSettings()
    : QSettings(QCoreApplication::applicationDirPath() + "/settings.ini"_l1, QSettings::IniFormat)
{
    setIniCodec("UTF-8");
}
