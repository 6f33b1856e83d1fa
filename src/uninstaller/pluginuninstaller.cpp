// SPDX-License-Identifier: MIT
#include "uninstaller/pluginuninstaller.h"

#include "disk/files.h"
#include "disk/standin.h"
#include "literals.h"
#include "messages.h"
#include "results.h"
#include "textfile.h"

#include <QDebug>

namespace {

int deleteListedFiles(QIODevice &manifest)
{
    int result = 0;
    Utf8Stream stream(&manifest);
    QString line;
    while (readWholeLine(stream, line)) {
        if (fileExists(line) && !removeFile(line)) {
            result = Result::fileNotDeleted;
        }
    }
    return result;
}

void deleteFile(const QString &path)
{
    if (!removeFile(path)) {
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
    qDebug() << Message::beginUninstall;
    const QString name = folder + "/uninstall.ini"_l1;
    auto manifest = openToRead(name, QIODevice::ReadOnly);
    if (!manifest) {
        qDebug() << "cannot open " << name << " for reading, ignore";
    }
    qDebug() << name;
    int result = 0;
    if (manifest) {
        result = deleteListedFiles(*manifest);
        manifest.reset();
    }
    // Deliberate (manifest-always-attempted): also when they are not there, which is logged.
    deleteFile(name);
    deleteFile(folder + "/manager.cfg"_l1);
    clearUnfinished(name);
    return result;
}
