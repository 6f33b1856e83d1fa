// SPDX-License-Identifier: MIT
#pragma once

#include <QFileDevice>
#include <QString>

/// \file
/// The wait until what was written is on the disk.

/// Waits until what was written to the open file \a handle is on the disk. Returns false when some
/// of it could not be written, with the reason in errno. What is on no disk counts as done.
bool waitForDisk(int handle);

/// Writes out what the open file \a file holds back, and waits for the disk. Returns false when
/// some of it could not be written; \a reason, if given, then becomes the words for it. Logs
/// nothing.
bool bringToDisk(QFileDevice &file, QString *reason = nullptr);
