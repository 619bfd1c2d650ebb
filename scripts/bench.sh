#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Installs what is missing, builds the benchmarks and runs one: ./scripts/bench.sh core|log|stream|string|value [flags]
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

# shellcheck disable=SC2154,SC2086 # set in setup.sh; the list is to be split
require_packages $build_packages libbenchmark-dev libfmt-dev libspdlog-dev libgoogle-glog-dev libabsl-dev libboost-dev
name=${1:?which one: core, log, stream, string or value}_bench
shift
build bench "$name"
exec "./build/bench/bench/$name" "$@"
