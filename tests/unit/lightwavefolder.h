// SPDX-License-Identifier: MIT
#pragma once

#include "installer/plugininstaller.h"
#include "logcapture.h"
#include "sandbox.h"

#include <QFile>
#include <QRegularExpression>

#include <dirent.h>

/// A folder with LightWave's configuration in it.
struct LightwaveFolder : test::Sandbox {
    int edit() const
    {
        return PluginInstaller::editLwvCfgFile(path());
    }

    /// The names in the folder in the order in which the file system gives them.
    QStringList namesInFolderOrder() const
    {
        QStringList names;
        DIR *folder = opendir(QFile::encodeName(path()).constData());
        while (const dirent *entry = readdir(folder)) {
            names << QFile::decodeName(entry->d_name);
        }
        closedir(folder);
        return names;
    }

    /// What a run logged, but for the names of the files that it found.
    QStringList linesBehindTheFiles() const
    {
        return log.lines().filter(QRegularExpression("^(?!Debug: cfgfile: )"));
    }

    /// Qt's own line about a write to a file that its backup has closed.
    QString notWritten(const QString &name) const
    {
        return "Warning: QIODevice::write (QFile, \"" + path(name) + "\"): device not open";
    }

    const test::LogCapture log;
};

namespace lightwave {

const QString noMenuFile = "Debug: cfg file does not exist, create new file";
const QString noExtensionFile = "Debug: ext cfg file does not exist, create nwe file \"\"";
const QString noName = "Warning: QFSFileEngine::open: No file name specified";
const QString notOpened = "Debug: cannot open lightwave cfg file";

const QByteArray menu = "MenuEntry 1 Render \r\nMenuEntry 1 Options \r\n"
                        "MenuEntry 2 . RenderOptions\r\n";
const QByteArray editedMenu = "MenuEntry 1 Render \r\nMenuEntry 1 Options \r\n"
                              "MenuEntry 2 . Generic_Drask Tasklancer\r\n"
                              "MenuEntry 2 . RenderOptions\r\n";
const QByteArray extension = "{ Entry\r\n  Class \"ImageFilterHandler\"\r\n}\r\n";

} // namespace lightwave
