"""How a program of the build is started here."""

from __future__ import annotations

from pathlib import Path
from typing import Mapping, Protocol, Sequence

from .project import ON_WINE
from .wine import WinePrefix


class Runner(Protocol):
    """What is around one running program."""

    def command(self, program: Path, arguments: Sequence[str]) -> list[str]:
        """The command that starts the program."""

    def environment(self, base: Mapping[str, str]) -> dict[str, str]:
        """base as the command must get it."""

    def start(self, environment: Mapping[str, str]) -> None:
        """Starts what must run before the program, in the environment that the program gets."""

    def stop(self) -> None:
        """Ends what is left after the program."""


class Native:
    """Nothing is needed for a program of this system."""

    def command(self, program: Path, arguments: Sequence[str]) -> list[str]:
        return [str(program), *arguments]

    def environment(self, base: Mapping[str, str]) -> dict[str, str]:
        return dict(base)

    def start(self, environment: Mapping[str, str]) -> None:
        pass

    def stop(self) -> None:
        pass


def runner_for(folder: Path) -> Runner:
    """The runner for the build under test; its files lie in folder."""
    return WinePrefix(folder) if ON_WINE else Native()
