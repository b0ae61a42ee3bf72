#!/usr/bin/env python3
"""Reads the JUnit file of one ctest run, tells what failed, and leaves "PASSED FAILED" in a file.

A run that left no file, or an unreadable one, or that ran no test, counts as one failure; so does a run that ctest itself
calls failed although no single test did.
"""

import argparse
import sys
import xml.etree.ElementTree as ElementTree

SHOWN_LINES = 40


def classify(case):
    """passed, failed or skipped, and for a failure what there is to show. A test that could not be started failed."""
    status = case.get("status", "")
    if status == "run":
        return "passed", ""
    if status == "disabled":
        return "skipped", ""
    skipped = case.find("skipped")
    if status == "notrun" and skipped is not None and skipped.get("message", "").startswith("SKIP_"):
        return "skipped", ""
    return "failed", (case.findtext("system-out") or "").strip() or "no output; the cause stands in ctest.log"


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("name")
    parser.add_argument("junit")
    parser.add_argument("--status", type=int, default=0, help="the exit status of ctest")
    parser.add_argument("--log", help="ctest's output, shown when there is no JUnit file")
    parser.add_argument("--counts", required=True, help="where to leave the two numbers")
    options = parser.parse_args()

    results = {"passed": 0, "failed": 0, "skipped": 0}
    try:
        cases = ElementTree.parse(options.junit).getroot().iter("testcase")
        for case in cases:
            result, shown = classify(case)
            results[result] += 1
            if result == "failed":
                print(f"-- {options.name}: {case.get('name')} FAILED")
                print("\n".join("   " + line for line in shown.splitlines()[-SHOWN_LINES:]))
            elif result == "skipped":
                print(f"-- {options.name}: {case.get('name')} skipped")
    except (OSError, ElementTree.ParseError) as fault:
        print(f"-- {options.name}: no results: {fault}")
    if not results["failed"] and (options.status or not results["passed"]):
        results["failed"] = 1
        print(f"-- {options.name}: ctest ended with {options.status}, {results['passed']} tests passed")
        if options.log:
            with open(options.log, encoding="utf-8", errors="replace") as log:
                print("".join(log.readlines()[-SHOWN_LINES:]))

    print(f"== {options.name}: {results['passed']} passed, {results['failed']} failed"
          + (f", {results['skipped']} skipped" if results["skipped"] else ""))
    with open(options.counts, "w", encoding="ascii") as counts:
        counts.write(f"{results['passed']} {results['failed']}\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
