// SPDX-License-Identifier: MIT
#pragma once

#include "status/answer.h"

#include <QByteArray>

/// \file
/// Whether settings.ini says what its writer meant.

/// What is wrong with the bytes \a content of the settings file \a file: its sections, keys and
/// values as they stand there. Whether the folders that it names are of any use is not looked at.
QList<Problem> checkSettings(const QByteArray &content, const QString &file);
