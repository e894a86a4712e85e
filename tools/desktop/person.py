"""The hands of a person at a screen: mouse, keys and clipboard."""

from __future__ import annotations

import subprocess
from pathlib import Path
from types import TracebackType

from .child import Child
from .project import base_environment
from .waiting import wait_until

_TOOL_S = 10.0


class Person:
    """Works on one display; nothing else may touch its pointer or clipboard meanwhile."""

    def __init__(self, display: str, folder: Path) -> None:
        self._env = {**base_environment(), "DISPLAY": display}
        self._folder = folder
        self._clipboard: Child | None = None

    def __enter__(self) -> Person:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self._drop_clipboard()

    def windows(self, title: str) -> list[str]:
        """The visible windows with exactly this title."""
        return self._tool("xdotool", "search", "--onlyvisible", "--name", f"^{title}$").split()

    def has_keyboard(self, title: str) -> bool:
        """Whether keys go to the window with exactly this title."""
        return self._tool("xdotool", "getwindowfocus", "getwindowname").rstrip("\n") == title

    def position(self, window: str) -> tuple[int, int]:
        """Where a window's upper left corner is on the screen; (-1, -1) when it has gone."""
        values = self._geometry(window)
        return int(values.get("X", -1)), int(values.get("Y", -1))

    def size(self, window: str) -> tuple[int, int]:
        """A window's width and height; (-1, -1) when it has gone."""
        values = self._geometry(window)
        return int(values.get("WIDTH", -1)), int(values.get("HEIGHT", -1))

    def point(self, x: int, y: int) -> None:
        """Moves the pointer to a place on the screen."""
        self._tool("xdotool", "mousemove", str(x), str(y))
        wait_until(lambda: f"x:{x} y:{y} " in self._tool("xdotool", "getmouselocation"),
                   f"the pointer at {x}, {y}")

    def click(self, x: int, y: int, button: int = 1) -> None:
        self.point(x, y)
        self._tool("xdotool", "click", str(button))

    def drag(self, start: tuple[int, int], by: tuple[int, int], steps: int = 5) -> None:
        """Drags with the left button from a place on the screen, as far as by says."""
        self.point(*start)
        self._tool("xdotool", "mousedown", "1")
        for step in range(1, steps + 1):
            self.point(start[0] + by[0] * step // steps, start[1] + by[1] * step // steps)
        self._tool("xdotool", "mouseup", "1")

    def press(self, *keys: str) -> None:
        """Presses keys one after the other, e.g. "Return" or "ctrl+v"."""
        self._tool("xdotool", "key", *keys)

    def paste(self, text: str) -> None:
        """Puts text on the clipboard and presses ctrl+v: Chinese has no keys of its own."""
        # The owner before ends when the new one takes over: with an empty clipboard between the two
        # Wine misses the new one now and then.
        before = self._clipboard
        source = self._folder / "clipboard.txt"
        source.write_text(text, encoding="utf-8")
        self._clipboard = Child(["xclip", "-quiet", "-selection", "clipboard", "-in", source],
                                env=self._env, output=self._folder / "xclip.log")
        if before is not None:
            wait_until(lambda: not before.alive, "the clipboard's new owner")
            before.stop()
        wait_until(lambda: self._tool("xclip", "-selection", "clipboard", "-out") == text,
                   "the text on the clipboard")
        self.press("ctrl+v")

    def _drop_clipboard(self) -> None:
        if self._clipboard is not None:
            self._clipboard.stop()
            self._clipboard = None

    def _geometry(self, window: str) -> dict[str, str]:
        lines = self._tool("xdotool", "getwindowgeometry", "--shell", window).splitlines()
        return dict(line.split("=", 1) for line in lines if "=" in line)

    def _tool(self, *command: str) -> str:
        """A short-lived tool's output. A tool that finds nothing exits non-zero; that is no error
        here, because callers wait for what they look for."""
        done = subprocess.run(command, env=self._env, capture_output=True, timeout=_TOOL_S,
                              check=False)
        return done.stdout.decode("utf-8", errors="replace")
