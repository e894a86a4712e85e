"""What comes up over the window and goes again: the veil, suggestions, menus, dialogs."""

from __future__ import annotations

import re

from PIL import Image, ImageChops

from . import conversation
from .assistant import INPUT_BOX, Assistant
from .conversation import Box
from .waiting import wait_until

# Places in the window, in px from its upper left corner. The about button is clicked near its
# corner, so that the menu there is seen in the window's picture.
ABOUT_BUTTON = (830, 23)

_ROW_HEIGHT = 28
_POPUP_BOTTOM = 490
_POPUP_MARGINS = 16
_FIRST_ROW = 10
_ROW_LEFT = 16
_ROW_RIGHT = 616
_FREE_STRIP = (2, 14)
_WHITE = (255, 255, 255)

# Typed text in a suggestion is blue, everything else in it grey.
_BLUE_LEAD = 60

INPUT_MENU_SIZE = (137, 93)
ABOUT_MENU_SIZE = (60, 36)
"""The least that its two entries take."""

# A white place of the conversation, and what the veil makes of it.
_VEILED_PLACE = (300, 300)
_VEILED = range(200, 215)

_COUNT = re.compile(r"nSize_association: (\d+)")


def wait_for_veil(assistant: Assistant) -> Image.Image:
    """Waits until the veil of the first fetch lies over the window; gives its picture."""
    def veiled() -> Image.Image | None:
        window = assistant.look()
        pixel = window.getpixel(_VEILED_PLACE)
        return window if all(value in _VEILED for value in pixel) else None
    return wait_until(veiled, "the veil over the window")


def type_text(assistant: Assistant, text: str) -> None:
    """Types without sending."""
    assistant.log.mark()
    assistant.click(*INPUT_BOX)
    before = assistant.look()
    assistant.person.paste(text)
    wait_until(lambda: conversation.input_changed(before, assistant.look()),
               f"{text!r} in the input box")


def popup_box(count: int) -> Box:
    """Where that many suggestions are shown."""
    return 0, _POPUP_BOTTOM - _ROW_HEIGHT * count - _POPUP_MARGINS, 648, _POPUP_BOTTOM


def suggestions_shown(window: Image.Image, count: int) -> bool:
    """Whether so many rows stand at their place, each with text, with the typed text marked."""
    top = popup_box(count)[1]
    strip = (_FREE_STRIP[0], top + 1, _FREE_STRIP[1], _POPUP_BOTTOM - 1)
    area = (strip[2] - strip[0]) * (strip[3] - strip[1])
    if conversation.count(window, strip, _WHITE) != area:
        return False
    rows = [(_ROW_LEFT, row_top, _ROW_RIGHT, row_top + _ROW_HEIGHT)
            for row_top in range(top + _FIRST_ROW, top + _FIRST_ROW + _ROW_HEIGHT * count,
                                 _ROW_HEIGHT)]
    return all(_has_text(window.crop(row)) and _has_blue(window.crop(row)) for row in rows)


def _has_text(row: Image.Image) -> bool:
    return row.convert("L").getextrema()[0] < 200


def _has_blue(row: Image.Image) -> bool:
    red, _, blue = row.split()
    return ImageChops.subtract(blue, red).getextrema()[1] > _BLUE_LEAD


def wait_for_suggestions(assistant: Assistant) -> int:
    """Waits for the popup for what is typed; how many suggestions it shows. The program waits 0.4 s
    for them: when a busy machine took longer, a blank is typed and deleted, which asks again."""
    replies = 0
    has_blank = False

    def shown() -> int:
        nonlocal replies, has_blank
        counts = [int(found) for found in _COUNT.findall(assistant.log.text())]
        if len(counts) > replies and (has_blank or counts[-1] == 0):
            assistant.person.press("BackSpace" if has_blank else "space")
            has_blank = not has_blank
        replies = len(counts)
        if has_blank or not counts or counts[-1] == 0:
            return 0
        return counts[-1] if suggestions_shown(assistant.look(), counts[-1]) else 0
    return wait_until(shown, "suggestions for what is typed")


def suggestion_place(count: int, row: int) -> tuple[int, int]:
    """A place on row number row, from 0, of that many suggestions."""
    return 300, popup_box(count)[1] + _FIRST_ROW + _ROW_HEIGHT * row + _ROW_HEIGHT // 2


def wait_for_menu(assistant: Assistant, before: Image.Image, place: tuple[int, int],
                  size: tuple[int, int]) -> Image.Image:
    """Waits until a menu of about this size has come up below and right of a place, over the window
    that looked like before; gives the picture with it."""
    left, top = place
    box = (left, top, min(left + size[0], before.width), min(top + size[1], before.height))

    def shown() -> Image.Image | None:
        window = assistant.look()
        changed = ImageChops.difference(before.crop(box), window.crop(box)).getbbox()
        text = conversation.ink(window, box)
        wide = changed is not None and changed[2] - changed[0] > (box[2] - box[0]) // 2
        high = changed is not None and changed[3] - changed[1] > (box[3] - box[1]) // 2
        return window if wide and high and text else None
    return wait_until(shown, "the menu")


def wait_for_change(assistant: Assistant, before: Image.Image, box: Box, what: str) -> Image.Image:
    """Waits until box looks different from before; gives the picture."""
    def changed() -> Image.Image | None:
        window = assistant.look()
        difference = ImageChops.difference(before.crop(box), window.crop(box))
        return window if difference.getbbox() is not None else None
    return wait_until(changed, what)


def wait_for_return(assistant: Assistant, before: Image.Image, box: Box, what: str) -> None:
    """Waits until box looks like before again."""
    wait_until(lambda: ImageChops.difference(before.crop(box),
                                             assistant.look().crop(box)).getbbox() is None,
               f"{what} gone")
