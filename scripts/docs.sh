#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Writes the guide and the reference of the public interface as one site to build/docs/html. A public name without a
# comment, a comment that Doxygen cannot read, a name that the search does not find and a broken link are errors.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

require_packages doxygen python3
mkdir -p build/docs
rm -rf build/docs/html
ZSPACE_VERSION=$(sed -n 's/^project(ZSpace VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
export ZSPACE_VERSION
status=0
doxygen Doxyfile || status=$?
if [ -s build/docs/warnings.txt ]; then
    sed "s|^$PWD/||" build/docs/warnings.txt | grep . | sort -u | head -n 40 >&2
    echo "All of them are in build/docs/warnings.txt" >&2
    exit 1
fi
[ "$status" -eq 0 ]

# One name of each kind: a free function, an inherited and a static member, a global and a constant among them.
for name in CNSLog subString appendHexOf GetTickCount theLog Z_SYS_ENV_HOMEDIR; do
    if ! grep -q "\['$name'" build/docs/html/search/all_*.js; then
        echo "The reference's search does not find $name" >&2
        exit 1
    fi
done
# Files that pages link to and that are not pages: docs-page.sh writes these links.
grep -oh 'href="source/[^"]*\.txt"' build/docs/html/*.html | sort -u | sed 's|href="source/\(.*\)\.txt"|\1|' |
    while read -r file; do
        mkdir -p "build/docs/html/source/$(dirname "$file")"
        [ ! -f "$file" ] || cp "$file" "build/docs/html/source/$file.txt"
    done
python3 scripts/check-links.py build/docs/html
echo "The site of version $ZSPACE_VERSION begins at build/docs/html/index.html."
