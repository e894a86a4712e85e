"""Runs tests of a build until one fails: quick ones first, and none for much longer than it takes."""

from __future__ import annotations

import json
import os
import signal
import subprocess
import time
from concurrent.futures import ThreadPoolExecutor, as_completed
from pathlib import Path
from typing import BinaryIO, Iterable

# A test that takes so many times what it took before hangs.
PATIENCE = 8
SHORTEST_S = 20
# A change may well make a loop endless that fills the memory.
MEMORY = 6 << 30
JOBS = os.cpu_count() or 1


def is_alone(test: str) -> bool:
    """Whether a test is one program, which the target of its name builds."""
    return test.startswith(("tst_", "replay_"))


class TestRun:
    """The tests that CTest knows in a build, run without it: it has no order by time, and its limits
    are for a good build, 120 s and more for each change that makes a test hang."""

    def __init__(self, build: Path, times: Path, log: BinaryIO) -> None:
        self._build = build
        self._list()
        self._times_file = times
        self._times: dict[str, float] = json.loads(times.read_text()) if times.exists() else {}
        self._log = log
        self.runs = 0
        self.passed: set[str] = set() # of those run here

    def _list(self) -> None:
        listing = subprocess.run(["ctest", "--test-dir", self._build, "--show-only=json-v1"],
                                 check=True, capture_output=True, text=True).stdout
        self._tests = {test["name"]: test for test in json.loads(listing)["tests"]}

    @property
    def names(self) -> list[str]:
        return sorted(self._tests)

    def killer(self, names: Iterable[str]) -> str:
        """One of these tests that fails, and not by chance; "" when none does."""
        names = list(names)
        # CTest names the command of a program only once that is built.
        if any("command" not in self._tests[name] for name in names):
            self._list()
        waiting = sorted(names, key=lambda name: (not is_alone(name), self._times.get(name, 0)))
        failed = ""
        with ThreadPoolExecutor(JOBS) as pool:
            results = {pool.submit(self._fails, name): name for name in waiting}
            for result in as_completed(results):
                if result.result():
                    failed = results[result]
                    pool.shutdown(wait=False, cancel_futures=True)
                    break
        self._times_file.write_text(json.dumps(self._times, indent=1, sort_keys=True))
        return failed

    def _fails(self, name: str) -> bool:
        return not self._passes(name) and not self._passes(name)

    def _passes(self, name: str) -> bool:
        test = self._tests[name]
        properties = {entry["name"]: entry["value"] for entry in test["properties"]}
        environment = dict(entry.split("=", 1) for entry in properties["ENVIRONMENT"])
        self.runs += 1
        start = time.monotonic()
        process = subprocess.Popen(["prlimit", f"--as={MEMORY}", "--", *test["command"]],
                                   cwd=properties["WORKING_DIRECTORY"],
                                   env={**os.environ, **environment}, stdin=subprocess.DEVNULL,
                                   stdout=self._log, stderr=self._log, process_group=0)
        try:
            passed = process.wait(self._limit(name, properties["TIMEOUT"])) == 0
        except subprocess.TimeoutExpired:
            passed = False
        finally:
            _end(process)
        if passed:
            self.passed.add(name)
            # The longest counts, since others use the machine.
            self._times[name] = max(time.monotonic() - start, self._times.get(name, 0))
        return passed

    def _limit(self, name: str, most: float) -> float:
        if name not in self._times:
            return most
        return min(most, max(SHORTEST_S, PATIENCE * self._times[name]))


def _end(process: subprocess.Popen[bytes]) -> None:
    """Ends a test that hangs, and what it has started and left."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()
