#!/usr/bin/env python3
"""Puts the table of the last whole run of the benchmarks, build/bench/results.json, in place of the
one in docs/performance.md. What stands around the table is left alone: read it again."""

from __future__ import annotations

import json
import re
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
PAGE = ROOT / "docs/performance.md"
RESULTS = ROOT / "build/bench/results.json"
HEAD = ("| what | against | ours | bare | result | goal | held to |\n"
        "|---|---|---|---|---|---|---|\n")


def number(value: float) -> str:
    return f"{value:.{2 if value < 10 else 1 if value < 100 else 0}f}"


def line(row: dict) -> str:
    """The line of one row, as the benchmarks print it."""
    unit = row["unit"]

    def result(value: float) -> str:
        return f"{value:.2f}" if "bare" in row else f"{number(value)} {unit}"
    cells = (row["what"], row.get("against", ""), f"{number(row['measured'])} {unit}",
             f"{number(row['bare'])} {unit}" if "bare" in row else "",
             result(row.get("ratio", row["measured"])),
             result(row["atMost"]) if "atMost" in row else "stated",
             result(row["heldTo"]) if "heldTo" in row else "")
    return "| " + " | ".join(cells).replace("|  |", "| |") + " |\n"


def main() -> None:
    rows = json.loads(RESULTS.read_text(encoding="utf-8"))
    page = PAGE.read_text(encoding="utf-8")
    table = HEAD + "".join(map(line, rows))
    found = re.compile(re.escape(HEAD) + r"(?:\|.*\n)+")
    if not found.search(page):
        raise SystemExit(f"{PAGE}: there is no table to replace")
    PAGE.write_text(found.sub(lambda _: table, page, count=1), encoding="utf-8")


if __name__ == "__main__":
    main()
