#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Compares what it costs to compile an empty program that includes ZSpace/ZSpace.h with one that includes Abseil's
# string headers and {fmt}: ./scripts/compile-cost.sh [runs]. Prints the processor time of each, the least of all runs,
# and their ratio. The runs alternate, so that other work on the machine affects both.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

require_packages g++ clang libabsl-dev libfmt-dev
runs=${1:-10}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

echo '#include "ZSpace/ZSpace.h"' >"$folder/ours.cpp"
for header in ascii charconv escaping match numbers str_cat str_format str_join str_replace str_split string_view strip \
    substitute; do
    echo "#include \"absl/strings/$header.h\""
done >"$folder/others.cpp"
echo '#include <fmt/format.h>' >>"$folder/others.cpp"

# cost COMPILER LANGUAGE SOURCE: the processor time in milliseconds.
cost() {
    sh -c '"$1" -std="$2" -I. -fsyntax-only "$3"; times' sh "$@" | awk '
        NR == 2 { split($1, user, /[ms]/); split($2, kernel, /[ms]/)
            printf "%d\n", 1000 * (60 * (user[1] + kernel[1]) + user[2] + kernel[2]) }'
}

for compiler in g++ clang++; do
    for language in c++20 c++23; do
        [ "$compiler" = clang++ ] && [ "$language" = c++23 ] && language=c++2b
        : >"$folder/times"
        for _ in $(seq "$runs"); do
            for source in ours others; do
                echo "$source $(cost "$compiler" "$language" "$folder/$source.cpp")" >>"$folder/times"
            done
        done
        awk -v compiler="$compiler" -v language="$language" '
            !($1 in least) || $2 < least[$1] { least[$1] = $2 }
            END { printf "%-8s %s: ZSpace.h %d ms, Abseil strings and {fmt} %d ms, ratio %.2f\n", compiler, language,
                least["ours"], least["others"], least["ours"] / least["others"] }' "$folder/times"
    done
done
