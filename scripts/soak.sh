#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Floods and storms: many threads and processes on one file, forks, kills, a full disk, and objects of a gigabyte. Prints
# a table (load, result, lost, seconds) and fails if anything was lost.
#
#   ./scripts/soak.sh            five minutes, up to 4 GiB of memory and of disk; docs/reliability.md has the last results
#   ./scripts/soak.sh --quick    seconds, with a hundredth of the sizes
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

case ${1:-} in
--quick | "") ;;
*)
    echo "usage: $0 [--quick]" >&2
    exit 2
    ;;
esac
# shellcheck disable=SC2154,SC2086,SC2034 # set and used in setup.sh; the list is to be split
require_packages $build_packages libgtest-dev libgmock-dev
configure_options=-DZSPACE_BUILD_TESTS=ON
build release soak
directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT
# shellcheck disable=SC2086 # no argument instead of an empty one
./build/release/tests/soak/soak ${1:-} "$directory"
