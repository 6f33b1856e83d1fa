// SPDX-License-Identifier: MIT
#include "installer/managerconfig.h"

#include "disk/wholefile.h"
#include "installer/plugininstaller.h"
#include "literals.h"
#include "messages.h"
#include "results.h"
#include "textfile.h"

#include <QDebug>

namespace {

/// True when the file \a path begins with \a lines; a line that it lacks counts as empty.
bool isUpToDate(const QString &path, const QStringList &lines)
{
    QStringList present;
    const bool isRead = visitLines(path, [&](const QString &line) {
        present << line;
        return present.size() < lines.size();
    });
    if (!isRead) {
        qDebug() << Message::configAbsent;
        return false;
    }
    if (!saysAlready(present, lines)) {
        return false;
    }
    qDebug() << Message::configKept;
    return true;
}

} // namespace

QStringList managerConfigLines(const ManagerConfig &config)
{
    return {
        config.userName,
        config.projectsFolder,
        config.appDirPath + "/DraskDrop"_l1,
        config.version,
        QString::fromLatin1(config.cpuType.toBase64(QByteArray::Base64UrlEncoding)),
        QStringLiteral("1"),
        config.copyTexFiles ? QStringLiteral("1") : QStringLiteral("0"),
    };
}

bool saysAlready(QStringList present, const QStringList &lines)
{
    while (present.size() < lines.size()) {
        present << QString();
    }
    return present.mid(0, lines.size()) == lines;
}

QString managerConfigText(const QStringList &lines, LineEnd lineEnd)
{
    return lines.join(QLatin1String(lineEnd == LineEnd::LineFeed ? "\n" : "\r\n"));
}

int PluginInstaller::writeConfig(const QString &path, const QString &version,
                                 bool windowsLineEnds) const
{
    const QStringList lines = managerConfigLines(
        {userName, projectsFolder, appDirPath, version, cpuType, copyTexFiles});
    if (isUpToDate(path, lines)) {
        return 0;
    }
    qDebug() << Message::configWritten;
    const LineEnd lineEnd = windowsLineEnds ? LineEnd::CarriageReturnLineFeed : LineEnd::LineFeed;
    const QString text = managerConfigText(lines, lineEnd);
    return writeWhole(path, QIODevice::WriteOnly | QIODevice::Text, toUtf8(text))
        ? 0
        : Result::configurationNotWritten;
}
