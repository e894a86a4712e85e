"""The running assistant, seen and used from outside."""

from __future__ import annotations

import math
import os
import tempfile
import time
from pathlib import Path
from types import TracebackType
from typing import Callable, Mapping

from PIL import Image

from . import conversation
from .child import Child
from .conversation import ANSWER, QUESTION, WINDOW_SIZE, Bubble
from .display import Display
from .installation import Installation
from .person import Person
from .project import BUILD, base_environment
from .runner import Runner, runner_for
from .waiting import NotSeen, wait_until

TITLE = "Miravel"

# Places in the window, in px from its upper left corner.
INPUT_BOX = (325, 539)
SEND_BUTTON = (582, 601)
CLOSE_BUTTON = (890, 29)
# A place on the screen where the pointer is in no picture of the window.
REST = (2, 2)


class Assistant:
    """One running program on one display, with a person at it."""

    def __init__(self, installation: Installation, display: Display, *,
                 arguments: tuple[str, ...] = ("--Type=vdi",),
                 environment: Mapping[str, str] | None = None,
                 prepare: Callable[[Runner], None] | None = None, scale: float = 1,
                 runner: Runner | None = None) -> None:
        """Starts the program. environment is added to what every program of ours gets; prepare is
        called before the start; scale is how many px of the screen one px of the window is shown at;
        runner is what is around the program, else that of this build."""
        self.installation = installation
        self.log = installation.log
        self._display = display
        self.scale = scale
        self._before: Image.Image | None = None
        # The single-instance socket lies in TMPDIR and its path must be short; a folder of its own
        # keeps this program apart from every other.
        self._private = tempfile.TemporaryDirectory(prefix="miravel-")
        folder = Path(self._private.name)
        self.person = Person(display.name, folder)
        env = {**installation.processes.environment(base_environment()), "DISPLAY": display.name,
               "TMPDIR": str(folder), "XDG_RUNTIME_DIR": str(folder), **(environment or {})}
        self._runner = runner_for(folder) if runner is None else runner
        if prepare is not None:
            prepare(self._runner)
        self._command = self._runner.command(installation.program, arguments)
        self._env = self._runner.environment(env)
        self._runner.start(self._env)
        self.process = Child(self._command, env=self._env,
                             output=installation.root / "log/output.txt")

    def __enter__(self) -> Assistant:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self.process.stop()
        self._runner.stop()
        self.person.__exit__(None, None, None)
        self._private.cleanup()

    @property
    def alive(self) -> bool:
        return self.process.alive

    def start_again(self) -> int:
        """Starts a second copy, as a person clicks the icon again, and waits for its end; its exit
        status."""
        with Child(self._command, env=self._env, output=None) as second:
            return second.wait()

    def start_next(self) -> Child:
        """Starts another copy, which is not waited for; a context manager that stops it."""
        return Child(self._command, env=self._env, output=None)

    def go_on_with(self, process: Child) -> None:
        """The program has ended, and this is the process of another start, whose window is a new one."""
        self.process.stop()
        self.process = process
        self._before = None

    def start_beside(self, program: Path, *arguments: str, output: Path) -> Child:
        """Starts another program of the build with the same system around it; the caller stops it."""
        return Child(self._runner.command(program, arguments), env=self._env, output=output)

    def ask_to_close(self) -> None:
        """Clicks the window's close button, and does not wait for the program's end."""
        self.click(*CLOSE_BUTTON)

    def look(self) -> Image.Image:
        """The window as the screen shows it, brought to its stated size on a scaled screen."""
        window = self.look_closely()
        return window if self.scale == 1 else window.resize(WINDOW_SIZE, Image.Resampling.NEAREST)

    def look_closely(self) -> Image.Image:
        """The window in the screen's own pixels."""
        left, top = self._corner()
        width, height = (round(side * self.scale) for side in WINDOW_SIZE)
        return self._display.shot().crop((left, top, left + width, top + height))

    def size(self) -> tuple[int, int]:
        """Width and height of the window in px of the screen."""
        return self.person.size(self._largest(self.person.windows(TITLE)))

    def wait_for_window(self) -> None:
        self._until(lambda: bool(self.person.windows(TITLE)), "the window")

    def wait_for_greeting(self) -> None:
        """The greeting is the first bubble, and comes with the first hot questions."""
        self.wait_for_window()
        self.rest()
        self._until(lambda: self.log.has("Get hot issues successfully!"), "the hot questions")
        self.wait_for_bubbles((ANSWER,), "the greeting")

    def wait_for_log(self, *texts: str) -> None:
        """Waits until the program has logged these texts since the mark, in this order."""
        self._until(lambda: self.log.has(*texts), f"{' ... '.join(texts)!r} in the program's log")

    def ask(self, question: str, *, by_button: bool = False) -> None:
        """Types a question and sends it, by the Return key or by the send button. Returns when the
        program has taken it."""
        self.log.mark()
        self.click(*INPUT_BOX)
        before = self.look()
        self._before = before
        self.person.paste(question)
        self._until(lambda: conversation.input_changed(before, self.look()),
                    f"the question {question!r} in the input box")
        if by_button:
            self.click(*SEND_BUTTON)
        else:
            self.person.press("Return")
        self._until(lambda: self.log.has("send messages"), f"the sending of {question!r}")
        self.rest()

    def watch(self) -> None:
        """From now on only what is logged and shown later counts."""
        self.log.mark()
        self.rest()
        self._before = self.look()

    def ask_by_click(self, x: int, y: int) -> None:
        """Asks the question that stands at a place in the window."""
        self.watch()
        self.click(x, y)
        self.rest()

    def wait_for_bubbles(self, kinds: tuple[str, ...], what: str) -> list[Bubble]:
        """Waits until the newest bubbles in view are of these kinds, from top to bottom, each with
        text in it; gives all in view."""
        return self._wait_for_view(
            lambda found: tuple(bubble.kind for bubble in found[-len(kinds):]) == kinds,
            len(kinds), what)

    def wait_for_answer(self, question: str) -> list[Bubble]:
        """Waits for the answer to the question asked last: below its question, or filling the list
        so that the question is out of view."""
        self.wait_for_log("nSize_Recom:")

        def answered(found: list[Bubble]) -> bool:
            if not found or found[-1].kind != ANSWER:
                return False
            return (conversation.begins_above(found[-1])
                    or (len(found) > 1 and found[-2].kind == QUESTION))
        return self._wait_for_view(answered, 1, f"the answer to {question!r}")

    def _wait_for_view(self, right: Callable[[list[Bubble]], bool], written: int,
                       what: str) -> list[Bubble]:
        """Waits for a view of the conversation that is right, differs from the one before the last
        question, has text in as many of the newest bubbles as written says, and stays."""
        def seen() -> list[Bubble]:
            window = self.look()
            found = conversation.bubbles(window)
            shown = (right(found)
                     and (self._before is None
                          or conversation.conversation_changed(self._before, window))
                     and all(conversation.ink(window, bubble.text_box)
                             for bubble in found[-written:]))
            return found if shown and found == conversation.bubbles(self.look()) else []
        return self._until(seen, what)

    def click(self, x: int, y: int, button: int = 1) -> None:
        """Clicks at a place in the window."""
        self.person.click(*self.on_screen(x, y), button)

    def on_screen(self, x: int, y: int) -> tuple[int, int]:
        """Where a place in the window is on the screen."""
        left, top = self._corner()
        return left + round(x * self.scale), top + round(y * self.scale)

    def rest(self) -> None:
        """Puts the pointer where it changes nothing that is looked at."""
        self.person.point(*REST)

    def close(self) -> int:
        """Closes the window by its button; the program's exit status."""
        self.ask_to_close()
        return self.process.wait()

    def _corner(self) -> tuple[int, int]:
        # The search for windows fails while one of them is just going away.
        windows = self._until(lambda: self.person.windows(TITLE), "the window on the screen")
        return self.person.position(self._largest(windows))

    def _largest(self, windows: list[str]) -> str:
        """The main window: under Wine menus have the same title."""
        if len(windows) == 1:
            return windows[0]
        return max(windows, key=lambda window: math.prod(self.person.size(window)))

    def _until(self, condition: Callable[[], object], what: str):
        def alive_and_condition() -> object:
            if not self.alive:
                raise RuntimeError(self._ended(f"the program ended before {what} was seen"))
            return condition()
        try:
            return wait_until(alive_and_condition, what)
        except NotSeen as error:
            raise NotSeen(f"{error}\n{self._evidence()}") from None

    def _evidence(self) -> str:
        """Keeps what the screen shows, for whoever reads the failure, and says what was logged."""
        folder = BUILD / "not-seen"
        folder.mkdir(exist_ok=True)
        path = folder / f"{os.getpid()}-{time.time_ns()}.png"
        self._display.shot().save(path)
        return f"the screen: {path}\nthe log:\n{self.log.text()}"

    def _ended(self, what: str) -> str:
        return (f"{what}; exit status {self.process.status}, it printed:\n"
                f"{self.process.printed()}\nand logged:\n{self.log.text()}")
