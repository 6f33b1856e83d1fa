#!/usr/bin/env bats
# SPDX-License-Identifier: MIT
# Two builds of the same sources make the same packages, byte by byte.
# shellcheck disable=SC2154 # support.bash sets them
load support

@test "a second build in another folder makes the same bytes" {
    [ -f "$DRASK_PACKAGES/SHA256SUMS" ] || skip "no packages were built"
    # What a compiler cache kept from the first build would prove nothing.
    CCACHE_DISABLE=1 TZ=Asia/Tokyo LC_ALL=C run -0 "$repository/scripts/package.sh" "$BATS_TEST_TMPDIR/build"
    diff "$DRASK_PACKAGES/SHA256SUMS" "$BATS_TEST_TMPDIR/build/SHA256SUMS"
}
