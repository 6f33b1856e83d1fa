#!/bin/sh
# SPDX-License-Identifier: MIT
# Stateful script of Salt, and what plain ssh can run: installs, updates and mends, and says in its
# last line whether it had to. Ends with 1 when a plug-in is not whole. DRASK_FOLDER is the manager's
# folder. Run it as the user whose it is.
folder=${DRASK_FOLDER-/opt/drask}
cd "$folder" || exit 1
changed=no

run() {
    changed=yes
    # Qt takes the names of files to be in the encoding of the locale.
    env LC_ALL=C.UTF-8 ./drask-installer "$@"
}
is_whole() { findings=$(./drask-status verify); }
# No log is fine: there was no run yet.
ended_well() { ./drask-status report >/dev/null; [ $? -le 1 ]; }
finish() {
    printf "\nchanged=%s comment='%s'\n" "$changed" "$2"
    exit "$1"
}

ended_well || last_run=bad
./drask-status plan || run
if [ -n "${last_run-}" ] || ! is_whole || ! ended_well; then
    run reinstall
fi
if is_whole && ended_well; then
    finish 0 "The plug-ins are whole."
fi
printf "%s\n" "$findings"
[ ! -e pluginError.txt ] || cat pluginError.txt
finish 1 "The plug-ins are not whole."
