#!/usr/bin/env python3
"""Checks the pages of a built site: links within it lead somewhere, nothing is loaded from elsewhere, and every public
name of the Python package is in its reference.

check_site.py FOLDER
"""

import re
import sys
import urllib.parse
from html.parser import HTMLParser
from pathlib import Path

import kv_tr
from sphinx.util.inventory import InventoryFile

OUTSIDE = re.compile(r"(?:[a-z]+:)?//", re.IGNORECASE)
LOADS = {("link", "href"), *((tag, "src") for tag in "script img iframe source audio video embed input".split())}
LOADS |= {("object", "data"), ("img", "srcset"), ("image", "href"), ("use", "href"), ("video", "poster")}


class Page(HTMLParser):
    """What a page links to and loads, and which places in it can be linked to."""

    def __init__(self, file):
        super().__init__()
        self.links, self.loaded, self.places = [], [], set()
        self.feed(file.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if (tag, name) in LOADS:
                self.loaded.append(value)
            elif name == "href":
                self.links.append(value)
            elif name == "id":
                self.places.add(value)


def complaints(folder):
    pages = {file.resolve(): Page(file) for file in folder.rglob("*.html")}
    for file, page in pages.items():
        name = file.relative_to(folder)
        for address in page.loaded:
            if OUTSIDE.match(address):
                yield f"{name} loads {address}"
        for address in page.links + page.loaded:
            parts = urllib.parse.urlsplit(address)
            if parts.scheme or parts.netloc:
                continue
            target = (file.parent / urllib.parse.unquote(parts.path)).resolve() if parts.path else file
            place = urllib.parse.unquote(parts.fragment)
            if not target.exists():
                yield f"{name} links to {address}, which is not there"
            elif place and target in pages and place not in pages[target].places:
                yield f"{name} links to {address}, a place that the page does not have"
    for file in folder.rglob("*.css"):
        for address in re.findall(r"url\(\s*['\"]?([^'\")]+)", file.read_text(encoding="utf-8")):
            if not address.startswith("data:") and not (file.parent / re.sub(r"[?#].*", "", address)).is_file():
                yield f"{file.relative_to(folder)} loads {address}"
    for file in folder.rglob("*.js"):
        if re.search(r"^import ", file.read_text(encoding="utf-8"), re.MULTILINE):
            yield f"{file.relative_to(folder)} is a module, which a browser does not load from a folder of files"

    with (folder / "objects.inv").open("rb") as stream:
        inventory = InventoryFile.load(stream, "", lambda uri, name: name)
    described = {name for kind, names in inventory.items() if kind.startswith("py:") for name in names}
    for name in kv_tr.__all__:
        if f"kv_tr.{name}" not in described and not isinstance(getattr(kv_tr, name), kv_tr.enuTR_TYPE):
            yield f"the reference lacks kv_tr.{name}"


def main():
    found = list(complaints(Path(sys.argv[1]).resolve()))
    print(*found, sep="\n", end="\n" if found else "")
    sys.exit(bool(found))


main()
