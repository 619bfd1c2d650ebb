#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds, and runs every test:
#   ./scripts/test.sh [preset [directory...]]   by default "release"; on a Mac, "macos-native"
# With directories of tests/, only their tests are built and run, and examples only with "guide", which runs them.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

# shellcheck disable=SC2154,SC2034 # set and used in setup.sh
preset=${1:-$default_preset}
[ $# -eq 0 ] || shift
packages="$build_packages libgtest-dev libgmock-dev libfmt-dev nlohmann-json3-dev pkgconf jq"
case $preset in
clang | asan | fuzz) packages="$packages clang $(clang_runtime)" ;;
clang-16) packages="$packages clang-16" ;;
arm64) packages="$packages g++-aarch64-linux-gnu qemu-user googletest" ;;
gnustep) packages="$packages clang libgnustep-base-dev" ;;
gnustep-*) packages="$packages clang $(clang_runtime) libgnustep-base-dev" ;;
libcxx) packages="$packages clang libc++-dev libc++abi-dev googletest" ;;
esac
case " $* " in *" debugger "*) packages="$packages gdb lldb" ;; esac
# shellcheck disable=SC2086 # the list is to be split
require_packages $packages

# An earlier run may have configured otherwise.
case " $* " in
"  " | *" guide "*) examples=ON ;;
*) examples=OFF ;;
esac
configure_options="-DZSPACE_BUILD_TESTS=ON -DZSPACE_BUILD_EXAMPLES=$examples -DZSPACE_TESTED=$(echo "$*" | tr ' ' ';')"
build "$preset"
run_tests "$preset"
