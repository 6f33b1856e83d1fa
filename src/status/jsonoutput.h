// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

struct Answer;

/// \file
/// An answer for machines.

/// \a answer as one JSON object, UTF-8, ended by a line feed. docs/status.schema.json describes it.
QByteArray toJson(const Answer &answer);
