"""Zip files whose bytes follow from their content alone."""

from __future__ import annotations

import time
import zipfile
from pathlib import Path
from typing import Iterable, Mapping

_FILE = 0o100644 << 16
_FOLDER = (0o40755 << 16) | 0x10  # the second part is for Windows


def _entry(name: str, epoch: int, attributes: int) -> zipfile.ZipInfo:
    entry = zipfile.ZipInfo(name, time.gmtime(epoch)[:6])
    entry.compress_type = zipfile.ZIP_DEFLATED
    entry.external_attr = attributes
    entry.create_system = 3
    return entry


def write_zip(target: Path, epoch: int, files: Mapping[str, Path], folders: Iterable[str] = ()) -> None:
    """Packs each file under its name; folders are empty ones to be made."""
    with zipfile.ZipFile(target, "w", compresslevel=9) as archive:
        for folder in sorted(folders):
            archive.writestr(_entry(folder + "/", epoch, _FOLDER), b"")
        for name in sorted(files):
            archive.writestr(_entry(name, epoch, _FILE), files[name].read_bytes())
