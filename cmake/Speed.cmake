# SPDX-License-Identifier: MIT
# What makes a build after a change fast, where the machine has it. Whoever chooses a launcher or a
# linker of his own keeps it.
include(CheckCXXSourceCompiles)

if(NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  find_program(DRASK_CCACHE ccache)
  if(DRASK_CCACHE)
    # Without these, ccache leaves out whatever is compiled with precompiled headers.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros ${DRASK_CCACHE})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      add_compile_options(-fpch-preprocess)
    elseif(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
      add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
    endif()
  endif()
endif()

# On macOS the linker of the platform is fast, and the only one that signs.
if(NOT APPLE AND NOT CMAKE_EXE_LINKER_FLAGS MATCHES "-fuse-ld=")
  set(CMAKE_REQUIRED_LINK_OPTIONS -fuse-ld=lld)
  check_cxx_source_compiles("int main() {}" DRASK_HAS_LLD)
  unset(CMAKE_REQUIRED_LINK_OPTIONS)
  if(DRASK_HAS_LLD)
    add_link_options(-fuse-ld=lld)
  endif()
endif()
