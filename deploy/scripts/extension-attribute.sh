#!/bin/sh
# SPDX-License-Identifier: MIT
# Extension attribute of Jamf: "whole", or what is not, with the hosts. DRASK_FOLDER and DRASK_USER
# as in installcheck.sh.
folder=${DRASK_FOLDER-/Applications/Drask}
if [ ! -x "$folder/drask-status" ]; then
    echo "<result>not installed</result>"
    exit 0
fi
# shellcheck disable=SC2012 # "stat" has other options on each system
user=${DRASK_USER-$(ls -ld "$folder" | awk '{print $3}')}

if [ "$(id -un)" = "$user" ]; then
    answer=$("$folder/drask-status" verify --json)
else
    answer=$(sudo -H -u "$user" "$folder/drask-status" verify --json)
fi
# A host's own lines stand twelve blanks in.
hosts=$(printf '%s\n' "$answer" | awk -F '"' '
    /^            "key"/ {key = $4}
    /^            "state"/ && $4 != "whole" && $4 != "skipped" {printf "%s%s %s", comma, key, $4; comma = ", "}')
case $(printf '%s\n' "$answer" | sed -n 's/^    "result": "\(.*\)".*/\1/p') in
    nothing) echo "<result>whole</result>" ;;
    "") echo "<result>unknown</result>" ;;
    *) echo "<result>${hosts:-unknown}</result>" ;;
esac
