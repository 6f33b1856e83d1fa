#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Holds the pages against the sources: what the program can say, what it knows and what it understands
# has its place in them, every header is part of the reference, every link leads somewhere, and the
# manual page is in order. Ends with 1 when something is missing.
set -u
cd "$(dirname "$0")/.." || exit 1
# Pages and sources are UTF-8; sorting and comparing is by bytes.
export LC_ALL=C

failed=0
complain() {
    printf '%s\n' "$*"
    failed=1
}

# expect TEXT PAGE...: each page has the text somewhere.
expect() {
    local text=$1 page
    shift
    for page in "$@"; do
        grep -qF -e "$text" "$page" || complain "$page does not mention: $text"
    done
}

# The string literals of what comes in, without their quotes, up to the first line feed in them.
literals() {
    grep -oE '"([^"\]|\\.)*"' | sed 's/^"//; s/"$//; s/\\n.*//; s/\\"/"/g' | grep . | sort -u
}

# What goes into the log or the error file. The messages of the XSI scripts stand in a table.
messages() {
    cat src/*.cpp src/*/*.cpp | tr '\n' ' ' \
        | grep -oE '(q(Debug|Info|Warning|Critical)\(|writeErrorFile\([Q"])[^;]*;' | literals
    rows src/installer/xsi.cpp 'xsiScripts\[\]' \
        | grep -oE '"([^"\]|\\.)*"(_l1)?' | grep -v '_l1$' | literals
}

# The rows of a table, from the line with NAME to its end: rows FILE NAME.
rows() {
    sed -n "/$2/,/;\$/p" "$1" | grep -E '^ *\{"'
}

check_messages() {
    local message
    while IFS= read -r message; do
        expect "$message" docs/integration.md
    done < <(messages)
}

check_mode_words() {
    local word
    while IFS= read -r word; do
        expect "$word" README.md docs/integration.md docs/drask-installer.1
    done < <(rows src/commandline.cpp 'modeWords\[\]' | literals | tr -d '"')
}

check_headers() {
    local header
    while IFS= read -r header; do
        grep -q '^/// \\file$' "$header" || complain "$header lacks its \\file comment"
    done < <(find src -name '*.h')
}

# The names under which the headings of a page can be linked.
anchors() {
    grep '^#' "$1" | sed 's/^#* //' | tr '[:upper:] ' '[:lower:]-' | tr -cd 'a-z0-9_\n-'
}

check_link() {
    local page=$1 target=$2 file
    file=${target%%#*}
    [ -z "$file" ] && file=$page || file=$(dirname "$page")/$file
    if [ ! -e "$file" ]; then
        complain "$page links to $target, which is not there"
    elif [ "$target" != "${target#*#}" ] && ! anchors "$file" | grep -qxF -e "${target#*#}"; then
        complain "$page links to $target, a heading that is not there"
    fi
}

check_links() {
    local page target
    for page in *.md docs/*.md; do
        while IFS= read -r target; do
            check_link "$page" "$target"
        done < <(grep -oE '\]\([^) ]+\)' "$page" | sed 's/^](//; s/)$//' | grep -v '://')
    done
}

check_manual() {
    local output
    if ! command -v mandoc >/dev/null; then
        echo "The manual page was not checked: there is no mandoc here."
    elif ! output=$(mandoc -T lint -W warning docs/drask-installer.1 2>&1); then
        complain "$output"
    fi
}

check_messages
check_mode_words
check_headers
check_links
check_manual
exit "$failed"
