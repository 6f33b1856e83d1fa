# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# What the tests of the pages share: a manager's folder with the programs as they were built. Their
# folders are in DRASK_PROGRAMS.
load ../packages/support

# make_manager FOLDER: the programs, and a plug-in for Modo of version 7.
make_manager() {
    local folder
    put "$1/plugins/modo/version.txt" <<<7
    put "$1/plugins/modo/icons/dräsk.png" <<<picture
    for folder in $DRASK_PROGRAMS; do
        find "$folder" -maxdepth 1 -type f \( -name drask-installer -o -name drask-status \) \
            -exec cp {} "$1" \;
    done
    [ -x "$1/drask-installer" ] && [ -x "$1/drask-status" ]
}
