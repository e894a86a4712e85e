"""Work that goes on beside the main thread until it is told to stop."""

from __future__ import annotations

import threading
from types import TracebackType
from typing import Callable


class Background:
    """Calls step(number) again and again, pause_s apart. Leaving the with block stops it and raises
    what went wrong in it."""

    def __init__(self, step: Callable[[int], None], pause_s: float) -> None:
        self._step = step
        self._pause_s = pause_s
        self._stopped = threading.Event()
        self._error: BaseException | None = None
        self._thread = threading.Thread(target=self._run, daemon=True)

    def __enter__(self) -> Background:
        self._thread.start()
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self._stopped.set()
        self._thread.join()
        if self._error is not None and error is None:
            raise self._error

    def _run(self) -> None:
        number = 0
        while not self._stopped.is_set():
            try:
                self._step(number)
            except Exception as error:  # handed on by __exit__
                self._error = error
                return
            number += 1
            self._stopped.wait(self._pause_s)
