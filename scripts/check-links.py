#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The ZSpace authors
# SPDX-License-Identifier: MIT
"""check-links.py DIRECTORY: checks that every link between the HTML pages of a directory leads to a file, and to an
anchor if it names one. Links to other sites are not followed."""

import html.parser
import pathlib
import sys
import urllib.parse


# Doxygen's table of contents names this where all macros of a page are in groups of their own.
WITHOUT_ANCHOR = {"define-members"}


class Page(html.parser.HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.links = []
        self.anchors = set()
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if value and (name == "id" or (name == "name" and tag == "a")):
                self.anchors.add(value)
            elif value and name in ("href", "src", "data"):
                self.links.append(value)


def main(directory):
    root = pathlib.Path(directory).resolve()
    pages = {path: Page(path) for path in root.rglob("*.html")}
    broken = set()
    count = 0
    for path, page in pages.items():
        for link in page.links:
            target = urllib.parse.urlsplit(link)
            if target.scheme or target.netloc:
                continue
            count += 1
            file = (path.parent / urllib.parse.unquote(target.path)).resolve() if target.path else path
            anchor = urllib.parse.unquote(target.fragment)
            if not file.exists():
                broken.add(f"{path.name}: {link}: no such file")
            elif anchor and file in pages and anchor not in pages[file].anchors | WITHOUT_ANCHOR:
                broken.add(f"{path.name}: {link}: no such anchor")
    for line in sorted(broken):
        print(line, file=sys.stderr)
    print(f"{count} links of {len(pages)} pages, {len(broken)} broken")
    return 1 if broken or not pages else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
