#!/usr/bin/env python3
"""Compares what libtalvek.so exports with the committed list tests/exports.txt.

The list holds one demangled name a line, sorted. A symbol that appears or goes is a change of the interface: if it is meant,
run this with --update and commit the list with the change.
"""

import argparse
import subprocess
import sys


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
    parser.add_argument("--update", action="store_true", help="write the list instead of comparing")
    options = parser.parse_args()

    found = exported(options.library, options.nm)
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
        print(f"If this is meant: tools/check_exports.py --update {options.library} {options.list}")
    return 0 if listed and found == listed else 1


if __name__ == "__main__":
    sys.exit(main())
