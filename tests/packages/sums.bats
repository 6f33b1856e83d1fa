#!/usr/bin/env bats
# SPDX-License-Identifier: MIT
# SHA256SUMS beside the packages, and its signature.
# shellcheck disable=SC2030,SC2031,SC2154 # each case has its own key; support.bash sets the variables
load support

setup() {
    [ -f "$DRASK_PACKAGES/SHA256SUMS" ] || skip "no packages were built"
    cp "$DRASK_PACKAGES"/SHA256SUMS "$DRASK_PACKAGES"/drask-installer[-_]* "$BATS_TEST_TMPDIR"
    cd "$BATS_TEST_TMPDIR" || return 1
}

@test "every package is summed up" {
    run -0 sha256sum --check --strict SHA256SUMS
    same "what is summed up" "$(sed 's/^[0-9a-f]* [ *]//' SHA256SUMS | sort)" "$(ls drask-installer[-_]*)"
}

@test "without a key nothing is signed" {
    run -0 env SIGNING_KEY= "$repository/scripts/sign.sh" .
    [ ! -e SHA256SUMS.asc ]
}

@test "with a key the sums are signed" {
    want_tools gpg
    GNUPGHOME=$(mktemp -d /tmp/drask-test-key.XXXXXX)
    export GNUPGHOME SIGNING_KEY
    gpg --batch --quiet --passphrase '' --quick-gen-key 'Drask <drask@drask.example>' ed25519 sign
    SIGNING_KEY=$(gpg --batch --armor --export-secret-keys)
    run -0 "$repository/scripts/sign.sh" .
    run -0 gpg --verify SHA256SUMS.asc SHA256SUMS
    echo >>SHA256SUMS
    run -1 gpg --verify SHA256SUMS.asc SHA256SUMS
}

teardown() {
    [ -z "${GNUPGHOME-}" ] || { gpgconf --kill all; rm -rf "$GNUPGHOME"; }
}
