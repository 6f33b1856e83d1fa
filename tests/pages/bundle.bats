#!/usr/bin/env bats
# SPDX-License-Identifier: MIT
# deploy/support-bundle, on machines that are whole and on half-broken ones.
# shellcheck disable=SC2154 # support.bash sets them
load support

setup() {
    manager="$BATS_TEST_TMPDIR/Drask Mänager"
    modo="$BATS_TEST_TMPDIR/hömes of \"Ann\" \\ co/modo"
    make_manager "$manager"
    escaped=${modo//\\/\\\\}
    put "$manager/settings.ini" <<TEXT
username=secret-1
UserData\\username=secret-2
[UserData]
username="secret-3
secret-4
[plugins]
secret-5=\\"secret-6"
name=secret-7 \\
secret-8
loggedOut=false
[%55serData]
username=secret-9
[plugins]
versionModo=7
[pluginpaths]
1\\application=modo
1\\path="${escaped//\"/\\\"}"
size=1
[Others]
password=secret-10
TEXT
    cd "$manager" || return 1
}

# collect FOLDER: the archive's content comes to lie in $bundle; nothing else changes.
collect() {
    find "$BATS_TEST_TMPDIR" -printf '%p %m %s %T@\n' | sort >"$BATS_RUN_TMPDIR/before"
    run "$repository/deploy/support-bundle" "$1" "$BATS_RUN_TMPDIR/an archive.tar.gz"
    [ "$status" -eq 0 ] || fail "$output"
    same "what it says" "$output" "$BATS_RUN_TMPDIR/an archive.tar.gz"
    find "$BATS_TEST_TMPDIR" -printf '%p %m %s %T@\n' | sort | diff "$BATS_RUN_TMPDIR/before" -
    mkdir "$BATS_TEST_TMPDIR/bundle"
    tar -xzf "$BATS_RUN_TMPDIR/an archive.tar.gz" -C "$BATS_TEST_TMPDIR/bundle"
    bundle=$(echo "$BATS_TEST_TMPDIR/bundle"/*)
}

@test "a machine is told whole, and the user's name stays out" {
    ./drask-installer
    collect "$manager"
    same "the files" "$(below "$bundle")" "\
doctor.json
doctor.txt
manifests/1.txt
overview.txt
plan.json
plan.txt
plugin.log
report.json
report.txt
settings.ini
verify.json
verify.txt"
    cmp "$bundle/plugin.log" plugin.log
    cmp "$bundle/manifests/1.txt" "$modo/Scripts/drask/uninstall.ini"
    grep -qx 'loggedOut=false' "$bundle/settings.ini"
    sed -n '/^\[pluginpaths\]/,/^size=/p' settings.ini \
        | diff - <(sed -n '/^\[pluginpaths\]/,/^size=/p' "$bundle/settings.ini")
    grep -qxF "$(sha256sum "$manager/drask-installer")" "$bundle/overview.txt"
    grep -qx "drask-status verify: exit code 0" "$bundle/overview.txt"
    grep -qx "drask-status $version" "$bundle/overview.txt"
    grep -q '"text": "(left out)"' "$bundle/doctor.json"
    run ! grep -rE "secret" "$bundle"
}

@test "without settings, programs and manifests there is still an archive, which says so" {
    rm drask-status drask-installer settings.ini
    mkdir plugin.log
    collect "$manager"
    same "the files" "$(below "$bundle" | grep -v '\(json\|txt\)$')" ""
    grep -q "settings.ini is missing" "$bundle/overview.txt"
    grep -q "plugin.log" "$bundle/overview.txt"
}

@test "a log that cannot be read is told, and the rest comes along" {
    [ "$(id -u)" -eq 0 ] || skip "only root can become another user"
    want_tools setpriv
    ./drask-installer
    echo old >pluginError.txt
    chmod 600 plugin.log
    chmod a+rwx "$BATS_RUN_TMPDIR" "$BATS_RUN_TMPDIR/test" "$BATS_TEST_TMPDIR"
    run -0 setpriv --reuid="$(id -u nobody)" --clear-groups "$repository/deploy/support-bundle" "$manager" \
        "$BATS_TEST_TMPDIR/b.tar.gz"
    run -0 tar -tzf "$BATS_TEST_TMPDIR/b.tar.gz"
    [[ $output == */pluginError.txt* && $output != */plugin.log* ]] || fail "$output"
    run -0 tar -xzOf "$BATS_TEST_TMPDIR/b.tar.gz" --wildcards '*/overview.txt'
    [[ $output == *plugin.log* ]]
}

@test "an archive that cannot be written is an error" {
    run -1 "$repository/deploy/support-bundle" "$manager" "$BATS_TEST_TMPDIR/missing/b.tar.gz"
    matches "$output" "could not be written"
    run -1 "$repository/deploy/support-bundle" "$BATS_TEST_TMPDIR/missing"
}
