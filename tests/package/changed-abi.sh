#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# changed-abi.sh BUILD: builds the shared library again with one class or the list of exports changed, and expects
# scripts/check-abi.sh to notice. BUILD is a directory where Ninja has built the library with debug information.
set -eu
cd "$(dirname "$0")/../.."
build=$(cd "$1" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
header=ZSpace/log/ZLogBookFilter.h
object=CMakeFiles/zspace.dir/ZSpace/log/ZLogBookFilter.cpp.o
list=packaging/abi/zspace.map
mkdir -p "$work/${header%/*}"

# built SED HEADER-SED: the library, as $work/library.so, with the list and the header changed like this.
built() {
    sed "$1" "$list" >"$work/list"
    sed "$2" "$header" >"$work/$header"
    ninja -C "$build" -t commands "$object" | tail -n 1 |
        sed -e "s| -I| -I$work -I|" -e "s| -o [^ ]*| -o $work/changed.o|" -e "s| -MF [^ ]*| -MF $work/changed.d|" >"$work/compile"
    ninja -C "$build" -t commands libzspace.so.1.0.0 | tail -n 1 |
        sed -e "s| $object| $work/changed.o|" -e "s| -o [^ ]*| -o $work/library.so|" \
            -e "s|--version-script=[^ ]*|--version-script=$work/list|" >"$work/link"
    (cd "$build" && sh "$work/compile" && sh "$work/link")
}
failed=0
# notices WHAT WORDS: the check fails, and its report has these words.
notices() {
    if ./scripts/check-abi.sh "$work/library.so" >"$work/report" 2>&1; then
        echo "The check does not notice $1" >&2
        failed=1
    elif ! grep -q "$2" "$work/report"; then
        echo "The check reports $1 otherwise:" >&2
        cat "$work/report" >&2
        failed=1
    else
        echo "ok      $1"
    fi
}

built "" ""
./scripts/check-abi.sh "$work/library.so"
built "" 's/^    Predicate m_isWanted;/    long m_added = 0;\n&/'
notices "a new member" "m_added"
built "" 's/^    void add(const ZLogRecord& record) override;/    virtual long added() const { return 0; }\n&/'
notices "a new virtual function" "ZLogBookFilter"
built '/ZSpace::nameOf/d' ""
notices "a function that is no longer exported" "nameOf"
exit "$failed"
