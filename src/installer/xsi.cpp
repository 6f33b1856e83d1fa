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
// Deliberate (xsi-three-wordings): they stand for one failure.
constexpr XsiScript xsiScripts[] = {
//   file                 place-holder          replacement                          paths  when opened             when not opened               reason
    {"/grex.js"_l1,       "__plugindir__"_l1,   "%1/"_l1,                            true,  "modify grex.js",       "Could not open source file", false},
    {"/drask_main.js"_l1, "__draskscript__"_l1, "ExecuteScript(\"%1/drask.js\")"_l1, false, "modify drask_main.js", "error: ",                    true},
    {"/drask.js"_l1,      "__grexjs__"_l1,      "%1/grex.js"_l1,                     false, nullptr,                "error opening ",             true},
};
// clang-format on

/// Reads the source file \a path into \a text and says how that went, in the script's words.
bool readSource(const QString &path, const XsiScript &script, QString &text)
{
    QString reason;
    if (readWholeText(path, text, &reason)) {
        if (script.openedMessage != nullptr) {
            qDebug() << script.openedMessage;
        }
        return true;
    }
    QDebug log = qDebug();
    log << script.notOpenedMessage;
    if (script.givesReason) {
        log << reason;
    }
    return false;
}

int installScript(const XsiScript &script, const QString &sourceFolder, const QString &destFolder)
{
    const QString source = sourceFolder + script.name;
    const QString target = destFolder + script.name;
    if (script.announcesPaths) {
        qDebug() << "setupFile: " << source;
        qDebug() << "targetFile: " << target;
    }
    QString text;
    if (!readSource(source, script, text)) {
        return Result::scriptNotInstalled;
    }
    const QString replacement = QString(script.replacement).arg(destFolder);
    const QString filled = editedLines(text, [&script, &replacement](const QString &line) {
        return QString(line).replace(script.placeHolder, replacement);
    });
    return filled.isEmpty() ? 0 : rewriteScript(target, filled);
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
