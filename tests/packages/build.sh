#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the packages by the documented command. Usage: build.sh FOLDER
# shellcheck source=support.sh
. "$(dirname "$0")/support.sh"

# What the command would install is not for a test to install.
want_tools cmake ninja g++ objdump dpkg-query dpkg-deb dpkg-shlibdeps file

packages=$("$repository/scripts/package.sh" "$1") || fail "the packages could not be built"
same_text "what was built" "$packages" "\
$1/drask-installer-$version-linux-$(uname -m).tar.gz
$1/drask-installer_$version-1_$(dpkg --print-architecture).deb"
