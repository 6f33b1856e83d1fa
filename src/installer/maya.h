// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// \file
/// The texts that go into Maya's start-up script. Texts are as readText() gives them, and empty for
/// a file that cannot be read; \a pluginFolder has no trailing slash.

/// Maya's start-up script, one level above the plug-in folder.
QString mayaStartUpScript(const QString &pluginFolder);

/// True when an earlier run's addition is recognised in \a script: the marker, and in that line or
/// behind it a path line.
bool hasMayaAddition(const QString &script);

/// What is put behind a script without an addition: the lines of \a templateText, each ended by
/// "\n", with \a pluginFolder in their place-holders. Empty when there are none; nothing is written
/// then.
QString mayaAddition(const QString &templateText, const QString &pluginFolder);

/// What is to become of a script that has an addition.
struct MayaUpdate {
    /// What of the script changes.
    enum class Part {
        None,     ///< the script is as it should be
        PathLine, ///< the path line is another
        Block,    ///< the whole addition is replaced
        Lost,     ///< the addition that was recognised is not there any more: a failure
    };
    Part part = Part::None; ///< what changes
    QString script;         ///< the new script for PathLine and Block
};

/// Brings the addition in \a script up to date with \a templateText and \a pluginFolder. The
/// installer reads the script a second time, as \a scriptNow, before it decides about the block;
/// without anybody who writes to the script, both are the same text.
MayaUpdate mayaUpdate(const QString &script, const QString &scriptNow, const QString &templateText,
                      const QString &pluginFolder);
