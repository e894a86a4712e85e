"""What other programs and the system do to the windows of the running program, under Wine."""

from __future__ import annotations

import re
from dataclasses import dataclass
from pathlib import Path

from desktop.assistant import Assistant
from desktop.child import Child
from desktop.project import BUILD

_PROGRAM = BUILD / "tests/windowhand.exe"
_PATIENCE_S = 90.0
_END = re.compile(r"exit=(\d+) ms=(\d+)")


@dataclass(frozen=True)
class End:
    """How a program has ended, in its own system's words."""

    status: int
    milliseconds: int


class Hand:
    """Does one thing to the windows of a running assistant; see windowhand.cpp for what."""

    def __init__(self, assistant: Assistant, what: str, folder: Path, *, held: bool = False) -> None:
        """Does it at once; held only makes everything ready, until let_go()."""
        self._what = what
        self._trigger = folder / f"go-{what}"
        self._trigger.unlink(missing_ok=True)
        arguments = [what, "Z:" + str(self._trigger)] if held else [what]
        self._child: Child = assistant.start_beside(_PROGRAM, *arguments,
                                                    output=folder / f"hand-{what}.txt")

    def let_go(self) -> None:
        self._trigger.touch()

    def said(self) -> str:
        """Waits until it is done; what was printed."""
        self._child.wait(_PATIENCE_S)
        status = self._child.stop()
        if status != 0:
            raise RuntimeError(f"windowhand {self._what}: status {status}")
        return self._child.printed().strip()

    def end(self) -> End:
        """Waits for the program's end."""
        match = _END.fullmatch(self.said())
        if match is None:
            raise AssertionError(f"after {self._what}: {self._child.printed()!r}")
        return End(int(match[1]), int(match[2]))


def done(assistant: Assistant, what: str, folder: Path) -> str:
    """Does it and waits; what was printed."""
    return Hand(assistant, what, folder).said()
