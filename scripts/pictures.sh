#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# Makes docs/*.svg of docs/*.dot. Each picture contains its source as a comment, which a test compares with the file.
set -eu
cd "$(dirname "$0")/.."
. scripts/setup.sh

require_packages graphviz
for source in docs/*.dot; do
    picture=${source%.dot}.svg
    {
        dot -Tsvg "$source" | sed -e '/^<!-- /d' -e '/^ -->$/d'
        echo '<!--'
        cat "$source"
        echo '-->'
    } >"$picture.new"
    mv "$picture.new" "$picture"
done
echo "Made $(echo docs/*.svg)"
