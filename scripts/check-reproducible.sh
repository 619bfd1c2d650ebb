#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Makes the program, the libraries and the packages twice, from copies of the sources in two directories, with another
# umask, time zone, language and home, and compares them byte by byte.
set -eu
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
CCACHE_DISABLE=1 # a cache would hide differences
export SOURCE_DATE_EPOCH CCACHE_DISABLE

one=$work/one
other=$work/somewhere/else/entirely
mkdir -p "$one" "$other" "$work/home"
git ls-files -z | tar --null -T - -cf "$work/sources.tar"
tar -xf "$work/sources.tar" -C "$one"
tar -xf "$work/sources.tar" -C "$other"

echo "== in one directory"
(cd "$one" && ./scripts/packages.sh --make)
echo "== in another directory"
(
    umask 027
    cd "$other"
    HOME=$work/home TZ=Pacific/Kiritimati LC_ALL=C.UTF-8 ./scripts/packages.sh --make
)

status=0
for file in build/static-packages/app/CdkRSUninstaller build/static-packages/libzspace.a \
    build/shared-packages/libzspace.so.1 $(cd "$one" && find build/packages -type f | sort); do
    if cmp "$one/$file" "$other/$file"; then
        echo "ok      $file"
    else
        echo "FAILED  $file differs" >&2
        status=1
    fi
done
exit $status
