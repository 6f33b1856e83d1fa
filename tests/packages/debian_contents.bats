#!/usr/bin/env bats
# SPDX-License-Identifier: MIT
# Reads the .deb without installing it.
# shellcheck disable=SC2154 # support.bash sets them
load support

setup() {
    want_tools dpkg-deb dpkg-parsechangelog readelf
    want_package 'drask-installer_*.deb'
    contents=$BATS_TEST_TMPDIR/contents
    documents=$contents/usr/share/doc/drask-installer
    dpkg-deb --extract "$package" "$contents"
}

field() {
    dpkg-deb --field "$package" "$1"
}

@test "the package describes itself" {
    same Package "$(field Package)" drask-installer
    same Version "$(field Version)" "$version-1"
    same Section "$(field Section)" utils
    matches "$(field Maintainer)" '^.+ <[^ ]+@[^ ]+>$'
    same "the first line of the description" "$(field Description | head -n 1)" \
        "Installs, updates and removes the Drask plug-ins in 3D programs"
}

@test "the program takes the libraries of the distribution" {
    matches "$(field Depends)" '(^|, )libqt5core5[^ ,]* \(>= 5\.'
    matches "$(field Depends)" libc6
    same "the search path" \
        "$(readelf --dynamic "$contents/opt/drask/drask-installer" | grep -E 'R(UN)?PATH')" ""
}

@test "the package holds the program and its documents" {
    same "what the package holds" "$(below "$contents")" "\
opt/drask/drask-installer
opt/drask/drask-status
opt/drask/support-bundle
usr/share/bash-completion/completions/drask-status
usr/share/doc/drask-installer/changelog.Debian.gz
usr/share/doc/drask-installer/changelog.gz
usr/share/doc/drask-installer/copyright
usr/share/doc/drask-installer/formats.md
usr/share/doc/drask-installer/integration.md
usr/share/doc/drask-installer/status.md
usr/share/doc/drask-installer/support.md
usr/share/drask-installer/status.schema.json
usr/share/lintian/overrides/drask-installer
usr/share/man/man1/drask-installer.1.gz
usr/share/man/man1/drask-status.1.gz
usr/share/zsh/vendor-completions/_drask-status"
    cmp "$documents/copyright" "$repository/LICENSE"
    zcat "$documents/changelog.gz" | cmp - "$repository/CHANGELOG.md"
    zcat "$documents/changelog.Debian.gz" >"$contents/changelog"
    same "the version in the change log" \
        "$(dpkg-parsechangelog --file "$contents/changelog" --show-field Version)" "$version-1"
}

@test "lintian finds nothing" {
    want_tools lintian
    run -0 lintian --allow-root --info --pedantic --display-info --fail-on error,warning,info,pedantic \
        "$package"
}

@test "the shell completes commands and their options" {
    # shellcheck disable=SC1091
    . "$contents/usr/share/bash-completion/completions/drask-status"
    COMP_WORDS=(drask-status pl) COMP_CWORD=1
    _drask_status
    same "what pl becomes" "${COMPREPLY[*]}" plan
    COMP_WORDS=(drask-status plan --m) COMP_CWORD=2
    _drask_status
    same "what --m becomes" "${COMPREPLY[*]}" --mode
}

@test "all files belong to root" {
    same "whose files are not of root" \
        "$(dpkg-deb --contents "$package" | grep -v ' root/root ')" ""
}
