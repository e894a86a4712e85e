"""Reads the conversation off a picture of the window, by the places and colours of its bubbles."""

from __future__ import annotations

from dataclasses import dataclass

from PIL import Image, ImageChops

WINDOW_SIZE = (920, 640)

QUESTION = "question"
ANSWER = "answer"

Colour = tuple[int, int, int]
Box = tuple[int, int, int, int]

_QUESTION_COLOUR: Colour = (223, 237, 255)
_ANSWER_COLOUR: Colour = (244, 245, 248)

# The conversation in the window: an item's left edge, the list's upper and lower edge.
_ITEM_LEFT = 3
_LIST_TOP = 58
_LIST_BOTTOM = 490

# Bubbles end and begin beside their triangles. Between edge and text there is a strip of the pure
# bubble colour, and a column in it shows where bubbles begin and end.
_QUESTION_RIGHT = _ITEM_LEFT + 565
_ANSWER_LEFT = _ITEM_LEFT + 83
_STRIP = 6
_QUESTION_MARGINS = 25
_TEXT_WIDTH = 446
_LEAST_HEIGHT = 12

_INPUT: Box = (17, 498, 633, 580)

# Text is darker than this; its anti-aliased edges are not.
_INK_BRIGHTNESS = 110
# More than a caret covers, less than one character changes in two places.
_CARET_PIXELS = 60


@dataclass(frozen=True)
class Bubble:
    """A bubble as far as the list shows it; rows are counted from the window's upper edge."""

    kind: str
    top: int
    bottom: int

    @property
    def text_box(self) -> Box:
        if self.kind == QUESTION:
            left = _QUESTION_RIGHT - _QUESTION_MARGINS - _TEXT_WIDTH
        else:
            left = _ANSWER_LEFT + _STRIP
        return left, self.top, left + _TEXT_WIDTH + _QUESTION_MARGINS - _STRIP, self.bottom


def ink(window: Image.Image, box: Box) -> int:
    """How many dark pixels box holds: 0 means that no text is there."""
    histogram = window.crop(box).convert("L").histogram()
    return sum(histogram[:_INK_BRIGHTNESS])


def count(window: Image.Image, box: Box, colour: Colour) -> int:
    """How many pixels of exactly this colour box holds."""
    part = window.crop(box)
    found = {value: number for number, value in part.getcolors(part.width * part.height)}
    return found.get(colour, 0)


def _runs(window: Image.Image, column: int, colour: Colour, kind: str) -> list[Bubble]:
    found = []
    start = None
    for row in range(_LIST_TOP, _LIST_BOTTOM + 1):
        inside = row < _LIST_BOTTOM and window.getpixel((column, row)) == colour
        if inside and start is None:
            start = row
        elif not inside and start is not None:
            if row - start >= _LEAST_HEIGHT:
                found.append(Bubble(kind, start, row))
            start = None
    return found


def bubbles(window: Image.Image) -> list[Bubble]:
    """Every bubble in view, from top to bottom."""
    questions = _runs(window, _QUESTION_RIGHT - _STRIP, _QUESTION_COLOUR, QUESTION)
    answers = _runs(window, _ANSWER_LEFT + _STRIP, _ANSWER_COLOUR, ANSWER)
    return sorted([*questions, *answers], key=lambda bubble: bubble.top)


def begins_above(bubble: Bubble) -> bool:
    """Whether a bubble is too tall for the list: its upper edge is out of view."""
    return bubble.top == _LIST_TOP


def conversation_changed(before: Image.Image, now: Image.Image) -> bool:
    """Whether the list shows something else."""
    box = (_ITEM_LEFT, _LIST_TOP, _QUESTION_RIGHT, _LIST_BOTTOM)
    return ImageChops.difference(before.crop(box), now.crop(box)).getbbox() is not None


def question_width(window: Image.Image, bubble: Bubble) -> int:
    """The width in px of a question's text: its bubble is as wide as the text and the margins."""
    row = bubble.bottom - _STRIP
    column = _QUESTION_RIGHT - _STRIP
    while column > 0 and window.getpixel((column - 1, row)) == _QUESTION_COLOUR:
        column -= 1
    return _QUESTION_RIGHT - column - _QUESTION_MARGINS


def input_changed(before: Image.Image, now: Image.Image) -> bool:
    """Whether the input box shows another text; a caret that blinks is no other text."""
    changes = ImageChops.difference(before.crop(_INPUT), now.crop(_INPUT)).convert("L")
    changed_pixels = sum(changes.histogram()[1:])
    return changed_pixels > _CARET_PIXELS
