"""Programs of a build, linked anew with one object of a changed source."""

from __future__ import annotations

import json
import os
import shlex
import subprocess
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path
from typing import BinaryIO

from testrun import JOBS


class ChangedPrograms:
    """While a change is tried, its programs stand where the build has them, and those of the build are
    kept in folder. Much quicker than the build, which would look at everything and make libraries."""

    def __init__(self, build: Path, folder: Path, log: BinaryIO) -> None:
        self._build = build
        self._kept = folder / "kept"
        self._object = folder / "changed.o"
        self._log = log
        self._links: dict[str, str] = {}
        self._places: dict[str, Path] = {}
        self._kept.mkdir(exist_ok=True)
        self.put_back() # what a run that was broken off has left

    def compile(self, source: Path) -> bool:
        """Compiles the source as it is now."""
        entries = json.loads((self._build / "compile_commands.json").read_text())
        command = next(shlex.split(entry["command"]) for entry in entries
                       if Path(entry["file"]) == source)
        command[command.index("-o") + 1] = str(self._object)
        return self._run(command, {**os.environ, "MIRAVEL_MUTANT": "1"})

    def link(self, names: list[str]) -> bool:
        """Puts programs with the compiled object in the places of those of the build. An object comes
        before the one of the same source in a library."""
        if not self._links:
            self._read_links()
        for name in names:
            os.rename(self._places[name], self._kept / name)
        commands = [["sh", "-c", self._links[name].replace(" -o ", f" {self._object} -o ", 1)]
                    for name in names]
        with ThreadPoolExecutor(JOBS) as pool:
            return all(list(pool.map(self._run, commands)))

    def put_back(self) -> None:
        kept = list(self._kept.iterdir())
        if kept and not self._places:
            self._read_links()
        for program in kept:
            os.replace(program, self._places[program.name])

    def _read_links(self) -> None:
        commands = subprocess.run(["ninja", "-C", self._build, "-t", "commands"], check=True,
                                  capture_output=True, text=True).stdout
        for command in commands.splitlines():
            _, found, rest = command.partition(" -o tests/")
            if found:
                place = self._build / "tests" / rest.split()[0]
                self._links[place.name] = command
                self._places[place.name] = place

    def _run(self, command: list[str], environment: dict[str, str] | None = None) -> bool:
        return subprocess.run(command, cwd=self._build, stdout=self._log, stderr=self._log,
                              env=environment).returncode == 0
