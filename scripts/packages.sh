#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Makes the packages (.deb and .tar.gz, with the static library and with the shared one) in build/packages, each with a
# bill of materials, and tries them: lintian, installation into a private root, the program, consumers by CMake and
# pkg-config, the ABI, removal.
#
#   ./scripts/packages.sh          makes and tries them
#   ./scripts/packages.sh --make   only makes them
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

# shellcheck disable=SC2154,SC2086 # set in setup.sh; the list is to be split
require_packages $build_packages pkgconf dpkg-dev lintian mandoc clang python3 abigail-tools
mode=${1:-}
out=$PWD/build/packages
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
rm -rf "$out"
mkdir -p "$out"
# What packages say about their time is that of the last commit, so that each build makes the same ones.
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct 2>/dev/null || stat -c %Y CMakeLists.txt)}
export SOURCE_DATE_EPOCH
umask 022 # of the directories in the packages
version=$(sed -n 's/^project(ZSpace VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
multiarch=lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)

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

# files DIRECTORY: what is below it.
files() { (cd "$1" && find . ! -type d | sort); }
# contains FILE LINE...: the file has lines that match.
contains() {
    file=$1
    shift
    for line in "$@"; do
        grep -q -e "$line" "$file" || fail "$(basename "$file"): there is no $line"
    done
}

for kind in static shared; do
    build=build/$kind-packages
    # Packages of the shared library are stripped; the ABI check reads the debug information before.
    if [ "$kind" = static ]; then
        set -- -DBUILD_SHARED_LIBS=OFF
    else
        set -- -DBUILD_SHARED_LIBS=ON -DCMAKE_CXX_FLAGS="-g -ffile-prefix-map=$PWD=."
    fi
    echo "== $kind: building"
    configure "$build" . -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_INSTALL_LIBDIR="$multiarch" -DZSPACE_BUILD_TESTS=OFF \
        -DZSPACE_BUILD_EXAMPLES=OFF "$@"
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
done
[ "$mode" != --make ] || exit 0

mandoc -T lint -W warning packaging/man/CdkRSUninstaller.8 || fail "the manual page"
ok "manual page"
./scripts/check-exports.sh build/shared-packages/libzspace.so build/static-packages/libzspace.a || fail "exported names"
ok "exported names"
./scripts/check-abi.sh build/shared-packages/libzspace.so || fail "ABI"
ok "ABI"
tests/package/changed-abi.sh build/shared-packages >"$work/log" 2>&1 || {
    cat "$work/log" >&2
    fail "the ABI check does not notice a change"
}
ok "the ABI check notices changes"

# try_program PROGRAM NAME: the program runs in a private file tree and leaves its report.
try_program() {
    mkdir -p "$work/$2/program" "$work/$2/var/log" "$work/$2/home" "$work/$2/tmp"
    cp "$1" "$work/$2/program/"
    scripts/private-root.sh "$work/$2" /program/CdkRSUninstaller 2>/dev/null || fail "$2: the program"
    contains "$(find "$work/$2/var/log/com.coraldesk.remote" -name '*.txt')" 'Failed to launch uninstaller task'
    readelf --notes "$1" >"$work/notes" 2>/dev/null
    contains "$work/notes" "{\"name\":\"CdkRSUninstaller\",\"version\":\"$version\"}"
}

# try_library PREFIX LIBDIR NAME: consumers find the library by CMake.
consumer=tests/package/consumer
try_library() {
    LD_LIBRARY_PATH=$1/$2
    export LD_LIBRARY_PATH
    configure "$work/$3" "$consumer" -DCMAKE_PREFIX_PATH="$1"
    make "$work/$3"
    prints "consumer 42" "$work/$3/consumer"
    unset LD_LIBRARY_PATH
}

for kind in static shared; do
    build=build/$kind-packages
    echo "== $kind: trying"

    # The project has no mail address that Debian would accept: see RELEASING.md. The scripts that call ldconfig are
    # CPack's, which cannot omit them.
    tags=bogus-mail-host,bogus-mail-host-in-debian-changelog,maintscript-calls-ldconfig
    lintian --allow-root --fail-on error,warning --suppress-tags "$tags" \
        "$out/$kind"/*.deb || fail "lintian"
    ok "lintian"
    for package in "$out/$kind"/*.deb; do
        [ "$(dpkg-deb -f "$package" Version)" = "$version" ] || fail "the version of $package"
    done

    # Each file belongs to one component.
    cmake --install "$build" --prefix "$work/whole" >"$work/log"
    : >"$work/parts"
    components="program documentation development"
    [ "$kind" = static ] || components="runtime documentation development"
    for component in $components; do
        cmake --install "$build" --prefix "$work/part" --component "$component" >"$work/log"
        files "$work/part" >"$work/$component.files"
        cat "$work/$component.files" >>"$work/parts"
        rm -rf "$work/part"
    done
    sort "$work/parts" >"$work/log"
    files "$work/whole" | diff - "$work/log" >&2 || fail "the components are not the whole, or overlap"
    contains "$work/documentation.files" '/README.md$' '/docs/fleet.md$' '/docs/guide/ten-minutes.md$' '/LICENSE$'
    contains "$work/development.files" '/include/ZSpace/ZSpace.h$' '/zspace.pc$' '/ZSpaceConfig.cmake$' '/libzspace.*' \
        '/zspace_gdb.py$'
    if [ "$kind" = static ]; then
        contains "$work/program.files" '/bin/CdkRSUninstaller$' '/man8/CdkRSUninstaller.8.gz$' '/fleet/check-removed$' \
            '/licenses/CdkRSUninstaller/LICENSE$' '/licenses/CdkRSUninstaller/THIRD-PARTY-NOTICES.md$'
    else
        contains "$work/runtime.files" '/libzspace.so.1$' "/libzspace.so.1.[0-9.]*$"
        ! grep -q '/libzspace.so$' "$work/runtime.files" || fail "the runtime has the development link"
    fi
    rm -rf "$work/whole"
    ok "components: $components"

    # A separate root, into which dpkg installs and from which it removes.
    root=$work/$kind-root
    mkdir -p "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/info"
    : >"$root/var/lib/dpkg/status"
    : >"$root/var/lib/dpkg/available"
    dpkg --root="$root" --force-not-root --force-depends --force-script-chrootless --log="$work/dpkg.log" -i "$out/$kind"/*.deb >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        fail "dpkg -i"
    }
    mkdir "$work/$kind-unpacked"
    tar -xzf "$out/$kind"/*.tar.gz -C "$work/$kind-unpacked" --strip-components 1
    ok "installed into a private root, and unpacked"

    if [ "$kind" = static ]; then
        try_program "$root/usr/bin/CdkRSUninstaller" installed
        try_program "$work/$kind-unpacked/bin/CdkRSUninstaller" unpacked
        ok "the program, installed and unpacked, states its version, ran and left its report"
    else
        soname=$(objdump -p "$root/usr/$multiarch/libzspace.so" | sed -n 's/ *SONAME *//p')
        [ "$soname" = libzspace.so.1 ] || fail "soname $soname"
        readelf --notes "$root/usr/$multiarch/libzspace.so" >"$work/notes"
        contains "$work/notes" "{\"name\":\"libzspace\",\"version\":\"$version\"}"
        ok "soname and version"
    fi

    try_library "$root/usr" "$multiarch" "$kind-installed"
    try_library "$work/$kind-unpacked" "$multiarch" "$kind-from-archive"
    LD_LIBRARY_PATH=$root/usr/$multiarch
    export LD_LIBRARY_PATH
    configure "$work/$kind-c322" "$consumer" -DCMAKE_PREFIX_PATH="$root/usr" -DCONSUMER_CMAKE_VERSION=3.22.6
    make "$work/$kind-c322"
    prints "consumer 42" "$work/$kind-c322/consumer"
    unset LD_LIBRARY_PATH
    ok "find_package, also as CMake 3.22 reads it (simulated: the package is told that version)"

    # With pkg-config, for each library directory, after the installed tree was moved.
    for libdir in lib lib64 "$multiarch"; do
        configure "$build" . -DCMAKE_INSTALL_LIBDIR="$libdir"
        cmake --install "$build" --prefix "$work/first" >"$work/log" 2>&1
        mv "$work/first" "$work/moved"
        PKG_CONFIG_PATH=$work/moved/$libdir/pkgconfig
        LD_LIBRARY_PATH=$work/moved/$libdir
        export PKG_CONFIG_PATH LD_LIBRARY_PATH
        prints "$version" pkg-config --modversion zspace
        static=
        [ "$kind" = shared ] || static=--static
        # shellcheck disable=SC2046 # flags are words
        c++ -std=c++20 $consumer/consumer.cpp -o "$work/by-flags" $(pkg-config $static --cflags --libs zspace)
        prints "consumer 42" "$work/by-flags"
        if [ "$libdir" = "$multiarch" ]; then
            # What the inline code of every header calls is exported.
            # shellcheck disable=SC2046
            printf 'int main() {}\n' | c++ -std=c++20 tests/package/EveryHeader.cpp -x c++ - -x none -o "$work/every-header" \
                $(pkg-config $static --cflags --libs zspace) || fail "linking what uses every header"
            # shellcheck disable=SC2046
            c++ -std=c++20 -fsanitize=address tests/package/shared_variables.cpp -o "$work/shared-variables" \
                $(pkg-config $static --cflags --libs zspace)
            prints "1 registration
released" "$work/shared-variables"
        fi
        rm -rf "$work/moved"
        unset PKG_CONFIG_PATH LD_LIBRARY_PATH
    done
    ok "pkg-config with libdir lib, lib64 and multiarch, moved after installation"

    # An Objective-C program that uses this library's NSString would crash; it does not compile.
    if printf '#import "ZSpace/log/LogFrontEnd.h"\n' | clang++ -std=c++20 -fsyntax-only -x objective-c++ \
        -DZSPACE_ON_PORTABLE=1 -I"$root/usr/include" - 2>"$work/log"; then
        fail "Objective-C++ takes the strings of a library without Foundation"
    fi
    contains "$work/log" 'built without Foundation'
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
    configure "$work/parent" "$parent" -DZSPACE_SOURCE="$PWD" -DCMAKE_BUILD_TYPE=Debug
    make "$work/parent"
    prints "parent 42" "$work/parent/parent"
    if [ "$parent" = tests/package/exporting-parent ]; then
        cmake --install "$work/parent" --prefix "$work/parent-installed" >"$work/log"
        find "$work/parent-installed" -name 'ParentTargets.cmake' | grep -q . || fail "the parent's export"
    else
        ! find "$work/parent" -name 'cmake_install.cmake' -exec grep -l 'libzspace' {} + | grep -q . ||
            fail "a parent installs the library unasked"
    fi
    rm -rf "$work/parent"
done
# A parent that does not use the library builds nothing of it.
configure "$work/parent" tests/package/parent -DZSPACE_SOURCE="$PWD" -DPARENT_USES_ZSPACE=OFF
make "$work/parent"
! find "$work/parent" -name '*.o' | grep -q zspace.dir || fail "the parent's all builds the library unasked"
ok "FetchContent, and a parent that exports a library linked to ours"

# Of the recipes for other package managers, what can be checked without these.
python3 -c 'compile(open("packaging/conan/conanfile.py").read(), "conanfile.py", "exec")' || fail "conanfile.py"
ok "recipes: syntax of the one for Conan; vcpkg, Conan and Homebrew were not run"
echo "The packages are in build/packages."
