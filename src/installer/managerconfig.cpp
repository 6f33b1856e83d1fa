// SPDX-License-Identifier: MIT
#include "installer/managerconfig.h"

#include "disk/wholefile.h"
#include "installer/plugininstaller.h"
#include "literals.h"
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
        qDebug() << "cannot read config file, create new";
        return false;
    }
    while (present.size() < lines.size()) {
        present << QString();
    }
    if (present != lines) {
        return false;
    }
    qDebug() << "not necessary to write cfg";
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
    // The number belongs to the message.
    qDebug() << "161 write cfg file...";
    const LineEnd lineEnd = windowsLineEnds ? LineEnd::CarriageReturnLineFeed : LineEnd::LineFeed;
    const QString text = managerConfigText(lines, lineEnd);
    return writeWhole(path, QIODevice::WriteOnly | QIODevice::Text, toUtf8(text))
        ? 0
        : Result::configurationNotWritten;
}
