"""A person who hears what the program shows: the accessibility service of a desktop session, and what
a screen reader finds there."""

from __future__ import annotations

import json
import select
import subprocess
import sys
from dataclasses import dataclass, field
from pathlib import Path
from types import TracebackType
from typing import Iterator, Mapping

from .child import Child
from .project import SLOWNESS, base_environment
from .waiting import wait_until

_READING_S = 60.0 * SLOWNESS
_LAUNCHER = Path("/usr/libexec/at-spi-bus-launcher")

# The session's bus for one test, without what a desktop would start on it.
_BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path={socket}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


class SpokenSession:
    """A session whose accessibility is switched on, as on the desktop of somebody who listens. A
    context manager: leaving it ends the session."""

    def __init__(self, folder: Path, display: str) -> None:
        """Starts the session's bus and its accessibility service for one display; their files lie in
        folder, whose path must be short."""
        folder.mkdir(parents=True, exist_ok=True)
        socket = folder / "bus"
        configuration = folder / "bus.conf"
        configuration.write_text(_BUS.format(socket=socket), encoding="utf-8")
        self.environment = {"DBUS_SESSION_BUS_ADDRESS": f"unix:path={socket}"}
        env = {**base_environment(), **self.environment, "DISPLAY": display,
               "XDG_RUNTIME_DIR": str(folder)}
        self._children = [Child(["dbus-daemon", f"--config-file={configuration}", "--nofork"],
                                env=env, output=folder / "bus.log")]
        wait_until(socket.exists, "the session's bus")
        self._children.append(Child([_LAUNCHER, "--launch-immediately", "--a11y=1",
                                     "--screen-reader=1"],
                                    env=env, output=folder / "accessibility.log"))
        self._env = env
        wait_until(self._is_on, "the session's accessibility")

    def __enter__(self) -> SpokenSession:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        for child in reversed(self._children):
            child.stop()

    def reader(self, process: int) -> Reader:
        """Who reads what one process shows; to be left as a context manager."""
        return Reader(process, self._env)

    def _is_on(self) -> bool:
        done = subprocess.run(
            ["dbus-send", "--session", "--print-reply=literal", "--dest=org.a11y.Bus",
             "/org/a11y/bus", "org.freedesktop.DBus.Properties.Get", "string:org.a11y.Status",
             "string:IsEnabled"], env=self._env, capture_output=True, text=True, check=False)
        return "true" in done.stdout


@dataclass(frozen=True)
class Heard:
    """One thing that is told, with everything in it."""

    role: str
    name: str
    description: str
    states: frozenset[str]
    text: str | None
    can_be_pressed: bool
    path: tuple[int, ...]
    children: tuple[Heard, ...] = field(repr=False)

    def everything(self) -> Iterator[Heard]:
        """This and all below it, in reading order."""
        yield self
        for child in self.children:
            yield from child.everything()

    def named(self, name: str, role: str | None = None) -> Heard:
        """The first in reading order that has this name, and role."""
        for heard in self.everything():
            if heard.name == name and role in (None, heard.role):
                return heard
        raise AssertionError(f"nothing is read as {name!r}; heard:\n{self.outline()}")

    def outline(self, depth: int = 0) -> str:
        """For whoever reads a failure."""
        states = ",".join(sorted(self.states))
        text = "" if self.text is None else f" text={self.text!r}"
        line = f"{'  ' * depth}{self.role} {self.name!r}{text} [{states}]"
        return "\n".join([line, *(child.outline(depth + 1) for child in self.children)])


class Reader:
    """Reads one process. A context manager."""

    def __init__(self, process: int, env: Mapping[str, str]) -> None:
        # The system's own interpreter: the reader's library is installed for that one.
        self._process = subprocess.Popen(
            [sys.executable, "-B", str(Path(__file__).with_name("readingprocess.py")), str(process)],
            env=dict(env), stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self._answer("to start")

    def __enter__(self) -> Reader:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self._process.kill()
        self._process.communicate()

    def windows(self) -> tuple[Heard, ...]:
        """The windows of the program; none until it has made itself known."""
        told = self._ask("read")
        return () if told is None else _heard(told, ()).children

    def press(self, heard: Heard) -> bool:
        """Presses what was heard; whether it could be pressed."""
        return bool(self._ask(" ".join(["press", *map(str, heard.path)])))

    def focused(self) -> list[tuple[str, str]]:
        """Role and name of what has got the focus since the last call, in order."""
        return [(heard["role"], heard["name"]) for heard in self._ask("focus")]

    def _ask(self, command: str) -> object:
        assert self._process.stdin is not None
        self._process.stdin.write(command + "\n")
        self._process.stdin.flush()
        return self._answer(command)

    def _answer(self, command: str) -> object:
        assert self._process.stdout is not None
        ready, _, _ = select.select([self._process.stdout], [], [], _READING_S)
        line = self._process.stdout.readline() if ready else ""
        if not line:
            raise RuntimeError(f"the screen reader did not answer {command!r}")
        told = json.loads(line)
        return None if isinstance(told, dict) and "error" in told else told


def _heard(told: Mapping[str, object], path: tuple[int, ...]) -> Heard:
    children = told["children"]
    assert isinstance(children, list)
    return Heard(str(told["role"]), str(told["name"]), str(told["description"]),
                 frozenset(told["states"]), told["text"], bool(told["can_be_pressed"]), path,
                 tuple(_heard(child, (*path, index)) for index, child in enumerate(children)))
