#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Makes the packages (.deb and .tar.gz, with the static library and with the shared one) in build/packages, each with a
# bill of materials, and tries them: lintian, installation into a private root, the program, consumers by CMake and
# pkg-config, removal.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

# shellcheck disable=SC2154,SC2086 # set in setup.sh; the list is to be split
require_packages $build_packages pkgconf dpkg-dev lintian mandoc clang
out=$PWD/build/packages
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
rm -rf "$out"
mkdir -p "$out"

ok() { echo "ok      $*"; }
fail() {
    echo "FAILED  $*" >&2
    exit 1
}

# configure DIRECTORY SOURCE OPTION...; make DIRECTORY TARGET...: print nothing unless they fail.
configure() {
    directory=$1 source=$2
    shift 2
    cmake -S "$source" -B "$directory" -G Ninja -DCMAKE_BUILD_TYPE=Release "$@" >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        fail "configuring $source"
    }
}
make() {
    directory=$1
    shift
    cmake --build "$directory" ${1:+--target "$@"} >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        fail "building in $directory"
    }
}

# prints EXPECTED COMMAND...
prints() {
    expected=$1
    shift
    found=$("$@" 2>/dev/null) || fail "$* ended with status $?"
    [ "$found" = "$expected" ] || fail "$* printed \"$found\""
}

mandoc -T lint -W warning packaging/man/CdkRSUninstaller.8 || fail "the manual page"
ok "manual page"

for kind in static shared; do
    shared=OFF
    [ "$kind" = static ] || shared=ON
    build=build/$kind-packages
    echo "== $kind: building"
    configure "$build" . -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_INSTALL_LIBDIR="lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)" \
        -DBUILD_SHARED_LIBS=$shared -DZSPACE_BUILD_TESTS=OFF \
        -DZSPACE_BUILD_EXAMPLES=OFF
    make "$build"
    cpack --config "$build/CPackConfig.cmake" -B "$work/$kind" >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        fail "cpack, $kind"
    }
    mkdir "$out/$kind"
    find "$work/$kind" -maxdepth 1 \( -name '*.deb' -o -name '*.tar.gz' \) -exec mv {} "$out/$kind/" \;
    for package in "$out/$kind"/*; do
        ./scripts/bill-of-materials.sh "$package" >"$package.spdx.json"
    done
    ok "packages, $kind: $(cd "$out/$kind" && echo *.deb *.tar.gz)"

    # The project has no mail address that Debian would accept: see RELEASING.md. The scripts that call ldconfig are
    # CPack's, which cannot omit them.
    tags=bogus-mail-host,bogus-mail-host-in-debian-changelog,maintscript-calls-ldconfig
    lintian --allow-root --fail-on error,warning --suppress-tags "$tags" \
        "$out/$kind"/*.deb || fail "lintian"
    ok "lintian"

    # A separate root, into which dpkg installs and from which it removes.
    root=$work/$kind-root
    mkdir -p "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/info"
    : >"$root/var/lib/dpkg/status"
    : >"$root/var/lib/dpkg/available"
    dpkg --root="$root" --force-not-root --force-depends --force-script-chrootless --log="$work/dpkg.log" -i "$out/$kind"/*.deb >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        fail "dpkg -i"
    }
    ok "installed into a private root"
    library=$(dirname "$(find "$root/usr" -name 'libzspace.*' | head -n 1)")

    if [ "$kind" = static ]; then
        mkdir -p "$work/machine/program" "$work/machine/var/log" "$work/machine/home" "$work/machine/tmp"
        cp "$root/usr/bin/CdkRSUninstaller" "$work/machine/program/"
        scripts/private-root.sh "$work/machine" /program/CdkRSUninstaller 2>/dev/null || fail "the installed program"
        grep -q 'Failed to launch uninstaller task' "$work"/machine/var/log/com.coraldesk.remote/*.txt ||
            fail "the installed program's report"
        ok "the installed program ran and left its report"
    else
        soname=$(objdump -p "$library/libzspace.so" | sed -n 's/ *SONAME *//p')
        [ "$soname" = libzspace.so.1 ] || fail "soname $soname"
        ./scripts/check-exports.sh "$library/libzspace.so" || fail "exported names"
        ok "soname and exported names"
    fi

    echo "== $kind: consumers"
    consumer=tests/package/consumer
    LD_LIBRARY_PATH=$library
    export LD_LIBRARY_PATH
    configure "$work/$kind-c" "$consumer" -DCMAKE_PREFIX_PATH="$root/usr"
    make "$work/$kind-c"
    prints "consumer 42" "$work/$kind-c/consumer"
    configure "$work/$kind-c322" "$consumer" -DCMAKE_PREFIX_PATH="$root/usr" -DCONSUMER_CMAKE_VERSION=3.22.6
    make "$work/$kind-c322"
    prints "consumer 42" "$work/$kind-c322/consumer"
    ok "find_package, also as CMake 3.22 reads it (simulated: the package is told that version)"

    # With pkg-config, for each library directory, after the installed tree was moved.
    for libdir in lib lib64 lib/x86_64-linux-gnu; do
        configure "$build" . -DCMAKE_INSTALL_LIBDIR=$libdir
        cmake --install "$build" --prefix "$work/first" >"$work/log" 2>&1
        mv "$work/first" "$work/moved"
        PKG_CONFIG_PATH=$work/moved/$libdir/pkgconfig
        LD_LIBRARY_PATH=$work/moved/$libdir
        export PKG_CONFIG_PATH
        static=
        [ "$kind" = shared ] || static=--static
        # shellcheck disable=SC2046 # flags are words
        c++ -std=c++20 $consumer/consumer.cpp -o "$work/by-flags" $(pkg-config $static --cflags --libs zspace)
        prints "consumer 42" "$work/by-flags"
        rm -rf "$work/moved"
    done
    unset PKG_CONFIG_PATH LD_LIBRARY_PATH
    ok "pkg-config with libdir lib, lib64 and multiarch, moved after installation"

    # An Objective-C program that uses this library's NSString would crash; it does not compile.
    if printf '#import "ZSpace/log/LogFrontEnd.h"\n' | clang++ -std=c++20 -fsyntax-only -x objective-c++ \
        -DZSPACE_ON_PORTABLE=1 -I"$root/usr/include" - 2>"$work/log"; then
        fail "Objective-C++ takes the strings of a library without Foundation"
    fi
    grep -q 'built without Foundation' "$work/log" || fail "the message about Foundation: $(cat "$work/log")"
    ok "Objective-C++ with a library without Foundation is refused"

    # shellcheck disable=SC2046 # one word per package
    dpkg --root="$root" --force-not-root --force-script-chrootless --log="$work/dpkg.log" -P \
        $(dpkg-query --admindir="$root/var/lib/dpkg" -W -f '${Package} ') >"$work/log" 2>&1 || fail "dpkg -P"
    left=$(find "$root" -type f ! -path "$root/var/lib/dpkg/*")
    [ -z "$left" ] || fail "removal left $left"
    ok "removed without a trace"
done

echo "== as a part of another project"
for parent in tests/package/parent tests/package/exporting-parent; do
    configure "$work/parent" "$parent" -DZSPACE_SOURCE="$PWD"
    make "$work/parent"
    prints "parent 42" "$work/parent/parent"
    if [ "$parent" = tests/package/exporting-parent ]; then
        cmake --install "$work/parent" --prefix "$work/parent-installed" >"$work/log"
        find "$work/parent-installed" -name 'ParentTargets.cmake' | grep -q . || fail "the parent's export"
    fi
    rm -rf "$work/parent"
done
ok "add_subdirectory, and a parent that exports a library linked to ours"
echo "The packages are in build/packages."
