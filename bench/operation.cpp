// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"

#include <QCoreApplication>

/// Runs one operation of the library by itself, as "NAME ARGUMENT…".
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.value(1) == "maya" && words.size() == 4) {
        return PluginInstaller::copyMayaUserSetup(words.at(2), words.at(3));
    }
    if (words.value(1) == "lightwave" && words.size() == 3) {
        return PluginInstaller::editLwvCfgFile(words.at(2));
    }
    return 2;
}
