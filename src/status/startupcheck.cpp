// SPDX-License-Identifier: MIT
#include "status/startupcheck.h"

#include "hoststeps.h"
#include "installer/houdini.h"
#include "installer/maya.h"
#include "installer/scriptedit.h"

namespace {

int linesWith(const QString &text, QLatin1String word)
{
    const QStringList lines = text.split(QLatin1Char('\n'));
    return static_cast<int>(lines.filter(word).size());
}

bool isMaya(const HostAnswer &host)
{
    return host.key == "maya"_l1;
}

} // namespace

QList<Problem> checkStartUpFile(const HostAnswer &host, const FileText &text)
{
    return isMaya(host) ? checkUserSetup(text, host.startUpFile, host.target)
                        : checkHoudiniEnv(text, host.startUpFile);
}

Kind unreadableStartUpFile(const HostAnswer &host)
{
    return isMaya(host) ? Kind::UserSetupUnreadable : Kind::HoudiniEnvUnreadable;
}

QList<Problem> checkUserSetup(const FileText &script, const QString &file,
                              const QString &pluginFolder)
{
    if (!script) {
        return {{Kind::UserSetupMissing, file, QStringLiteral("userSetup.py is missing.")}};
    }
    if (!hasMayaAddition(*script)) {
        return {{Kind::UserSetupWithoutBlock, file,
                 QStringLiteral("userSetup.py does not load the plug-in.")}};
    }
    QList<Problem> problems;
    if (linesWith(*script, installedMarker) > 1) {
        problems.append({Kind::UserSetupTwoBlocks, file,
                         QStringLiteral("userSetup.py loads the plug-in more than once.")});
    }
    // Without a template nothing but the path can need an update.
    if (mayaUpdate(*script, *script, QString(), pluginFolder).part != MayaUpdate::Part::None) {
        problems.append({Kind::UserSetupOtherPath, file,
                         QStringLiteral("userSetup.py loads the plug-in from another folder.")});
    }
    return problems;
}

QList<Problem> checkHoudiniEnv(const FileText &environment, const QString &file)
{
    if (!environment) {
        return {{Kind::HoudiniEnvMissing, file, QStringLiteral("houdini.env is missing.")}};
    }
    if (houdiniEdit(*environment, extraFilesFolder).kind != ScriptEdit::Kind::Leave) {
        return {{Kind::HoudiniEnvWithoutAssignment, file,
                 QStringLiteral("houdini.env does not have the plug-in's assignment.")}};
    }
    return {};
}
