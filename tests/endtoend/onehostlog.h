// SPDX-License-Identifier: MIT
#pragma once

#include "expectedpass.h"

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
    return logOfPass(linesOfLookUp(key, folder), steps, code, projects);
}

/// A plug-in was copied, the first of its pass, to where there was no configuration.
inline QStringList linesOfCopiedPlugin(const QString &key, const QString &target)
{
    return linesOfCopy() + linesOfNewConfig() + linesOfInstalled(key, target);
}

/// A plug-in was copied to where its configuration says the same already.
inline QStringList linesOfReplacedPlugin(const QString &key, const QString &target)
{
    return linesOfCopy() + linesOfKeptConfig() + linesOfInstalled(key, target);
}

/// A plug-in of the wanted version and its configuration were left alone.
inline QStringList linesOfKeptPlugin(const QString &target)
{
    return linesOfAlreadyInstalled(target) + linesOfKeptConfig();
}

/// The folder \a target could not be made.
inline QStringList linesOfMissingTarget(const QString &key, const QString &target)
{
    return linesOfCopy() + QStringList(manifestNotOpenedLine(target)) + linesOfNewConfig()
        + linesOfInstalled(key, target);
}

/// What the user is told about a folder \a target that could not be made.
inline QByteArray messagesOfMissingTarget(const QString &target)
{
    return copyMessage(target) + configMessage(target);
}

/// The log of a removal of an installed plug-in.
inline QStringList logOfRemoval(const QString &key, const QString &folder, const QString &target)
{
    return linesOfLookUp(key, folder) + linesOfUninstall(target, 0);
}

} // namespace test
