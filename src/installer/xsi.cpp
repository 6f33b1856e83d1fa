// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"

#include "installer/scriptedit.h"
#include "literals.h"
#include "results.h"
#include "textfile.h"

#include <QDebug>

namespace {

struct XsiScript {
    QLatin1String name;
    QLatin1String placeHolder;
    QLatin1String replacement; ///< "%1" stands for the destination folder
    bool announcesPaths = false;
    const char *openedMessage = nullptr;
    const char *notOpenedMessage = nullptr;
    bool givesReason = false;
};

// clang-format off
// Deliberate: three wordings of one failure; support tells by them which script is missing.
constexpr XsiScript xsiScripts[] = {
//   file                 place-holder          replacement                          paths  when opened             when not opened               reason
    {"/grex.js"_l1,       "__plugindir__"_l1,   "%1/"_l1,                            true,  "modify grex.js",       "Could not open source file", false},
    {"/drask_main.js"_l1, "__draskscript__"_l1, "ExecuteScript(\"%1/drask.js\")"_l1, false, "modify drask_main.js", "error: ",                    true},
    {"/drask.js"_l1,      "__grexjs__"_l1,      "%1/grex.js"_l1,                     false, nullptr,                "error opening ",             true},
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
        return Result::scriptNotInstalled;
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
