// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"

#include "installer/scriptedit.h"
#include "textfile.h"

#include <QDebug>

namespace {

constexpr int scriptNotWritten = 1;

struct XsiScript {
    QLatin1String name;
    QLatin1String placeHolder;
    QLatin1String replacement; ///< "%1" stands for the destination folder
    bool announcesPaths;
    const char *openedMessage;
    const char *notOpenedMessage;
    bool givesReason;
};

// clang-format off
// Deliberate: three wordings of one failure; support tells by them which script is missing.
constexpr XsiScript xsiScripts[] = {
//   file                              place-holder                       replacement                                      paths  when opened             when not opened              reason
    {QLatin1String("/grex.js"),       QLatin1String("__plugindir__"),   QLatin1String("%1/"),                            true,  "modify grex.js",       "Could not open source file", false},
    {QLatin1String("/drask_main.js"), QLatin1String("__draskscript__"), QLatin1String("ExecuteScript(\"%1/drask.js\")"), false, "modify drask_main.js", "error: ",                    true},
    {QLatin1String("/drask.js"),      QLatin1String("__grexjs__"),      QLatin1String("%1/grex.js"),                     false, nullptr,                "error opening ",             true},
};
// clang-format on

bool openSource(QFile &source, const XsiScript &script)
{
    if (source.open(QIODevice::ReadOnly | QIODevice::Text)) {
        if (script.openedMessage != nullptr) {
            qDebug() << script.openedMessage;
        }
        return true;
    }
    QDebug log = qDebug();
    log << script.notOpenedMessage;
    if (script.givesReason) {
        log << source.errorString();
    }
    return false;
}

int installScript(const XsiScript &script, const QString &sourceFolder, const QString &destFolder)
{
    QFile source(sourceFolder + script.name);
    const QString target = destFolder + script.name;
    if (script.announcesPaths) {
        qDebug() << "setupFile: " << source.fileName();
        qDebug() << "targetFile: " << target;
    }
    if (!openSource(source, script)) {
        return scriptNotWritten;
    }
    const QString replacement = QString(script.replacement).arg(destFolder);
    Utf8Stream lines(&source);
    return writeLines(lines, target, QIODevice::WriteOnly | QIODevice::Text,
                      [&script, &replacement](const QString &line) {
                          return QString(line).replace(script.placeHolder, replacement);
                      });
}

} // namespace

int PluginInstaller::copyXSIPlugin(const QString &sourceFolder, const QString &destFolder)
{
    qDebug() << "src: " << sourceFolder;
    qDebug() << "destFolder: " << destFolder;
    for (const XsiScript &script : xsiScripts) {
        const int result = installScript(script, sourceFolder, destFolder);
        if (result > 0) {
            return result;
        }
    }
    return 0;
}
