// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// What a file has besides its content.

/// Gives the open file \a to owner, group, rights, access list and extended attributes of the open
/// file \a from, and takes away what it has beyond. Returns false where one of them cannot be
/// given; \a to may then have some of them.
bool copyAttributes(int from, int to);
