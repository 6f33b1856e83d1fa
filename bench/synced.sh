#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs the command that fills the folder "person", and waits until each of its files is on the disk.
"$@" && find "${work:?}/person" -type f -print0 | xargs -0 sync -d
