// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"

#include "installer/scriptedit.h"
#include "literals.h"
#include "textfile.h"

int PluginInstaller::editClarisseStartup(const QString &script)
{
    constexpr QLatin1String importLine = "import drask"_l1;
    bool isThere = false;
    visitLines(script, [&](const QString &line) {
        isThere = line.contains(importLine);
        return !isThere;
    });
    if (isThere) {
        return 0;
    }
    return extendReadableScript(script, QLatin1Char('\n') + importLine + QLatin1Char('\n'));
}
