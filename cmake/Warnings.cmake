# SPDX-License-Identifier: MIT
# What every target of this project is compiled with.
add_library(drask_warnings INTERFACE)
target_compile_options(drask_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast
  -Woverloaded-virtual
  # Qt Test's own macros leave variadic arguments out.
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wno-gnu-zero-variadic-macro-arguments>
  $<$<BOOL:${DRASK_WARNINGS_AS_ERRORS}>:-Werror>)
target_compile_definitions(drask_warnings INTERFACE
  QT_DEPRECATED_WARNINGS
  QT_DISABLE_DEPRECATED_BEFORE=0x060400
  QT_NO_FOREACH
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)

# What ships says of every literal which encoding it has; tests may use plain ones.
add_library(drask_strict_strings INTERFACE)
target_compile_definitions(drask_strict_strings INTERFACE
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_CAST_FROM_BYTEARRAY)
