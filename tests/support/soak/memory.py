"""What a process holds in memory."""

from __future__ import annotations

import statistics
import time

_WINDOW = 5
_PAUSE_S = 0.2


def _held_kib(pid: int) -> int:
    """Memory of its own, without the files that are mapped, in KiB."""
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        for line in status:
            if line.startswith("RssAnon:"):
                return int(line.split()[1])
    raise RuntimeError(f"process {pid} holds no memory")


def held_kib(pid: int) -> float:
    """The median over about a second, in KiB, because single moments swing."""
    values = []
    for _ in range(_WINDOW):
        values.append(_held_kib(pid))
        time.sleep(_PAUSE_S)
    return statistics.median(values)
