#!/bin/sh
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
#
# docs-page.sh PAGE: prints a Markdown page as Doxygen is to read it. Headings get the anchors that they have on hosting
# sites, with the page's name in front, since Doxygen knows one set of anchors for all pages. Links to pages are written
# from the root. Links to files that are no pages lead to copies that docs.sh makes; those to directories are dropped.
set -eu
page=${1#"$PWD"/}
directory=
case $page in */*) directory=${page%/*}/ ;; esac

awk -v page="$page" -v directory="$directory" '
    function slug(text) {
        text = tolower(text)
        gsub(/[^a-z0-9 _-]/, "", text)
        gsub(/ /, "-", text)
        return text
    }
    function anchor(of, name) {
        sub(/\.md$/, "", of)
        gsub(/[^A-Za-z0-9]/, "_", of)
        return "page_" of (name == "" ? "" : "_" name)
    }
    # The path from the root.
    function resolved(path,    parts, count, i, depth, kept, joined) {
        count = split(directory path, parts, "/")
        depth = 0
        for (i = 1; i <= count; ++i) {
            if (parts[i] == "..")
                --depth
            else if (parts[i] != "")
                kept[++depth] = parts[i]
        }
        joined = kept[1]
        for (i = 2; i <= depth; ++i)
            joined = joined "/" kept[i]
        return joined
    }
    function link(text, target,    name, path) {
        if (target ~ /^[a-z]+:/)
            return "[" text "](" target ")"
        name = target
        if (!sub(/^[^#]*#/, "", name))
            name = ""
        path = target
        sub(/#.*/, "", path)
        path = path == "" ? page : resolved(path)
        if (path ~ /\.md$/) {
            gsub(/`/, "", text)
            return "[" text "](@ref " anchor(path, name) ")"
        }
        if (path ~ /\// && system("test -f " path) == 0)
            return "<a href=\"source/" path ".txt\">" html(text) "</a>"
        return path == "LICENSE" ? "<a href=\"source/LICENSE.txt\">" html(text) "</a>" : text
    }
    function html(text) {
        while (match(text, /`[^`]*`/))
            text = substr(text, 1, RSTART - 1) "<code>" substr(text, RSTART + 1, RLENGTH - 2) "</code>" substr(text, RSTART + RLENGTH)
        return text
    }
    /^```/ { inside = !inside; print; next }
    inside { print; next }
    /^<!--.*-->$/ { print ""; next }
    /^!\[/ { sub(/\(.*\//, "("); print; next }
    /^#/ {
        level = index($0, " ") - 1
        title = substr($0, level + 2)
        sub(/ *\{#.*\}$/, "", title)
        print substr($0, 1, level) " " title " {#" (level > 1 ? anchor(page, slug(title)) : page == "README.md" ? "mainpage" : anchor(page, "")) "}"
        next
    }
    {
        line = ""
        rest = $0
        while (match(rest, /\[[^]]*\]\([^) ]*\)/)) {
            found = substr(rest, RSTART, RLENGTH)
            before = substr(rest, 1, RSTART - 1)
            rest = substr(rest, RSTART + RLENGTH)
            split(substr(found, 2, length(found) - 2), pieces, /\]\(/)
            line = line before link(pieces[1], pieces[2])
        }
        print line rest
    }' "$1"
