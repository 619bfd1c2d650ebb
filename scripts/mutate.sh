#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Changes the product's sources in small ways and lists the changes that no test notices:
#
#   ./scripts/mutate.sh                   every layer and the program
#   ./scripts/mutate.sh string            one layer
#   ./scripts/mutate.sh --sample 50       50 changes, chosen at random; its random seed is printed
#   ./scripts/mutate.sh --survivors       only the changes that survived the last run
#
# A run that was interrupted goes on where it stopped; --fresh starts again, and -j N runs N tests at a time. The status
# is 1 when fewer than 92 % of the changes are noticed, or when a survivor has no line in scripts/mutation/survivors.txt;
# for a sample, when fewer than 92 % are noticed or explained. See docs/testing.md.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

# shellcheck disable=SC2154,SC2086 # set in setup.sh; the list is to be split
require_packages $build_packages libgtest-dev libgmock-dev clang python3 python3-clang
exec /usr/bin/python3 scripts/mutation/mutate.py "$@"
