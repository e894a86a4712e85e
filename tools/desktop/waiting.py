"""Waiting for a condition, never for a length of time."""

from __future__ import annotations

import time
from typing import Callable, TypeVar

from .project import SLOWNESS

Result = TypeVar("Result")

PATIENCE_S = 20.0 * SLOWNESS
"""How long anything may take that normally takes well under a second: a slow machine with a
sanitizer build must still pass."""

POLL_S = 0.02


class NotSeen(AssertionError):
    """What was waited for did not happen in time; the text names it."""


def wait_until(condition: Callable[[], Result], what: str, timeout_s: float = PATIENCE_S) -> Result:
    """Returns the first true-like value of condition(); raises NotSeen(what) after timeout_s."""
    deadline = time.monotonic() + timeout_s
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() >= deadline:
            raise NotSeen(f"{what}: not seen within {timeout_s:g} s")
        time.sleep(POLL_S)
