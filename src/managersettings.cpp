// SPDX-License-Identifier: MIT
#include "managersettings.h"

#include "literals.h"
#include "qtversions.h"

#include <QCoreApplication>

ManagerSettings::ManagerSettings(QObject *parent)
    : QSettings(QCoreApplication::applicationDirPath() + "/settings.ini"_l1, QSettings::IniFormat,
                parent)
{
    useUtf8(*this);
}
