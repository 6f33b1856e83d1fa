#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Holds the entries of docs/behaviour.md, the comments "Deliberate (NAME):" in the sources and the tests
# that the entries name against each other. Ends with 1 when one of the three is missing.
# shellcheck disable=SC2016 # the backquotes are those of the page
set -u
cd "$(dirname "$0")/.." || exit 1

failed=0
complain() {
    printf '%s\n' "$*"
    failed=1
}

# The entries, a line for each: its name, and its text.
entries() {
    awk 'BEGIN {RS = ""} /^[*][*][a-z0-9-]+[*][*] / {gsub(/\n/, " "); gsub(/^[*][*]/, ""); sub(/[*][*]/, ""); print}' \
        docs/behaviour.md
}

# The names in the comments; the whole line where a comment has none.
comments() {
    grep -rhoE 'Deliberate.*' src | sed 's/^Deliberate (\([a-z0-9-]*\)):.*/\1/'
}

check_test() {
    local entry=$1 test=$2
    case $test in
        scenarios/*)
            [ -n "$(find tests/endtoend/scenarios -name "${test#scenarios/}.*")" ] ;;
        *)
            grep -qE "void ${test#*: }\(\);?$" tests/*/"${test%%:*}.cpp" 2>/dev/null ;;
    esac || complain "$entry: there is no test $test"
}

check_entry() {
    local name=$1 text=$2 test tests
    case $text in
        *'*Comment. Tests:*'*)
            comments | grep -qxF -e "$name" || complain "$name: no source has a comment" ;;
        *)
            ! comments | grep -qxF -e "$name" || complain "$name: it has a comment after all" ;;
    esac
    tests=$(printf '%s\n' "${text##*Tests:\*}" | grep -oE '`[^`]+`' | tr -d '`')
    [ -n "$tests" ] || complain "$name: it names no test"
    while IFS= read -r test; do
        [ -z "$test" ] || check_test "$name" "$test"
    done <<<"$tests"
}

while read -r name text; do
    check_entry "$name" "$text"
done < <(entries)
while IFS= read -r name; do
    entries | grep -q "^$name " || complain "docs/behaviour.md has no entry for the comment: $name"
done < <(comments)
while IFS= read -r name; do
    complain "docs/behaviour.md has two entries $name"
done < <(entries | cut -d ' ' -f 1 | sort | uniq -d)
exit "$failed"
