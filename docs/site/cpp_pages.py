#!/usr/bin/env python3
"""Writes a page for each room of the C++ library from what Doxygen found in its headers.

cpp_pages.py XML SOURCE FOLDER: the folders of Doxygen's XML, of the sources and of the pages.
"""

import re
import sys
import xml.etree.ElementTree as ET
from collections import defaultdict
from pathlib import Path

MEMBERS = {"enum": "enum", "function": "function", "typedef": "typedef", "variable": "variable", "define": "define"}


def directive(kind, name):
    return f"```{{doxygen{kind}}} {name}\n```\n"


def place(definition):
    location = definition.find("location")
    return location.get("file"), int(location.get("line"))


def definitions(xml):
    """Of each header what it defines: pairs of the line and the directive that shows it."""
    found = defaultdict(list)
    index = ET.parse(xml / "index.xml").getroot()
    trees = [ET.parse(xml / f"{entry.get('refid')}.xml").getroot()[0] for entry in index]
    classes = {tree.find("compoundname").text for tree in trees if tree.get("kind") in ("class", "struct")}
    for tree in trees:
        kind, name = tree.get("kind"), tree.find("compoundname").text
        if kind in ("class", "struct") and name.rpartition("::")[0] not in classes:
            header, line = place(tree)
            found[header].append((line, directive(kind, name)))
        elif kind in ("namespace", "file"):
            for member in tree.findall("sectiondef/memberdef"):
                header, line = place(member)
                name = member.find("name").text
                if kind == "namespace":
                    name = f"{tree.find('compoundname').text}::{name}"
                if member.get("kind") == "function":
                    name += member.find("argsstring").text
                found[header].append((line, directive(MEMBERS[member.get("kind")], name)))
    return found


def purpose(header):
    """The comment that a header opens with."""
    lines = header.read_text(encoding="utf-8").splitlines()
    return " ".join(line[2:].strip() for line in lines[: next(i for i, line in enumerate(lines) if line[:2] != "//")])


def main():
    xml, source, folder = map(Path, sys.argv[1:])
    rooms = dict(re.findall(r"^\| `(\w+)` \| (.*) \|$", (source / "docs/architecture.md").read_text(), re.MULTILINE))
    pages = defaultdict(list)
    for header, shown in sorted(definitions(xml).items()):
        room = header.split("/")[1]
        pages[room] += [f"## `{header}`\n", purpose(source / "src" / header) + "\n"]
        pages[room] += [text for _, text in sorted(shown)]
    folder.mkdir(parents=True, exist_ok=True)
    for room, texts in pages.items():
        head = f"# Room `{room}`\n\n{rooms[room][0].upper()}{rooms[room][1:]}.\n"
        (folder / f"{room}.md").write_text("\n".join([head, *texts]), encoding="utf-8")


main()
