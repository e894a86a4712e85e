"""Programs of the build that print what they found, without a window."""

from __future__ import annotations

import subprocess
from pathlib import Path
from types import TracebackType

from .display import Display
from .project import ON_WINE, base_environment
from .runner import runner_for
from .wine import WinePrefix


def native(path: Path) -> str:
    """A path as the programs' system names it."""
    return "Z:" + str(path).replace("/", "\\") if ON_WINE else str(path)


class Console:
    """One system for any number of programs: under Wine it takes seconds to start, and needs a screen."""

    def __init__(self, folder: Path) -> None:
        """Starts the system; what it needs lies in folder."""
        self._runner = runner_for(folder)
        surroundings = {**base_environment(), "XDG_RUNTIME_DIR": str(folder)}
        self._display = Display(folder / "display") if ON_WINE else None
        if self._display is not None:
            surroundings["DISPLAY"] = self._display.name
        self._environment = self._runner.environment(surroundings)
        self._runner.start(self._environment)

    def __enter__(self) -> Console:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self._runner.stop()
        if self._display is not None:
            self._display.__exit__(kind, error, trace)

    @property
    def prefix(self) -> WinePrefix | None:
        """The Wine that the programs run in; None where they are this system's."""
        return self._runner if isinstance(self._runner, WinePrefix) else None

    def run(self, program: Path, *arguments: str | Path, patience_s: float,
            through: tuple[str, ...] = (), **environment: str) -> tuple[int, str]:
        """Runs a program to its end; its exit status and all that it prints. environment is added to
        what every program gets, paths are named as its system names them. through is a command that
        starts the program."""
        command = self._runner.command(program, [native(argument) if isinstance(argument, Path)
                                                 else argument for argument in arguments])
        done = subprocess.run([*through, *command], capture_output=True, env={**self._environment, **environment},
                              stdin=subprocess.DEVNULL, encoding="utf-8", timeout=patience_s,
                              check=False)
        return done.returncode, done.stdout + done.stderr
