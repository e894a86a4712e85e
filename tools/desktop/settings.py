"""Settings files as the program's settings class reads them."""

from __future__ import annotations

import os
from pathlib import Path

_PLAIN = set("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_./:=+{}@ ")


def quoted(value: str) -> str:
    """A value that is read back unchanged: commas, semicolons and backslashes mean something in
    these files, and characters beyond ASCII must be escaped."""
    if value and value == value.strip() and not value.startswith("@") and set(value) <= _PLAIN:
        return value
    escaped = ""
    after_escape = False
    for character in value:
        if character in '"\\':
            escaped += "\\" + character
            after_escape = False
        # An escape takes every hexadecimal digit that follows, so such a digit is escaped too.
        elif not " " <= character <= "~" or (after_escape and character in "0123456789abcdefABCDEF"):
            escaped += "".join(f"\\x{unit:x}" for unit in _utf16(character))
            after_escape = True
        else:
            escaped += character
            after_escape = False
    return f'"{escaped}"'


def _utf16(character: str) -> list[int]:
    data = character.encode("utf-16-be")
    return [int.from_bytes(data[at:at + 2], "big") for at in range(0, len(data), 2)]


class Settings:
    """One file with values by "Group/key". Every write changes the file's size, because readers
    tell a changed file by its size and its time, and the time may be too coarse."""

    def __init__(self, path: Path, values: dict[str, str]) -> None:
        self._path = path
        self._values = dict(values)
        self._writes = 0
        self._write()

    def __getitem__(self, key: str) -> str:
        return self._values[key]

    def update(self, values: dict[str, str]) -> None:
        """Sets these values and writes the file in one step, so that no half of it is ever read."""
        self._values.update(values)
        self._write()

    def remove(self, key: str) -> None:
        """Takes a key out of the file."""
        del self._values[key]
        self._write()

    def _write(self) -> None:
        self._writes += 1
        groups: dict[str, list[str]] = {}
        for key, value in self._values.items():
            group, name = key.split("/", 1)
            groups.setdefault(group, []).append(f"{name}={quoted(value)}")
        lines = [";" * self._writes]
        for group, entries in groups.items():
            lines += [f"[{group}]", *entries, ""]
        self._path.parent.mkdir(parents=True, exist_ok=True)
        fresh = self._path.with_suffix(".new")
        fresh.write_text("\n".join(lines), encoding="ascii")
        os.replace(fresh, self._path)
