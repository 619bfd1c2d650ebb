#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# consume.sh CMAKE BUILD CONSUMER SOURCE COMPILER: installs the built library into a separate directory, builds the same
# small program against it in two ways, with the flags in CXXFLAGS, and with every compiler that is there, then the
# README's program, and then that of the guide's first ten minutes, from an empty directory.
set -eu
cmake=$1 build=$2 consumer=$3 source=$4 compiler=$5
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

"$cmake" --install "$build" --prefix "$folder/installed" >/dev/null

"$cmake" -S "$consumer" -B "$folder/build" -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_PREFIX_PATH="$folder/installed" >/dev/null
"$cmake" --build "$folder/build" >/dev/null
[ "$("$folder/build/consumer" 2>/dev/null)" = "consumer 42" ]

pc=$(find "$folder/installed" -name zspace.pc)
flags=$(PKG_CONFIG_PATH=${pc%/*} pkg-config --cflags --libs zspace)
# shellcheck disable=SC2086 # flags are words
"$compiler" $CXXFLAGS -std=c++20 "$consumer/consumer.cpp" -o "$folder/by-flags" $flags
[ "$("$folder/by-flags" 2>/dev/null)" = "consumer 42" ]

# Compilers of one standard library agree on the names that they link.
case $CXXFLAGS in
*-stdlib=*) others= ;;
*) others="g++ clang++" ;;
esac
for other in $others; do
    command -v "$other" >/dev/null || continue
    # shellcheck disable=SC2086
    "$other" $CXXFLAGS -std=c++20 "$consumer/consumer.cpp" -o "$folder/by-$other" $flags
    [ "$("$folder/by-$other" 2>/dev/null)" = "consumer 42" ]
done

sed -n '/^```cpp$/,/^```$/{/^```/!p;}' "$source/README.md" | sed "s|/tmp/mytool|$folder/log|" >"$folder/shown.cpp"
# shellcheck disable=SC2086
"$compiler" $CXXFLAGS -std=c++20 "$folder/shown.cpp" -o "$folder/shown" $flags
"$folder/shown"
grep -q ']:	started with 3 files$' "$folder"/log/MyTool_*.txt

page=$source/docs/guide/ten-minutes.md
mkdir "$folder/hello"
cp "$source"/examples/guide/ten-minutes/* "$folder/hello"
cd "$folder/hello"
"$cmake" -B build -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_PREFIX_PATH="$folder/installed" >/dev/null
"$cmake" --build build >/dev/null
./build/hello >found
awk '/^<!-- package: hello -->$/ { wanted = 1; next } /^```/ { if (inside) exit; inside = wanted; next } inside' "$page" >expected
diff expected found
