"""A copy of the sources with a build of its own, in which one change at a time is tried."""

from __future__ import annotations

import filecmp
import json
import os
import re
import shutil
import subprocess
from pathlib import Path

from mutation import Mutation

TESTS_S = 60
TRIES = 2
INCLUDE = re.compile(r'^#include "([^"]+)"', re.MULTILINE)


def _is_alone(test: str) -> bool:
    """Whether a test is one program, which the target of its name builds."""
    return test.startswith(("tst_", "replay_"))


class Bench:
    """Builds and tests. Everything lies in folder, nothing else is touched."""

    def __init__(self, root: Path, folder: Path) -> None:
        self._root = root
        self.sources = folder / "source"
        # As far from its sources as the release build: the compiler cache then has what that built.
        self._build = self.sources / "build/release"
        self._jobs = str(os.cpu_count() or 1)
        self._tests: set[str] = set()
        self._trusted: set[str] = set()
        self.log = folder / "log.txt"

    def prepare(self) -> None:
        """Brings the copy up to date and configures its build. What is needed is built when it is."""
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others",
                                 "--exclude-standard"], cwd=self._root, check=True,
                                capture_output=True, text=True).stdout
        for name in filter(None, listed.split("\0")):
            self._refresh(name)
        self.log.write_bytes(b"")
        if not (self._build / "build.ninja").exists():
            launcher = Path(__file__).with_name("compiler.sh")
            self._run(["cmake", "-S", self.sources, "-B", self._build, "-G", "Ninja",
                       "-DCMAKE_BUILD_TYPE=Release", f"-DCMAKE_CXX_COMPILER_LAUNCHER={launcher}"],
                      check=True)
        listing = subprocess.run(["ctest", "--test-dir", self._build, "--show-only=json-v1"],
                                 check=True, capture_output=True, text=True).stdout
        self._tests = {test["name"] for test in json.loads(listing)["tests"]}

    def _refresh(self, name: str) -> None:
        """Copies a file that differs; one that does not keeps its time, and is not built again."""
        source, copy = self._root / name, self.sources / name
        if source.is_file() and not (copy.exists() and filecmp.cmp(source, copy, shallow=False)):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, copy)

    def rounds(self, path: str, near: bool) -> list[list[str]]:
        """The tests that may notice a change of a source: those that include its header, the others
        of its room, and, unless only near ones are wanted, all the rest, first those that are built
        and run quickly."""
        room = Path(path).parent
        header = str(Path(path).with_suffix(".h"))
        first, second = [], []
        for test in sorted((self.sources / "tests").rglob("tst_*.cpp")):
            folder = test.relative_to(self.sources / "tests").parent
            if test.stem not in self._tests or folder.name == "e2e":
                continue
            if test.stem == f"tst_{Path(path).stem}" or header in INCLUDE.findall(test.read_text()):
                first.append(test.stem)
            elif room == folder or room in folder.parents or folder in room.parents:
                second.append(test.stem)
        found = [first, second]
        if not near:
            rest = sorted(self._tests - set(first) - set(second))
            found += [[name for name in rest if _is_alone(name)],
                      [name for name in rest if not _is_alone(name)]]
        return [names for names in found if names]

    def outcome(self, mutation: Mutation, near: bool) -> str:
        """What becomes of a change: "invalid" when it does not compile, the test that killed it, or
        nothing when it lives."""
        file = self.sources / mutation.path
        original = file.read_text(encoding="utf-8")
        file.write_text(mutation.applied(original), encoding="utf-8")
        try:
            outcome = self._outcome_of_rounds(mutation.path, near)
        finally:
            file.write_text(original, encoding="utf-8")
        self._distrust(outcome)
        return outcome

    def _outcome_of_rounds(self, path: str, near: bool) -> str:
        for names in self.rounds(path, near):
            if not self._built(names, changed=True):
                return "invalid"
            for _ in range(TRIES):
                killer = self._killer(names)
                if not killer:
                    break
                if self._killer([killer]): # not by chance
                    return killer
        return ""

    def _distrust(self, killer: str) -> None:
        """A test that fails without any change has killed nothing."""
        if killer in {"", "invalid"} | self._trusted:
            return
        if not self._built([killer], changed=False) or self._killer([killer]):
            raise RuntimeError(f"{killer} fails without any change, see {self.log}")
        self._trusted.add(killer)

    def _built(self, names: list[str], *, changed: bool) -> bool:
        # Tests of the whole program start other programs of the build.
        wanted = names if all(map(_is_alone, names)) else ["all"]
        return self._run(["cmake", "--build", self._build, "-j", self._jobs, "--target", *wanted],
                         changed=changed) == 0

    def _killer(self, names: list[str]) -> str:
        which = "^(" + "|".join(re.escape(name) for name in names) + ")$"
        failed = self._build / "Testing/Temporary/LastTestsFailed.log"
        failed.unlink(missing_ok=True)
        if self._run(["ctest", "--test-dir", self._build, "-j", self._jobs, "--stop-on-failure",
                      "--timeout", str(TESTS_S), "-R", which]) == 0:
            return ""
        lines = failed.read_text().splitlines() if failed.exists() else []
        return lines[0].partition(":")[2] if lines else "a test"

    def _run(self, command: list[object], *, check: bool = False, changed: bool = False) -> int:
        environment = {**os.environ, **({"MIRAVEL_MUTANT": "1"} if changed else {})}
        with self.log.open("ab") as log:
            return subprocess.run([str(word) for word in command], stdout=log, stderr=log,
                                  check=check, env=environment).returncode
