// SPDX-License-Identifier: MIT
#include "installer/clarisse.h"

#include "installer/plugininstaller.h"
#include "textfile.h"

ScriptEdit clarisseEdit(const QString &script)
{
    const QLatin1String importLine("import drask");
    if (script.contains(importLine)) {
        return {};
    }
    return {ScriptEdit::Kind::Append, QLatin1Char('\n') + importLine + QLatin1Char('\n')};
}

int PluginInstaller::editClarisseStartup(const QString &script)
{
    const ScriptEdit edit = clarisseEdit(readText(script));
    return edit.kind == ScriptEdit::Kind::Leave ? 0 : extendReadableScript(script, edit.text);
}
