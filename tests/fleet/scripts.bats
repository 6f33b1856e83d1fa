#!/usr/bin/env bats
# SPDX-License-Identifier: MIT
# The scripts for Munki, Jamf, Salt and plain ssh, on a manager's folder of this user. Of the
# products themselves nothing is here; what they call and read is.
# shellcheck disable=SC2154 # support.bash sets them
load support

setup() {
    export DRASK_FOLDER="$BATS_TEST_TMPDIR/Drask Mänager" DRASK_USER
    DRASK_USER=$(id -un)
    hosts="$BATS_TEST_TMPDIR/hösts \\ of \"Ann\""
    modo=$hosts/modo/Scripts/drask
    make_plugins "$DRASK_FOLDER/plugins"
    for folder in $DRASK_PROGRAMS; do
        for program in drask-installer drask-status; do
            [ ! -f "$folder/$program" ] || cp "$folder/$program" "$DRASK_FOLDER"
        done
    done
    escaped=${hosts//\\/\\\\}
    escaped=${escaped//\"/\\\"}
    printf '%s\n' "[plugins]" version3ds=7 versionModo=7 "[pluginpaths]" size=2 \
        "1\application=modo" "1\path=\"$escaped/modo\"" \
        "2\application=3dsmax" "2\path=\"$escaped/3ds\"" | put "$DRASK_FOLDER/settings.ini"
}

script() { run "$repository/deploy/scripts/$1.sh"; }
# ends CODE SCRIPT
ends() {
    script "$2"
    [ "$status" -eq "$1" ] || fail "$2 should end with $1, but ends with $status:" "$output"
}
attribute() {
    script extension-attribute
    same "the attribute" "$output" "<result>$1</result>"
}
# stateful CODE CHANGED
stateful() {
    ends "$1" stateful
    [[ ${lines[-1]} == "changed=$2 comment='"* ]] || fail "changed should be $2:" "$output"
}

@test "a new machine is installed, and then needs nothing" {
    ends 0 installcheck
    stateful 0 yes
    ends 1 installcheck
    attribute whole
    stateful 0 no
}

@test "a deleted file is seen and mended" {
    stateful 0 yes
    rm "$modo/drask.py"
    ends 0 installcheck
    attribute "modo damaged"
    ends 1 uninstall
    [ -e "$modo/drask.js" ]
    stateful 0 yes
    [ -e "$modo/drask.py" ]
}

@test "an edited file and a failed run, which no plan tells, are seen and mended" {
    stateful 0 yes
    echo edited >"$modo/drask.py"
    ends 0 installcheck
    stateful 0 yes
    same "the file" "$(cat "$modo/drask.py")" "modo 7"
    sed -i '$d' "$DRASK_FOLDER/plugin.log"
    ends 0 installcheck
    stateful 0 yes
    ends 1 installcheck
}

@test "what cannot be mended is told and fails" {
    mkdir -p "$modo/manager.cfg"
    stateful 1 yes
    says "Could not write config file in:"
    stateful 1 yes
    rmdir "$modo/manager.cfg"
    stateful 0 yes
}

@test "an uninstall removes every plug-in, and a machine without programs needs none" {
    stateful 0 yes
    ends 0 uninstall
    [ -z "$(find "$hosts" -type f)" ]
    ends 0 uninstall
    rm -r "$DRASK_FOLDER"
    ends 0 installcheck
    ends 0 uninstall
    attribute "not installed"
}
