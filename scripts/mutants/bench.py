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
from programs import ChangedPrograms
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
        launcher = Path(__file__).with_name("compiler.sh")
        self._run(["cmake", "-S", self.sources, "-B", self._build, "-G", "Ninja",
                   "-DCMAKE_BUILD_TYPE=Release", f"-DCMAKE_CXX_COMPILER_LAUNCHER={launcher}",
                   "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld"])
        self._programs = ChangedPrograms(self._build, self._folder, self._log)
        self._tests = TestRun(self._build, self._folder / "times.json", self._log)

    def _refresh(self, name: str) -> None:
        """Copies a file that differs; one that does not keeps its time, and is not built again."""
        source, copy = self._root / name, self.sources / name
        if source.is_file() and not (copy.exists() and filecmp.cmp(source, copy, shallow=False)):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)

    def near(self, path: str) -> list[list[str]]:
        """The tests that may well notice a change of a source: those that include its header, then the
        others of its room, then those of the rooms beside it."""
        room = Path(path).parent
        header = str(Path(path).with_suffix(".h"))
        names = set(self._tests.names)
        first, second, third = set(), set(), set()
        for test in (self.sources / "tests").rglob("tst_*.cpp"):
            folder = test.relative_to(self.sources / "tests").parent
            if test.stem not in names or folder.name == "e2e":
                continue
            if test.stem == f"tst_{Path(path).stem}" or header in INCLUDE.findall(test.read_text()):
                first.add(test.stem)
            elif room == folder or room in folder.parents or folder in room.parents:
                second.add(test.stem)
            elif room.parts[:1] == folder.parts[:1]:
                third.add(test.stem)
        return [sorted(found) for found in (first, second, third) if found]

    def outcome(self, mutation: Mutation, near_only: bool) -> Outcome:
        """What becomes of a change."""
        near = self.near(mutation.path)
        self._make_ready({name for names in near for name in names})
        before = self._tests.runs
        file = self.sources / mutation.path
        original = file.read_text(encoding="utf-8")
        times = file.stat()
        file.write_text(mutation.applied(original), encoding="utf-8")
        try:
            killer = self._near_killer(file, near)
            self._programs.put_back()
            if not killer and not near_only:
                times = None # the build sees the change, and is to see that it is gone
                self._ready.clear()
                killer = self._killer_of_all()
        finally:
            self._programs.put_back()
            file.write_text(original, encoding="utf-8")
            if times:
                os.utime(file, ns=(times.st_atime_ns, times.st_mtime_ns))
        outcome = Outcome(killer, self._tests.runs - before)
        if killer and outcome.compiled:
            self._distrust(killer)
        return outcome

    def _make_ready(self, names: set[str]) -> None:
        """Builds what has not been built here yet, without the change."""
        new = names - self._ready
        if new and not self._built(sorted(new), changed=False):
            raise RuntimeError(f"the sources as they are do not build, see {self._log.name}")
        self._ready |= new

    def _near_killer(self, file: Path, rounds: list[list[str]]) -> str:
        if not self._programs.compile(file):
            return "invalid"
        for names in rounds:
            if not self._programs.link(names):
                return "invalid"
            if killer := self._tests.killer(names):
                return killer
        return ""

    def _killer_of_all(self) -> str:
        """Near tests count once more: what they start has the change now, too."""
        if not self._built(["all"], changed=True):
            return "invalid"
        return self._tests.killer(self._tests.names)

    def _distrust(self, killer: str) -> None:
        """A test that fails without any change has killed nothing. One that has passed with another
        change does not."""
        if killer in self._tests.passed:
            return
        targets = [killer] if is_alone(killer) else ["all"]
        if not self._built(targets, changed=False) or self._tests.killer([killer]):
            raise RuntimeError(f"{killer} fails without any change, see {self._log.name}")

    def _built(self, targets: list[str], *, changed: bool) -> bool:
        return self._run(["cmake", "--build", self._build, "-j", JOBS, "--target", *targets],
                         changed=changed) == 0

    def _run(self, command: list[object], *, changed: bool = False) -> int:
        environment = {**os.environ, **({"MIRAVEL_MUTANT": "1"} if changed else {})}
        return subprocess.run([str(word) for word in command], stdout=self._log, stderr=self._log,
                              env=environment).returncode
