#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the .deb, runs the tool and purges the package, on a view of this machine that keeps all
# changes to itself. Usage: debian_install.sh FOLDER-OF-THE-PACKAGES
# shellcheck source=support.sh
. "$(dirname "$0")/support.sh"

want_tools dpkg unshare chroot ldd
package=$(the_package "$1" 'drask-installer_*.deb') || exit
[ "$(id -u)" -eq 0 ] || skip "only root can install packages"
[ ! -e /opt/drask ] || skip "this machine has an /opt/drask of its own"
if [ "${2-}" != inside ]; then
    view=$(mktemp -d)
    trap 'rmdir "$view"' EXIT
    unshare --mount true 2>/dev/null || skip "no private mounts are allowed here"
    unshare --mount "$0" "$1" inside "$view"
    exit
fi

view=$3
changes=$view/changes
machine=$view/machine
hosts="/hömé of the hosts"
{
    mount -t tmpfs drask-test "$view" && mkdir "$changes" "$view/work" "$machine" \
        && mount -t overlay drask-test "$machine" \
            -o "lowerdir=/,upperdir=$changes,workdir=$view/work" \
        && mount --rbind /proc "$machine/proc" && mount --rbind /dev "$machine/dev"
} 2>/dev/null || skip "this machine cannot be overlaid"
cp "$package" "$machine/package.deb"

on_machine() {
    chroot "$machine" "$@"
}

# dpkg_quietly WORD…: dpkg asks nothing and is heard only when it fails. What other packages do about
# a new manual is theirs, and slow.
dpkg_quietly() {
    local output
    output=$(on_machine env DEBIAN_FRONTEND=noninteractive dpkg --no-triggers "$@" 2>&1) \
        || fail "$output"
}

run_tool() {
    local console
    # shellcheck disable=SC2016
    console=$(on_machine sh -c 'cd /opt/drask && exec ./drask-installer' 2>&1)
    same_text "the exit code" "$?" 0
    same_text "the console" "$console" ""
    same_text "version.txt" "$(cat "$machine/opt/drask/version.txt")" "$version"
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

installs_with_the_libraries_of_the_distribution() {
    dpkg_quietly --install /package.deb
    # shellcheck disable=SC2016
    same_text "what dpkg says" \
        "$(on_machine dpkg-query --show --showformat '${Status}' drask-installer)" \
        "install ok installed"
    on_machine ldd /opt/drask/drask-installer | grep -q ' => /.*lib/.*/libQt5Core.so.5 ' \
        || fail "$(on_machine ldd /opt/drask/drask-installer)"
}

# A manager that has gone before leaves nothing for the tool to serve.
leaves_nothing_when_nobody_else_used_the_folder() {
    installs_with_the_libraries_of_the_distribution
    run_tool
    dpkg_quietly --remove drask-installer
    same_text "what stays until the purge" "$(below "$machine/opt/drask")" "plugin.log
version.txt"
    dpkg_quietly --purge drask-installer
    same_text "what is left behind" "$(left_behind)" ""
}

leaves_what_is_of_others() {
    installs_with_the_libraries_of_the_distribution
    fill_manager_folder "$machine/opt/drask" "$hosts"
    run_tool
    verify_hosts "$hosts" "$machine$hosts" /opt/drask
    rm -r "${machine:?}$hosts"
    # A run that fails leaves its error file too.
    echo "Could not copy file to: " >"$machine/opt/drask/pluginError.txt"
    dpkg_quietly --purge drask-installer
    same_text "what is left behind" "$(left_behind)" "\
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

leaves_nothing_when_nobody_else_used_the_folder
leaves_what_is_of_others
