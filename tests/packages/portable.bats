#!/usr/bin/env bats
# SPDX-License-Identifier: MIT
# Unpacks the .tar.gz in a root that holds the C library, the runtime of the compiler and nothing
# else, and installs there.
# shellcheck disable=SC2154 # support.bash sets them
load support

system='ld-linux.*|lib(c|m|dl|rt|util|pthread|resolv|mvec|stdc\+\+|gcc_s)\.so\..*'
manager="/Mänager of Drask"
hosts="/hömé of the hosts"

setup() {
    want_tools unshare ldd readelf
    want_package 'drask-installer-*.tar.gz'
    namespaces=--mount
    [ "$(id -u)" -eq 0 ] || namespaces='--mount --user --map-root-user'
    # shellcheck disable=SC2086 # a list of options
    unshare $namespaces mount --bind /proc /proc 2>/dev/null \
        || skip "no private mounts are allowed here"
    root=$BATS_TEST_TMPDIR/root
    mkdir -p "$root/proc" "$root$hosts"
    tar -xzf "$package" -C "$root"
    mv "$root/$(basename "$package" .tar.gz)" "$root$manager"
    copy_system
}

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

run_and_verify() {
    run -0 run_tool "$@"
    same "the console of a run of $*" "$output" ""
    same "version.txt" "$(cat "$root$1/version.txt")" "$version"
    [ ! -e "$root$1/pluginError.txt" ]
}

@test "the package carries all that a desktop may lack, and nothing else" {
    same "what is needed of the machine" "$(needed_outside | grep -vE "/($system)$")" ""
    same "what is carried in vain" "$(below "$root$manager/lib" | grep -E "^($system)$")" ""
    [ -f "$root$manager/lib/$qt_library" ]
}

@test "the terms of all that is carried are there" {
    local library origin
    [ -s "$root$manager/LICENSE" ]
    while read -r library; do
        origin=$(sed -n "s/^$library: \([^ ]*\) .*/\1/p" "$root$manager/licenses/README.txt")
        [ -n "$origin" ] || fail "licenses/README.txt does not say where $library is from"
        [ -s "$root$manager/licenses/$origin/copyright" ] || fail "the terms of $origin are missing"
    done < <(below "$root$manager/lib")
    [ -s "$root$manager/licenses/common-licenses/LGPL-3" ] # Qt's
}

@test "the package has its pages" {
    same "the pages" "$(below "$root$manager/doc")" "formats.md
integration.md
status.md
support.md"
    same "the manual" "$(below "$root$manager/man")" "man1/drask-installer.1
man1/drask-status.1"
    [ -x "$root$manager/support-bundle" ]
}

# Without this the runs below would prove nothing.
@test "without its libraries the program does not start" {
    rm -r "${root:?}$manager/lib"
    run -127 run_tool "$manager"
    matches "$output" "$qt_library"
}

@test "the program installs" {
    fill_manager_folder "$root$manager" "$hosts"
    run_and_verify "$manager"
    verify_hosts "$hosts" "$root$hosts" "$manager"
    grep -qxF "Debug: \"blender28 plugin installed in: \" \"$hosts/blender/2.83/scripts/startup/adrask\"" \
        "$root$manager/plugin.log"
    run_and_verify "$manager"
    grep -qxF "Debug: version already installed:  \"$hosts/maya/2022/scripts/drask\"" \
        "$root$manager/plugin.log"
}

@test "the program installs from where it was moved to" {
    local moved="/elsewhere/now hëre"
    fill_manager_folder "$root$manager" "$hosts"
    run_and_verify "$manager"
    mkdir "$root/elsewhere"
    mv "$root$manager" "$root$moved"
    rm -r "${root:?}$hosts"
    run_and_verify "$moved"
    verify_hosts "$hosts" "$root$hosts" "$moved"
}
