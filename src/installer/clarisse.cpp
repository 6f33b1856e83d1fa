// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"

#include "installer/scriptedit.h"
#include "textfile.h"

int PluginInstaller::editClarisseStartup(const QString &script)
{
    const QLatin1String importLine("import drask");
    bool isPresent = false;
    visitLines(script, [&isPresent, importLine](const QString &line) {
        isPresent = line.contains(importLine);
        return !isPresent;
    });
    if (isPresent) {
        return 0;
    }
    return appendText(script, QLatin1Char('\n') + importLine + QLatin1Char('\n'));
}
