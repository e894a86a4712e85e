"""The list of running programs that the assistant sees, for a system that has no such command."""

from __future__ import annotations

import shutil
from pathlib import Path
from typing import Mapping

from .project import TASKLIST
from .waiting import wait_until

CLIENT = "Velistra_VDI_Client.exe"

# How long after its first hot questions the assistant looks for the first time, and between looks.
LOOK_S = 60


class ProcessList:
    """A command "tasklist" in a folder of its own. It names the virtual-desktop client until it is
    told that the client has ended."""

    def __init__(self, folder: Path) -> None:
        """Puts the command into folder, which is made; its calls are counted anew."""
        folder.mkdir(parents=True, exist_ok=True)
        self._folder = folder
        self._calls = folder / "calls.log"
        self._calls.unlink(missing_ok=True)
        shutil.copy2(TASKLIST, folder / "tasklist")
        self._name(CLIENT)

    def end_client(self) -> None:
        """From now on the client no longer runs."""
        self._name("explorer.exe")

    def calls(self) -> int:
        """How often the command was called."""
        return len(self._calls.read_text().splitlines()) if self._calls.exists() else 0

    def wait_for_call(self, calls_before: int) -> None:
        """Waits until the command was called more often than that."""
        wait_until(lambda: self.calls() > calls_before, "a look at the running programs")

    def environment(self, base: Mapping[str, str]) -> dict[str, str]:
        """base with the command in the search path, before every other of that name."""
        return {**base, "PATH": f"{self._folder}:{base['PATH']}"}

    def _name(self, program: str) -> None:
        fresh = self._folder / "programs.new"
        fresh.write_text(f"{program}                 4711 Console                    1     98,304 K\n")
        fresh.replace(self._folder / "programs.txt")
