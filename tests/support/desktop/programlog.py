"""A log file that another process is writing."""

from __future__ import annotations

from pathlib import Path

from .waiting import PATIENCE_S, wait_until


class ProgramLog:
    """Reads from a mark on, so that a test sees only what came after its own action."""

    def __init__(self, path: Path, encoding: str = "utf-8") -> None:
        self.path = path
        self._encoding = encoding
        self._mark = 0

    def text(self) -> str:
        """Everything since the last mark; empty while there is no file."""
        try:
            data = self.path.read_bytes()
        except FileNotFoundError:
            return ""
        if len(data) < self._mark:
            self._mark = 0  # the file was moved to its backup and begun anew
        return data[self._mark:].decode(self._encoding, errors="replace")

    def whole(self) -> str:
        """Everything in the file, whatever was marked."""
        return self.path.read_bytes().decode(self._encoding)

    def mark(self) -> None:
        """From now on only what is written later counts."""
        self._mark = self.path.stat().st_size if self.path.exists() else 0

    def has(self, *texts: str) -> bool:
        """Whether these texts occur since the mark, in this order."""
        log = self.text()
        at = 0
        for text in texts:
            at = log.find(text, at)
            if at < 0:
                return False
            at += len(text)
        return True

    def wait_for(self, *texts: str, timeout_s: float = PATIENCE_S) -> None:
        """Waits until these texts occur since the mark, in this order."""
        wait_until(lambda: self.has(*texts), f"{' ... '.join(texts)!r} in {self.path.name}",
                   timeout_s)
