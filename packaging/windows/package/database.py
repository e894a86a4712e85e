"""Writes the tables of a package, through msibuild."""

from __future__ import annotations

from pathlib import Path
from typing import Mapping, Sequence

from fixedclock import FixedClock

Value = str | int | None

# Simplified Chinese, which has the letters of English too: the texts are in both languages.
CODE_PAGE = 936

_STATEMENTS_AT_ONCE = 40


def literal(value: Value) -> str:
    """A value in a statement. There is no way to write a quote inside a text."""
    if value is None:
        return "NULL"
    if isinstance(value, int):
        return str(value)
    if "'" in value:
        raise ValueError(f"a package's statement cannot hold a quote: {value}")
    return f"'{value}'"


def insert(table: str, row: Mapping[str, Value]) -> str:
    """The statement that adds one row; columns that are None stay empty."""
    given = {name: value for name, value in row.items() if value is not None}
    names = ", ".join(f"`{name}`" for name in given)
    values = ", ".join(literal(value) for value in given.values())
    return f"INSERT INTO `{table}` ({names}) VALUES ({values})"


class Database:
    """One package file whose tables are being written. Every command runs under the given clock,
    since the time of day would get into the file."""

    def __init__(self, path: Path, clock: FixedClock, work: Path) -> None:
        self._path = path
        self._clock = clock
        self._work = work

    def set_code_page(self) -> None:
        """Before any text beyond ASCII."""
        table = self._work / "codepage.idt"
        table.write_bytes(f"\r\n\r\n{CODE_PAGE}\t_ForceCodepage\r\n".encode("ascii"))
        self._build("-i", str(table))

    def execute(self, statements: Sequence[str]) -> None:
        # It does not say which of several it could not run.
        for begin in range(0, len(statements), _STATEMENTS_AT_ONCE):
            self._build("-q", *statements[begin:begin + _STATEMENTS_AT_ONCE])

    def add_stream(self, name: str, content: Path) -> None:
        self._build("-a", name, str(content))

    def set_summary(self, title: str, author: str, template: str, package_code: str) -> None:
        self._build("-s", title, author, template, package_code)

    def _build(self, *arguments: str) -> None:
        done = self._clock.run(["msibuild", str(self._path), *arguments])
        # It says what it could not do and ends with 0 all the same.
        if done.returncode != 0 or done.stderr.strip():
            raise SystemExit(f"package: msibuild: {done.returncode} {done.stderr}\n{chr(10).join(arguments)}")
