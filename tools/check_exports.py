#!/usr/bin/env python3
"""Compares what libtalvek.so exports with the committed list tests/exports.txt.

The list holds one demangled name a line, sorted, with the types under their names in include/talvek/types.h: what those
are to the compiler differs from system to system, and --model tells how. A symbol that appears or goes is a change of the
interface: if it is meant, run this with --update and commit the list with the change.
"""

import argparse
import re
import subprocess
import sys

# A type that a model lacks keeps the compiler's name and so is found not to be in the list.
EVERYWHERE = {"unsigned char": "BYTE", "signed char": "ORV_INT8", "unsigned short": "WORD"}
MODELS = {
    "lp64": {"unsigned int": "ULONG", "unsigned long": "ULONGLONG", "char16_t": "WCHAR"},
    "ilp32": {"unsigned int": "ULONG", "unsigned long long": "ULONGLONG", "char16_t": "WCHAR"},
    "windows": {"unsigned long": "ULONG", "unsigned long long": "ULONGLONG", "wchar_t": "WCHAR"},
}


def in_house_names(symbol, model):
    """A demangled name with the types of types.h."""
    types = {**EVERYWHERE, **MODELS[model]}
    # A built-in type is several words: all of them are taken, so that none is taken for a shorter one.
    words = r"\b(?:(?:un)?signed |long |short )*(?:char|short|int|long|char16_t|wchar_t)\b"
    return re.sub(words, lambda found: types.get(found[0], found[0]), symbol)


def exported(library, nm):
    """The names of the defined dynamic symbols; a constructor's several bodies count once."""
    listing = subprocess.run([nm, "-D", "--defined-only", "--demangle", library], check=True, capture_output=True, text=True)
    names = set()
    for line in listing.stdout.splitlines():
        kind, name = line.split(maxsplit=2)[1:] if line[0] != " " else line.split(maxsplit=1)
        if kind != "A":
            names.add(name)
    return names


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("library")
    parser.add_argument("list")
    parser.add_argument("--nm", default="nm")
    parser.add_argument("--model", choices=MODELS, default="lp64", help="the widths of the system's types (lp64 unless named)")
    parser.add_argument("--update", action="store_true", help="write the list instead of comparing")
    options = parser.parse_args()

    found = {in_house_names(symbol, options.model) for symbol in exported(options.library, options.nm)}
    if options.update:
        with open(options.list, "w", encoding="utf-8") as file:
            file.writelines(name + "\n" for name in sorted(found))
        print(f"{len(found)} names written to {options.list}")
        return 0
    with open(options.list, encoding="utf-8") as file:
        listed = set(file.read().splitlines())
    for name in sorted(found - listed):
        print(f"exported, but not in {options.list}: {name}")
    for name in sorted(listed - found):
        print(f"in {options.list}, but not exported: {name}")
    if not listed:
        print(f"{options.list} is empty")
    if found != listed:
        print(f"If this is meant: tools/check_exports.py --model {options.model} --update {options.library} {options.list}")
    return 0 if listed and found == listed else 1


if __name__ == "__main__":
    sys.exit(main())
