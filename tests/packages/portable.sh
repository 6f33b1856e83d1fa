#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Unpacks the .tar.gz in a root that holds the C library, the runtime of the compiler and nothing
# else, and installs there.
# Usage: portable.sh FOLDER-OF-THE-PACKAGES
# shellcheck source=support.sh
. "$(dirname "$0")/support.sh"

system='ld-linux.*|lib(c|m|dl|rt|util|pthread|resolv|mvec|stdc\+\+|gcc_s)\.so\..*'

want_tools unshare ldd readelf
package=$(the_package "$1" 'drask-installer-*.tar.gz') || exit
name=$(basename "$package" .tar.gz)
namespaces=--mount
[ "$(id -u)" -eq 0 ] || namespaces='--mount --user --map-root-user'
# shellcheck disable=SC2086 # a list of options
unshare $namespaces mount --bind /proc /proc 2>/dev/null || skip "no private mounts are allowed here"

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
manager="/Mänager of Drask"
hosts="/hömé of the hosts"
mkdir -p "$root/proc" "$root$hosts"
tar -xzf "$package" -C "$root"
mv "$root/$name" "$root$manager"

# run_tool FOLDER ARGUMENT…: runs the tool of FOLDER in the root, as the manager does.
run_tool() {
    local folder=$1
    shift
    # The loader learns from /proc where the program lies.
    # shellcheck disable=SC2016,SC2086
    env -i PATH="$PATH" LC_ALL=C.UTF-8 unshare $namespaces sh -c '
        mount --rbind /proc "$1/proc" || exit 99
        root=$1 folder=$2
        shift 2
        exec unshare --root="$root" --wd="$folder" "$folder/drask-installer" "$@"
    ' sh "$root" "$folder" "$@" 2>&1
}

# Brings what every desktop has.
copy_system() {
    local loader library
    loader=$(readelf --program-headers "$root$manager/drask-installer" \
        | sed -n 's/.*interpreter: \(.*\)\]/\1/p')
    mkdir -p "$root$(dirname "$loader")"
    cp "$loader" "$root$loader"
    needed_outside | grep -E "/($system)$" | while read -r library; do
        mkdir -p "$root$(dirname "$library")"
        cp "$library" "$root$library"
    done
}

# The libraries that the loader takes from the machine, and not from the package.
needed_outside() {
    ldd "$root$manager/drask-installer" | sed -n 's/.* => \(.*\) (0x.*/\1/p' \
        | grep -vF "$root$manager/lib/"
}

verify_run() {
    local console
    console=$(run_tool "$@")
    same_text "the exit code of a run of $*" "$?" 0
    same_text "the console of a run of $*" "$console" ""
    same_text "version.txt" "$(cat "$root$1/version.txt")" "$version"
    [ ! -e "$root$1/pluginError.txt" ] || fail "$(cat "$root$1/pluginError.txt")"
}

carries_all_that_a_desktop_may_lack() {
    same_text "what is needed of the machine" "$(needed_outside | grep -vE "/($system)$")" ""
    same_text "what is carried in vain" \
        "$(below "$root$manager/lib" | grep -E "^($system)$")" ""
    [ -f "$root$manager/lib/libQt5Core.so.5" ] || fail "QtCore is not carried"
}

names_the_terms_of_all() {
    local library origin
    [ -s "$root$manager/LICENSE" ] || fail "the terms of the program are missing"
    while read -r library; do
        origin=$(sed -n "s/^$library: \([^ ]*\) .*/\1/p" "$root$manager/licenses/README.txt")
        [ -n "$origin" ] || fail "licenses/README.txt does not say where $library is from"
        [ -s "$root$manager/licenses/$origin/copyright" ] || fail "the terms of $origin are missing"
    done < <(below "$root$manager/lib")
    [ -s "$root$manager/licenses/common-licenses/LGPL-3" ] || fail "the terms of Qt are missing"
}

# Without this the runs below would prove nothing.
fails_without_its_libraries() {
    local console
    mv "$root$manager/lib" "$root$manager/away"
    console=$(run_tool "$manager")
    same_text "the exit code without libraries" "$?" 127
    [[ $console == *libQt5Core.so.5* ]] || fail "without libraries the loader says" "$console"
    mv "$root$manager/away" "$root$manager/lib"
}

installs() {
    fill_manager_folder "$root$manager" "$hosts"
    verify_run "$manager"
    verify_hosts "$hosts" "$root$hosts" "$manager"
    has_line "$root$manager/plugin.log" \
        "Debug: \"blender28 plugin installed in: \" \"$hosts/blender/2.83/scripts/startup/adrask\""
    verify_run "$manager"
    has_line "$root$manager/plugin.log" \
        "Debug: version already installed:  \"$hosts/maya/2022/scripts/drask\""
}

installs_from_where_it_was_moved_to() {
    local moved="/elsewhere/now hëre"
    mkdir "$root/elsewhere"
    mv "$root$manager" "$root$moved"
    rm -r "${root:?}$hosts"
    verify_run "$moved"
    verify_hosts "$hosts" "$root$hosts" "$moved"
}

copy_system
carries_all_that_a_desktop_may_lack
names_the_terms_of_all
fails_without_its_libraries
installs
installs_from_where_it_was_moved_to
