// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// \file
/// What the pages of the repository say, for cases that hold them against the program.

namespace test {

/// The text of a page, such as "docs/integration.md"; empty when it cannot be read.
QString page(const QString &name);

/// Whether docs/integration.md has \a line of plugin.log ("Debug: …"). Texts in quotes, what stands
/// in brackets and a number at the end may be others there.
bool isExplained(const QString &line);

} // namespace test
