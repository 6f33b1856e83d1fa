# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# What the tests of the packages share: how they end, and a workstation to install on. Sourced.
set -u
export LC_ALL=C.UTF-8

test_folder=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
repository=$(cd "$test_folder/../.." && pwd)
version=$(sed -n 's/.*installerVersion = "\([0-9.]*\)".*/\1/p' "$repository/src/globals.h")

fail() {
    printf 'FAIL: %s\n' "$@" >&2
    exit 1
}

# CTest counts this exit code as a test that was skipped.
skip() {
    printf 'SKIP: %s\n' "$*" >&2
    exit 77
}

want_tools() {
    local tool
    for tool in "$@"; do
        command -v "$tool" >/dev/null || skip "$tool is not on this machine"
    done
}

# the_package FOLDER PATTERN: prints the path of the one package that matches.
the_package() {
    local found
    found=$(find "$1" -maxdepth 1 -name "$2")
    [ -f "$found" ] || skip "no package $2 was built"
    printf '%s\n' "$found"
}

# same_text WHAT ACTUAL EXPECTED
same_text() {
    [ "$2" = "$3" ] || fail "$1 should be" "$3" "but is" "$2"
}

# below FOLDER: every file and link below it, sorted, relative to it.
below() {
    (cd "$1" && find . ! -type d | sed 's|^\./||' | sort)
}

# has_line FILE LINE
has_line() {
    grep -qxF -- "$2" "$1" || fail "$1 lacks the line" "$2" "and holds" "$(cat "$1")"
}

put() {
    mkdir -p "$(dirname "$1")"
    cat >"$1"
}

# fill_manager_folder FOLDER HOSTS: puts into FOLDER what the manager has beside the tool: two
# plug-ins, and settings that name a host for each in the folder HOSTS, as the tool sees it.
fill_manager_folder() {
    put "$1/plugins/maya/version.txt" <<<41
    put "$1/plugins/maya/icons/drask.png" <<<picture
    put "$1/plugins/maya/drask_userSetup.py" <<<"#drask_installed __scriptpath__"
    put "$1/plugins/Blender28/version.txt" <<<18
    put "$1/plugins/Blender28/__init__.py" <<<"import drask"
    put "$1/settings.ini" <<TEXT
[UserData]
username=Zoë Lindqvist

[PathOptions]
localProjectsFolder=/projects

[plugins]
versionMaya=41
versionBlender28=18

[pluginpaths]
1\\application=maya
1\\path="$2/maya/2022"
2\\application=blender28
2\\path="$2/blender/2.83"
size=2
TEXT
}

# verify_hosts SEEN HOSTS MANAGER: the folder HOSTS, which the tool saw as SEEN, holds the plug-ins
# and nothing else, and they name the manager's folder MANAGER.
verify_hosts() {
    local seen=$1 hosts=$2 manager=$3 folder
    same_text "what the hosts hold" "$(below "$hosts")" "\
blender/2.83/scripts/startup/adrask/__init__.py
blender/2.83/scripts/startup/adrask/manager.cfg
blender/2.83/scripts/startup/adrask/uninstall.ini
blender/2.83/scripts/startup/adrask/version.txt
maya/2022/scripts/drask/drask_userSetup.py
maya/2022/scripts/drask/icons/drask.png
maya/2022/scripts/drask/manager.cfg
maya/2022/scripts/drask/uninstall.ini
maya/2022/scripts/drask/version.txt
maya/2022/scripts/userSetup.py"
    for folder in blender/2.83/scripts/startup/adrask maya/2022/scripts/drask; do
        same_text "$folder/manager.cfg" "$(cat "$hosts/$folder/manager.cfg")" "\
Zoë Lindqvist
/projects
$manager/DraskDrop
$version

1
1"
    done
    same_text "the plug-in of Blender" \
        "$(cat "$hosts/blender/2.83/scripts/startup/adrask/__init__.py")" "import drask"
    same_text "userSetup.py" "$(cat "$hosts/maya/2022/scripts/userSetup.py")" \
        "#drask_installed $seen/maya/2022/scripts/drask"
}
