# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Chapter 1: an install over all hosts.

MAYA='Library/Preferences/Autodesk/maya/2022'
HOUDINI='Library/Preferences/houdini/18.0'

# target_folders HOST_FOLDER SUB_FOLDER: where the plug-in goes, a line a folder.
target_folders() {
    local language
    case $2 in
        XXX*)
            for language in CHS DEU ENU FRA JPN KOR; do
                printf '%s/%s%s\n' "$1" "$language" "${2#XXX}"
            done
            ;;
        '') printf '%s\n' "$1" ;;
        *) printf '%s/%s\n' "$1" "$2" ;;
    esac
}

# plugin_files NAME: the files that the tool has to copy.
plugin_files() {
    (cd "$SAMPLE/$TOOL/plugins/$1" && find . -type f) | sed 's|^\./||'
}

# carries_plugin TARGET NAME: every file is there, unchanged and listed for a later removal.
carries_plugin() {
    local file
    exists "$1/manager.cfg" || return 1
    while read -r file; do
        cmp -s "$SAMPLE/$TOOL/plugins/$2/$file" "$SAMPLE/$1/$file" || return 1
        grep -qxF "$SAMPLE/$1/$file" "$SAMPLE/$1/uninstall.ini" || return 1
    done < <(plugin_files "$2")
}

# show_host KEY FOLDER SUB_FOLDER PLUGIN: one row of the table. Each target gets the plug-in's
# files, its manifest and its configuration; Maya's also a backup of the start-up script.
show_host() {
    local target version='' targets=0 expected added
    while read -r target; do
        check "$1 has a complete plug-in in $target" carries_plugin "$target" "$4"
        version=$(cat "$SAMPLE/$target/version.txt")
        targets=$((targets + 1))
    done < <(target_folders "$2" "$3")
    expected=$((targets * ($(plugin_files "$4" | count_lines) + 2)))
    [ "$1" != maya ] || expected=$((expected + 1))
    added=$(changes fresh installed | below "$2" | signed + | count_lines)
    check "$1 got $expected new files (it got $added)" same_text "$added" "$expected"
    target=${3/XXX/(6 languages)}
    printf '   %-10s %7s %9s   %s\n' "$1" "$version" "$added" "$2${target:+/$target}"
}

show_hosts() {
    local key folder sub_folder plugin
    printf '\n   %s%-10s %7s %9s   %s%s\n' "$BOLD" \
        host version 'new files' 'plug-in folder' "$PLAIN"
    while IFS='|' read -r key folder sub_folder plugin _; do
        show_host "$key" "$folder" "$sub_folder" "$plugin"
    done < <(list_hosts)
}

expected_manager_config() {
    printf '%s\n' 'Zoë Lindqvist' "$SAMPLE/Projects" "$SAMPLE/$TOOL/DraskDrop" \
        "$(sed -n 's/.*installerVersion = "\([^"]*\)".*/\1/p' src/globals.h)"
    "$SAMPLE/$TOOL/cputype" | base64 | tr '+/' '-_'
    printf '1\n1'
}

# show_manager_config FILE: its lines, each behind what it means.
show_manager_config() {
    local line number=0
    local meanings='user|projects folder|drop program|installer|cputype|fixed|textures'
    while IFS= read -r line || [ -n "$line" ]; do
        number=$((number + 1))
        printf '   %s%d %-16s%s %s\n' "$DIM" "$number" "${meanings%%|*}" "$PLAIN" "$line"
        meanings=${meanings#*|}
    done <"$1" | shorten
    expected_manager_config >"$NOTES/manager.cfg"
    check 'manager.cfg says what the settings and cputype say' cmp -s "$1" "$NOTES/manager.cfg"
}

# The files that were there before and that the install touched.
show_touched_files() {
    local backup="$MAYA/scripts/drask/userSetup.py.draskbackup"
    caption 'Edited: userSetup.py of Maya, then houdini.env of Houdini'
    difference "$NOTES/userSetup.py" "$SAMPLE/$MAYA/scripts/userSetup.py"
    difference "$NOTES/houdini.env" "$SAMPLE/$HOUDINI/houdini.env"
    check 'the backup is the userSetup.py of before' \
        cmp -s "$NOTES/userSetup.py" "$SAMPLE/$backup"
    claim 'no other file was edited, and userSetup.py has a backup' \
        same_text "$(changes fresh installed | signed '~')" "~$MAYA/scripts/userSetup.py
~$HOUDINI/houdini.env"
    claim 'gone are two files that an earlier plug-in had left in CINEMA 4D R13/plugins' \
        same_text "$(changes fresh installed | signed -)" \
        '-Applications/MAXON/CINEMA 4D R13/plugins/Grex12.cdl64
-Applications/MAXON/CINEMA 4D R13/plugins/Grex12.dylib'
}

show_log_end() {
    local log="$SAMPLE/$TOOL/plugin.log"
    caption 'The end of plugin.log'
    tail -n 4 "$log" | shorten | sed 's/^/   /'
    check 'the log ends with the exit code' same_text "$(tail -n 1 "$log")" 'Debug: 0'
}

chapter_install() {
    heading '1  Install: the settings list fifteen hosts; none has its plug-in yet'
    cp "$SAMPLE/$MAYA/scripts/userSetup.py" "$SAMPLE/$HOUDINI/houdini.env" "$NOTES"
    snapshot fresh
    run_tool
    snapshot installed
    show_hosts
    check 'the log names 20 plug-in folders' same_text "$(copied) $(up_to_date)" '20 0'
    caption "Added to Maya, in $MAYA"
    changes fresh installed | below "$MAYA" | signed + | tree
    show_touched_files
    caption 'What manager.cfg tells a plug-in, here that of Maya'
    show_manager_config "$SAMPLE/$MAYA/scripts/drask/manager.cfg"
    show_log_end
}
