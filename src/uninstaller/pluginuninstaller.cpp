// SPDX-License-Identifier: MIT
#include "uninstaller/pluginuninstaller.h"

#include "disk/standin.h"
#include "literals.h"
#include "results.h"
#include "textfile.h"

#include <QDebug>
#include <QFile>

namespace {

int deleteListedFiles(QFile &manifest)
{
    int result = 0;
    Utf8Stream stream(&manifest);
    QString line;
    while (readWholeLine(stream, line)) {
        if (QFile::exists(line) && !QFile::remove(line)) {
            result = Result::fileNotDeleted;
        }
    }
    return result;
}

void deleteFile(const QString &path)
{
    if (!QFile::remove(path)) {
        qDebug() << "could not delete " << path;
    }
}

} // namespace

PluginUninstaller::PluginUninstaller(QObject *parent)
    : QObject(parent)
{
}

int PluginUninstaller::uninstallPlugin(const QString &folder)
{
    qDebug() << "begin uninstall";
    QFile manifest(folder + "/uninstall.ini"_l1);
    if (!manifest.open(QIODevice::ReadOnly)) {
        qDebug() << "cannot open " << manifest.fileName() << " for reading, ignore";
    }
    qDebug() << manifest.fileName();
    int result = 0;
    if (manifest.isOpen()) {
        result = deleteListedFiles(manifest);
        manifest.close();
    }
    // Deliberate (manifest-always-attempted): also when they are not there, which is logged.
    deleteFile(manifest.fileName());
    deleteFile(folder + "/manager.cfg"_l1);
    clearUnfinished(manifest.fileName());
    return result;
}
