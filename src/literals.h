// SPDX-License-Identifier: MIT
#pragma once

#include <QLatin1String>

#include <cstddef>

/// "text"_l1 is a QLatin1String whose length is known to the compiler, so that tables of them can
/// be constants with every compiler.
constexpr QLatin1String operator""_l1(const char *text, std::size_t size) noexcept
{
    return QLatin1String(text, static_cast<int>(size));
}
