#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Every link of the pages leads somewhere, every header is part of the reference, integration.md has
# every entry of the error file, and the manual page is in order. Ends with 1 when something is wrong.
# Modes and lines of the log are held by the unit tests.
set -u
cd "$(dirname "$0")/.." || exit 1

failed=0
complain() {
    printf '%s\n' "$*"
    failed=1
}

check_error_file() {
    local entry
    while IFS= read -r entry; do
        grep -qF -e "$entry" docs/integration.md \
            || complain "docs/integration.md does not explain: $entry"
    done < <(grep -hoE 'writeErrorFile\([^"]*"[^"\]+' src/*.cpp | cut -d '"' -f 2
        grep -oE '^inline constexpr QLatin1String [^"]*"[^"\]+' src/messages.h | cut -d '"' -f 2)
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
    for page in *.md docs/*.md tests/*/*.md deploy/*/*.md; do
        render "$site" "$page"
        pages+=("$site/${page%.md}.html")
    done
    # What pages link to besides pages.
    cp -R LICENSE scripts deploy "$site"
    cp docs/*.svg docs/*.json "$site/docs"
    echo "[AnchorCheck]" >"$site/settings"
    # Started by root, it works as another user. It looks at nothing outside the folder.
    chmod -R a+rX "$site"
    output=$(linkchecker --config "$site/settings" --no-status "${pages[@]}" 2>&1) \
        || complain "$output"
}

# What cannot read VERSION has it all the same.
check_version() {
    local version
    version=$(cat VERSION)
    grep -qxF "version: $version" deploy/ansible/galaxy.yml || complain "galaxy.yml has another version"
    grep -m 1 '^## ' CHANGELOG.md | grep -qF "[$version]" || complain "CHANGELOG.md begins with another version"
    grep -qF "\"installer\": \"$version\"" docs/status.md || complain "docs/status.md has another version"
}

check_manual() {
    local output
    output=$(mandoc -T lint -W warning docs/*.1 2>&1) || complain "$output"
}

check_error_file
check_version
lacking=$(find src -name '*.h' -exec grep -L '^/// \\file$' {} +)
[ -z "$lacking" ] || complain "These lack their \\file comment:" "$lacking"
if have lowdown "Links were not checked" && have linkchecker "Links were not checked"; then
    site=$(mktemp -d)
    trap 'rm -rf "$site"' EXIT
    check_links "$site"
fi
have mandoc "The manual page was not checked" && check_manual
exit "$failed"
