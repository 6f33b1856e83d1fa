// SPDX-License-Identifier: MIT
#include "copysandbox.h"

namespace test {

CopySandbox::CopySandbox(bool onlyWriteConfig)
    : copier("/opt/drask", "ann", "/projects", onlyWriteConfig, true)
    , linesOfTheConstructor(static_cast<int>(capture.lines().size()))
{
}

int CopySandbox::copy(const QString &source, const QString &target)
{
    return copier.copyFolder(path(source), path(target), false);
}

QStringList CopySandbox::manifest(const QString &target) const
{
    QStringList lines = QString::fromUtf8(read(target + "/uninstall.ini")).split(QLatin1Char('\n'));
    lines.removeLast();
    return lines.replaceInStrings(path() + QLatin1Char('/'), QString());
}

QStringList CopySandbox::log() const
{
    return capture.lines()
        .mid(linesOfTheConstructor)
        .replaceInStrings(path() + QLatin1Char('/'), QString());
}

PluginInstaller &CopySandbox::installer()
{
    return copier;
}

} // namespace test
