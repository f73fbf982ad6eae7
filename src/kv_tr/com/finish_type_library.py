#!/usr/bin/env python3
"""Completes a type library that widl wrote: finish_type_library.py FILE.tlb

- Records become packed to 4 bytes, which widl cannot express.
- Defaults of doubles and texts, which widl knows only as whole numbers, get their type: `defaultvalue(100)` of a
  double becomes 100.0, `defaultvalue(1)` of a text the text with that number in TEXTS.

The format is the one called MSFT: a header, the places of the descriptions of types, and a table of segments. The
first segment holds the descriptions of types, 100 bytes each; a description names where its members stand.
"""

import struct
import sys
from pathlib import Path

TEXTS = ["", "All (*.*)| *.*"]
PACK = 4
RECORD = 1  # the kind of a type
DOUBLE, TEXT, POINTER = 5, 8, 26  # the types of an argument
HEADER, TYPE_DESCRIPTION, SEGMENT, ARGUMENT = 0x54, 100, 16, 12  # sizes
TYPES, POINTERS, CONSTANTS = 0, 9, 11  # numbers of segments
HAS_DEFAULTS = 0x1000


class TypeLibrary:
    def __init__(self, data):
        assert data[:4] == b"MSFT"
        self.data = bytearray(data)
        self.count = self.word(0x20)
        self.pointer = {1: 4, 3: 8}[self.word(0x14) & 3]  # for 32 or 64 bits
        self.places = HEADER + (4 if self.word(0x14) & 0x100 else 0)
        self.segments = self.places + 4 * self.count

    def word(self, at, value=None):
        if value is not None:
            struct.pack_into("<i", self.data, at, value)
        return struct.unpack_from("<i", self.data, at)[0]

    def segment(self, number):
        return self.word(self.segments + SEGMENT * number)

    def types(self):
        for number in range(self.count):
            yield self.segment(TYPES) + self.word(self.places + 4 * number)

    def pack_record(self, record):
        sizes = {3: 4, DOUBLE: 8, TEXT: self.pointer, 11: 2}  # 3 a whole number, 11 a truth value
        field = self.word(record + 4) + 4
        offset = 0
        for _ in range(self.word(record + 24) >> 16 & 0xFFFF):
            kind = self.word(field + 4)
            size = sizes[kind & 0x7FFF] if kind < 0 else 4  # otherwise an enumeration
            offset += -offset % min(size, PACK)
            self.word(field + 16, offset)
            offset += size
            field += self.word(field) & 0xFFFF
        self.word(record, self.word(record) & ~(31 << 11) | PACK << 11)
        self.word(record + 80, offset + -offset % PACK)

    def behind_pointer(self, kind):
        """The simple type that an argument points to, or nothing."""
        if kind < 0:
            return None
        described = self.segment(POINTERS) + kind
        target = self.word(described + 4)
        return target & 0x7FFF if self.word(described) & 0x7FFF == POINTER and target < 0 else None

    def type_defaults(self, described):
        function = self.word(described + 4) + 4
        for _ in range(self.word(described + 24) & 0xFFFF):
            size = self.word(function) & 0xFFFF
            arguments = self.word(function + 20) & 0xFFFF
            first = function + size - ARGUMENT * arguments
            for number in range(arguments if self.word(function + 16) & HAS_DEFAULTS else 0):
                default = first - 4 * (arguments - number)
                kind = self.behind_pointer(self.word(first + ARGUMENT * number))
                given = self.word(default)
                if given != -1 and kind in (DOUBLE, TEXT):  # -1: none
                    assert given < 0  # stands in the word itself, in its last 26 bits
                    self.word(default, self.constant(kind, given & 0x3FFFFFF))
            function += size

    def constant(self, kind, given):
        """Adds a constant behind the others, which stand at the end of the file from then on."""
        place = self.segments + SEGMENT * CONSTANTS
        start, length = self.word(place), self.word(place + 4)
        if start + length != len(self.data):
            self.word(place, len(self.data))
            self.data += self.data[start : start + length]
        text = TEXTS[given].encode("ascii") if kind == TEXT else b""
        value = struct.pack("<i", len(text)) + text if kind == TEXT else struct.pack("<d", given)
        added = struct.pack("<h", kind) + value
        added += b"\0" * (-len(added) % 4)
        self.data += added
        self.word(place + 4, length + len(added))
        return length


def main():
    path = Path(sys.argv[1])
    library = TypeLibrary(path.read_bytes())
    for described in library.types():
        if library.word(described) & 15 == RECORD:
            library.pack_record(described)
        else:
            library.type_defaults(described)
    path.write_bytes(library.data)


main()
