#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs every mode of the built program under valgrind: no leak, no invalid access.
set -u
# shellcheck source=prepare.sh
. "$(dirname "$0")/prepare.sh"
cd "$repository" || exit 1

run_quietly cmake --preset dev
run_quietly cmake --build --preset dev

reports=$(mktemp -d)
trap 'rm -rf "$reports"' EXIT
export DRASK_RUN_THROUGH="valgrind --quiet --leak-check=full --show-leak-kinds=definite,indirect,possible \
--errors-for-leak-kinds=definite,indirect,possible --child-silent-after-fork=yes \
--suppressions=$repository/scripts/qtcore.supp --error-exitcode=99 --log-file=$reports/%p"

ctest --preset dev --tests-regex 'tst_modes|tst_install$|tst_uninstall|tst_ov3uninstall' \
    --parallel "$(getconf _NPROCESSORS_ONLN)"
result=$?
runs=$(find "$reports" -type f | wc -l | tr -d ' ')
faulty=$(find "$reports" -type f -size +0 | wc -l | tr -d ' ')
find "$reports" -type f -size +0 -exec cat {} +
echo "runs under valgrind: $runs, with something to report: $faulty"
[ "$runs" -gt 0 ] && [ "$faulty" -eq 0 ] && [ $result -eq 0 ]
