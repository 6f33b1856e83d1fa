#!/usr/bin/env bats
# SPDX-License-Identifier: MIT
# Installs the .deb, runs the tool and purges the package, on a view of this machine that keeps all
# changes to itself.
# shellcheck disable=SC2154 # support.bash sets them
load support

setup() {
    want_tools dpkg unshare chroot ldd
    want_package 'drask-installer_*.deb'
    [ "$(id -u)" -eq 0 ] || skip "only root can install packages"
    [ ! -e /opt/drask ] || skip "this machine has an /opt/drask of its own"
    unshare --mount true 2>/dev/null || skip "no private mounts are allowed here"
    export package version view=$BATS_TEST_TMPDIR/view
    export changes=$view/changes machine=$view/machine hosts="/hömé of the hosts"
    mkdir "$view"
    on_a_view true 2>/dev/null || skip "this machine cannot be overlaid"
}

# on_a_view FUNCTION: calls it where the view is mounted, for it alone.
on_a_view() {
    unshare --mount bash -eu <(declare -f; echo "mount_view; $1")
}

mount_view() {
    mount -t tmpfs drask-test "$view"
    mkdir "$changes" "$view/work" "$machine"
    mount -t overlay drask-test "$machine" -o "lowerdir=/,upperdir=$changes,workdir=$view/work"
    mount --rbind /proc "$machine/proc"
    mount --rbind /dev "$machine/dev"
    cp "$package" "$machine/package.deb"
}

# dpkg_quietly WORD…: dpkg asks nothing and is heard only when it fails. What other packages do about
# a new manual is theirs, and slow.
dpkg_quietly() {
    local output
    output=$(chroot "$machine" env DEBIAN_FRONTEND=noninteractive dpkg --no-triggers "$@" 2>&1) \
        || fail "$output"
}

run_tool() {
    same "console and exit code" \
        "$(chroot "$machine" sh -c 'cd /opt/drask && exec ./drask-installer' 2>&1; echo $?)" 0
    same "version.txt" "$(cat "$machine/opt/drask/version.txt")" "$version"
}

# What is on the machine now and was not before, or the other way round; not what dpkg and its
# triggers note for themselves.
left_behind() {
    local kind name
    (cd "$changes" && find . -mindepth 1 \
        \( -path ./var/lib/dpkg -o -path ./var/log -o -path ./var/cache -o -path ./package.deb \) \
        -prune -o -printf '%y %P\n') | sort -k 2 | while read -r kind name; do
        # No package owns /opt, so dpkg takes an empty one along.
        if [ "$kind $name" = "c opt" ] && [ -z "$(ls -A /opt)" ]; then
            continue
        elif [ "$kind" != d ]; then
            printf '%s\n' "$name"
        elif [ ! -d "/$name" ]; then
            printf '%s/\n' "$name"
        fi
    done
}

install_package() {
    dpkg_quietly --install /package.deb
    # shellcheck disable=SC2016
    same "what dpkg says" \
        "$(chroot "$machine" dpkg-query --show --showformat '${Status}' drask-installer)" \
        "install ok installed"
    matches "$(chroot "$machine" ldd /opt/drask/drask-installer)" \
        " => /[^ ]*lib/[^ ]*/$qt_library "
}

remove_and_purge() {
    install_package
    run_tool
    dpkg_quietly --remove drask-installer
    same "what stays until the purge" "$(below "$machine/opt/drask")" "plugin.log
version.txt"
    dpkg_quietly --purge drask-installer
    same "what is left behind" "$(left_behind)" ""
}

purge_after_use() {
    install_package
    fill_manager_folder "$machine/opt/drask" "$hosts"
    run_tool
    verify_hosts "$hosts" "$machine$hosts" /opt/drask
    rm -r "${machine:?}$hosts"
    # A run that fails leaves its error file too.
    echo "Could not copy file to: " >"$machine/opt/drask/pluginError.txt"
    dpkg_quietly --purge drask-installer
    same "what is left behind" "$(left_behind)" "\
opt/drask/
opt/drask/plugins/
opt/drask/plugins/Blender28/
opt/drask/plugins/Blender28/__init__.py
opt/drask/plugins/Blender28/version.txt
opt/drask/plugins/maya/
opt/drask/plugins/maya/drask_userSetup.py
opt/drask/plugins/maya/icons/
opt/drask/plugins/maya/icons/drask.png
opt/drask/plugins/maya/version.txt
opt/drask/settings.ini"
}

# A manager that has gone before leaves nothing for the tool to serve.
@test "a purge leaves nothing when nobody else used the folder" {
    on_a_view remove_and_purge
}

@test "a purge leaves what is of others" {
    on_a_view purge_after_use
}
