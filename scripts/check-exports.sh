#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# check-exports.sh LIBRARY: compares what a shared library exports with packaging/abi/zspace.map. Every exported name
# must be on the list, and every line of the list must match a name.
set -eu
cd "$(dirname "$0")/.."
library=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

nm -D -C --defined-only "$library" | sed -e 's/^[0-9a-f]* . //' -e 's/@@.*//' | grep -vx ZSPACE_1 | sort -u >"$work/names"
# The patterns of the list, as regular expressions.
sed -e 's|/\*.*\*/||' -e '/^ZSPACE_1/d; /^ *\(global\|local\):/d; /extern/d; /^ *\*;/d' packaging/abi/zspace.map |
    sed -n 's/^ *\([A-Za-z][^;]*\);.*/\1/p' |
    sed -e 's/[.+^$()]/\\&/g' -e 's/\[/\\[/g' -e 's/?/./g' -e 's/\*/.*/g' -e 's/^/^/; s/$/$/' >"$work/patterns"

status=0
grep -v -f "$work/patterns" "$work/names" >"$work/unlisted" && {
    echo "Exported and not listed:" >&2
    cat "$work/unlisted" >&2
    status=1
}
while read -r pattern; do
    grep -q -e "$pattern" "$work/names" || {
        echo "Listed, and nothing is exported that it stands for: $pattern" >&2
        status=1
    }
done <"$work/patterns"
exit $status
