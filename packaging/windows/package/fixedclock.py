"""Runs commands under a clock that stands still."""

from __future__ import annotations

import subprocess
import time
from pathlib import Path
from typing import Mapping, Sequence

# faketime gives up where a killed run of the same process number has left its names behind; the next
# try has another number.
_TRIES = 5
_GIVEN_UP = "faketime: "


class FixedClock:
    """The same moment for every command, in every time zone."""

    def __init__(self, epoch: int) -> None:
        """epoch is the moment, in seconds since 1970."""
        stamp = time.strftime("%Y-%m-%d %H:%M:%S", time.gmtime(epoch))
        self._prefix = ["env", "TZ=UTC", "LC_ALL=C.UTF-8", "faketime", "-f", stamp]

    def run(self, command: Sequence[str], folder: Path | None = None,
            environment: Mapping[str, str] | None = None) -> subprocess.CompletedProcess[str]:
        """Runs the command to its end, in the folder; what it prints is in the result."""
        for _ in range(_TRIES):
            done = subprocess.run([*self._prefix, *command], cwd=folder, env=environment, check=False,
                                  capture_output=True, text=True)
            if done.returncode == 0 or not done.stderr.startswith(_GIVEN_UP):
                break
        return done
