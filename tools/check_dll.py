#!/usr/bin/env python3
"""Checks a finished Windows library: its names, what it needs, and what it says of itself.

    check_dll.py LIBRARY --def FILE [--list FILE] --needs LIBRARY... --version VERSION

The C functions are those of the .def file, without any decoration. Everything else that is exported is the class, and has to
be, with those functions, what --list names (tests/exports.txt); without a list there must be nothing else. The libraries that
it imports from are among those named: no run-time library of the compiler. --update writes the .def file.
"""

import argparse
import os
import subprocess
import sys

import check_exports
import pe


def read_def(path):
    """The entries of a .def file: a name, and "NAME DATA" where it stands for a variable."""
    with open(path, encoding="ascii") as file:
        lines = [line.split(";")[0].split() for line in file]
    return {" ".join(line) for line in lines if line and line[0] not in ("LIBRARY", "EXPORTS")}


def entries(image):
    """What a .def file should say of the image."""
    variables = pe.exported_variables(image)
    return {f"{name} DATA" if name in variables else name for name in pe.exported_names(image) if not name.startswith("_Z")}


def write_def(path, library, names):
    with open(path, "w", encoding="ascii") as file:
        file.write(f"; What {library} exports in C; tools/check_dll.py --update writes this file.\n")
        file.write(f"LIBRARY {library}\nEXPORTS\n")
        file.writelines(f"    {name}\n" for name in sorted(names))


def demangled(names):
    filter_ = subprocess.run(["c++filt"], input="\n".join(names), check=True, capture_output=True, text=True)
    return {check_exports.in_house_names(name, "windows") for name in filter_.stdout.split("\n")}


def difference(what, found, wanted):
    for name in sorted(found - wanted):
        yield f"{what}: {name} is there and should not be"
    for name in sorted(wanted - found):
        yield f"{what}: {name} is missing"


def faults(image, options):
    names = pe.exported_names(image)
    plain = entries(image)
    wanted = read_def(options.def_file)
    if not wanted:
        yield f"{options.def_file} lists nothing"
    yield from difference("export", plain, wanted)
    if options.list:
        with open(options.list, encoding="utf-8") as file:
            yield from difference("export", demangled(names), set(file.read().splitlines()))
    elif len(names) != len(plain):
        yield "export: there are names of C++, and no list of them"
    if names != sorted(names):
        yield "export: the names are not in order, so a loader does not find them"
    needed = set(pe.imported_names(image))
    yield from (f"import: it needs {library}" for library in sorted(needed - set(options.needs)))
    version = pe.version_strings(image)
    for key, value in (("FileVersion", options.version), ("OriginalFilename", os.path.basename(options.library))):
        if version.get(key) != value:
            yield f"version: {key} is {version.get(key)!r}, not {value!r}"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("library")
    parser.add_argument("--def", dest="def_file", required=True)
    parser.add_argument("--list")
    parser.add_argument("--needs", nargs="+", default=[])
    parser.add_argument("--version", required=True)
    parser.add_argument("--update", action="store_true", help="write the .def file instead of checking")
    options = parser.parse_args()
    image = pe.read(options.library)
    if options.update:
        write_def(options.def_file, os.path.basename(options.library), entries(image))
        return 0
    found = list(faults(image, options))
    print("\n".join(found) or f"{options.library}: {len(pe.exported_names(image))} names, as listed")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
