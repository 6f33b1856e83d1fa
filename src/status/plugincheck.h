// SPDX-License-Identifier: MIT
#pragma once

#include "hostcatalogue.h"
#include "status/answer.h"

#include <QStringList>

#include <optional>

/// \file
/// Whether the files of an installed plug-in are those that were shipped.

/// The files of the plug-in in the folder \a source that an installation copies: with their
/// subfolders, relative to \a source.
QStringList shippedFiles(const QString &source);

/// Those files of the plug-in of \a target that its manifest should list and, if its text is
/// \a manifest, does not: as they are named there.
QStringList unlistedFiles(const PluginPathStruct &target, const QString &manifest);

/// How closely files are looked at.
enum class Look {
    Outside, ///< whether they are there and not empty
    Inside,  ///< byte by byte
};

/// What is wrong with the files of the plug-in of \a target: those that its manifest lists and,
/// where the version \a installed that is there is the shipped one, those in the shipped folder.
QList<Problem> checkPluginFiles(const PluginPathStruct &target, std::optional<int> installed,
                                Look look);
