#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Checks the format of every source, and lints those of the product: ./scripts/lint.sh [file...]
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

# shellcheck disable=SC2154,SC2086 # set in setup.sh; the list is to be split
require_packages $build_packages libgtest-dev libgmock-dev clang clang-format clang-tidy

git ls-files '*.h' '*.cpp' '*.mm' | xargs clang-format --dry-run -Werror
cmake --preset clang >/dev/null
if [ $# -eq 0 ]; then
    # shellcheck disable=SC2046 # one word per file
    set -- $(git ls-files 'app/*.cpp' 'ZSpace/*.cpp' ':!ZSpace/platform/darwin' ':!ZSpace/platform/foundation')
fi
printf '%s\n' "$@" | xargs -n 1 -P 2 clang-tidy -p build/clang --quiet
echo "Format and lint are clean."
