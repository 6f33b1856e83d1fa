# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# What the demo knows for sure: runs of the tool, and the workstation's files before and after
# them. Wants SAMPLE, TOOL and NOTES (the demo's own folder, beside the workstation).

exit_words() {
    case $1 in
        0) echo 'success' ;;
        2) echo 'a plug-in could not be copied or removed' ;;
        3) echo 'a configuration file could not be written' ;;
        *) echo 'not a code of this tool' ;;
    esac
}

# run_tool WORD...: as the manager does, from the tool's folder.
run_tool() {
    local word code=0 line='./drask-installer'
    for word in "$@"; do
        case $word in
            *' '*) line="$line \"$word\"" ;;
            *) line="$line $word" ;;
        esac
    done
    printf '%s\n' "$line" | shorten | sed "s/^/   $DIM\$$PLAIN /"
    # File names are UTF-8, also where the shell has no locale.
    (cd "$SAMPLE/$TOOL" && LC_ALL=C.UTF-8 ./drask-installer "$@") \
        >"$NOTES/console" 2>&1 </dev/null || code=$?
    check "the exit code is 0 (it is $code: $(exit_words "$code"))" same_text "$code" 0
    check "the console is empty ($(head -n 1 "$NOTES/console"))" is_empty "$NOTES/console"
    check 'there is no error file' is_gone "$TOOL/pluginError.txt"
    claim "exit code $code ($(exit_words "$code")), nothing on the console, no error file" true
}

# snapshot NAME: every file with its checksum, and every folder.
snapshot() {
    (cd "$SAMPLE" && find . -type f -exec cksum {} +) \
        | sed 's|^\([0-9]* [0-9]*\) \./|\1 |' >"$NOTES/$1"
    (cd "$SAMPLE" && find . -type d) | LC_ALL=C sort >"$NOTES/$1.folders"
}

# compare BEFORE AFTER: a line a file, sorted by path, behind a sign: + came, - went, ~ changed,
# blank stayed as it was. What lies beside the tool is left out.
compare() {
    awk '
        { sum = $1 " " $2; path = $0; sub(/^[0-9]+ [0-9]+ /, "", path) }
        NR == FNR { before[path] = sum; next }
        { print (!(path in before) ? "+" : before[path] != sum ? "~" : " ") path; after[path] = 1 }
        END { for (path in before) if (!(path in after)) print "-" path }
    ' "$NOTES/$1" "$NOTES/$2" | grep -v "^.$TOOL/" | LC_ALL=C sort -k 1.2
}

# changes BEFORE AFTER: the same for the files that differ.
changes() {
    compare "$1" "$2" | grep -v '^ ' || true
}

# signed SIGN: of changes, those behind the sign; a filter.
signed() {
    SIGN=$1 awk 'substr($0, 1, 1) == ENVIRON["SIGN"]'
}

# below FOLDER: of changes, those in FOLDER, with paths from there on; a filter.
below() {
    FOLDER="$1/" awk 'index($0, ENVIRON["FOLDER"]) == 2 {
        print substr($0, 1, 1) substr($0, length(ENVIRON["FOLDER"]) + 2)
    }'
}

# copied: how many plug-in folders the last run filled; up_to_date: how many it left alone.
copied() {
    grep -c ' plugin installed in: ' "$SAMPLE/$TOOL/plugin.log" || true
}

up_to_date() {
    grep -c 'version already installed: ' "$SAMPLE/$TOOL/plugin.log" || true
}

count_lines() {
    awk 'END { print NR }'
}

exists() {
    [ -e "$SAMPLE/$1" ]
}

is_gone() {
    [ ! -e "$SAMPLE/$1" ]
}

holds() {
    grep -qF -- "$2" "$SAMPLE/$1"
}

is_empty() {
    [ ! -s "$1" ]
}

same_text() {
    [ "$1" = "$2" ]
}

same_folders() {
    cmp -s "$NOTES/$1.folders" "$NOTES/$2.folders"
}
