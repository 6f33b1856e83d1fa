// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

/// \file
/// Whether a copy is what was copied, asked with the fewest calls.

/// True when \a copy and \a original (encoded as by QFile::encodeName()) are plain files with the
/// same bytes, links followed, and the owner of \a copy may read it. False says only that this
/// could not be shown. Opens both for reading; logs nothing.
bool isSoundCopy(const QByteArray &copy, const QByteArray &original);
