#!/usr/bin/env python3
"""Names the sources with lines that no test reaches, then says in one line how many lines and branches
are: coverage_summary.py SUMMARY LINES-KEPT. Fails below so many per cent of the lines."""

from __future__ import annotations

import json
import sys


def main(path: str, kept: float) -> int:
    with open(path, encoding="utf-8") as file:
        summary = json.load(file)
    for source in summary["files"]:
        missed = source["line_total"] - source["line_covered"]
        if missed:
            print(f"{missed:4} lines not reached: {source['filename']}")
    share = 100 * summary["line_covered"] / max(summary["line_total"], 1)
    enough = share >= kept
    print(f"coverage: {share:.1f} % of the lines ({summary['line_covered']} of "
          f"{summary['line_total']}), {summary['branch_percent']:.1f} % of the branches "
          f"({summary['branch_covered']} of {summary['branch_total']})"
          + ("" if enough else f"; at least {kept:g} % of the lines are wanted"))
    return 0 if enough else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], float(sys.argv[2])))
