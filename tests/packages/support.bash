# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# What the tests of the packages share: a few words, and a workstation to install on. Their packages
# are in the folder DRASK_PACKAGES, built with the Qt that DRASK_QT says, 5 or 6.
bats_require_minimum_version 1.5.0
export LC_ALL=C.UTF-8

repository=$(cd "$BATS_TEST_DIRNAME/../.." && pwd)
version=$(cat "$repository/VERSION")
export qt_library=libQt${DRASK_QT:=5}Core.so.$DRASK_QT

fail() {
    printf '%s\n' "$@"
    return 1
}

want_tools() {
    local tool
    for tool in "$@"; do
        command -v "$tool" >/dev/null || skip "$tool is not on this machine"
    done
}

# want_package PATTERN: the path of the one package that matches becomes $package.
want_package() {
    package=$(find "$DRASK_PACKAGES" -maxdepth 1 -name "$1")
    [ -f "$package" ] || skip "no package $1 was built"
}

# same WHAT ACTUAL EXPECTED
same() {
    [ "$2" = "$3" ] || fail "$1 should be" "$3" "but is" "$2"
}

# matches TEXT PATTERN
matches() {
    [[ $1 =~ $2 ]] || fail "This does not match $2:" "$1"
}

# below FOLDER: every file and link below it, sorted, relative to it.
below() {
    (cd "$1" && find . ! -type d | sed 's|^\./||' | sort)
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
    same "what the hosts hold" "$(below "$hosts")" "\
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
        same "$folder/manager.cfg" "$(cat "$hosts/$folder/manager.cfg")" "\
Zoë Lindqvist
/projects
$manager/DraskDrop
$version

1
1"
    done
    same "the plug-in of Blender" \
        "$(cat "$hosts/blender/2.83/scripts/startup/adrask/__init__.py")" "import drask"
    same "userSetup.py" "$(cat "$hosts/maya/2022/scripts/userSetup.py")" \
        "#drask_installed $seen/maya/2022/scripts/drask"
}
