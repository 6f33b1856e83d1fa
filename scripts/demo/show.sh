# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# How the demo draws: headings, trees, differences, and claims that are checked as they are made.

BOLD='' GREEN='' RED='' DIM='' PLAIN=''

choose_colours() {
    if [ -t 1 ] && [ -z "${NO_COLOR:-}" ] && [ "${TERM:-dumb}" != dumb ]; then
        BOLD=$'\033[1m' GREEN=$'\033[32m' RED=$'\033[31m' DIM=$'\033[2m' PLAIN=$'\033[0m'
    fi
}

heading() {
    printf '\n%s%s%s\n' "$BOLD" "$1" "$PLAIN"
}

say() {
    printf '   %s\n' "$@"
}

caption() {
    printf '\n   %s%s%s\n' "$BOLD" "$1" "$PLAIN"
}

not_so() {
    printf '%s   NOT SO: %s%s\n' "$RED" "$1" "$PLAIN" >&2
    exit 1
}

# check SENTENCE COMMAND...: ends the demo unless the command agrees with the sentence.
check() {
    local sentence=$1
    shift
    "$@" || not_so "$sentence"
}

# claim SENTENCE COMMAND...: the same, and prints the sentence.
claim() {
    check "$@"
    printf '   %sok%s %s\n' "$GREEN" "$PLAIN" "$1"
}

# Paths of the workstation, made short enough to read; a filter.
shorten() {
    LONG=$SAMPLE awk '{
        rest = $0
        line = ""
        while ((at = index(rest, ENVIRON["LONG"])) > 0) {
            line = line substr(rest, 1, at - 1) "..."
            rest = substr(rest, at + length(ENVIRON["LONG"]))
        }
        print line rest
    }'
}

# Colours lines by their first sign: + came, - went, ~ changed; a filter.
paint() {
    PAINT_ADDED=$GREEN PAINT_GONE=$RED PAINT_NOTE=$DIM PAINT_END=$PLAIN awk '
        { colour = "" }
        /^[+]/ { colour = ENVIRON["PAINT_ADDED"] }
        /^-/ { colour = ENVIRON["PAINT_GONE"] }
        /^@@/ { colour = ENVIRON["PAINT_NOTE"] }
        { print "   " colour $0 (colour == "" ? "" : ENVIRON["PAINT_END"]) }'
}

# Draws signed paths ("+a/b/c") as a tree that names each folder once; a filter.
tree() {
    awk -F/ '{
        sign = substr($1, 1, 1)
        $1 = substr($1, 2)
        same = 1
        indent = ""
        for (depth = 1; depth < NF; ++depth) {
            if (!same || $depth != last[depth]) {
                print "  " indent $depth "/"
                same = 0
            }
            last[depth] = $depth
            indent = indent "   "
        }
        last[NF] = ""
        print sign " " indent $NF
    }' | paint
}

# difference OLD NEW: the lines that differ and those around them.
difference() {
    { diff -u "$1" "$2" || true; } | sed '1,2d' | shorten | paint
}
