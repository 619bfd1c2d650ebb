#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Runs every fuzz target with libFuzzer, AddressSanitizer and UndefinedBehaviorSanitizer, starting from its corpus:
# ./scripts/fuzz.sh [seconds for each target, by default 600] [target...]. Inputs that fail are left in
# build/fuzz/failed; add them to the corpus when the bug is fixed. Continues after a failure and names all of them at
# the end.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

seconds=${1:-600}
[ $# -eq 0 ] || shift
# shellcheck disable=SC2154 # set in setup.sh
packages="$build_packages libgtest-dev libgmock-dev clang $(clang_runtime)"
# shellcheck disable=SC2086 # the list is to be split
require_packages $packages
if [ $# -eq 0 ]; then
    for corpus in fuzz/corpus/*; do
        set -- "$@" "${corpus##*/}"
    done
fi
targets=
for name in "$@"; do
    targets="$targets fuzz_$name"
done
# shellcheck disable=SC2086 # the list is to be split
build fuzz $targets

mkdir -p build/fuzz/failed build/fuzz/found
failed=
for name in "$@"; do
    mkdir -p "build/fuzz/found/$name"
    "./build/fuzz/fuzz/fuzz_$name" -max_total_time="$seconds" -artifact_prefix="build/fuzz/failed/$name-" \
        -close_fd_mask=1 "build/fuzz/found/$name" "fuzz/corpus/$name" >"build/fuzz/$name.log" 2>&1 || failed="$failed $name"
    echo "$name: $(tail -n 1 "build/fuzz/$name.log")"
done
if [ -n "$failed" ]; then
    echo "Failed:$failed; see build/fuzz/*.log" >&2
    exit 1
fi
