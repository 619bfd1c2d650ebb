#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# What takes too long for every merge, and runs once a night: the remaining presets, fresh machines, the site of the
# documents. Continues after a failure and names all of them at the end. Needs root.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

failed=
took=
try() {
    echo "== $* ($(date +%H:%M))"
    began=$(date +%s)
    "$@" || failed="$failed
    $*"
    took="$took
    $((($(date +%s) - began) / 60)) min  $*"
}

# For tests that are skipped without them.
require_packages ansible gdb iproute2 lldb logrotate rsyslog strace
try ./scripts/test.sh debug
try ./scripts/test.sh clang
try ./scripts/test.sh clang-16
try ./scripts/test.sh libcxx
try ./scripts/test.sh arm64 platform core string value object stream
try ./scripts/test.sh fuzz
try ./scripts/test.sh gnustep
try ./scripts/test.sh asan
try ./scripts/test.sh tsan
try ./scripts/test.sh gnustep-asan
try ./scripts/test.sh gnustep-tsan
try ./scripts/soak.sh
try ./scripts/fuzz.sh 15 # five minutes in all
try ./scripts/build-macos.sh --tests
try ./scripts/mutate.sh --sample 50
try ./scripts/coverage.sh
try ./scripts/bench.sh --quick
try ./scripts/lint-workflows.sh
try ./scripts/lint.sh
try ./scripts/docs.sh
try ./scripts/packages.sh
try ./scripts/check-reproducible.sh
try ./scripts/rehearse.sh
for suite in bookworm trixie; do
    try ./scripts/fresh-root.sh "$suite" root
    try ./scripts/fresh-root.sh "$suite" user
done
# The compilers and debuggers of Debian 13, on Debian 13.
try ./scripts/fresh-root.sh trixie user -- sh -c "./scripts/test.sh clang debugger && ./scripts/test.sh clang"

echo "Minutes:$took"
if [ -n "$failed" ]; then
    echo "Failed:$failed" >&2
    exit 1
fi
echo "All passed."
