#!/usr/bin/env bats
# SPDX-License-Identifier: MIT
# The six runs of docs/support.md, made again: every log and every answer there is a real one.
# shellcheck disable=SC2016,SC2154 # backquotes of the page; support.bash sets the variables
load support

setup() {
    root=$BATS_TEST_TMPDIR/root
    manager="$root/Applications/Drask Manager"
    modo=$root/Users/ann/modo
    drask=$modo/Scripts/drask
    [ "$(id -u)" -ne 0 ] || chmod a+rx "$BATS_RUN_TMPDIR" "$BATS_RUN_TMPDIR/test" "$BATS_TEST_TMPDIR"
}

# as_user COMMAND…: rights count for an ordinary user alone.
as_user() {
    if [ "$(id -u)" -eq 0 ]; then
        chown -R nobody "$root"
        setpriv --reuid="$(id -u nobody)" --clear-groups "$@"
    else
        "$@"
    fi
}

# begin KEY FOLDER: a machine with one host, and no run.
begin() {
    rm -rf "$root"
    make_manager "$manager"
    put "$manager/cputype" <<<$'#!/bin/sh\necho processor'
    chmod +x "$manager/cputype"
    put "$manager/plugins/maya/version.txt" <<<41
    awk '/^#drask_installed$/ {inside = 1} inside; /^maya/ {exit}' "$repository/docs/integration.md" \
        >"$manager/plugins/maya/drask_userSetup.py"
    mkdir -p "$2"
    put "$manager/settings.ini" <<TEXT
[plugins]
versionMaya=41
versionModo=7
[pluginpaths]
1\\application=$1
1\\path="$2"
size=1
TEXT
    cd "$manager" || return 1
}

run_tool() { as_user ./drask-installer "$@" || :; }

# tell COMMAND: the log, and what drask-status says, as the page has them.
tell() {
    echo '```'
    cat plugin.log
    printf '```\n```\n$ drask-status %s\n' "$1"
    as_user ./drask-status "$1" || :
    echo '```'
}

folder_cannot_be_written() {
    begin modo "$modo"
    run_tool
    echo 8 >plugins/modo/version.txt
    sed -i s/versionModo=7/versionModo=8/ settings.ini
    chmod 555 "$drask"
    run_tool
    tell doctor
}

plugin_is_not_shipped() {
    begin modo "$modo"
    rm -r plugins/modo
    run_tool
    tell doctor
}

key_is_wrong() {
    begin Modo "$modo"
    run_tool
    tell doctor
}

script_is_old() {
    begin maya "$root/Users/ann/maya"
    put "$root/Users/ann/maya/scripts/userSetup.py" <<<$'#drask_installed\nimport draskshelf\ndraskshelf.init()'
    run_tool
    tell verify
}

half_is_removed() {
    begin modo "$modo"
    run_tool
    rm "$drask/version.txt"
    mkdir "$drask/version.txt"
    run_tool uninstallPlugin "(modo) $modo"
    tell report
}

# The second run starts when the first asks for the processor, and waits there for the first's end.
two_run_at_once() {
    begin modo "$modo"
    put cputype <<'TEXT'
#!/bin/sh
if [ -z "$SECOND" ]; then
    SECOND=1 ./drask-installer &
    until [ -e second ]; do sleep 0.1; done
else
    touch second
    until grep -q '^Debug: [0-9]$' plugin.log; do sleep 0.1; done
fi
TEXT
    run_tool
    until [ "$(grep -c '^Debug: [0-9]$' plugin.log)" = 2 ]; do sleep 0.1; done
    tell report
}

@test "the six runs are as the page has them" {
    want_tools setpriv
    for run in folder_cannot_be_written plugin_is_not_shipped key_is_wrong script_is_old half_is_removed \
        two_run_at_once; do
        $run >>"$BATS_TEST_TMPDIR/runs"
    done
    sed -n '/^## Six runs/,/^## /{/^```/,/^```/p;}' "$repository/docs/support.md" >"$BATS_TEST_TMPDIR/page"
    sed -i "s|$root||g; s|…[^ ]*/Users|/Users|; s| *\$||" "$BATS_TEST_TMPDIR/runs"
    diff "$BATS_TEST_TMPDIR/page" "$BATS_TEST_TMPDIR/runs"
}
