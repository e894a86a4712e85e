"""Reads what Windows programs and libraries say about their version."""

from __future__ import annotations

from pathlib import Path

import pefile


def version_and_language(path: Path) -> tuple[str, str] | None:
    """The file's version, as four numbers, and its language; None without a version resource."""
    if path.read_bytes()[:2] != b"MZ":
        return None
    with pefile.PE(str(path), fast_load=True) as binary:
        binary.parse_data_directories([pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_RESOURCE"]])
        fixed = getattr(binary, "VS_FIXEDFILEINFO", None)
        if not fixed:
            return None
        high, low = fixed[0].FileVersionMS, fixed[0].FileVersionLS
        languages = [int(entry[:4], 16)
                     for info in binary.FileInfo[0] if hasattr(info, "Var")
                     for variable in info.Var for entry in [_translation(variable)] if entry]
    numbers = (high >> 16, high & 0xFFFF, low >> 16, low & 0xFFFF)
    return ".".join(map(str, numbers)), str(languages[0] if languages else 0)


def _translation(variable) -> str:
    """Language and code page of one translation, as hexadecimal digits."""
    for value in variable.entry.values():
        return "".join(part[2:].zfill(4) for part in value.split())
    return ""
