#!/usr/bin/env bats
# SPDX-License-Identifier: MIT
# shellcheck disable=SC2154 # support.bash sets them
load support

@test "the documented command builds the packages" {
    # What the command would install is not for a test to install.
    want_tools cmake ninja g++ objdump dpkg-query dpkg-deb dpkg-shlibdeps file
    run -0 "$repository/scripts/package.sh" "$DRASK_PACKAGES"
    same "what was built" "$output" "\
$DRASK_PACKAGES/drask-installer-$version-linux-$(uname -m).tar.gz
$DRASK_PACKAGES/drask-installer_$version-1_$(dpkg --print-architecture).deb
$DRASK_PACKAGES/SHA256SUMS"
}
