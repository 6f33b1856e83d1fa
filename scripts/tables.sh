#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/tables.sh writes the tables of hosts in the pages, in the fuzzer's dictionary and in the
# Ansible role from data/hosts.txt. "scripts/tables.sh check" writes nothing and ends with 1 when one is out of date.
# shellcheck disable=SC2016 # the dollars are awk's, the backquotes the pages'
set -eu
cd "$(dirname "$0")/.."

mode=${1-write}
failed=0

# rows PROGRAM: awk's PROGRAM for each row of the table; $1 is the key.
rows() {
    awk -F ' *[|] *' "/^[^#]/ {$1}" data/hosts.txt
}

page_table() {
    echo '| Key | Plug-in folder in the host | Folder in `plugins/` | Version, in `[plugins]` | What the plug-in must hold besides `version.txt` |'
    echo '|---|---|---|---|---|'
    rows '{
        folder = $2 == "" ? "none: the host'\''s folder itself" : "`" $2 "`"
        printf "| `%s` | %s | `%s` | `%s` | %s |\n", $1, folder, $3, $4, $6
    }'
}

manual_list() {
    rows 'print ".Li " $1 " ,"' | sed '$ s/ ,$/ ./'
}

dictionary_words() {
    rows 'print "\"" $1 "\""'
}

role_table() {
    rows '{printf "  %s: [%s, %s]\n", $1, $3, $4}'
}

role_choices() {
    rows '{printf "              - %s\n", $1}'
}

# put PAGE WRITER: what WRITER prints goes between the lines of PAGE that say "table of hosts" and
# "end of the table".
put() {
    local page=$1 written
    written=$("$2")
    written=$(WRITTEN=$written awk '
        /end of the table/ {print ENVIRON["WRITTEN"]; inside = 0}
        !inside
        /table of hosts/ {inside = 1}' "$page")
    if printf '%s\n' "$written" | cmp -s - "$page"; then
        return
    elif [ "$mode" = check ]; then
        printf '%s does not say what data/hosts.txt says: run scripts/tables.sh\n' "$page"
        failed=1
    else
        printf '%s\n' "$written" >"$page"
    fi
}

put docs/integration.md page_table
put docs/drask-installer.1 manual_list
put tests/fuzz/dictionaries/fuzz_settings.dict dictionary_words
put deploy/ansible/roles/plugins/vars/main.yml role_table
put deploy/ansible/roles/plugins/meta/argument_specs.yml role_choices
exit "$failed"
