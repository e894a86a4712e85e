"""A copy of the sources with a build of its own, in which one change at a time is tried."""

from __future__ import annotations

import filecmp
import os
import re
import shutil
import subprocess
from dataclasses import dataclass
from pathlib import Path

from mutation import Mutation
from testrun import JOBS, TestRun, is_alone

INCLUDE = re.compile(r'^#include "([^"]+)"', re.MULTILINE)


@dataclass(frozen=True)
class Outcome:
    """What became of a change: the test that killed it, "invalid" when it did not compile, "" when it
    lives; and how many programs of tests were run for that."""

    killer: str
    runs: int

    @property
    def compiled(self) -> bool:
        return self.killer != "invalid"


class Bench:
    """Builds and tests. Everything lies in folder, nothing else is touched."""

    def __init__(self, root: Path, folder: Path) -> None:
        self._root = root
        self._folder = folder
        self.sources = folder / "source"
        # As far from its sources as the release build: the compiler cache then has what that built.
        self._build = self.sources / "build/release"
        self._ready: set[str] = set()

    def prepare(self) -> None:
        """Brings the copy and its build up to date."""
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others",
                                 "--exclude-standard"], cwd=self._root, check=True,
                                capture_output=True, text=True).stdout
        for name in filter(None, listed.split("\0")):
            self._refresh(name)
        self._log = (self._folder / "log.txt").open("wb")
        if not (self._build / "build.ninja").exists():
            launcher = Path(__file__).with_name("compiler.sh")
            self._run(["cmake", "-S", self.sources, "-B", self._build, "-G", "Ninja",
                       "-DCMAKE_BUILD_TYPE=Release", f"-DCMAKE_CXX_COMPILER_LAUNCHER={launcher}",
                       "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"])
        self._tests = TestRun(self._build, self._folder / "times.json", self._log)

    def _refresh(self, name: str) -> None:
        """Copies a file that differs; one that does not keeps its time, and is not built again."""
        source, copy = self._root / name, self.sources / name
        if source.is_file() and not (copy.exists() and filecmp.cmp(source, copy, shallow=False)):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)

    def rounds(self, path: str, near: bool) -> list[list[str]]:
        """The tests that may notice a change of a source: those that include its header, the others
        of its room, and, unless only near ones are wanted, all the rest."""
        room = Path(path).parent
        header = str(Path(path).with_suffix(".h"))
        names = set(self._tests.names)
        first, second = set(), set()
        for test in (self.sources / "tests").rglob("tst_*.cpp"):
            folder = test.relative_to(self.sources / "tests").parent
            if test.stem not in names or folder.name == "e2e":
                continue
            if test.stem == f"tst_{Path(path).stem}" or header in INCLUDE.findall(test.read_text()):
                first.add(test.stem)
            elif room == folder or room in folder.parents or folder in room.parents:
                second.add(test.stem)
        rest = set() if near else names - first - second
        return [sorted(found) for found in (first, second, rest) if found]

    def outcome(self, mutation: Mutation, near: bool) -> Outcome:
        """What becomes of a change."""
        self._make_ready(mutation.path, near)
        before = self._tests.runs
        file = self.sources / mutation.path
        original = file.read_text(encoding="utf-8")
        file.write_text(mutation.applied(original), encoding="utf-8")
        try:
            killer = self._killer(mutation.path, near)
        finally:
            file.write_text(original, encoding="utf-8")
        outcome = Outcome(killer, self._tests.runs - before)
        if killer and outcome.compiled:
            self._distrust(killer)
        return outcome

    def _make_ready(self, path: str, near: bool) -> None:
        """Builds tests for the first time without the change, with what the compiler cache has."""
        new = {name for names in self.rounds(path, near) for name in names} - self._ready
        if new and not self._built(sorted(new), changed=False):
            raise RuntimeError(f"the sources as they are do not build, see {self._log.name}")
        self._ready |= new

    def _killer(self, path: str, near: bool) -> str:
        for names in self.rounds(path, near):
            if not self._built(names, changed=True):
                return "invalid"
            if killer := self._tests.killer(names):
                return killer
        return ""

    def _distrust(self, killer: str) -> None:
        """A test that fails without any change has killed nothing. One that has passed with another
        change does not."""
        if killer in self._tests.passed:
            return
        if not self._built([killer], changed=False) or self._tests.killer([killer]):
            raise RuntimeError(f"{killer} fails without any change, see {self._log.name}")

    def _built(self, names: list[str], *, changed: bool) -> bool:
        # Tests of the whole program start other programs of the build.
        wanted = names if all(map(is_alone, names)) else ["all"]
        return self._run(["cmake", "--build", self._build, "-j", JOBS, "--target", *wanted],
                         changed=changed) == 0

    def _run(self, command: list[object], *, changed: bool = False) -> int:
        environment = {**os.environ, **({"MIRAVEL_MUTANT": "1"} if changed else {})}
        return subprocess.run([str(word) for word in command], stdout=self._log, stderr=self._log,
                              env=environment).returncode
