#!/usr/bin/env python3
"""Counts the instructions that the message codecs execute for one message, with valgrind, against goals.

    bench/sms_instructions.py build/release/bin/bench_sms_instructions

What is counted is what happens between a codec's entry and its return, calls of the C library included. Prints one line a
goal, "met" or "MISSED", and ends with 1 if one was missed. Without valgrind it says so and counts nothing.
"""

import os
import re
import shutil
import subprocess
import sys

TIMES = 1000

# What, the program's case, the function that counts, instructions at most.
GOALS = [
    ("SMS-DELIVER, 160 septets", "deliver", "DecodeCompletePDU*", 600),
    ("SMS-DELIVER, concatenated", "concatenated", "DecodeCompletePDU*", 700),
    ("SMS-DELIVER, UCS2", "ucs2", "DecodeCompletePDU*", 700),
    ("SMS-SUBMIT, 160 septets", "submit", "EncodeMOPDU*", 900),
    ("CDMA message of 7-bit ASCII", "cdma", "DecodeCompleteMTSms*", 1000),
    ("160 septets as UTF-8", "unpack", "OrvGsmTextUnpack", 4000),
]


def count(program, case, function):
    """Instructions a call, or None after a message."""
    command = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", "--toggle-collect=" + function,
               program, case, str(TIMES)]
    environment = {name: value for name, value in os.environ.items() if name != "TALVEK_LOG"}
    environment["LD_BIND_NOW"] = "1"
    run = subprocess.run(command, capture_output=True, text=True, env=environment, check=False)
    collected = re.search(r"Collected : (\d+)", run.stderr)
    if run.returncode != 0 or not collected or int(collected[1]) == 0:
        print(f"{case}: not counted\n{run.stdout}{run.stderr}", file=sys.stderr)
        return None
    return int(collected[1]) / TIMES


def main():
    if len(sys.argv) != 2:
        print(__doc__, file=sys.stderr)
        return 2
    if not shutil.which("valgrind"):
        print("SKIPPED: valgrind is not installed, so no instructions are counted")
        return 0
    missed = False
    for what, case, function, limit in GOALS:
        instructions = count(sys.argv[1], case, function)
        met = instructions is not None and instructions <= limit
        missed |= not met
        if instructions is not None:
            print(f"{what:<46} {instructions:10.1f} instructions; goal {limit}: {'met' if met else 'MISSED'}")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
