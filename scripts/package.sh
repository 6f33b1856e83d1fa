#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds every package of this platform: on Linux a .tar.gz and a .deb, on macOS a .tar.gz and a
# .pkg; beside them SHA256SUMS.
#
#   scripts/package.sh [FOLDER]    the packages come to lie in FOLDER; without it, in build/package
set -u
# shellcheck source=prepare.sh
. "$(dirname "$0")/prepare.sh"

case ${1-} in
    "") folder=$repository/build/package ;;
    /*) folder=$1 ;;
    *) folder=$PWD/$1 ;;
esac
cd "$repository" || exit 1

# The same commit gives the same times, whenever the packages are built.
choose_time() {
    [ -z "${SOURCE_DATE_EPOCH-}" ] || return 0
    SOURCE_DATE_EPOCH=$(git -C "$repository" log -1 --format=%ct 2>/dev/null) || return 0
    export SOURCE_DATE_EPOCH
}

# What Debian builds its own packages with: hardening, and no path of this machine in the program. The
# packages hold no debug information, so none is made.
choose_flags() {
    command -v dpkg-buildflags >/dev/null || return 0
    export DEB_BUILD_MAINT_OPTIONS=hardening=+all DEB_CXXFLAGS_MAINT_STRIP=-g
    CXXFLAGS="$(dpkg-buildflags --get CPPFLAGS) $(dpkg-buildflags --get CXXFLAGS)"
    LDFLAGS=$(dpkg-buildflags --get LDFLAGS)
    export CXXFLAGS LDFLAGS
}

remove_old_packages() {
    rm -f "$folder"/drask-installer[-_]*.tar.gz "$folder"/drask-installer[-_]*.deb \
        "$folder"/drask-installer[-_]*.pkg "$folder"/SHA256SUMS*
}

# The names of the packages that were made.
packages() {
    local package
    for package in "$folder"/drask-installer[-_]*.tar.gz "$folder"/drask-installer[-_]*.deb \
        "$folder"/drask-installer[-_]*.pkg; do
        [ ! -e "$package" ] || printf '%s\n' "${package##*/}"
    done
}

sum_up() {
    local tool=sha256sum
    command -v $tool >/dev/null || tool="shasum -a 256"
    # shellcheck disable=SC2086 # a command and its option
    (cd "$folder" && packages | xargs $tool >SHA256SUMS) || fail "The packages could not be summed up"
}

install_packages build package
choose_time
choose_flags
build_program "$folder"
remove_old_packages
run_quietly cmake --build "$folder" --target package
sum_up
{ packages; echo SHA256SUMS; } | sed "s|^|$folder/|"
