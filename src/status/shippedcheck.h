// SPDX-License-Identifier: MIT
#pragma once

#include "hostcatalogue.h"
#include "status/answer.h"

/// \file
/// Whether the plug-ins in the manager's folder can be installed as they lie there.

/// What is wrong with the shipped plug-in of \a target.
QList<Problem> checkShippedPlugin(const PluginPathStruct &target);

/// What the text \a content of Maya's template \a file lacks of the rules in docs/integration.md.
QList<Problem> checkTemplate(const QString &content, const QString &file);

/// The bytes of all files in the shipped folder \a source.
qint64 shippedSize(const QString &source);
