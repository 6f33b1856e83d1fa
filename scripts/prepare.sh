# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# What ./demo, ./test and the other commands need before they can start: packages, and a build.
# Sourced, never run. Works with the bash 3.2 of macOS. DRASK_QT, 5 or 6, chooses the Qt to build with;
# without it, CMake takes the one that this platform prefers.

repository=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export repository

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

debian_qt() { [ "${DRASK_QT-}" = 6 ] && echo qt6-base-dev || echo qtbase5-dev; }
brew_qt() { [ "${DRASK_QT-}" = 5 ] && echo qt@5 || echo qtbase; }

# The packages that a purpose needs, by package manager. Purposes: build test lint memory coverage
# fuzz bench docs package fleet.
debian_packages() {
    case $1 in
        build) echo "g++ cmake ninja-build $(debian_qt)" ;;
        test) echo "ccache gnupg lintian lld strace util-linux mount python3-jsonschema" ;;
        lint) echo "clang-format cppcheck shellcheck yamllint ansible-lint" ;;
        analysis) echo "clang-tidy clazy" ;;
        memory) echo "valgrind" ;;
        coverage) echo "gcovr" ;;
        fuzz) echo "clang libclang-rt-dev" ;;
        bench) echo "hyperfine gnuplot-nox rsync time" ;;
        docs) echo "bats doxygen graphviz linkchecker locales lowdown mandoc python3" ;;
        package) echo "bats dpkg-dev file" ;;
        fleet) echo "ansible-core bats openssh-client openssh-server sudo" ;;
        *) fail "There is no list of packages for '$1'" ;;
    esac
}

brew_packages() {
    case $1 in
        build) echo "cmake ninja $(brew_qt)" ;;
        lint) echo "clang-format cppcheck shellcheck yamllint ansible-lint" ;;
        analysis) echo "llvm" ;;
        coverage) echo "gcovr" ;;
        fuzz) echo "llvm" ;;
        bench) echo "hyperfine gnuplot rsync" ;;
        docs) echo "doxygen graphviz linkchecker lowdown mandoc" ;;
        test) echo "ccache" ;;
        fleet) echo "ansible" ;;
        memory | package) echo "" ;;
        *) fail "There is no list of packages for '$1'" ;;
    esac
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

install_debian_packages() {
    local package missing=""
    for package in "$@"; do
        if ! dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed'; then
            missing="$missing $package"
        fi
    done
    [ -n "$missing" ] || return 0
    printf 'About to install with apt-get:%s\n' "$missing"
    run_quietly as_root apt-get update
    # shellcheck disable=SC2086 # a list of names
    run_quietly as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends $missing
}

install_brew_packages() {
    local package missing=""
    for package in "$@"; do
        brew list --versions "$package" >/dev/null 2>&1 || missing="$missing $package"
    done
    [ -z "$missing" ] || printf 'About to install with brew:%s\n' "$missing"
    for package in $missing; do
        brew install --quiet "$package" || fail "This package could not be installed: $package"
    done
    # qt@5 is not linked into the usual places.
    CMAKE_PREFIX_PATH=$(brew --prefix "$(brew_qt)")
    export CMAKE_PREFIX_PATH
}

# install_packages PURPOSE… installs what the purposes need and the machine lacks.
install_packages() {
    local purpose packages=""
    if command -v apt-get >/dev/null; then
        for purpose in "$@"; do packages="$packages $(debian_packages "$purpose")"; done
        # shellcheck disable=SC2086
        install_debian_packages $packages
    elif command -v brew >/dev/null; then
        for purpose in "$@"; do packages="$packages $(brew_packages "$purpose")"; done
        # shellcheck disable=SC2086
        install_brew_packages $packages
    else
        fail "Neither apt-get nor brew is here to install what is needed for: $*"
    fi
}

# run_quietly COMMAND… prints what the command says only when it fails.
run_quietly() {
    local output
    output=$("$@" 2>&1) || fail "$output" "" "This failed: $*"
}

# build_folder PRESET: a Qt that somebody chose has folders of its own.
build_folder() {
    case ${DRASK_QT:+$1} in
        "") echo "build/$1" ;;
        dev) echo "build/qt$DRASK_QT" ;;
        *) echo "build/$1-qt$DRASK_QT" ;;
    esac
}

# configure_and_build PRESET builds all of it in build_folder().
configure_and_build() {
    local folder
    folder=$repository/$(build_folder "$1")
    run_quietly cmake --preset "$1" -B "$folder" -DDRASK_QT="${DRASK_QT-}"
    run_quietly cmake --build "$folder"
}

# build_program FOLDER builds the two programs, and nothing else, in FOLDER.
build_program() {
    run_quietly cmake -S "$repository" -B "$1" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DDRASK_BUILD_TESTS=OFF -DDRASK_QT="${DRASK_QT-}"
    run_quietly cmake --build "$1" --target drask-installer drask-status
}
