#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# What happens before and after each timed command: "reset CASE" and "verify CASE".
set -u
# shellcheck source=cases.sh
. "$(dirname "$0")/cases.sh"
"$1_$2"
