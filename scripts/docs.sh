#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Writes the reference of the public headers as pages to build/docs/html; a comment that cannot be read is an error.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

require_packages doxygen
mkdir -p build
doxygen Doxyfile
echo "The reference begins at build/docs/html/index.html."
