"""A process that never outlives the one that started it."""

from __future__ import annotations

import signal
import subprocess
from pathlib import Path
from types import TracebackType
from typing import IO, Mapping, Sequence

from .project import SLOWNESS

STOP_S = 10.0 * SLOWNESS
"""How long a process may take to end after it was asked to."""


class Child:
    """One started process; its output goes to a file. A context manager: leaving it stops it."""

    def __init__(self, command: Sequence[str | Path], *, env: Mapping[str, str],
                 output: Path | None) -> None:
        self.output = output
        self._sink: IO[bytes] | None = None
        if output is not None:
            output.parent.mkdir(parents=True, exist_ok=True)
            self._sink = output.open("wb")
        # The kernel ends the process should this one be killed before it can.
        guarded = ["setpriv", "--pdeathsig", "KILL", "--", *map(str, command)]
        self._process = subprocess.Popen(guarded, env=dict(env), stdin=subprocess.DEVNULL,
                                         stdout=self._sink, stderr=self._sink)

    def __enter__(self) -> Child:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self.stop()

    @property
    def pid(self) -> int:
        return self._process.pid

    @property
    def status(self) -> int | None:
        """The exit status, negative for a signal; None while it runs."""
        return self._process.poll()

    @property
    def alive(self) -> bool:
        return self.status is None

    def printed(self) -> str:
        """What the process has written to its standard output and error so far."""
        if self.output is None:
            return ""
        return self.output.read_text(encoding="utf-8", errors="replace")

    def wait(self, timeout_s: float | None = STOP_S) -> int:
        """Waits for the process to end by itself; its exit status."""
        return self._process.wait(timeout_s)

    def stop(self) -> int:
        """Asks the process to end, makes it end when it does not; its exit status."""
        if self.alive:
            self._process.send_signal(signal.SIGTERM)
            try:
                self._process.wait(STOP_S)
            except subprocess.TimeoutExpired:
                self._process.kill()
        status = self._process.wait()
        if self._sink is not None:
            self._sink.close()
            self._sink = None
        return status
