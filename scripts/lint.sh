#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Checks the format of every source, lints the sources of the product, and checks the shell scripts:
#   ./scripts/lint.sh [--quick] [file...]
# With files, clang-tidy sees only these. With --quick, it does not follow paths through functions, which takes half of
# its time.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

checks=
if [ "${1:-}" = --quick ]; then
    shift
    checks='--checks=-clang-analyzer-*'
fi

# shellcheck disable=SC2154,SC2086 # set in setup.sh; the list is to be split
require_packages $build_packages clang clang-format clang-tidy shellcheck

# Other versions format differently and know other checks; this is the one of Debian 12.
for tool in clang-format clang-tidy; do
    if ! "$tool" --version | grep -q 'version 14\.'; then
        echo "$tool is not version 14: $("$tool" --version | grep -o 'version [0-9.]*')" >&2
        exit 1
    fi
done

echo "Checking the format"
git ls-files '*.h' '*.cpp' '*.mm' | xargs clang-format --dry-run -Werror

echo "Checking the shell scripts"
# SC2016: programs for sed and awk are in single quotes, including `$` and backquotes.
git ls-files -z 'scripts/*' 'tests/*.sh' 'packaging/*.sh' 'examples/*' .ci/run |
    xargs -0 grep -lE '^#!/(bin/sh|usr/bin/env (ba)?sh)' | xargs shellcheck -x -e SC2016

if command -v npm >/dev/null 2>&1; then
    echo "Checking the workflows"
    ./scripts/lint-workflows.sh
else
    echo "There is no npm, so the workflows are not checked: ./scripts/lint-workflows.sh installs it and checks them"
fi

if [ $# -eq 0 ]; then
    # shellcheck disable=SC2046 # one word per file
    set -- $(git ls-files 'app/*.cpp' 'ZSpace/*.cpp' ':!ZSpace/platform/darwin' ':!ZSpace/platform/foundation')
fi
echo "Linting $# files"
# A build directory of its own: this needs no tests, and so no GoogleTest.
cmake --preset clang -B build/lint -DZSPACE_BUILD_TESTS=OFF -DZSPACE_BUILD_EXAMPLES=OFF >/dev/null
printf '%s\n' "$@" | xargs -n 1 -P "$(getconf _NPROCESSORS_ONLN)" clang-tidy -p build/lint --quiet ${checks:+"$checks"}
echo "Format, scripts and lint are clean."
