#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Runs every test of the coverage preset and tells, folder by folder, which lines no test runs.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

# shellcheck disable=SC2154,SC2086 # set in setup.sh; the list is to be split
require_packages $build_packages libgtest-dev libgmock-dev gcovr
build coverage
ctest --preset coverage >/dev/null || echo "Some tests failed: see ./scripts/test.sh coverage"
for folder in ZSpace/platform ZSpace/core ZSpace/string ZSpace/value ZSpace/object ZSpace/stream ZSpace/system ZSpace/log app; do
    echo "== $folder"
    gcovr --root . --filter "$folder/" build/coverage | sed -n '/^[a-z].*%/p; /^TOTAL/p'
done
