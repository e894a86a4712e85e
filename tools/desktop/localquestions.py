"""The assistant without its service: the column of local questions, and their answers."""

from __future__ import annotations

import re

from PIL import Image

from . import conversation
from .assistant import Assistant
from .conversation import ANSWER, QUESTION, Bubble
from .project import LOCAL_LIBRARY
from .waiting import wait_until

ROWS = 16
NEXT_PAGE = (868, 91)

# A wheel click scrolls by less than this share of the list; so many reach the end of any answer.
_WHEEL_DOWN = 5
_WHEEL_CLICKS = 30
_LIST = (325, 270)

# The button that unfolds an answer, counted from the window's left edge and the bubble's lower edge.
_UNFOLD_X = 329
_UNFOLD_ABOVE_EDGE = 21

# The rows of the column in px from the window's upper left corner.
_ROW_LEFT = 688
_ROW_RIGHT = 808
_FIRST_TOP = 119
_ROW_HEIGHT = 30
_ROW_MIDDLE = 760

_QUESTION = re.compile(r"<p>.{5}(.*?)</p>")


def shipped_questions() -> list[str]:
    """The questions of the files that come with the program, in the order of the list."""
    files = sorted(LOCAL_LIBRARY.glob("*.txt"), key=lambda path: int(path.stem))
    return [_QUESTION.search(path.read_text(encoding="utf-8"))[1] for path in files]


def written_rows(window: Image.Image) -> int:
    """How many rows of the column show a question, from the first on."""
    for row in range(ROWS):
        top = _FIRST_TOP + _ROW_HEIGHT * row
        if not conversation.ink(window, (_ROW_LEFT, top, _ROW_RIGHT, top + _ROW_HEIGHT)):
            return row
    return ROWS


def wait_for_rows(assistant: Assistant, rows: int) -> None:
    """Waits until exactly so many rows show a question."""
    wait_until(lambda: written_rows(assistant.look()) == rows, f"{rows} local questions")


def wait_for_local_questions(assistant: Assistant) -> None:
    """Waits until a just started assistant explains itself and lists the shipped questions."""
    count = len(shipped_questions())
    assistant.wait_for_window()
    assistant.rest()
    assistant.wait_for_log(f"Location_hot_questions_num: (%d){count}netHotWork：")
    assistant.wait_for_bubbles((ANSWER,), "the message that the service is not used")
    wait_for_rows(assistant, min(count, ROWS))


def ask_row(assistant: Assistant, row: int, question: str) -> list[Bubble]:
    """Clicks the question in a row, counted from 0, and waits for its answer."""
    assistant.ask_by_click(_ROW_MIDDLE, _FIRST_TOP + _ROW_HEIGHT * row + _ROW_HEIGHT // 2)
    assistant.wait_for_log(f"question: {question}questionId: 0", "getIDP: false", "locatNum: ")
    return assistant.wait_for_bubbles((QUESTION, ANSWER), f"the local answer to {question!r}")


def unfold(assistant: Assistant, folded: Bubble) -> None:
    """Clicks the button at the end of a folded answer in view and scrolls to the answer's end."""
    before = assistant.look()
    assistant.click(_UNFOLD_X, folded.bottom - _UNFOLD_ABOVE_EDGE)
    assistant.rest()
    wait_until(lambda: conversation.bubbles(assistant.look())[-1].bottom > folded.bottom,
               "the unfolded answer")
    for _ in range(_WHEEL_CLICKS):
        assistant.click(*_LIST, button=_WHEEL_DOWN)
    assistant.rest()
    wait_until(lambda: _stays(assistant, before), "the end of the unfolded answer")


def _stays(assistant: Assistant, before: Image.Image) -> bool:
    """Whether the conversation has moved on from how it was before, and moves no more."""
    now = assistant.look()
    return (conversation.conversation_changed(before, now)
            and not conversation.conversation_changed(now, assistant.look()))


def show_next_page(assistant: Assistant, rows: int) -> None:
    """Clicks the button for the next page and waits until so many rows are written."""
    assistant.click(*NEXT_PAGE)
    assistant.rest()
    wait_for_rows(assistant, rows)
