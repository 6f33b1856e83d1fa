// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QString>

/// \file
/// How a file gets a new content.

/// Gives the file \a path the content \a content, or adds it to what is there when \a mode appends.
/// \a mode is how the file would be opened for that, and decides which files are refused. A file
/// that is missing is made, a missing folder is not.
///
/// Returns false when the file cannot be opened; \a reason, if given, becomes Qt's words for that.
/// Logs nothing.
bool writeWhole(const QString &path, QIODevice::OpenMode mode, const QByteArray &content,
                QString *reason = nullptr);
