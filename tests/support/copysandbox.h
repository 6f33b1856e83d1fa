// SPDX-License-Identifier: MIT
#pragma once

#include "installer/plugininstaller.h"
#include "logcapture.h"
#include "sandbox.h"

#include <QStringList>

namespace test {

/// A sandbox with an installer that copies folders inside it, and with the log of what it said.
class CopySandbox : public Sandbox {
public:
    explicit CopySandbox(bool onlyWriteConfig = false);

    /// Copies the folder \a source to \a target, both relative to the sandbox, as the outermost
    /// call.
    int copy(const QString &source = "plugin", const QString &target = "host/drask");

    /// The lines of the manifest in \a target, relative to the sandbox.
    QStringList manifest(const QString &target = "host/drask") const;

    /// What was logged by the copies, with all paths relative to the sandbox.
    QStringList log() const;

    PluginInstaller &installer();

private:
    LogCapture capture;
    PluginInstaller copier;
    int linesOfTheConstructor;
};

} // namespace test
