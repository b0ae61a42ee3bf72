#!/usr/bin/env python3
"""Compares the C# declarations of docs/windows.md with the headers.

    check_pinvoke.py DOCUMENT EXPORTS COMPILER INCLUDE

Lays each record out as the run-time library of C# does, and has a C compiler assert the size and every offset. Each DllImport
has to be a function that the library exports, with the header's parameters.
"""

import re
import subprocess
import sys

SIZES = {"uint": 4, "int": 4, "ushort": 2, "short": 2, "byte": 1, "sbyte": 1, "ulong": 8}
IN_C = {"uint": "ULONG", "ulong": "ULONGLONG", "StringBuilder": "WCHAR*", "IntPtr": "const char*", "OrvNotifyCallback": "OrvNotifyCallback"}
FUNCTION = re.compile(r"static extern (\w+) (\w+)\(([^)]*)\)")
STRUCT = re.compile(r"public struct (\w+)\s*\{(.*?)\n    \}", re.S)
FIELD = re.compile(r"(?:\[MarshalAs\(UnmanagedType\.(\w+), SizeConst = (\d+)\)\] )?public (\w+)(?:\[\])? (\w+);")


def records(document):
    """{record: (size, alignment, [(field, offset)])}, in the order of the document."""
    found = {}
    for name, body in STRUCT.findall(document):
        offset, alignment, fields = 0, 1, []
        for marshalled, count, kind, field in FIELD.findall(body):
            if kind == "string":
                size, align = 2, 2
            elif kind in found:
                size, align = found[kind][:2]
            else:
                size = align = SIZES[kind]
            offset += -offset % align
            fields.append((field, offset))
            offset += size * (int(count) if marshalled else 1)
            alignment = max(alignment, align)
        found[name] = (offset + -offset % alignment, alignment, fields)
    return found


def in_c(kind):
    """The type in C; `int` is the result code everywhere in the document's functions."""
    return kind[4:] + "*" if kind.startswith("ref ") else "ORV_RCODE" if kind == "int" else IN_C[kind]


def prototypes(document):
    """[(function, its type in C as a pointer)]"""
    for result, name, parameters in FUNCTION.findall(document):
        kinds = [in_c(parameter.rsplit(" ", 1)[0]) for parameter in parameters.split(", ") if parameter]
        yield name, f"{in_c(result)}(ORV_CALL*)({', '.join(kinds) or 'void'})"


def main():
    path, exports, compiler, include = sys.argv[1:]
    with open(path, encoding="utf-8") as file:
        document = file.read()
    with open(exports, encoding="utf-8") as file:
        exported = set(file.read().splitlines())

    declared = dict(prototypes(document))
    missing = [name for name in declared if name not in exported]
    if missing or not declared:
        print(f"not exported: {missing}" if missing else "no function is declared")
        return 1

    source = '#include <talvek/talvek.h>\n#include <stddef.h>\ntypedef OrvNotifyRecord OrvNotifyHead;\n'
    for name, pointer in declared.items():
        source += f'_Static_assert(__builtin_types_compatible_p(__typeof__(&{name}), {pointer}), "{name}");\n'
    checks = 0
    for name, (size, _, fields) in records(document).items():
        if name != "OrvNotifyHead":  # the beginning of a record
            source += f'_Static_assert(sizeof({name}) == {size}, "{name}");\n'
        for field, offset in fields:
            source += f'_Static_assert(offsetof({name}, {field}) == {offset}, "{name}.{field}");\n'
            checks += 1
    if not checks:
        print("no record is declared")
        return 1
    command = [compiler, "-std=c11", "-fsyntax-only", "-I", include, "-x", "c", "-"]
    compiled = subprocess.run(command, input=source, text=True, capture_output=True)
    print(compiled.stderr or f"{len(declared)} functions and {checks} fields, as in the headers")
    return compiled.returncode


if __name__ == "__main__":
    sys.exit(main())
