#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/newerdebian.sh [SUITE]
#
# Builds the program with the Qt 6 of a newer Debian (default: trixie) and runs the unit tests and the
# tests of the built program there. The system lies in build/SUITE, from the mirror that this machine's apt
# uses; a second call takes what is there. Needs root and mmdebstrap.
set -u
# shellcheck source=prepare.sh
. "$(dirname "$0")/prepare.sh"
cd "$repository" || exit 1

suite=${1:-trixie}
system=$repository/build/$suite
[ "$(id -u)" -eq 0 ] || fail "A system in a folder needs root."

make_system() {
    local mirror
    command -v mmdebstrap >/dev/null || install_debian_packages mmdebstrap
    # shellcheck disable=SC2016 # apt expands it
    mirror=$(apt-get indextargets --format '$(SITE)' 'Created-By: Packages' | head -n 1)
    [ -n "$mirror" ] || fail "apt knows no mirror."
    rm -rf "$system"
    mkdir -p "$repository/build"
    run_quietly mmdebstrap --variant=minbase \
        --include=g++,cmake,ninja-build,qt6-base-dev,strace,util-linux "$suite" "$system" "$mirror"
    touch "$system/complete"
}

[ -e "$system/complete" ] || make_system
mkdir -p "$system/source" "$system/build"
tar --exclude ./build --exclude ./.git -cf - . | tar -xf - -C "$system/source"
# In a name space of its own, so that nothing stays mounted.
# shellcheck disable=SC2016 # the inner shells expand them
unshare --mount --pid --fork bash -eu -c '
    mount --bind /dev "$0/dev"
    mkdir -p "$0/dev/shm"
    mount -t tmpfs tmpfs "$0/tmp"
    mount -t proc proc "$0/proc"
    exec chroot "$0" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 bash -eu -c "
        cd /build
        cmake -S /source -G Ninja -DDRASK_QT=6 -DCMAKE_BUILD_TYPE=Debug -DDRASK_WARNINGS_AS_ERRORS=ON
        cmake --build . --target drask-installer drask-unit-tests drask-unit-tests-legacyremoval \
            drask-endtoend-tests
        ctest --output-on-failure --no-tests=error --parallel \$(nproc) --label-regex ^\(unit\|endtoend\)\$"
' "$system"
