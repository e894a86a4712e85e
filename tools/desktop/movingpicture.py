"""Asks one question as a person types it and saves what the window shows as a moving picture:
python3 -m desktop.movingpicture FILE"""

from __future__ import annotations

import sys
import tempfile
from pathlib import Path

from PIL import Image

from . import conversation, floating
from .assistant import INPUT_BOX, Assistant
from .demoservice import DemoService
from .display import Display
from .installation import Installation
from .waiting import wait_until

TYPED = ("云", "云桌面", "云桌面连接")
QUESTION_TEXT = "云桌面连接不上怎么办？"
THINKING_MS = 1500
THINKING_FRAMES = 4
WIDTH = 690  # px; three quarters of the window
COLOURS = 256
LARGEST = 1024 * 1024  # bytes

Frame = tuple[Image.Image, int]
"""A picture, and how long it stays, in ms."""


class Film:
    """What was seen, one picture after another."""

    def __init__(self, assistant: Assistant) -> None:
        self._assistant = assistant
        self.frames: list[Frame] = []

    def take(self, ms: int) -> None:
        self.frames.append((self._assistant.look(), ms))

    def save(self, file: Path) -> None:
        """One palette for all, so that what stays the same costs nothing."""
        width, height = self.frames[0][0].size
        size = (WIDTH, height * WIDTH // width)
        small = [picture.convert("RGB").resize(size, Image.Resampling.LANCZOS)
                 for picture, _ in self.frames]
        palette = small[-1].quantize(COLOURS, method=Image.Quantize.MAXCOVERAGE)
        drawn = [picture.quantize(palette=palette, dither=Image.Dither.NONE) for picture in small]
        drawn[0].save(file, save_all=True, append_images=drawn[1:], loop=0, optimize=True,
                      duration=[ms for _, ms in self.frames])


def play(assistant: Assistant, service: DemoService) -> Film:
    film = Film(assistant)
    film.take(1200)
    assistant.log.mark()
    assistant.click(*INPUT_BOX)
    for text in TYPED:
        before = assistant.look()
        assistant.person.press("ctrl+a")
        assistant.person.paste(text)
        wait_until(lambda: conversation.input_changed(before, assistant.look()), f"{text!r} typed")
        film.take(350)
    assistant.rest()
    floating.wait_for_suggestions(assistant)
    film.take(1200)
    assistant.person.press("Escape", "ctrl+a")
    before = assistant.look()
    assistant.person.paste(QUESTION_TEXT)
    wait_until(lambda: conversation.input_changed(before, assistant.look()), "the question typed")
    film.take(700)
    service.fault("ask", "delay", arg=THINKING_MS)
    assistant.watch()
    assistant.person.press("Return")
    assistant.wait_for_log("send messages")
    assistant.rest()
    for _ in range(THINKING_FRAMES):
        last = film.frames[-1][0].tobytes()
        wait_until(lambda: assistant.look().tobytes() != last, "the dots of a question that waits")
        film.take(250)
    assistant.wait_for_answer(QUESTION_TEXT)
    film.take(4000)
    return film


def main() -> None:
    file = Path(sys.argv[1])
    with tempfile.TemporaryDirectory(prefix="miravel-") as name:
        folder = Path(name)
        installation = Installation(folder / "installation")
        with Display(folder / "display") as display, DemoService(folder / "service") as service:
            installation.use_service(service.http_port)
            with Assistant(installation, display) as assistant:
                assistant.wait_for_greeting()
                play(assistant, service).save(file)
                assistant.close()
    size = file.stat().st_size
    if size >= LARGEST:
        raise RuntimeError(f"{file} has {size} bytes, more than {LARGEST}")
    print(f"{file}: {size} bytes")


if __name__ == "__main__":
    main()
