#!/usr/bin/env bats
# SPDX-License-Identifier: MIT
# A studio from the first roll-out to the removal. The cases are one story: each goes on from where
# the one before ended, since a first roll-out takes most of the time.
# shellcheck disable=SC2154 # support.bash sets them
load support

setup_file() { build_studio; }
teardown_file() { tear_down_studio; }
setup() {
    [ -f "$studio/inventory.yml" ] || skip "ansible-core or the ssh client is not on this machine"
    if [ -d "$studio/sshd" ]; then connection=ssh; else connection=local; fi
}

# foretold ACTION…: the paths that are told of with one of them.
foretold() {
    printf '%s' "$output" | python3 -c 'import sys, yaml
for part in sys.stdin.read().split("    msg:\n")[1:]:
    lines = part.split("\nok:")[0].split("\n\n")[0]
    for line in yaml.safe_load(lines):
        action, path = line.split(" ", 1)
        if action in sys.argv[1:]:
            print(path)' "$@" | sort
}
names() { sed 's/ [fdl] [0-7]* [0-9.]* [0-9]*$//' | sort; }
all() { printf "$1 %.0s" 1 2 3 4 5 6 | sed 's/ $//'; }

@test "check mode before the first roll-out foretells every file and touches nothing" {
    all_looks >"$studio/before.txt"
    # One that the artist logs in to, and one that the administrator does.
    played "changed changed" install --check --diff --limit ws1,ws4
    diff "$studio/before.txt" <(all_looks)
    foretold make makeFolder >"$studio/foretold.txt"
}

@test "the first roll-out makes what was foretold, and all fifteen hosts are whole" {
    played "$(all changed)" install
    all_whole
    for ws in ws1 ws3 ws4 ws5; do [ -e "$(modo $ws)/drask.py" ]; done
    # What the role itself brings stands in the managers' folders.
    comm -13 <(names <"$studio/before.txt") <(all_looks | names) | grep "/homes/ws[14]/" \
        | grep -v "/Drask M" | diff <(grep -v "/Drask M" "$studio/foretold.txt") -
    same "the user" "$(head -n 1 "$(modo ws4)/manager.cfg")" Zoë
    [ -z "${DRASK_PRIVATE_MOUNTS-}" ] || [ -z "$(find "$(home ws4)/${place[ws4]}" -uid 0)" ]
}

@test "a second roll-out changes nothing, in few round trips" {
    # As the manager writes it, with a key of its own.
    sed -i 's/="\([^",;\\@]*\)"$/=\1/; /^$/d; $a[Window]\nwidth=3' "$(manager ws2)/settings.ini"
    played "$(all ok)" install -vvv
    local trips
    trips=$(grep -c 'SSH: EXEC\|^<ws[0-9]> EXEC' <<<"$output")
    # At most twelve for each; the first of them look for the Python.
    [ "$trips" -gt 0 ] && [ "$trips" -le 72 ] || fail "$trips round trips to six workstations"
    played "ok" install --check --limit ws2
}

# ws1: a new plug-in. ws2: a new, hostile user. ws3: a file deleted. ws4: a folder in a file's place.
# ws5: a file edited. ws6: away.
@test "update, new user, drift, obstacle and a workstation that is away: foretold, done, told" {
    cp -r "$studio/plugins" "$studio/plugins8"
    echo 8 >"$studio/plugins8/modo/version.txt"
    echo "modo 8" >"$studio/plugins8/modo/drask.py"
    vars ws1 "drask_plugins: $studio/plugins8" "drask_username: Zoë"
    hostile="{{ 7*7 }} \"; [plugins], %41 @Variant(\\x00) \$(id) 'x"
    vars ws2 "drask_plugins: $studio/plugins" "drask_username: !unsafe $(yaml_text "$hostile")"
    rm "$(modo ws3)/drask.py"
    rm "$(modo ws4)/drask.js"
    mkdir -p "$(modo ws4)/drask.js/somebody's"
    rm "$(host ws4 lightwave)/Plugins/drask/manager.cfg"
    mkdir "$(host ws4 lightwave)/Plugins/drask/manager.cfg"
    echo edited >"$(modo ws5)/drask.py"
    [ "$connection" = local ] || stop_sshd ws6
    away=$([ "$connection" = local ] && echo ok || echo away)
    all_looks >"$studio/before.txt"
    played "changed changed red" install --check --limit ws1,ws3,ws4
    diff "$studio/before.txt" <(all_looks)

    played "changed changed changed red changed $away" install
    says "drask-installer ended with 3."
    says "Could not write config file in:"
    says "Something else stands in the file's place: $(modo ws4)/drask.js"
    all_whole ws1 ws2 ws3 ws5
    same "ws1's plug-in" "$(cat "$(modo ws1)/drask.py")" "modo 8"
    same "ws2's user" "$(head -n 1 "$(host ws2 blender)/scripts/startup/adrask/manager.cfg")" "$hostile"
    grep -qx width=3 "$(manager ws2)/settings.ini"
    [ -d "$(modo ws4)/drask.js/somebody's" ]
}

@test "an obstacle keeps a workstation red until it is gone, and stops a canary" {
    [ "$connection" = local ] || start_sshd ws6
    played "red" canary --limit ws4,ws5
    says "NO MORE HOSTS LEFT"
    rmdir "$(modo ws4)/drask.js/somebody's" "$(modo ws4)/drask.js" \
        "$(host ws4 lightwave)/Plugins/drask/manager.cfg"
    # Two runs at a time wait for each other: ws5 is kept busy until ws4 is mended, and longer.
    # shellcheck disable=SC2016 # the inner shell's
    flock "$(manager ws5)/.drask-fleet/lock" \
        sh -c 'until [ -f "$0" ]; do sleep 0.2; done; sleep 2; : >"$1"' \
        "$(modo ws4)/drask.js" "$studio/released" &
    played "changed ok" install --limit ws4,ws5
    [ -e "$studio/released" ]
    all_whole
}

# Kills the installer as soon as a file of its copy is there.
lay_killer() {
    put "$(manager "$1")/cputype" <<TEXT
#!/bin/sh
run=\$PPID
(while [ ! -e "$2" ]; do :; done; kill -9 \$run) >/dev/null 2>&1 &
TEXT
    chmod a+rx "$(manager "$1")/cputype"
}

# small_disk FOLDER KIB: from now on it lies on a disk with that much room left.
small_disk() {
    local used
    used=$(du -sk "$1" | cut -f 1)
    cp -a "$1" "$studio/kept"
    mount -t tmpfs -o "size=$((used + $2))k" tmpfs "$1"
    cp -a "$studio/kept/." "$1"
    rm -r "$studio/kept"
}

# ws1: killed. Full for ws2: the archive cannot be brought; for ws3: it cannot be unpacked; for ws5:
# there is no room for the plug-in.
@test "a run killed in the middle and full disks are red, and the next run mends them" {
    local number ws full=()
    cp -r "$studio/plugins" "$studio/plugins9"
    echo 9 >"$studio/plugins9/modo/version.txt"
    for ((number = 0; number < 400; ++number)); do echo 9 >"$studio/plugins9/modo/part_$number"; done
    head -c 3000000 /dev/urandom >"$studio/plugins9/rhino/large"
    echo 9 >"$studio/plugins9/rhino/version.txt"
    vars ws1 "drask_plugins: $studio/plugins9"
    lay_killer ws1 "$(modo ws1)/part_399"
    if [ -n "${DRASK_PRIVATE_MOUNTS-}" ]; then
        full=(ws2 ws3 ws5)
        for ws in "${full[@]}"; do vars "$ws" "drask_plugins: $studio/plugins9" "drask_username: Zoë"; done
        small_disk "$(disk_of ws2)" 1000
        small_disk "$(disk_of ws3)" 5000
        small_disk "$(disk_of ws5)" 2000
    fi
    limit=$(printf ',%s' ws1 "${full[@]}")
    played "red${full[*]:+ red red red}" install --limit "${limit#,}"
    says "ended by signal 9"
    if [ -n "${full[*]}" ]; then
        says "The archives could not be brought to"
        says "The archive plugins cannot be unpacked in"
        says "No space left on device"
        says "bytes;"
        same "what is left of them" "$(find "$(manager ws2)" "$(manager ws3)" -name large)" ""
        all_whole ws2 ws3
        same "the plug-in on the full disk" "$(cat "$(host ws5 rhino)/Plug-ins/Drask/version.txt")" 7
        for ws in "${full[@]}"; do mount -o remount,size=50m "$(disk_of "$ws")"; done
    fi
    rm "$(manager ws1)/cputype"
    played "changed${full[*]:+ changed changed changed}" install --limit "${limit#,}"
    all_whole ws1 "${full[@]}"
    # The repair changed the user's script; the one from before is kept.
    grep -qx "import own" "$(manager ws1)"/.drask-fleet/aside/*/000001-userSetup.py
    [ "$(find "$(modo ws1)" -name 'part_*' | wc -l)" -eq 400 ]
}

@test "verify tells drift, a JSON file for each target and a table" {
    rm "$(modo ws3)/drask.py"
    all_looks >"$studio/before.txt"
    played "ok ok red ok ok ok" verify
    diff "$studio/before.txt" <(all_looks)
    says "The file is missing: $(modo ws3)/drask.py"
    grep -F "| ws3 | modo | damaged |" "$studio/drask-reports/table.md"
    grep -F "| ws6 | 3dsmax | whole | 7 | 7 |" "$studio/drask-reports/table.md"
    python3 -c 'import json, sys
hosts = json.load(open(sys.argv[1]))["hosts"]
assert [host["state"] for host in hosts] == ["damaged", "whole", "whole"], hosts' "$studio/drask-reports/ws3.json"
}

@test "removal takes the plug-ins, with a purge what the role brought, and nobody's own files" {
    local ws key
    all_looks >"$studio/before.txt"
    played "changed changed" remove --check --limit ws1,ws4
    diff "$studio/before.txt" <(all_looks)
    rm "$(modo ws4)/drask.js"
    mkdir -p "$(modo ws4)/drask.js/somebody's"
    played "changed changed changed red changed changed" remove
    says "This file cannot be deleted"
    [ -e "$(modo ws4)/drask.py" ]
    rmdir "$(modo ws4)/drask.js/somebody's" "$(modo ws4)/drask.js"
    echo mine | put "$(manager ws2)/DraskDrop/mine"
    played "$(all changed)" remove -e drask_purge=true
    for ws in $workstations; do
        for key in ${keys[$ws]}; do
            same "own file" "$(cat "$(host "$ws" "$key")/own file.txt")" "$ws"
        done
        same "what is left of the plug-ins" \
            "$(find "$(home "$ws")/${place[$ws]}" -name drask.py -o -name manager.cfg)" ""
    done
    grep -qx "import own" "$(host ws1 maya)/scripts/userSetup.py"
    grep -qx "OWN = 1" "$(host ws2 houdini)/houdini.env"
    [ ! -e "$(manager ws1)" ]
    same "ws2's folder" "$(cd "$(manager ws2)" && find . -type f)" ./DraskDrop/mine
    played "ok ok" remove -e drask_purge=true --limit ws1,ws4
}

@test "root, an unknown host and a line break are refused before anything is touched" {
    vars ws1 "drask_plugins: $studio/plugins" "drask_user: root"
    vars ws2 "drask_plugins: $studio/plugins" "drask_hosts: [{application: word, path: /x}]"
    vars ws3 "drask_plugins: $studio/plugins" 'drask_username: "a\nb"'
    all_looks >"$studio/before.txt"
    played "red red red" install --limit ws1,ws2,ws3
    diff "$studio/before.txt" <(all_looks)
    says "line break"
}

@test "the sample inventory has 200 workstations, and the collection builds and knows its playbooks" {
    cd "$repository/deploy/ansible"
    export HOME="$studio/controller"
    same "the workstations" "$(ansible-inventory --list | grep -c '"ansible_user": "admin"')" 200
    run -0 ansible-playbook --syntax-check playbooks/*.yml
    run -0 ansible-galaxy collection build --output-path "$studio"
    [ -s "$studio/drask-installer-$(sed -n 's/^version: //p' galaxy.yml).tar.gz" ]
    same "the collection's version" "$(sed -n 's/^version: //p' galaxy.yml)" \
        "$(cat "$repository/VERSION")"
}
