#!/bin/sh
# SPDX-License-Identifier: MIT
# uninstall_script of Munki: removes the plug-in of every host in settings.ini. Ends with 1, and has
# touched nothing, if one of them is damaged: mend it first, or its files would be left. DRASK_FOLDER
# and DRASK_USER as in installcheck.sh.
folder=${DRASK_FOLDER-/Applications/Drask}
[ -x "$folder/drask-status" ] || exit 0
# shellcheck disable=SC2012 # "stat" has other options on each system
user=${DRASK_USER-$(ls -ld "$folder" | awk '{print $3}')}

as_user() {
    if [ "$(id -un)" = "$user" ]; then
        env LC_ALL=C.UTF-8 "$@"
    else
        sudo -H -u "$user" env LC_ALL=C.UTF-8 "$@"
    fi
}

cd "$folder" || exit 1
as_user ./drask-status verify
if [ $? -eq 3 ]; then
    echo "Mend this first: drask-installer reinstall" >&2
    exit 1
fi
# A host's own lines stand twelve blanks in, the key before the folder. 3dsmax has six entries.
operands=$(as_user ./drask-status verify --json | sed -n '
    /^            "key"/ {
        s/.*: "\(.*\)",$/(\1) /
        h
    }
    /^            "path"/ {
        s/.*: "\(.*\)",$/\1/
        s/\\\(["\\/]\)/\1/g
        H
        x
        s/\n//
        p
    }' | sort -u)
failed=0
while read -r operand; do
    [ -n "$operand" ] || continue
    as_user ./drask-installer uninstallPlugin "$operand" </dev/null || {
        echo "Files are left: $operand" >&2
        failed=1
    }
done <<TEXT
$operands
TEXT
exit $failed
