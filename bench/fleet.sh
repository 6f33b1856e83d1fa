#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Times a roll-out over 50 workstations that are all this machine: local connections, ten at a time.
#
#   bench/fleet.sh           prints the table
#   bench/fleet.sh --write   writes it into docs/performance.md as well
#
# BENCH_FOLDER as for bench/run, BENCH_WORKSTATIONS for another number of them.
set -u -o pipefail
# shellcheck source=../scripts/prepare.sh
. "$(dirname "$0")/../scripts/prepare.sh"

build=$repository/build/bench
count=${BENCH_WORKSTATIONS-50}

make_studio() {
    local parent=${BENCH_FOLDER-} number become=""
    [ -n "$parent" ] || { if [ -w /dev/shm ]; then parent=/dev/shm; else parent=${TMPDIR-/tmp}; fi; }
    studio=$(mktemp -d "$parent/drask-fleet-XXXXXX") || fail "No folder could be made in $parent"
    trap 'rm -rf "$studio"' EXIT
    chmod a+rx "$studio"
    mkdir -p "$studio/programs" "$studio/plugins/modo" "$studio/collections/ansible_collections/drask"
    find "$build/src" -type f \( -name drask-installer -o -name drask-status \) \
        -exec cp {} "$studio/programs" \;
    tar -czf "$studio/programs.tar.gz" -C "$studio" programs
    head -c 1024000 /dev/urandom | (cd "$studio/plugins/modo" && split -a 3 -b 2048 - part_)
    echo 1 >"$studio/plugins/modo/version.txt"
    ln -s "$repository/deploy/ansible" "$studio/collections/ansible_collections/drask/installer"
    user=$(id -un)
    # The role refuses root.
    [ "$(id -u)" -ne 0 ] || { user=nobody become="ansible_become_method: su, ansible_become_flags: -s /bin/sh, "; }
    {
        echo "workstations:"
        echo "  hosts:"
        for ((number = 1; number <= count; ++number)); do
            mkdir "$studio/$number"
            chown "$user" "$studio/$number"
            echo "    ws$number: {drask_hosts: [{application: modo, path: $studio/$number/modo}], drask_folder: $studio/$number/manager}"
        done
        echo "  vars: {ansible_connection: local, ansible_python_interpreter: /usr/bin/python3, ${become}drask_user: $user, drask_program: $studio/programs.tar.gz, drask_plugins: $studio/plugins}"
    } >"$studio/inventory.yml"
    printf '%s\n' '[defaults]' "collections_path = $studio/collections" \
        "inventory = $studio/inventory.yml" 'forks = 10' '[connection]' 'pipelining = true' \
        >"$studio/ansible.cfg"
}

now() { python3 -c 'import time; print(time.time())'; }

# roll_out CHANGED: rolls out and verifies that all workstations did, or did not, change; the seconds
# become $seconds.
roll_out() {
    local start end
    start=$(now)
    HOME=$studio/home ANSIBLE_CONFIG=$studio/ansible.cfg ANSIBLE_PIPELINING=true \
        ansible-playbook drask.installer.install >"$studio/output.txt" 2>&1
    end=$(now)
    [ "$(grep -c " changed=$1 .* failed=0 " "$studio/output.txt")" -eq "$count" ] \
        || fail "$(cat "$studio/output.txt")" "The roll-out failed, or did what it was not to do"
    seconds=$(awk "BEGIN {print $end - $start}")
}

# row WHAT SECONDS…: the least of them.
row() {
    local what=$1
    shift
    printf '%s\n' "$@" | sort -g | head -n 1 | awk -v what="$what" -v count="$count" \
        '{printf "| %s | %.1f | %.2f | %.0f |\n", what, $1, $1 / count, $1 / count * 2000 / 60}'
}

measure() {
    local round idle=() update=()
    roll_out 1
    first=$seconds
    for ((round = 2; round <= 4; ++round)); do
        roll_out 0
        idle+=("$seconds")
        echo $round >"$studio/plugins/modo/version.txt"
        roll_out 1
        update+=("$seconds")
    done
    echo "| $count workstations | seconds | seconds for each | minutes for 2,000 |"
    echo "|---|---:|---:|---:|"
    row "nothing to do" "${idle[@]}"
    row "update of one plug-in of 500 files" "${update[@]}"
    row "first roll-out" "$first"
}

write_document() {
    local document=$repository/docs/performance.md
    {
        sed '/^<!-- begin of the roll-out -->$/q' "$document"
        printf '\nMeasured on %s with %s processors.\n\n' "$(date +%Y-%m-%d)" "$(getconf _NPROCESSORS_ONLN)"
        cat "$1"
        printf '\n'
        sed -n '/^<!-- end of the roll-out -->$/,$p' "$document"
    } >"$studio/document.md" && cp "$studio/document.md" "$document"
}

install_packages build fleet
run_quietly cmake -S "$repository" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DDRASK_BUILD_TESTS=OFF -DDRASK_BUILD_BENCHMARK=ON
run_quietly cmake --build "$build" --target drask-installer --target drask-status
make_studio
measure | tee "$studio/table.md" || exit 1
[ "${1-}" != --write ] || write_document "$studio/table.md"
