// SPDX-License-Identifier: MIT
#pragma once

#include "expectedlog.h"

/// \file
/// The whole log of a run that serves one host.

namespace test {

/// \a text as a quoted value shows it.
inline QString escaped(QString text)
{
    text.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n");
    return text.replace(QChar(QChar::Null), "\\u0000");
}

/// The log of a pass over the host \a key in \a folder, which wrote the lines \a steps for it.
inline QStringList logOfPass(const QString &key, const QString &folder, const QStringList &steps,
                             int code, const QString &projects = "QVariant(Invalid)")
{
    return QStringList("Debug: settings loaded") + linesOfLookUp(key, folder)
        + QStringList({"Debug: !!!settings local:  " + projects, "Debug: version:  24"}) + steps
        + QStringList(QStringLiteral("Debug: %1").arg(code));
}

/// A plug-in was copied, the first of its pass, to where there was no configuration.
inline QStringList linesOfCopiedPlugin(const QString &key, const QString &target)
{
    return QStringList("Debug: open file:  \"\"") + linesOfNewConfig()
        + QStringList(installedLine(key, target));
}

/// A plug-in was copied to where its configuration says the same already.
inline QStringList linesOfReplacedPlugin(const QString &key, const QString &target)
{
    return {"Debug: open file:  \"\"", "Debug: not necessary to write cfg",
            installedLine(key, target)};
}

/// A plug-in of the wanted version and its configuration were left alone.
inline QStringList linesOfKeptPlugin(const QString &target)
{
    return {alreadyInstalledLine(target), "Debug: not necessary to write cfg"};
}

/// The folder \a target could not be made.
inline QStringList linesOfMissingTarget(const QString &key, const QString &target)
{
    QStringList lines = linesOfCopiedPlugin(key, target);
    lines.insert(1, "Debug: cannot open  " + quoted(target + "/uninstall.ini") + "  for writing");
    return lines;
}

/// What the user is told about a folder \a target that could not be made.
inline QByteArray messagesOfMissingTarget(const QByteArray &target)
{
    return "Could not copy file to: \n" + target + "\nCould not write config file in: \n" + target
        + "manager.cfg\n";
}

/// The log of a removal of an installed plug-in.
inline QStringList logOfRemoval(const QString &key, const QString &folder, const QString &target)
{
    return linesOfLookUp(key, folder) + linesOfUninstall(target, 0);
}

} // namespace test
