#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Every link of the pages leads somewhere, every header is part of the reference, and the manual page
# is in order; messages and mode words have their place in the pages. Ends with 1 when something is
# wrong.
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

# What goes into the log or the error file. The messages of the XSI scripts stand in a table, and
# those that somebody reads again in a header.
messages() {
    sed -n 's|///.*||; /^inline constexpr/p' src/messages.h | literals
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

have() {
    command -v "$1" >/dev/null || {
        echo "$2: there is no $1 here."
        return 1
    }
}

# render FOLDER PAGE: makes HTML of a page. Headings get the names that they have on the web, which are
# without dots, and links to pages lead to their HTML.
render() {
    mkdir -p "$1/$(dirname "$2")"
    lowdown -s -T html "$2" | sed -E -e ':dot' \
        -e 's/(<h[1-6] id="[^".]*)\.([^"]*")/\1\2/' -e 't dot' \
        -e 's/(href="[^":]*)\.md(["#])/\1.html\2/g' >"$1/${2%.md}.html"
}

check_links() {
    local site=$1 page output pages=()
    for page in *.md docs/*.md tests/*/*.md; do
        render "$site" "$page"
        pages+=("$site/${page%.md}.html")
    done
    # What pages link to besides pages.
    cp -R LICENSE scripts "$site"
    cp docs/*.svg "$site/docs"
    echo "[AnchorCheck]" >"$site/settings"
    # Started by root, it works as another user. It looks at nothing outside the folder.
    chmod -R a+rX "$site"
    output=$(linkchecker --config "$site/settings" --no-status "${pages[@]}" 2>&1) \
        || complain "$output"
}

check_manual() {
    local output
    output=$(mandoc -T lint -W warning docs/*.1 2>&1) || complain "$output"
}

check_messages
check_mode_words
lacking=$(find src -name '*.h' -exec grep -L '^/// \\file$' {} +)
[ -z "$lacking" ] || complain "These lack their \\file comment:" "$lacking"
if have lowdown "Links were not checked" && have linkchecker "Links were not checked"; then
    site=$(mktemp -d)
    trap 'rm -rf "$site"' EXIT
    check_links "$site"
fi
have mandoc "The manual page was not checked" && check_manual
exit "$failed"
