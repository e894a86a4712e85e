"""A copy of the program that the installer has started."""

from __future__ import annotations

import os
import re
import signal
from pathlib import Path

from desktop.child import STOP_S
from desktop.waiting import wait_until


class StartedCopy:
    """In place of a process that a test has started itself; its exit status cannot be known."""

    def __init__(self, pid: int, command_line: str) -> None:
        self.pid = pid
        self.command_line = command_line

    @property
    def status(self) -> int | None:
        return None

    @property
    def alive(self) -> bool:
        try:
            state = Path(f"/proc/{self.pid}/stat").read_text(encoding="utf-8", errors="replace")
        except OSError:
            return False
        return state.rpartition(")")[2].split()[0] != "Z"

    def printed(self) -> str:
        return ""

    def wait(self) -> None:
        """Waits for the process to end by itself."""
        wait_until(lambda: not self.alive, "the end of the copy", STOP_S)

    def stop(self) -> None:
        if self.alive:
            os.kill(self.pid, signal.SIGTERM)


def running_copies(program: str, machine: Path) -> list[StartedCopy]:
    """The running copies of an installed program; everything of the machine lies in its folder."""
    found = []
    for process in Path("/proc").iterdir():
        if not process.name.isdigit():
            continue
        try:
            line = (process / "cmdline").read_bytes().replace(b"\0", b" ").decode(errors="replace")
            environment = (process / "environ").read_bytes()
        except OSError:
            continue
        if str(machine).encode() in environment and re.match(re.escape(program), line):
            found.append(StartedCopy(int(process.name), line.strip()))
    return found
