# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Sourced by the other scripts: installs what is missing on a Debian host or a Mac, and says what is needed elsewhere.

# require_packages PACKAGE...: makes sure that every one of these Debian packages is installed, or its like on a Mac.
require_packages() {
    if [ "$(uname)" = Darwin ]; then
        require_on_mac "$@"
        return
    fi
    missing=
    for package in "$@"; do
        if ! dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed'; then
            missing="$missing $package"
        fi
    done
    [ -n "$missing" ] || return 0
    if ! command -v apt-get >/dev/null 2>&1; then
        have_tools && return 0
        echo "This host has no apt-get. Please install what these Debian packages hold:$missing" >&2
        return 1
    fi
    as_root=
    if [ "$(id -u)" -ne 0 ]; then
        as_root=sudo
    fi
    echo "Installing:$missing"
    # shellcheck disable=SC2086 # the list is to be split
    DEBIAN_FRONTEND=noninteractive $as_root apt-get install -y -qq $missing >/dev/null 2>&1 && return 0
    $as_root apt-get update -qq
    # shellcheck disable=SC2086
    DEBIAN_FRONTEND=noninteractive $as_root apt-get install -y -qq $missing >/dev/null
}

# What these Debian packages stand for on a Mac: Xcode's tools, and from Homebrew what else is missing. The variable
# ZSPACE_GTEST_SOURCE may name a folder with GoogleTest's sources; they are then built with the tests.
require_on_mac() {
    if ! xcrun --find clang++ >/dev/null 2>&1; then
        echo "Xcode's command line tools are missing: xcode-select --install" >&2
        return 1
    fi
    missing=
    for package in "$@"; do
        case $package in
        cmake) command -v cmake >/dev/null 2>&1 || missing="$missing cmake" ;;
        ninja-build) command -v ninja >/dev/null 2>&1 || missing="$missing ninja" ;;
        pkgconf) command -v pkg-config >/dev/null 2>&1 || missing="$missing pkgconf" ;;
        libgtest-dev)
            [ -n "${ZSPACE_GTEST_SOURCE:-}" ] || brew list --versions googletest >/dev/null 2>&1 ||
                missing="$missing googletest"
            ;;
        esac
    done
    [ -n "$missing" ] || return 0
    if ! command -v brew >/dev/null 2>&1; then
        echo "There is no Homebrew here. Please install:$missing" >&2
        return 1
    fi
    echo "Installing:$missing"
    # shellcheck disable=SC2086 # the list is to be split
    brew install --quiet $missing >/dev/null
}

# On a host without apt the tools may be there all the same.
have_tools() {
    command -v cmake >/dev/null 2>&1 && command -v ninja >/dev/null 2>&1 && command -v c++ >/dev/null 2>&1
}

build_packages="g++ cmake ninja-build"
default_preset=release
[ "$(uname)" != Darwin ] || default_preset=macos-native

# build PRESET TARGET...: configures and builds, quietly while all is well.
build() {
    preset=$1
    shift
    log=$(mktemp)
    if ! { cmake --preset "$preset" && cmake --build --preset "$preset" ${1:+--target "$@"}; } >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        return 1
    fi
    rm -f "$log"
}
