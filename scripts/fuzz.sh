#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/fuzz.sh SECONDS [TARGET…]
#
# Builds the fuzzers in build/fuzz and runs each target (maya or fuzz_maya; all of them without a
# name) for that long, as many at a time as there are processors. Prints a line for each target. Ends with
# 1 when one found something; what it found is in build/fuzz/findings.
set -u
# shellcheck source=prepare.sh
. "$(dirname "$0")/prepare.sh"
cd "$repository" || exit 1

build=$repository/$(build_folder fuzz)
export build
export seconds=${1-}
[[ $seconds =~ ^[1-9][0-9]*$ ]] || fail "Usage: scripts/fuzz.sh SECONDS [TARGET…]"
shift

# The newest libFuzzer need not belong to the clang that is the machine's own.
find_compiler() {
    command -v clang++-14 || command -v clang++ || fail "Fuzzing needs clang."
}

all_targets() {
    local source
    for source in tests/fuzz/fuzz_*.cpp; do basename "$source" .cpp; done
}

targets=()
for name in "$@"; do
    target=fuzz_${name#fuzz_}
    [ -f "tests/fuzz/$target.cpp" ] || fail "There is no fuzz target '$name'. There are:" "$(all_targets)"
    targets+=("$target")
done
if [ ${#targets[@]} -eq 0 ]; then
    while read -r target; do targets+=("$target"); done < <(all_targets)
fi

compiler=$(find_compiler) || exit 1
run_quietly cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_COMPILER="$compiler" -DDRASK_BUILD_FUZZERS=ON -DDRASK_QT="${DRASK_QT-}"
run_quietly cmake --build "$build" --target "${targets[@]}"

# Everything is written in memory, where that can be. Fuzzers give up the rights of root, so
# everybody may write here.
memory=/tmp
[ -w /dev/shm ] && memory=/dev/shm
scratch=$(mktemp -d "${TMPDIR:-$memory}/drask-fuzz-XXXXXX") || exit 1
export scratch
campaign=""
clean_up() {
    if [ -n "$campaign" ]; then
        kill -- "-$campaign"
        wait "$campaign"
    fi 2>/dev/null
    rm -rf "$scratch"
}
trap clean_up EXIT
trap 'exit 1' INT TERM
# Short memories make fuzzing a third faster; the finding, run again, tells all.
export ASAN_OPTIONS=${ASAN_OPTIONS:-malloc_context_size=1:quarantine_size_mb=16}

# statistic NAME LOG prints a number of libFuzzer's final statistics.
statistic() {
    sed -n "s/^stat::$1: *//p" "$2" | tail -n 1
}

# keep_findings TARGET LOG saves what made the target fail, and says how to see it again.
keep_findings() {
    local kept=$build/findings/$1 input found=""
    mkdir -p "$kept"
    cp "$2" "$kept/log.txt"
    grep -E '^(Broken promise|Differs)|ERROR: |runtime error' "$2" | head -n 5
    for input in "$scratch/$1"/crash-* "$scratch/$1"/leak-* "$scratch/$1"/timeout-* \
        "$scratch/$1"/oom-*; do
        [ -f "$input" ] || continue
        cp "$input" "$kept/"
        found=$kept/${input##*/}
        printf 'The input: %s\nAgain: %s %s\n' "$found" "$build/tests/fuzz/$1" "$found"
    done
    [ -n "$found" ] || tail -n 20 "$2"
    printf 'The log: %s\n' "$kept/log.txt"
}

run_target() {
    local target=$1 work=$scratch/$1 log=$scratch/$1/log.txt result=ok runs coverage
    mkdir -p "$work/corpus"
    # The work tree keeps the seeds alone.
    cp "$repository/tests/fuzz/corpus/$target/"* "$work/corpus/"
    cat "$repository/tests/fuzz/dictionaries/"{common,"$target"}.dict >"$work/words.dict"
    chmod -R a+rwX "$scratch"
    TMPDIR=$scratch "$build/tests/fuzz/$target" -max_total_time="$seconds" -max_len=20000 \
        -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 -dict="$work/words.dict" \
        -artifact_prefix="$work/" "$work/corpus" >"$log" 2>&1 || result=FAILED
    runs=$(statistic number_of_executed_units "$log")
    coverage=$(grep -o 'cov: [0-9]*' "$log" | tail -n 1)
    # A fuzzer that ran nothing proved nothing.
    [ "${runs:-0}" -gt 0 ] || result=FAILED
    printf '%-20s %9s runs  %6s a second  %5s new units  coverage %5s  %s\n' "$target" \
        "${runs:-0}" "$(statistic average_exec_per_sec "$log")" \
        "$(statistic new_units_added "$log")" "${coverage#cov: }" "$result"
    [ "$result" = ok ] || keep_findings "$target" "$log"
    [ "$result" = ok ]
}
export -f run_target statistic keep_findings

# A process group of its own, so that whoever ends this script ends the fuzzers with it.
set -m
# shellcheck disable=SC2016 # the inner bash expands it
xargs -P "$(getconf _NPROCESSORS_ONLN)" -n 1 bash -c 'run_target "$1"' run_target \
    <<<"$(printf '%s\n' "${targets[@]}")" &
campaign=$!
wait "$campaign"
result=$?
campaign=""
[ $result -eq 0 ] || fail "Fuzzing found something."
