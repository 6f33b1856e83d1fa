// SPDX-License-Identifier: MIT
#pragma once

/// \file
/// Literals of which the compiler knows encoding and length.

#include <QLatin1String>

#include <cstddef>

/// "text"_l1 is a QLatin1String whose length is known to the compiler, so that tables of them can
/// be constants with every compiler. \a text is Latin-1 and lives as long as the program; \a size
/// counts its bytes without the closing zero.
constexpr QLatin1String operator""_l1(const char *text, std::size_t size) noexcept
{
    return QLatin1String(text, static_cast<decltype(QLatin1String().size())>(size));
}
