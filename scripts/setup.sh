# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Sourced by the other scripts: installs what is missing on a Debian host or a Mac, and says what is needed elsewhere.

# Debian installs chroot and others where the PATH of an ordinary user does not look.
PATH=$PATH:/usr/sbin:/sbin
export PATH

# require_packages PACKAGE...: makes sure that these Debian packages, or their equivalents on a Mac, are installed.
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
    echo "Installing:$missing"
    # shellcheck disable=SC2086 # the list is to be split
    run_apt install -y $missing || { run_apt update && run_apt install -y $missing; } || {
        tail -n 20 build/apt.log >&2
        echo "Installing failed; the whole log is build/apt.log" >&2
        return 1
    }
}

# run_apt COMMAND...: apt-get as root. Its output goes to build/apt.log; what it downloads is shown.
run_apt() {
    as_root=
    [ "$(id -u)" -eq 0 ] || as_root=sudo
    mkdir -p build
    result=build/apt.failed
    : >"$result"
    { $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o Dpkg::Use-Pty=0 "$@" 2>&1 && rm -f "$result"; } |
        tee -a build/apt.log | sed -n '/^Need to get/s/^/    /p; /^Fetched/s/^/    /p'
    [ ! -e "$result" ]
}

# The package with the runtime of the sanitizers for this host's clang, whatever its version.
clang_runtime() {
    command -v apt-cache >/dev/null 2>&1 || return 0
    [ -n "$(apt-cache depends clang 2>/dev/null)" ] || run_apt update >&2
    apt-cache depends clang | sed -n 's/.*Depends: clang-\([0-9][0-9]*\)$/libclang-rt-\1-dev/p'
}

# The equivalents of these Debian packages on a Mac: Xcode's tools, and the rest from Homebrew. The variable
# ZSPACE_GTEST_SOURCE may name a directory with GoogleTest's sources; they are then built with the tests.
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

# Without apt, the tools may be installed all the same.
have_tools() {
    command -v cmake >/dev/null 2>&1 && command -v ninja >/dev/null 2>&1 && command -v c++ >/dev/null 2>&1
}

build_packages="g++ cmake ninja-build"
default_preset=release
[ "$(uname)" != Darwin ] || default_preset=macos-native

# build PRESET TARGET...: configures and builds, with the options in $configure_options. Shows the progress; the output
# of the tools goes to build/PRESET.log.
configure_options=
build() {
    preset=$1
    shift
    mkdir -p build
    log=build/$preset.log
    result=build/$preset.failed
    : >"$result"
    echo "Building preset $preset"
    # shellcheck disable=SC2086 # the options are to be split
    {
        cmake --preset "$preset" $configure_options 2>&1 &&
            NINJA_STATUS='[%f/%t] ' cmake --build --preset "$preset" ${1:+--target "$@"} 2>&1 &&
            rm -f "$result"
    } | tee "$log" | show_progress
    if [ -e "$result" ]; then
        rm -f "$result"
        grep -n -A 10 -e 'error:' -e 'CMake Error' -e '^FAILED' "$log" | head -n 60 >&2 || tail -n 30 "$log" >&2
        echo "Building preset $preset failed; the whole log is $log" >&2
        return 1
    fi
}

# Shows every tenth part of the build's progress.
show_progress() {
    awk 'match($0, /^\[[0-9]+\/[0-9]+\] /) {
        split(substr($0, 2, RLENGTH - 3), step, "/")
        tenth = int(10 * step[1] / step[2])
        if (tenth != shown) {
            printf "    %3d %% (%d of %d steps)\n", 10 * tenth, step[1], step[2]
            fflush()
            shown = tenth
        }
    }'
}
