"""The window that shows a picture of the conversation large."""

from __future__ import annotations

import math

from PIL import Image, ImageChops

from .assistant import Assistant
from .display import Display
from .waiting import wait_until

TITLE = "图片预览"
SIZE = (920, 646)

# Places in the window at its first size, in px from its upper left corner.
MAXIMISE = (859, 30)
CLOSE = (886, 30)
ONE_TO_ONE = (294, 610)
FIT = (342, 610)
PREVIOUS = (418, 610)
NEXT = (502, 610)
ZOOM_IN = (578, 610)
ZOOM_OUT = (626, 610)

_BACKGROUND = (244, 245, 248)
_TITLE_HEIGHT = 58
_TOOLS_HEIGHT = 70
_FRAME = 2


class Preview:
    """The preview of a running assistant; there is one at a time."""

    def __init__(self, assistant: Assistant, display: Display) -> None:
        """Waits until the preview is on the screen."""
        self._assistant = assistant
        self._display = display
        wait_until(lambda: self.is_open, "the preview")
        self._window = assistant.person.windows(TITLE)[0]

    @property
    def is_open(self) -> bool:
        return bool(self._assistant.person.windows(TITLE))

    def place(self) -> tuple[int, int, int, int]:
        """Left, top, width and height on the screen in px."""
        person = self._assistant.person
        return (*person.position(self._window), *person.size(self._window))

    def look(self) -> Image.Image:
        """The window as the screen shows it."""
        left, top, width, height = self.place()
        return self._display.shot().crop((left, top, left + width, top + height))

    def click(self, place: tuple[int, int]) -> None:
        self._assistant.person.click(*self._on_screen(place))
        self._assistant.rest()

    def drag(self, start: tuple[int, int], by: tuple[int, int]) -> None:
        """Drags from a place in the window with the left button, as far as by says in px of the
        screen."""
        self._assistant.person.drag(self._on_screen(start), by)

    def picture_size(self) -> tuple[int, int]:
        """Width and height, in px of the screen, of what differs from the area's background; (0, 0)
        when nothing does."""
        window = self.look()
        frame, title, tools = (math.ceil(length * self._assistant.scale)
                               for length in (_FRAME, _TITLE_HEIGHT, _TOOLS_HEIGHT))
        area = window.crop((frame, title, window.width - frame, window.height - tools))
        empty = Image.new("RGB", area.size, _BACKGROUND)
        box = ImageChops.difference(area, empty).getbbox()
        return (box[2] - box[0], box[3] - box[1]) if box else (0, 0)

    def _on_screen(self, place: tuple[int, int]) -> tuple[int, int]:
        left, top, _, _ = self.place()
        scale = self._assistant.scale
        return left + round(place[0] * scale), top + round(place[1] * scale)

    def wait_for_picture(self, size: tuple[int, int]) -> None:
        """Waits until the picture is shown in this size."""
        wait_until(lambda: self.picture_size() == size, f"a picture of {size}")
