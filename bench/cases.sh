# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# The cases of the benchmark. Each has functions make_, commands_, reset_ and verify_CASE; a command
# is "name|words". The folder $work holds everything: tool/ with the program, host/ served by it,
# bare/ served by the bare loop, person/ served by what a person would use.
: "${work:?is the folder for everything}" "${build:?is where the program was built}" "${repository:?}"

plugin=$work/tool/plugins/modo
program=$work/tool/drask-installer
status=$work/tool/drask-status
bare=$build/bench/drask-bench-bare
operation=$build/bench/drask-bench-operation
settings=$work/tool/settings.ini
targets=("$work/host/Scripts/drask" "$work/bare/Scripts/drask" "$work/person")

title() {
    case $1 in
        install_100) echo "install, 100 files of 2 KiB" ;;
        install_2000) echo "install, 2,000 files of 2 KiB" ;;
        install_20000) echo "install, 20,000 files of 2 KiB" ;;
        install_large) echo "install, 100 files of 1 MiB" ;;
        update) echo "update of 2,000 files that are there" ;;
        idle) echo "nothing to do, 15 hosts" ;;
        hosts_150) echo "nothing to do, 150 hosts" ;;
        hosts_1500) echo "nothing to do, 1,500 hosts" ;;
        plan) echo "drask-status plan, nothing to do, 15 hosts" ;;
        whole) echo "drask-status verify, 2,000 files of 2 KiB" ;;
        remove) echo "removal by a manifest of 20,000 lines" ;;
        legacy) echo "legacy removal, 40,000 files in 400 folders" ;;
        maya) echo "new path in a userSetup.py of 10 MB" ;;
        lightwave) echo "new entry in an LW.CFG of 10 MB" ;;
    esac
}

wrong() {
    printf '%s\n' "$*" >&2
    exit 1
}

make_workstation() {
    mkdir -p "$work/tool/plugins" "$work/host"
    cp "$build/src/drask-installer" "$program"
    cp "$build/src/status/drask-status" "$status"
}

# write_settings FILE FOLDER HOSTS: that many hosts, all "modo", in FOLDER, FOLDER2, …
write_settings() {
    local number
    {
        printf '[UserData]\nusername=Ann\n\n[plugins]\nversionModo=7\n\n[pluginpaths]\nsize=%d\n' "$3"
        for ((number = 1; number <= $3; ++number)); do
            printf '%d\\application=modo\n%d\\path=%s\n' "$number" "$number" \
                "$2$([ "$number" -eq 1 ] || echo "$number")"
        done
    } >"$1"
}

# make_files COUNT BYTES FOLDER
make_files() {
    rm -rf "$3"
    mkdir -p "$3"
    head -c "$(($1 * $2))" /dev/urandom | (cd "$3" && split -a 5 -b "$2" - part_)
}

make_install() {
    make_files "$1" "$2" "$plugin"
    write_settings "$settings" "$work/host" 1
    write_settings "$work/bare.ini" "$work/bare" 1
}
commands_install() {
    echo "program|$program"
    echo "bare loop|$bare install $work/bare.ini $plugin $work/version.txt"
    echo "cp -r|cp -r $plugin $work/person"
}
# both_qts CASE: the program of a case, from either build.
both_qts() {
    local words
    words=$("commands_$1" | sed -n 's/^program|//p')
    echo "Qt 5|${words/$program/$program-qt5}"
    echo "Qt 6|${words/$program/$program-qt6}"
}
# The same promise: every file is on the disk afterwards.
commands_install_on_disk() {
    commands_install | head -n 1
    echo "cp -r and sync -d|bash $repository/bench/synced.sh cp -r $plugin $work/person"
}
reset_install() {
    rm -rf "$work/host" "$work/bare" "$work/person"
    mkdir "$work/host" "$work/bare"
}
verify_install() {
    local target verified=0
    for target in "${targets[@]}"; do
        [ -d "$target" ] || continue
        diff -rq -x uninstall.ini -x manager.cfg "$plugin" "$target" || wrong "$target differs"
        verified=1
    done
    [ $verified -eq 1 ] || wrong "nothing was installed"
}

make_install_100() { make_install 100 2048; }
make_install_2000() { make_install 2000 2048; }
make_install_20000() { make_install 20000 2048; }
make_install_large() { make_install 100 1048576; }
for case_name in install_100 install_2000 install_20000 install_large; do
    eval "commands_$case_name() { commands_install; }
          commands_${case_name}_both_qts() { both_qts $case_name; }
          commands_${case_name}_on_disk() { commands_install_on_disk; }
          reset_$case_name() { reset_install; }
          verify_$case_name() { verify_install; }"
done

# Each target holds an older state of every file before it is updated.
make_update() {
    make_install 2000 2048
    make_files 2000 2048 "$work/older"
}
commands_update() {
    commands_install | head -n 2
    echo "rsync -a|rsync -a --ignore-times $plugin/ $work/person/"
}
commands_update_on_disk() {
    commands_update | head -n 1
    echo "rsync -a and sync -d|bash $repository/bench/synced.sh rsync -a --ignore-times $plugin/ $work/person/"
}
reset_update() {
    reset_install
    local target
    mkdir "$work/host/Scripts" "$work/bare/Scripts"
    for target in "${targets[@]}"; do
        cp -r "$work/older" "$target"
    done
}
verify_update() {
    local target updated=0
    for target in "${targets[@]}"; do
        diff -rq -x uninstall.ini -x manager.cfg "$plugin" "$target" >/dev/null \
            && updated=$((updated + 1))
    done
    [ $updated -eq 1 ] || wrong "$updated targets were updated instead of one"
}

# Every host has the version that is wanted, and a manager.cfg that says the same.
make_idle_hosts() {
    local number
    make_install 1 1
    printf 7 >"$plugin/version.txt"
    write_settings "$settings" "$work/host" "$1"
    (cd "$work/tool" && "$program") || wrong "the hosts could not be prepared"
}
commands_idle_hosts() {
    echo "program|$program"
    echo "bare loop|$bare install $settings $plugin $work/version.txt"
    echo "empty program|$build/bench/drask-bench-empty"
}
verify_idle_hosts() {
    local idle
    idle=$(grep -c 'not necessary to write cfg' "$work/tool/plugin.log")
    [ "$idle" -eq "$1" ] || wrong "$idle hosts were found to be up to date instead of $1"
}
make_idle() { make_idle_hosts 15; }
make_hosts_150() { make_idle_hosts 150; }
make_hosts_1500() { make_idle_hosts 1500; }
commands_idle() { commands_idle_hosts; }
commands_hosts_150() { commands_idle_hosts; }
commands_hosts_1500() { commands_idle_hosts; }
commands_idle_both_qts() { both_qts idle; }
reset_idle() { :; }
reset_hosts_150() { :; }
reset_hosts_1500() { :; }
verify_idle() { verify_idle_hosts 15; }
verify_hosts_150() { verify_idle_hosts 150; }
verify_hosts_1500() { verify_idle_hosts 1500; }

make_plan() { make_idle_hosts 15; }
commands_plan() {
    echo "program|$status plan"
    echo "the idle run|$program"
}
reset_plan() { :; }
verify_plan() { "$status" plan >/dev/null || wrong "there is something to do"; }

make_whole() {
    local file=$work/host/Scripts/drask/part_aaaaa
    make_install 2000 2048
    printf 7 >"$plugin/version.txt"
    reset_install
    (cd "$work/tool" && "$program") || wrong "nothing to look at could be installed"
    printf xyz | dd of="$file" bs=1 seek=2045 conv=notrunc status=none
    [[ $("$status" verify) == *part_aaaaa* ]] || wrong "a change was not found"
    cp "$plugin/part_aaaaa" "$file"
}
commands_whole() {
    echo "program|$status verify"
    echo "diff -rq|diff -rq -x uninstall.ini -x manager.cfg $plugin $work/host/Scripts/drask"
}
reset_whole() { :; }
verify_whole() { "$status" verify >/dev/null || wrong "something is not whole"; }

make_remove() {
    make_install 20000 2048
    rm -rf "$work"/host[0-9]*
    reset_install
    (cd "$work/tool" && "$program") || wrong "nothing to remove could be installed"
    rm -rf "$work/installed"
    cp -r "$work/host" "$work/installed"
}
commands_remove() {
    echo "program|$program uninstallPlugin '(modo) $work/host'"
    echo "bare loop|$bare remove $work/host/Scripts/drask/uninstall.ini"
    echo "xargs rm|xargs -a $work/installed/Scripts/drask/uninstall.ini rm"
}
commands_remove_both_qts() { both_qts remove; }
reset_remove() {
    rm -rf "$work/host"
    cp -r "$work/installed" "$work/host"
}
verify_remove() {
    local left
    left=$(find "$work/host" -name 'part_*' | wc -l)
    [ "$left" -eq 0 ] || wrong "$left files are left"
}

# 40,000 files in 400 folders, one of each folder a legacy file.
make_legacy() {
    local number folder names=(grex.pyc utils.pyc drask.py manager.cfg)
    rm -rf "$work/legacy" "$work/installed"
    for ((number = 0; number < 400; ++number)); do
        folder=$work/legacy/maya/scripts/Drask/$number
        make_files 99 1 "$folder"
        touch "$folder/${names[number % 4]}"
    done
    echo "path=$work/host/maya/Maya.app" >"$work/hosts.txt"
}
commands_legacy() {
    local folder=$work/host/maya/scripts/Drask
    echo "program|$program ov3uninstall $work/hosts.txt"
    echo "bare loop|$bare legacy $folder"
    echo "find -delete|find $folder -type f ( -name grex.pyc -o -name utils.pyc -o -name drask.py -o -name manager.cfg ) -delete"
    echo "find -type f|find $folder -type f"
}
reset_legacy() {
    rm -rf "$work/host"
    cp -r "$work/legacy" "$work/host"
}
verify_legacy() {
    local left
    left=$(find "$work/host" -type f | wc -l)
    # The bare walk of "find" deletes nothing.
    [ "$left" -eq 39600 ] || [ "$left" -eq 40000 ] || wrong "$left files are left"
}

old_path_line="	sys.path.append( importable_path(u'/old/place'))"

make_maya() {
    mkdir -p "$work/scripts/drask"
    {
        head -c 7400000 /dev/urandom | base64 -w 60
        printf '#drask_installed\n%s\n' "$old_path_line"
    } >"$work/userSetup.original"
    printf '#drask_installed\n%s\n' "$old_path_line" >"$work/scripts/drask/drask_userSetup.py"
}
commands_maya() {
    echo "program|$operation maya $work/scripts/drask/drask_userSetup.py $work/scripts/drask"
    echo "bare loop|$bare maya $work/scripts/userSetup.py \"u'/old/place'\" \"u'$work/scripts/drask'\""
    echo "sed -i|sed -i s,/old/place,$work/scripts/drask, $work/scripts/userSetup.py"
}
reset_maya() { cp "$work/userSetup.original" "$work/scripts/userSetup.py"; }
verify_maya() {
    sed "s,/old/place,$work/scripts/drask," "$work/userSetup.original" \
        | cmp - "$work/scripts/userSetup.py" || wrong "userSetup.py is not as it should be"
}

make_lightwave() {
    mkdir -p "$work/lightwave" "$work/lightwave.original"
    {
        printf 'MenuEntry 131072 1 _\r\nMenuEntry 1 Options \r\n'
        head -c 5360000 /dev/urandom | base64 -w 40 | sed 's/^/MenuEntry 2 . /; s/$/\r/'
    } >"$work/lightwave.original/LW.CFG"
    printf '{ Entry\r\n}\r\n' >"$work/lightwave.original/LWEXT.CFG"
}
commands_lightwave() {
    echo "program|$operation lightwave $work/lightwave"
    echo "bare loop|$bare lightwave $work/lightwave"
    echo "sed -i.bak|sed -i.bak '/MenuEntry 1 Options/a MenuEntry 2 . Generic_Drask' $work/lightwave/LW.CFG"
}
reset_lightwave() {
    rm -rf "$work/lightwave"
    cp -r "$work/lightwave.original" "$work/lightwave"
}
verify_lightwave() {
    local backup=$work/lightwave/LW.CFG_bak
    [ -f "$backup" ] || backup=$work/lightwave/LW.CFG.bak
    cmp "$backup" "$work/lightwave.original/LW.CFG" || wrong "the backup is not as it should be"
}
