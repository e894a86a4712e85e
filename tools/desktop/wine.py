"""The Windows build of the program, run under Wine."""

from __future__ import annotations

import os
import shutil
import subprocess
from pathlib import Path
from typing import Mapping, Sequence

from .project import SOURCE
from .wineregistry import Registry, read_registry

_TOOL_S = 60.0

_SCRIPTS = SOURCE / "scripts/windows"
TEMPLATE = SOURCE / "build/wine-prefix"
_REGISTRY_FILES = ("system.reg", "user.reg", "userdef.reg", ".update-timestamp")


def wine_environment() -> dict[str, str]:
    """What scripts/windows/wine_environment.sh says."""
    script = 'source "$0" && printf "%s\\0" "${wine_environment[@]}"'
    text = subprocess.run(["bash", "-c", script, str(_SCRIPTS / "wine_environment.sh")],
                          check=True, capture_output=True, text=True).stdout
    return dict(pair.split("=", 1) for pair in text.split("\0") if pair)


class WinePrefix:
    """A Wine of its own: registry, clipboard and local names are private to the programs in it, the
    system files are those of the project's prefix. Use it for one display."""

    def __init__(self, folder: Path) -> None:
        """Lays the prefix out in folder/prefix; nothing is started yet."""
        self._path = folder / "prefix"
        self._path.mkdir(parents=True)
        for name in _REGISTRY_FILES:
            if (TEMPLATE / name).exists():
                shutil.copy2(TEMPLATE / name, self._path / name)
        shutil.copytree(TEMPLATE / "dosdevices", self._path / "dosdevices", symlinks=True)
        (self._path / "drive_c").symlink_to(TEMPLATE / "drive_c")

    def command(self, program: Path, arguments: Sequence[str]) -> list[str]:
        """The command that starts a Windows program."""
        return ["wine", str(program), *arguments]

    def environment(self, base: Mapping[str, str]) -> dict[str, str]:
        """base as the programs in this prefix get it."""
        # Wine keeps these to itself unless they come with a prefix.
        passed = {("WINE" + name if name.startswith("QT_") else name): value
                  for name, value in base.items()}
        return {**passed, **wine_environment(), "WINEPREFIX": str(self._path)}

    def run(self, *command: str, display: str | None = None) -> str:
        """Runs a Windows program to its end and gives its output; CalledProcessError when it
        fails."""
        env = self.environment(os.environ)
        env.pop("DISPLAY", None)
        if display is not None:
            env["DISPLAY"] = display
        done = subprocess.run(["wine", *command], env=env, check=True, capture_output=True,
                              stdin=subprocess.DEVNULL, timeout=_TOOL_S)
        return done.stdout.decode("gbk", errors="replace")

    def set_registry_text(self, key: str, name: str, value: str) -> None:
        """Sets a text value in the registry, e.g. in "HKLM\\\\Software\\\\Example"."""
        self.run("reg", "add", key, "/v", name, "/t", "REG_SZ", "/d", value, "/f")

    def set_registry_number(self, key: str, name: str, value: int) -> None:
        """Sets a 32-bit number in the registry."""
        self.run("reg", "add", key, "/v", name, "/t", "REG_DWORD", "/d", str(value), "/f")

    def registry(self) -> Registry:
        """Every key of the stopped prefix with its values."""
        return read_registry(self._path)

    def start(self, environment: Mapping[str, str]) -> None:
        """Starts Wine's own services: begun by the program they would write into its output."""
        subprocess.run(["wine", "cmd", "/c", "exit"], env=dict(environment), check=True,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=_TOOL_S)

    def stop(self) -> None:
        """Ends every program in the prefix and waits until nothing of it is left."""
        for what in ("--kill", "--wait"):
            subprocess.run(["wineserver", what], env=self.environment(os.environ), check=False,
                           capture_output=True, timeout=_TOOL_S)
