#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Compares the ABI of a shared library, which must have its debug information, with the committed one:
#   ./scripts/check-abi.sh LIBRARY           fails if a program compiled with the earlier library could break
#   ./scripts/check-abi.sh --renew LIBRARY   makes the library's ABI the committed one; see docs/abi.md
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh
require_packages abigail-tools
baseline=packaging/abi/zspace.abi.gz
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The types of the C++ library and the sizes of the C library's differ elsewhere.
made_with="g++ 12, x86_64"
if [ "$(c++ -dumpversion | cut -d. -f1), $(uname -m)" != "12, x86_64" ]; then
    echo "SKIPPED: the committed ABI is that of $made_with"
    exit 0
fi

# dump LIBRARY FILE: of the types, only those of public headers are described.
dump() {
    abidw --headers-dir ZSpace --drop-private-types --no-show-locs --no-corpus-path --no-comp-dir-path --out-file "$2" "$1"
    if ! grep -q '<class-decl ' "$2"; then
        echo "$1 has no debug information" >&2
        exit 1
    fi
}

if [ "$1" = --renew ]; then
    dump "$2" "$work/zspace.abi"
    gzip -9 -n <"$work/zspace.abi" >"$baseline"
    echo "$baseline is that of $2"
    exit 0
fi
dump "$1" "$work/now.abi"
gzip -d <"$baseline" >"$work/then.abi"
# Whatever is not an addition counts: abidiff leaves the verdict about changed layouts to its reader.
status=0
abidiff --no-added-syms "$work/then.abi" "$work/now.abi" >"$work/differences" || status=$?
if [ "$status" -ne 0 ]; then
    cat "$work/differences" >&2
    echo "The ABI differs from $baseline; docs/abi.md says what to do" >&2
    exit 1
fi
echo "The ABI is that of $baseline, apart from additions."
