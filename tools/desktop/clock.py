"""A clock that can be put forward, so that nobody waits for what comes once a minute."""

from __future__ import annotations

from pathlib import Path

# The loader puts the name of the system's library folder in place of $LIB.
_LIBRARY = "/usr/$LIB/faketime/libfaketimeMT.so.1"


class MovableClock:
    """The time of the programs that are started in its environment: the system's until it is put
    forward. Timers that became due by that fire at once."""

    def __init__(self, folder: Path) -> None:
        """The clock's setting lies in folder."""
        self._setting = folder / "clock.txt"
        self._ahead_s = 0
        self._write()

    def put_forward(self, seconds: int) -> None:
        """So many seconds pass at once."""
        self._ahead_s += seconds
        self._write()

    def environment(self) -> dict[str, str]:
        """What a program needs to go by this clock."""
        return {"LD_PRELOAD": _LIBRARY, "FAKETIME_TIMESTAMP_FILE": str(self._setting),
                "FAKETIME_NO_CACHE": "1", "FAKETIME_DISABLE_SHM": "1",
                # A file's own time decides whether it has changed.
                "NO_FAKE_STAT": "1"}

    def _write(self) -> None:
        fresh = self._setting.with_suffix(".new")
        fresh.write_text(f"+{self._ahead_s}\n")
        fresh.replace(self._setting)
