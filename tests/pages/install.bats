#!/usr/bin/env bats
# SPDX-License-Identifier: MIT
# What "cmake --install" brings where, alone and as a part of a larger project.
# shellcheck disable=SC2154 # support.bash sets them
load support

@test "the programs get a folder of their own, since they write beside themselves" {
    local build=${DRASK_PROGRAMS%% *}/..
    run -0 cmake --install "$build" --prefix "$BATS_TEST_TMPDIR/to"
    same "where the programs are" "$(cd "$BATS_TEST_TMPDIR/to" && find . -type f -perm -u+x | sort)" "\
./drask/drask-installer
./drask/drask-status"
}

@test "a larger project links the library, and installs nothing of it" {
    local qt
    qt=$(sed -n 's/^QT_DIR:.*Qt\([56]\)$/\1/p' "${DRASK_PROGRAMS%% *}/../CMakeCache.txt")
    put "$BATS_TEST_TMPDIR/parent/CMakeLists.txt" <<TEXT
cmake_minimum_required(VERSION 3.16)
project(manager LANGUAGES CXX)
add_subdirectory("$repository" drask)
add_executable(manager manager.cpp)
target_link_libraries(manager PRIVATE drask::installer_core)
install(TARGETS manager)
get_directory_property(tests DIRECTORY "$repository" TESTS)
file(WRITE "\${CMAKE_BINARY_DIR}/tests" "\${tests}")
TEXT
    put "$BATS_TEST_TMPDIR/parent/manager.cpp" <<<'int main() {}'
    run -0 cmake -S "$BATS_TEST_TMPDIR/parent" -B "$BATS_TEST_TMPDIR/build" -DDRASK_QT="$qt"
    same "the tests" "$(cat "$BATS_TEST_TMPDIR/build/tests")" ""
    run ! grep -rE '^ *file\(INSTALL .*drask-' "$BATS_TEST_TMPDIR/build" --include cmake_install.cmake
    run -0 grep -rE '^ *file\(INSTALL .*manager' "$BATS_TEST_TMPDIR/build" --include cmake_install.cmake
}
