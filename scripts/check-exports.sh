#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# check-exports.sh LIBRARY ARCHIVE: compares what the shared library exports with packaging/abi/zspace.map. Every
# exported name must be on the list, and every line of the list must match a name. What the static library has in our
# namespace must be exported or be on the list of what is private. The list for macOS must select the same names.
set -eu
cd "$(dirname "$0")/.."
library=$1 archive=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
LC_ALL=C
export LC_ALL

nm -D --defined-only "$library" | sed -e 's/^[0-9a-f]* . //' -e 's/@@.*//' | grep -vx ZSPACE_1 | sort -u >"$work/mangled"
nm -g --defined-only "$archive" | awk 'NF == 3 { print $3 }' | sort -u >"$work/all-mangled"
c++filt <"$work/mangled" | sort -u >"$work/names"

# The patterns of the list, as regular expressions: those before "local:", and those behind it.
expressions() {
    sed -n 's/^ *\([A-Za-z][^;]*\);.*/\1/p' |
        sed -e 's/[.+^$()]/\\&/g' -e 's/\[/\\[/g' -e 's/?/./g' -e 's/\*/.*/g' -e 's/^/^/; s/$/$/'
}
sed '/^ *local:/,$d' packaging/abi/zspace.map | expressions >"$work/patterns"
sed '1,/^ *local:/d' packaging/abi/zspace.map | expressions >"$work/private"

status=0
# none TITLE: standard input is empty.
none() {
    cat >"$work/found"
    if [ -s "$work/found" ]; then
        echo "$1:" >&2
        sed 's/^/    /' "$work/found" >&2
        status=1
    fi
}
# The loops read files, since a loop at the end of a pipe could not set the status.
matches_nothing() {
    while read -r pattern; do
        grep -q -e "$pattern" "$2" || echo "$pattern"
    done <"$1"
}
grep -v -f "$work/patterns" "$work/names" >"$work/report" || :
none "Exported and not listed" <"$work/report"
matches_nothing "$work/patterns" "$work/names" >"$work/report"
none "Listed, and nothing is exported that it stands for" <"$work/report"

# Compiler-made tables of exported classes are reached through other tables.
comm -23 "$work/all-mangled" "$work/mangled" | c++filt | grep 'ZSpace::' |
    grep -v -e '^std::[a-z_]*[<:]' -e '^construction vtable ' -e '^non-virtual thunk ' \
        -e '^\(vtable\|typeinfo\|typeinfo name\) for \(ZSpace::Host::\|std::\|NS\)' | sort -u >"$work/inside"
grep -v -f "$work/private" "$work/inside" >"$work/report" || :
none "Neither exported nor listed as private" <"$work/report"
matches_nothing "$work/private" "$work/inside" >"$work/report"
none "Listed as private, and nothing is" <"$work/report"

# The static library leaves all its names to the program: those without our prefix are functions that the list names, and
# the host's string types and their kin on hosts without Foundation.
nm -g --defined-only "$archive" | awk 'NF == 3 && $2 ~ /[TDBRSC]/ { print $3 }' | c++filt | sort -u |
    grep -v -e 'ZSpace::' -e '^NS[A-Za-z]*::' | grep -v -f "$work/patterns" >"$work/report" || :
none "Names of the static library without our prefix" <"$work/report"

cmake -D LIST=packaging/abi/zspace.map -D OUTPUT="$work/globs" -P cmake/ZSpaceExports.cmake
sed -e 's/\*/.*/g' -e 's/^_/^/; s/$/$/' "$work/globs" >"$work/macos"
grep -v -f "$work/macos" "$work/mangled" | c++filt >"$work/report" || :
none "Exported, but not on macOS" <"$work/report"
grep -f "$work/macos" "$work/all-mangled" | comm -23 - "$work/mangled" | c++filt | grep -v -f "$work/private" >"$work/report" || :
none "Exported only on macOS" <"$work/report"
exit $status
