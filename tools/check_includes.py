#!/usr/bin/env python3
"""Checks what the floor plan of docs/map.md promises.

  - a wing includes only what stands to its right (the table below);
  - library code keeps off the parts of the standard library that the device does without;
  - a source file stays under 650 lines;
  - docs/map.md names every folder that holds sources;
  - the program in README.md is examples/hello.c.

Prints "file:line: reason" for each violation and ends with 1 if there is one. --self-test feeds it a tree of violations and
proves that each one is found and that nothing else is.
"""

import argparse
import os
import re
import sys
import tempfile

MAX_LINES = 650
SOURCES = (".h", ".cpp", ".c", ".py", ".def")
SKIPPED_FOLDERS = {"build", ".git", ".cache", "__pycache__"}

# What a file of each wing may include, as prefixes of a path from the top; its own wing and the public headers come on top.
# A wing that is not listed (tests, fuzz, bench, examples, packaging) may include anything.
ARROWS = {
    "include": [],
    "platform": ["include/talvek/types.h"],
    "utility": ["platform/"],
    "state": ["utility/", "platform/"],
    "vendor": ["utility/", "platform/"],
    "at": ["utility/", "platform/"],
    "sms": ["utility/", "platform/"],
    "queries": ["vendor/", "state/", "api/OrvError.h", "utility/", "platform/"],
    "notify": ["queries/", "at/util.h", "vendor/", "state/", "api/OrvError.h", "utility/", "platform/"],
    "api": ["queries/", "notify/", "sms/", "at/", "vendor/", "state/", "utility/", "platform/"],
    "sim": ["vendor/entry_points.h", "sms/", "platform/"],
    "ctl": ["sim/control.h"],
}
# Wings that see no public header but those that their row names.
WITHOUT_PUBLIC_HEADERS = {"platform"}

LIBRARY_WINGS = {"include", "platform", "utility", "state", "vendor", "at", "sms", "queries", "notify", "api", "sim"}
HOST_ONLY = ("platform/posix/",)
REFUSED_HEADERS = {"iostream", "string", "thread", "mutex", "functional", "locale", "vector", "map", "memory"}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def resolve(root, folder, quote, name):
    """The path from the top that an include names, or None for a header of the system."""
    if name.startswith("talvek/"):
        return "include/" + name
    if quote == "<":
        return None
    beside = os.path.normpath(os.path.join(folder, name)).replace(os.sep, "/")
    if os.path.exists(os.path.join(root, beside)) and not os.path.exists(os.path.join(root, name)):
        return beside
    return name


def include_fault(path, quote, name, target):
    wing = path.split("/")[0]
    if target is None:
        if wing in LIBRARY_WINGS and not path.startswith(HOST_ONLY) and name in REFUSED_HEADERS:
            return f"<{name}> is not for library code"
        return None
    if wing not in ARROWS:
        return None
    if target.startswith(wing + "/"):
        return None
    if wing not in WITHOUT_PUBLIC_HEADERS and target.startswith("include/talvek/"):
        return None
    for allowed in ARROWS[wing]:
        if target == allowed or (allowed.endswith("/") and target.startswith(allowed)):
            return None
    return f"{wing}/ must not include {target}"


def check(root):
    """Every violation below `root`, as (path, line, reason)."""
    faults = []
    folders = set()
    for folder, names, files in os.walk(root):
        names[:] = sorted(n for n in names if n not in SKIPPED_FOLDERS)
        relative = os.path.relpath(folder, root).replace(os.sep, "/")
        for file in sorted(files):
            if not file.endswith(SOURCES):
                continue
            path = file if relative == "." else f"{relative}/{file}"
            folders.add(relative)
            with open(os.path.join(folder, file), encoding="utf-8") as source:
                lines = source.read().splitlines()
            if len(lines) >= MAX_LINES:
                faults.append((path, len(lines), f"{len(lines)} lines; split it by matter, below {MAX_LINES}"))
            if file.endswith(".py"):
                continue
            for number, line in enumerate(lines, 1):
                found = INCLUDE.match(line)
                if found:
                    target = resolve(root, relative, found[1], found[2])
                    reason = include_fault(path, found[1], found[2], target)
                    if reason:
                        faults.append((path, number, reason))
    return faults + check_map(root, folders - {"."}) + check_readme(root)


def check_map(root, folders):
    try:
        with open(os.path.join(root, "docs/map.md"), encoding="utf-8") as file:
            text = file.read()
    except OSError:
        return [("docs/map.md", 1, "there is no floor plan")]
    return [("docs/map.md", 1, f"does not name {folder}/") for folder in sorted(folders)
            if not re.search(r"(?<![\w/])" + re.escape(folder) + "/", text)]


def check_readme(root):
    with open(os.path.join(root, "README.md"), encoding="utf-8") as file:
        before, _, rest = file.read().partition("```c\n")
    with open(os.path.join(root, "examples/hello.c"), encoding="utf-8") as file:
        program = file.read()
    if rest.startswith(program + "```"):
        return []
    return [("README.md", before.count("\n") + 1, "the program is not examples/hello.c as it stands")]


# --- self-test ----------------------------------------------------------------------------------------------------------

# File, its text, and what is to be found in it as (line, part of the reason).
CASES = [
    ("docs/map.md", "`include/talvek/` `platform/` `platform/posix/` `utility/` `state/` `vendor/` `at/` `sms/` `queries/`\n"
                    "`notify/` `api/` `sim/` `ctl/` `tests/` `examples/`\n", [(1, "does not name bench/")]),
    ("examples/hello.c", "int main(void) { return 0; }\n", []),
    ("README.md", "# A heading\n\n```c\nint main(void) { return 1; }\n```\n", [(3, "the program is not")]),
    ("include/talvek/good.h", '#include "talvek/types.h"\n#include <stdint.h>\n', []),
    ("include/talvek/bad.h", '#include "talvek/types.h"\n#include "platform/win32.h"\n', [(2, "include/ must not")]),
    ("platform/good.h", '#include "talvek/types.h"\n#include "platform/win32.h"\n', []),
    ("platform/bad.h", '#include "talvek/core.h"\n#include <mutex>\n', [(1, "platform/ must not"), (2, "<mutex>")]),
    ("platform/posix/good.cpp", "#include <mutex>\n#include <vector>\n", []),
    ("platform/posix/bad.cpp", '#include "utility/log.h"\n', [(1, "platform/ must not include utility/log.h")]),
    ("utility/bad.cpp", '#include "state/globals.h"\n', [(1, "utility/ must not")]),
    ("state/bad.cpp", '#include "vendor/entry_points.h"\n', [(1, "state/ must not")]),
    ("vendor/good.cpp", '#include "utility/log.h"\n#include "vendor/entry_points.h"\n#include "talvek/gobi_dll.h"\n', []),
    ("vendor/bad.cpp", '\n\n#include "state/globals.h"\n', [(3, "vendor/ must not")]),
    ("at/bad.cpp", '#include "vendor/entry_points.h"\n', [(1, "at/ must not")]),
    ("sms/bad.cpp", '#include "state/globals.h"\n#  include <string>\n', [(1, "sms/ must not"), (2, "<string>")]),
    ("queries/bad.cpp", '#include "api/OrvError.h"\n#include "api/admission.h"\n#include "at/util.h"\n',
     [(2, "queries/ must not include api/admission.h"), (3, "queries/ must not include at/util.h")]),
    ("notify/bad.cpp", '#include "at/util.h"\n#include "at/parse.h"\n#include <functional>\n',
     [(2, "notify/ must not include at/parse.h"), (3, "<functional>")]),
    ("api/good.cpp", '#include "notify/OrvNotify.h"\n#include "sms/bits.h"\n#include "admission.h"\n', []),
    ("api/admission.h", '#include "vendor/entry_points.h"\n', []),
    ("api/bad.cpp", '#include "sim/control.h"\n#include "../ctl/cli.h"\n', [(1, "api/ must not"), (2, "api/ must not")]),
    ("ctl/good.cpp", '#include "sim/control.h"\n#include "talvek/talvek.h"\n#include <string>\n', []),
    ("ctl/cli.h", "#include <vector>\n", []),
    ("ctl/bad.cpp", '#include "sim/module.h"\n#include "api/OrvError.h"\n', [(1, "ctl/ must not"), (2, "ctl/ must not")]),
    ("sim/bad.cpp", '#include "vendor/entry_points.h"\n#include "vendor/forward.h"\n#include "api/OrvError.h"\n',
     [(2, "sim/ must not"), (3, "sim/ must not")]),
    ("tests/free.cpp", '#include "api/admission.h"\n#include <string>\n', []),
    ("bench/long.cpp", "\n" * MAX_LINES, [(MAX_LINES, "split it")]),
    ("bench/just.cpp", "\n" * (MAX_LINES - 1), []),
]


def self_test():
    with tempfile.TemporaryDirectory() as root:
        for path, text, _ in CASES:
            full = os.path.join(root, path)
            os.makedirs(os.path.dirname(full), exist_ok=True)
            with open(full, "w", encoding="utf-8") as file:
                file.write(text)
        found = check(root)
    wrong = 0
    for path, _, wanted in CASES:
        for line, part in wanted:
            hits = [f for f in found if f[0] == path and f[1] == line and part in f[2]]
            if len(hits) == 1:
                found.remove(hits[0])
            else:
                wrong += 1
                print(f"self-test: {path}:{line}: not found: {part}")
    for path, line, reason in found:
        wrong += 1
        print(f"self-test: {path}:{line}: reported without cause: {reason}")
    print(f"self-test: {sum(len(c[2]) for c in CASES)} violations in {len(CASES)} files, {wrong} wrong")
    return 1 if wrong else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("root", nargs="?", default=os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
    parser.add_argument("--self-test", action="store_true")
    options = parser.parse_args()
    if options.self_test:
        return self_test()
    faults = check(options.root)
    for path, line, reason in faults:
        print(f"{path}:{line}: {reason}")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
