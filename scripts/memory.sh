#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs every mode of the built program under valgrind: no leak, no invalid access. The runs are those
# of end-to-end tests, which start the program through the command that DRASK_RUN_THROUGH names.
set -u
# shellcheck source=prepare.sh
. "$(dirname "$0")/prepare.sh"
cd "$repository" || exit 1
export LC_ALL=C.UTF-8

# The scenarios that are run, a line for each process.
tested_runs() {
    for scenario in "$repository"/tests/endtoend/scenarios/{mode,studio,artists,maya,legacy-all}-*.txt; do
        echo "tst_scenarios scenario:$(basename "$scenario" .txt)"
    done
}

configure_and_build dev

reports=$(mktemp -d)
# The command below is taken apart at its blanks, which the way to this folder may have.
suppressions=$(mktemp)
cp scripts/valgrind.supp "$suppressions" || exit 1
trap 'rm -rf "$reports" "$suppressions"' EXIT
export DRASK_RUN_THROUGH="valgrind --quiet --leak-check=full \
--show-leak-kinds=definite,indirect,possible --errors-for-leak-kinds=definite,indirect,possible \
--child-silent-after-fork=yes --suppressions=$suppressions --error-exitcode=99 --log-file=$reports/%p"

# Qt Test gives each case five minutes, which is short under valgrind on a busy machine.
export QTEST_FUNCTION_TIMEOUT=1800000
cd "$(build_folder dev)/tests" || exit 1
# shellcheck disable=SC2016 # the inner shell expands them
tested_runs | xargs -P "$(getconf _NPROCESSORS_ONLN)" -L 1 sh -c './drask-endtoend-tests "$0" "$@" -silent'
result=$?
runs=$(find "$reports" -type f | wc -l | tr -d ' ')
faulty=$(find "$reports" -type f -size +0 | wc -l | tr -d ' ')
find "$reports" -type f -size +0 -exec cat {} +
echo "runs under valgrind: $runs, with something to report: $faulty"
[ "$runs" -gt 0 ] && [ "$faulty" -eq 0 ] && [ $result -eq 0 ]
