#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Reads the .deb without installing it. Usage: debian_contents.sh FOLDER-OF-THE-PACKAGES
# shellcheck source=support.sh
. "$(dirname "$0")/support.sh"

want_tools dpkg-deb dpkg-parsechangelog readelf
package=$(the_package "$1" 'drask-installer_*.deb') || exit
contents=$(mktemp -d)
trap 'rm -rf "$contents"' EXIT
dpkg-deb --extract "$package" "$contents" || fail "$package cannot be unpacked"

field() {
    dpkg-deb --field "$package" "$1"
}

describes_itself() {
    same_text Package "$(field Package)" drask-installer
    same_text Version "$(field Version)" "$version-1"
    same_text Section "$(field Section)" utils
    grep -qE '^.+ <[^ ]+@[^ ]+>$' <<<"$(field Maintainer)" \
        || fail "the maintainer is $(field Maintainer)"
    same_text "the first line of the description" "$(field Description | head -n 1)" \
        "Installs, updates and removes the Drask plug-ins in 3D programs"
}

depends_on_the_libraries_of_the_distribution() {
    grep -qE '(^|, )libqt5core5[^ ,]* \(>= 5\.' <<<"$(field Depends)" \
        || fail "the package depends on $(field Depends)"
    grep -q libc6 <<<"$(field Depends)" || fail "the package depends on $(field Depends)"
    same_text "the search path" \
        "$(readelf --dynamic "$contents/opt/drask/drask-installer" | grep -E 'R(UN)?PATH')" ""
}

manual() {
    [ ! -e "$repository/docs/drask-installer.1" ] || echo usr/share/man/man1/drask-installer.1.gz
}

holds_the_program_and_its_documents() {
    same_text "what the package holds" "$(below "$contents")" "$(sort <<TEXT | grep .
opt/drask/drask-installer
usr/share/doc/drask-installer/changelog.Debian.gz
usr/share/doc/drask-installer/changelog.gz
usr/share/doc/drask-installer/copyright
usr/share/lintian/overrides/drask-installer
$(manual)
TEXT
    )"
    cmp "$contents/usr/share/doc/drask-installer/copyright" "$repository/LICENSE" || exit 1
    same_text "the change log in the package" \
        "$(zcat "$contents/usr/share/doc/drask-installer/changelog.gz")" \
        "$(cat "$repository/CHANGELOG.md")"
    zcat "$contents/usr/share/doc/drask-installer/changelog.Debian.gz" >"$contents/changelog"
    same_text "the version in the change log" \
        "$(dpkg-parsechangelog --file "$contents/changelog" --show-field Version)" "$version-1"
}

belongs_to_root() {
    same_text "whose files are not of root" \
        "$(dpkg-deb --contents "$package" | grep -v ' root/root ')" ""
}

describes_itself
depends_on_the_libraries_of_the_distribution
holds_the_program_and_its_documents
belongs_to_root
