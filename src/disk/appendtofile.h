// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

/// \file
/// The fewest calls that add to a file. A log opens its file for each line, so that is felt.

/// Adds \a bytes to the end of the file \a path, a full name, which is made where there is none.
/// Returns false when the file cannot be opened or takes only a part. Logs nothing.
bool appendToFile(const QString &path, const QByteArray &bytes);
