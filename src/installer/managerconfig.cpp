// SPDX-License-Identifier: MIT
#include "installer/plugininstaller.h"

#include "literals.h"
#include "results.h"
#include "textfile.h"

#include <QDebug>

#include <algorithm>

namespace {

/// True when \a file begins with exactly \a lines; a line that it lacks counts as empty.
bool beginsWith(QFile &file, const QStringList &lines)
{
    Utf8Stream stream(&file);
    return std::all_of(lines.cbegin(), lines.cend(),
                       [&stream](const QString &line) { return stream.readLine() == line; });
}

/// True when the file \a path says \a lines already.
bool isUpToDate(const QString &path, const QStringList &lines)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug() << "cannot read config file, create new";
        return false;
    }
    if (!beginsWith(file, lines)) {
        return false;
    }
    qDebug() << "not necessary to write cfg";
    return true;
}

} // namespace

QStringList PluginInstaller::configLines(const QString &version) const
{
    return {
        userName,
        projectsFolder,
        appDirPath + "/DraskDrop"_l1,
        version,
        QString::fromLatin1(cpuType.toBase64(QByteArray::Base64UrlEncoding)),
        QStringLiteral("1"),
        copyTexFiles ? QStringLiteral("1") : QStringLiteral("0"),
    };
}

int PluginInstaller::writeConfig(const QString &path, const QString &version,
                                 bool windowsLineEnds) const
{
    const QStringList lines = configLines(version);
    if (isUpToDate(path, lines)) {
        return 0;
    }
    // The number belongs to the message.
    qDebug() << "161 write cfg file...";
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        return Result::configurationNotWritten;
    }
    const QLatin1String lineEnd(windowsLineEnds ? "\r\n" : "\n");
    Utf8Stream(&file) << lines.join(lineEnd);
    return 0;
}
