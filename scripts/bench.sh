#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds the benchmarks and prints how much longer than hand-written code our operations take:
#
#   ./scripts/bench.sh [--quick] [--only TEXT] [--publish]
#   ./scripts/bench.sh core|launcher|log|stream|string|string_rows|value [flags of Google Benchmark]
#
# The table takes about a minute for each row on a quiet machine; --quick runs each row once, to see that it works. The
# results are in build/bench/table.json and table.svg, too; --publish copies the picture to docs/.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

# shellcheck disable=SC2154,SC2086 # set in setup.sh; the list is to be split
require_packages $build_packages libbenchmark-dev libfmt-dev libspdlog-dev libgoogle-glog-dev libabsl-dev libboost-dev \
    uuid-dev python3
case ${1:-} in
core | launcher | log | stream | string | string_rows | value)
    name=${1}_bench
    shift
    build bench "$name"
    exec "./build/bench/bench/$name" "$@"
    ;;
esac

publish=
count=$#
while [ "$count" -gt 0 ]; do
    if [ "$1" = --publish ]; then publish=yes; else set -- "$@" "$1"; fi
    shift
    count=$((count - 1))
done
build bench
python3 bench/table.py build/bench/bench --json build/bench/table.json --svg build/bench/table.svg "$@"
[ -z "$publish" ] || cp build/bench/table.svg docs/benchmarks.svg
