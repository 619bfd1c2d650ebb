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

# run_apt COMMAND...: apt-get as root. Its output goes to build/apt.log; what it fetches and installs is shown.
run_apt() {
    as_root=
    [ "$(id -u)" -eq 0 ] || as_root=sudo
    mkdir -p build
    result=build/apt.failed
    : >"$result"
    { $as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o Dpkg::Use-Pty=0 "$@" 2>&1 && rm -f "$result"; } |
        tee -a build/apt.log | show_apt
    [ ! -e "$result" ]
}

# Shows each quarter of the packages that apt-get fetches and sets up. Here and below, the shell reads line by line;
# some awks and seds would show everything at the end.
show_apt() {
    packages=0 fetched=0 configured=0
    while IFS= read -r line; do
        case $line in
        *" upgraded, "*" newly installed, "*)
            packages=${line#*upgraded, }
            packages=$((${line%% *} + ${packages%% *}))
            ;;
        "Need to get "* | "Fetched "*) echo "    $line" ;;
        "Get:"*)
            fetched=$((fetched + 1))
            show_quarter $fetched "fetched"
            ;;
        "Setting up "*)
            configured=$((configured + 1))
            show_quarter $configured "set up"
            ;;
        esac
    done
}

show_quarter() {
    if [ "$packages" -ge 8 ] && [ $((4 * $1 / packages)) -gt $((4 * ($1 - 1) / packages)) ]; then
        echo "    $1 of $packages packages $2"
    fi
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

# install_npm SOURCE DIRECTORY: installs the packages that SOURCE/package-lock.json pins in DIRECTORY/node_modules, unless
# they are there. The copy of the lock file marks a complete installation, so it is made last.
install_npm() {
    ! cmp -s "$1/package-lock.json" "$2/installed.json" || return 0
    echo "Fetching what $1/package-lock.json names"
    rm -rf "$2"
    mkdir -p "$2"
    cp "$1/package.json" "$1/package-lock.json" "$2"
    # npm trusts the certificates that the system trusts.
    if [ -r /etc/ssl/certs/ca-certificates.crt ]; then
        NODE_EXTRA_CA_CERTS=${NODE_EXTRA_CA_CERTS:-/etc/ssl/certs/ca-certificates.crt}
        export NODE_EXTRA_CA_CERTS
    fi
    npm ci --prefix "$2" --cache "$PWD/$2/npm" --ignore-scripts --no-audit --no-fund --no-update-notifier \
        --loglevel error >/dev/null || return 1
    rm -rf "$2/npm"
    cp "$2/package-lock.json" "$2/installed.json"
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

# Shows each tenth of the build's steps.
show_progress() {
    shown=0
    while IFS= read -r line; do
        case $line in
        "["[0-9]*/[0-9]*"] "*) show_tenth "${line#?}" "] " steps ;;
        esac
    done
}

# run_tests PRESET: runs the tests of a preset, and shows their progress and the output of those that fail. ctest says
# where its log is.
run_tests() {
    result=build/$1.failed
    mkdir -p build
    : >"$result"
    echo "Testing preset $1"
    { ctest --preset "$1" 2>&1 && rm -f "$result"; } | show_tests
    if [ -e "$result" ]; then
        rm -f "$result"
        return 1
    fi
}

show_tests() {
    shown=0
    while IFS= read -r line; do
        test=${line#"${line%%[! ]*}"} # without the spaces before it
        case $test in
        "Start "*) ;;
        [0-9]*/[0-9]*" Test "*)
            case $test in
            *" Passed "*) ;;
            *) echo "$line" ;;
            esac
            show_tenth "$test" " " tests
            ;;
        *) echo "$line" ;;
        esac
    done
}

# show_tenth TEXT END NAME: for a text "<done>/<all>END...", prints both numbers if another tenth is done since the
# last time, which $shown tells.
show_tenth() {
    count=${1%%"$2"*}
    case $count in
    *[!0-9/]* | */*/*) return ;;
    esac
    tenth=$((10 * ${count%/*} / ${count#*/}))
    if [ "$tenth" -ne "$shown" ]; then
        printf '    %3d %% (%d of %d %s)\n' $((10 * tenth)) "${count%/*}" "${count#*/}" "$3"
        shown=$tenth
    fi
}
