"""The registry of a Wine prefix, read from its files."""

from __future__ import annotations

import re
from pathlib import Path

Registry = dict[str, frozenset[str]]

_FILES = ("system.reg", "user.reg")


def read_registry(prefix: Path) -> Registry:
    """Every key with its values; the prefix must be stopped, which writes the files."""
    keys: dict[str, set[str]] = {}
    for name in _FILES:
        current: set[str] = set()
        text = (prefix / name).read_text(encoding="latin-1").replace("\\\n  ", "")
        for line in text.splitlines():
            key = re.match(r"\[(.*)\]", line)
            if key:
                current = keys.setdefault(f"{name[:-4]}\\{key[1]}".replace("\\\\", "\\"), set())
            elif line.startswith(('"', "@")):
                current.add(line)
    return {key: frozenset(values) for key, values in keys.items()}


def changes(before: Registry, after: Registry) -> list[str]:
    """The keys that are not the same in both."""
    return sorted(key for key in before.keys() | after.keys() if before.get(key) != after.get(key))
