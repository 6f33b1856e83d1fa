# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# A studio of six workstations on this machine: each has a user, a home and an sshd of its own.
# DRASK_PROGRAMS names the folders of the two programs.
bats_require_minimum_version 1.5.0
export LC_ALL=C.UTF-8
unset "${!ANSIBLE_@}"

repository=$(cd "$BATS_TEST_DIRNAME/../.." && pwd)
studio=$BATS_FILE_TMPDIR/studio
workstations="ws1 ws2 ws3 ws4 ws5 ws6"
# What people call their folders.
declare -gA place=([ws1]="Löwen & Söhne" [ws2]="50% [off]; a,b" [ws3]="it's \"so\"" [ws4]="@home \$HOME"
    [ws5]="new\\name" [ws6]="日本 語")
declare -gA keys=([ws1]="maya modo c4d" [ws2]="houdini c4d14 blender" [ws3]="modo c4d21 blender28"
    [ws4]="modo xsi lightwave" [ws5]="modo rhino revit" [ws6]="sketchup clarisse 3dsmax")

fail() {
    printf '%s\n' "$@"
    return 1
}

same() { [ "$2" = "$3" ] || fail "$1 should be" "$3" "but is" "$2"; }
# shellcheck disable=SC2154 # bats sets it
says() { [[ $output == *"$1"* ]] || fail "This is not said: $1" "$output"; }

put() {
    mkdir -p "$(dirname "$1")"
    cat >"$1"
}

home() { echo "$studio/homes/$1"; }
manager() { echo "$studio/homes/$1/Drask Mänager"; }
host() { echo "$(home "$1")/${place[$1]}/$2"; }
user() { if [ -n "${DRASK_PRIVATE_MOUNTS-}" ]; then echo "artist_$1"; else id -un; fi; }
# What is put on a small disk.
disk_of() { if [ "$1" = ws5 ]; then host ws5 rhino; else manager "$1"; fi; }
modo() { echo "$(host "$1" modo)/Scripts/drask"; }

# Users that only this test sees.
make_users() {
    [ -n "${DRASK_PRIVATE_MOUNTS-}" ] || return 0
    local ws number=54321 file
    for file in passwd shadow; do cp "/etc/$file" "$studio/$file"; done
    sed -i 's/^root:[^:]*/root:*/' "$studio/shadow"
    for ws in $workstations; do
        echo "artist_$ws:x:$((++number)):$(id -g nobody)::$(home "$ws"):/bin/sh" >>"$studio/passwd"
        echo "artist_$ws:*:19000::::::" >>"$studio/shadow"
    done
    for file in passwd shadow; do mount --bind "$studio/$file" "/etc/$file"; done
}

make_homes() {
    local ws key
    for ws in $workstations; do
        mkdir -p "$(home "$ws")/.ssh" "$(home "$ws")/${place[$ws]}"
        cp "$studio/key.pub" "$(home "$ws")/.ssh/authorized_keys"
        for key in ${keys[$ws]}; do echo "$ws" | put "$(host "$ws" "$key")/own file.txt"; done
    done
    printf 'import own\n' | put "$(host ws1 maya)/scripts/userSetup.py"
    printf 'OWN = 1\n' | put "$(host ws2 houdini)/houdini.env"
    for ws in $workstations; do chown -R "$(user "$ws")" "$(home "$ws")"; done
}

# make_plugins FOLDER: a plug-in for each host, of version 7.
make_plugins() {
    local name
    while read -r name; do
        echo 7 | put "$1/$name/version.txt"
        for file in drask.py drask.js drask_main.js grex.js icons/dräsk.png; do
            echo "$name 7" | put "$1/$name/$file"
        done
    done < <(awk -F ' *[|] *' '/^[^#]/ {print $3}' "$repository/data/hosts.txt")
    put "$1/maya/drask_userSetup.py" <<'TEXT'
#drask_installed
import sys, maya.utils
def importable_path(path):
	return path if sys.version_info[0] > 2 else path.encode('utf-8')
def searchTab():
	sys.path.append( importable_path(u'__scriptpath__'))
	import draskshelf
	draskshelf.init()
maya.utils.executeDeferred("searchTab()")
TEXT
}

make_programs() {
    local folder
    mkdir "$studio/drask-programs"
    for folder in $DRASK_PROGRAMS; do
        find "$folder" -maxdepth 1 -type f \( -name drask-installer -o -name drask-status \) \
            -exec cp {} "$studio/drask-programs/" \;
    done
    # What makes them slow to carry is only of use to a debugger.
    strip "$studio"/drask-programs/* 2>/dev/null || true
    tar -czf "$studio/programs.tar.gz" -C "$studio" drask-programs
}

start_sshd() {
    local folder=$studio/sshd/$1
    mkdir -p "$folder"
    cat >"$folder/config" <<TEXT
ListenAddress 127.0.0.1
Port $(cat "$folder/port" 2>/dev/null || echo 0)
HostKey $studio/hostkey
PidFile $folder/pid
StrictModes no
UsePAM no
PermitRootLogin yes
Subsystem sftp internal-sftp
TEXT
    if [ "$(id -u)" -eq 0 ]; then
        echo "AuthorizedKeysFile $studio/key.pub" >>"$folder/config"
    fi
    "$(command -v sshd)" -f "$folder/config" -E "$folder/log"
}

# Also the connections that the play before has left open for some time.
stop_sshd() {
    local connection_to
    kill "$(cat "$studio/sshd/$1/pid")" 2>/dev/null || true
    for connection_to in "$studio/controller/.ansible/cp"/*; do
        ssh -O exit -o ControlPath="$connection_to" "$1" 2>/dev/null || true
    done
}

start_all_sshds() {
    local ws port=$((20000 + $$ % 20000))
    ssh-keygen -q -t ed25519 -N "" -f "$studio/hostkey"
    if [ "$(id -u)" -eq 0 ]; then mkdir -p /run/sshd; fi
    for ws in $workstations; do
        mkdir -p "$studio/sshd/$ws"
        # A port that somebody else has is no use.
        until echo $((++port)) >"$studio/sshd/$ws/port" && start_sshd "$ws"; do :; done
    done
}

# One half of the workstations lets the artist in, the other the administrator.
way_to() {
    if [ "$connection" = local ]; then
        echo "ansible_connection: local"
    else
        echo "ansible_host: 127.0.0.1, ansible_port: $(cat "$studio/sshd/$1/port")"
    fi
    case $1 in
        ws[123]) [ "$connection" = local ] || echo ", ansible_user: $(user "$1")" ;;
        *)
            [ "$connection" = local ] || echo ", ansible_user: $(id -un)"
            # The others let Ansible find it.
            [ ! -x /usr/bin/python3 ] || echo ", ansible_python_interpreter: /usr/bin/python3"
            ;;
    esac
    # With su nothing can go through the standard input, so one is enough.
    if [ -n "${DRASK_PRIVATE_MOUNTS-}" ] && { [ "$1" = ws6 ] || ! command -v sudo >/dev/null; }; then
        echo ", ansible_become_method: su"
    fi
}

yaml_text() { printf "'%s'" "${1//\'/\'\'}"; }

make_inventory() {
    local ws key
    {
        printf 'workstations:\n  vars:\n    drask_program: %s\n' "$studio/programs.tar.gz"
        printf '  hosts:\n'
        for ws in $workstations; do
            printf '    %s: {%s}\n' "$ws" "$(way_to "$ws" | tr -d '\n')"
            put "$studio/host_vars/$ws/all.yml" <<TEXT
drask_user: $(user "$ws")
drask_folder: $(manager "$ws")
drask_hosts:
$(for key in ${keys[$ws]}; do
    printf '  - {application: %s, path: !unsafe %s}\n' "$key" "$(yaml_text "$(host "$ws" "$key")")"
done)
TEXT
            vars "$ws" "drask_plugins: $studio/plugins" "drask_username: Zoë"
        done
    } >"$studio/inventory.yml"
    cat >"$studio/ansible.cfg" <<TEXT
[defaults]
collections_path = $studio/collections
inventory = $studio/inventory.yml
forks = 6
callback_result_format = yaml
host_key_checking = false
retry_files_enabled = false
[ssh_connection]
pipelining = true
ssh_args = -o ControlMaster=auto -o ControlPersist=60s -o IdentityFile=$studio/key -o UserKnownHostsFile=/dev/null -o IdentitiesOnly=yes -o LogLevel=ERROR
TEXT
    mkdir -p "$studio/collections/ansible_collections/drask"
    ln -s "$repository/deploy/ansible" "$studio/collections/ansible_collections/drask/installer"
}

# vars WORKSTATION LINE…: what is asked of it from now on.
vars() {
    local ws=$1
    shift
    printf '%s\n' "$@" | put "$studio/host_vars/$ws/asked.yml"
}

build_studio() {
    local tool
    for tool in ansible-playbook ssh ssh-keygen python3; do
        command -v $tool >/dev/null || return 0
    done
    umask 022
    mkdir -p "$studio"
    chmod a+rx "$BATS_RUN_TMPDIR" "$BATS_FILE_TMPDIR"
    ssh-keygen -q -t ed25519 -N "" -f "$studio/key"
    make_users
    make_homes
    make_plugins "$studio/plugins"
    make_programs
    connection=ssh
    if command -v sshd >/dev/null; then
        start_all_sshds
    else
        connection=local
        echo "# sshd is not here: the connections are local" >&3
    fi
    make_inventory
}

tear_down_studio() {
    local ws
    for ws in $workstations; do [ ! -f "$studio/sshd/$ws/pid" ] || stop_sshd "$ws"; done
    [ -z "${DRASK_PRIVATE_MOUNTS-}" ] || umount "$(disk_of ws2)" "$(disk_of ws3)" "$(disk_of ws5)" 2>/dev/null || true
}

# play BOOK OPTION…: what it says becomes $output, and what became of each workstation $recap.
play() {
    local book=$1
    shift
    cd "$studio" || return 1
    run env HOME="$studio/controller" ANSIBLE_CONFIG="$studio/ansible.cfg" ANSIBLE_NOCOLOR=1 \
        ansible-playbook "drask.installer.$book" "$@" </dev/null
    recap=$(sed -n 's/^\(ws[0-9]\) .*changed=\([0-9]\).*unreachable=\([0-9]\).*failed=\([0-9]\).*/\1 \2 \3 \4/p' \
        <<<"$output" | while read -r ws changed unreachable failed; do
        word=ok
        [ "$changed" = 0 ] || word=changed
        [ "$failed" = 0 ] || word=red
        [ "$unreachable" = 0 ] || word=away
        printf '%s ' "$word"
    done)
    recap=${recap% }
}

# played RECAP BOOK OPTION…: plays it, and the workstations fare as RECAP says, one word each.
played() {
    local expected=$1
    shift
    play "$@"
    [ "$recap" = "$expected" ] || fail "$* should end with" "$expected" "but ends with" "$recap" "$output"
}

# Everything on the workstations, with times and modes; sshd's and Ansible's own aside.
all_looks() {
    find "$studio/homes" \( -name .ansible -o -name .ssh \) -prune -o \
        ! -path "$studio/homes/ws?" -printf '%p %y %m %T@ %s\n' | sort
}

status() {
    local ws=$1
    shift
    "$(manager "$ws")/drask-status" "$@" --folder "$(manager "$ws")"
}

# all_whole [WORKSTATION…]: without any, all of them.
all_whole() {
    local ws
    # shellcheck disable=SC2086 # a list of names
    [ $# -gt 0 ] || set -- $workstations
    for ws in "$@"; do
        status "$ws" verify --all >"$studio/status.txt" || fail "$ws" "$(cat "$studio/status.txt")"
    done
}
