"""What a process has open, how many threads it has, and what it holds of Windows."""

from __future__ import annotations

import os
import re
from dataclasses import dataclass
from pathlib import Path


@dataclass(frozen=True)
class Handles:
    """Open files, sockets and pipes, threads; under Wine also the program's own count of Windows'
    handles and GDI objects, 0 elsewhere."""

    files: int
    threads: int
    handles: int = 0
    gdi_objects: int = 0


def handles(pid: int, folder: Path) -> Handles:
    """Counted now, but for what the program, which lies in folder, has last noted by itself."""
    return Handles(len(os.listdir(f"/proc/{pid}/fd")), len(os.listdir(f"/proc/{pid}/task")),
                   *_noted(folder / "handles.txt"))


def _noted(path: Path) -> tuple[int, int]:
    if not path.exists():
        return 0, 0
    lines = re.findall(r"handles (\d+), GDI objects (\d+), user objects \d+\n",
                       path.read_text(encoding="ascii"))
    return (int(lines[-1][0]), int(lines[-1][1])) if lines else (0, 0)
