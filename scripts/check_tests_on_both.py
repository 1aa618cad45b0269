#!/usr/bin/env python3
"""Holds the tests of both systems to one list: what runs on one only stands in tests/one_system_only.txt.

usage: scripts/check_tests_on_both.py LINUX_BUILD WINDOWS_BUILD      both built, with their tests
       prints one line per breach; exit code 1 when there is any
"""
import fnmatch
import json
import pathlib
import re
import subprocess
import sys

ROWS = pathlib.Path(__file__).resolve().parent.parent / "tests/one_system_only.txt"


def tests_of(build):
    """Each test as (program, name); one that is no GoogleTest program stands for itself, as (name, "*"). Those that
    run across the systems are neither's."""
    told = subprocess.run(["ctest", "--test-dir", build, "--show-only=json-v1"], stdout=subprocess.PIPE)
    if told.returncode:
        sys.exit(f"{build}: ctest cannot list its tests; for programs that it has not run yet, it has to ask them")
    tests = set()
    for test in json.loads(told.stdout)["tests"]:
        if "command" not in test:
            sys.exit(f"{build}: {test['name']}: build it first")
        if any(property["name"] == "LABELS" and "across" in property["value"] for property in test["properties"]):
            continue
        command = " ".join(test["command"])
        found = re.search(r"([^/ ]+?)(?:\.exe)? --gtest_filter=(\S+)", command)
        tests.add(found.groups() if found else (test["name"], "*"))
    return tests


def rows():
    for number, line in enumerate(ROWS.read_text(encoding="utf-8").splitlines(), 1):
        if line and not line.startswith("#"):
            yield f"{ROWS.name}:{number}", line.split(maxsplit=3)


def breaches(tests):
    """`tests` has a set for each system. A row that left out nothing would hide the next test of that name."""
    linux, windows = tests["linux"], tests["windows"]
    only = {"linux": linux - windows, "windows": windows - linux}
    for place, row in rows():
        if len(row) != 4 or row[0] not in only:
            yield f"{place}: a row is: linux or windows, the program, the test, the reason"
            continue
        system, program, pattern, _ = row
        meant = {test for test in only[system] if test[0] == program and fnmatch.fnmatchcase(test[1], pattern)}
        if not meant:
            yield f"{place}: {program} {pattern} is no test of {system} alone"
        only[system] -= meant
    for system, left in only.items():
        for program, name in sorted(left):
            yield f"{program} {name} runs on {system} only, and {ROWS.name} does not say why"


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    tests = dict(zip(("linux", "windows"), map(tests_of, sys.argv[1:])))
    found = list(breaches(tests))
    count = len(tests["linux"] & tests["windows"])
    print("\n".join(found) if found else f"{count} tests run on both systems, {len(list(rows()))} rows say what does not")
    return 1 if found or not count else 0


if __name__ == "__main__":
    sys.exit(main())
