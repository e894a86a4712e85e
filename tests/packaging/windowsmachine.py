"""A Windows machine of a test's own, under Wine: nothing is shared with any other test, neither files nor
registry."""

from __future__ import annotations

import os
import shutil
import subprocess
from pathlib import Path, PureWindowsPath
from typing import Mapping, Sequence

from desktop.wine import TEMPLATE, wine_environment
from desktop.wineregistry import Registry, read_registry

# Only against hanging: long enough for a busy machine.
INSTALL_S = 600.0
_TOOL_S = 120.0
_REMOVALS = 20
_PLACES = ("TMPDIR", "XDG_RUNTIME_DIR")
# The template is a Windows 7.
_SYSTEM_VERSION = ("reg", "add", r"HKCU\Software\Wine", "/v", "Version", "/d", "win10", "/f")


def windows_path(path: Path) -> str:
    """A file of this system as Windows programs name it."""
    return "Z:" + str(path).replace("/", "\\")


class WindowsMachine:
    """Its files are under drive; a runner for the assistant's driver."""

    def __init__(self, folder: Path, display: str, *, is_old: bool = False) -> None:
        """Sets the machine up in folder; is_old makes it a system before Windows 10."""
        self._prefix = folder / "machine"
        shutil.copytree(TEMPLATE, self._prefix, symlinks=True)
        self.drive = self._prefix / "drive_c"
        self._display = display
        if not is_old:
            self.run(*_SYSTEM_VERSION)
        self.stop()

    def command(self, program: Path, arguments: Sequence[str]) -> list[str]:
        return ["wine", str(program), *arguments]

    def environment(self, base: Mapping[str, str]) -> dict[str, str]:
        # Wine finds the programs that run already by these: they must be the same for all.
        kept = {name: value for name, value in base.items() if name not in _PLACES}
        return {**kept, **wine_environment(), "WINEPREFIX": str(self._prefix), "DISPLAY": self._display}

    def start(self, environment: Mapping[str, str]) -> None:
        """Begun by the program, Wine's own services would write into its output."""
        subprocess.run(["wine", "cmd", "/c", "exit"], env=dict(environment), check=True,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=_TOOL_S)

    def stop(self) -> None:
        """Shuts the machine down; what it has in memory is then in its files."""
        for what in ("--kill", "--wait"):
            subprocess.run(["wineserver", what], env=self.environment(os.environ), check=False,
                           capture_output=True, timeout=_TOOL_S)

    def remove(self) -> None:
        """Shuts the machine down and takes it off the disk: what has just ended may still write."""
        self.stop()
        for _ in range(_REMOVALS):
            shutil.rmtree(self._prefix, ignore_errors=True)
            if not self._prefix.exists():
                return
            self.stop()

    def run(self, *command: str) -> int:
        """Runs a Windows program to its end; its exit status, of which one byte arrives."""
        return subprocess.run(["wine", *command], env=self.environment(os.environ), check=False,
                              stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=INSTALL_S).returncode

    def place(self, path: str) -> Path:
        """Where a file on drive C lies on this system."""
        parts = PureWindowsPath(path).parts
        return self.drive.joinpath(*parts[1:])

    def files(self) -> set[str]:
        """Every file and folder on drive C outside of what Windows keeps for itself."""
        kept = ("windows/Installer", "windows/temp", "windows/Temp", "users/root/Temp")
        found = {path.relative_to(self.drive).as_posix() for path in self.drive.rglob("*")}
        return {name for name in found if not name.startswith(kept)}

    def registry(self) -> Registry:
        """Every key of the stopped machine with its values."""
        return read_registry(self._prefix)
