#!/usr/bin/env python3
"""Judges a CTest result file: every test must have run and passed, and every skipped part of one
is listed with its reason, so that nothing goes untested unnoticed."""

from __future__ import annotations

import re
import sys
import xml.etree.ElementTree as ElementTree

# What Qt Test and unittest write for a skipped part: its name, then the reason.
QT_SKIP = re.compile(r"^SKIP\s*: (?P<name>\S+) (?P<reason>.*)$", re.MULTILINE)
PYTHON_SKIP = re.compile(r"^(?P<name>\S+) \(.*\.\.\. skipped (?P<reason>.*)$", re.MULTILINE)


def skips(output: str) -> list[str]:
    """The skipped parts in a test program's output, as "name: reason"."""
    found = [*QT_SKIP.finditer(output), *PYTHON_SKIP.finditer(output)]
    return [f"{match['name']}: {match['reason'].strip()}" for match in found]


def judge(path: str) -> int:
    try:
        cases = list(ElementTree.parse(path).getroot().iter("testcase"))
    except (OSError, ElementTree.ParseError) as error:
        print(f"no test results: {error}", file=sys.stderr)
        return 1
    not_passed = [case for case in cases if case.get("status") != "run"]
    skipped = [(case.get("name"), line) for case in cases
               for line in skips(case.findtext("system-out") or "")]
    if skipped:
        print("skipped inside the tests:")
        for test, line in skipped:
            print(f"    {test}: {line}")
    for case in not_passed:
        print(f"not passed: {case.get('name')} ({case.get('status')})", file=sys.stderr)
    print(f"{len(cases)} test programs, {len(not_passed)} not passed, {len(skipped)} skipped parts")
    return 1 if not_passed or not cases else 0


if __name__ == "__main__":
    sys.exit(judge(sys.argv[1]))
