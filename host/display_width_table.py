#!/usr/bin/env python3
"""Prints display_width_table.h: the ranges of characters that don't take one column of a terminal.

The data are those of Python's unicodedata. Wide and fullwidth characters, emoji among them, take two columns. Marks
that are drawn on the character before them, format characters and the later parts of a Hangul syllable take none.
"""

import sys
import unicodedata

SOFT_HYPHEN = 0xAD
HANGUL_LATER_PARTS = (range(0x1160, 0x1200), range(0xD7B0, 0xD800))
NO_COLUMN = {"Mn", "Me", "Cf", "Zl", "Zp"}


def columns(code):
    """None for a code that no character has: it may stand in any range."""
    character = chr(code)
    if unicodedata.category(character) in ("Cn", "Cs", "Co"):
        return 2 if unicodedata.east_asian_width(character) == "W" else None
    if any(code in parts for parts in HANGUL_LATER_PARTS):
        return 0
    if unicodedata.category(character) in NO_COLUMN and code != SOFT_HYPHEN:
        return 0
    return 2 if unicodedata.east_asian_width(character) in "WF" else 1


def ranges():
    """(first, last, columns) for the whole of Unicode."""
    found = []
    for code in range(sys.maxunicode + 1):
        width = columns(code)
        if width is None:
            continue
        if found and found[-1][2] == width:
            found[-1][1] = code
        else:
            found.append([code, code, width])
    return found


def main():
    print("#pragma once")
    print(f"// Made by display_width_table.py from the data of Unicode {unicodedata.unidata_version}.")
    print("\nnamespace tarnwick::host {\n")
    print("struct WidthRange {\n  char32_t first;\n  char32_t last;\n  unsigned columns;\n};\n")
    print("// In ascending order; every other character takes one column.")
    print("inline constexpr WidthRange kWidthRanges[] = {")
    for first, last, width in ranges():
        if width != 1:
            print(f"    {{0x{first:04X}, 0x{last:04X}, {width}}},")
    print("};\n\n}  // namespace tarnwick::host")


main()
