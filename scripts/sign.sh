#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Signs the SHA256SUMS of packages with the secret key in SIGNING_KEY, as "gpg --armor
# --export-secret-keys" prints it: SHA256SUMS.asc. Without a key, it says so and signs nothing.
#
#   scripts/sign.sh FOLDER
set -euo pipefail

sums=${1:?The folder of the packages}/SHA256SUMS
[ -f "$sums" ] || { echo "This is missing: $sums" >&2; exit 1; }
if [ -z "${SIGNING_KEY-}" ]; then
    echo "There is no key: the packages stay unsigned."
    exit 0
fi
# The path of the agent's socket has to be short.
GNUPGHOME=$(mktemp -d /tmp/drask-key.XXXXXX)
export GNUPGHOME
trap 'gpgconf --kill all; rm -rf "$GNUPGHOME"' EXIT
gpg --batch --quiet --import <<<"$SIGNING_KEY"
gpg --batch --yes --quiet --armor --detach-sign "$sums"
