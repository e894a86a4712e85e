"""A log file that another process is writing."""

from __future__ import annotations

from pathlib import Path

from .waiting import PATIENCE_S, wait_until


class ProgramLog:
    """Reads from a mark on, so that a test sees only what came after its own action. A full file
    becomes its backup and is begun anew; what it had is still seen."""

    def __init__(self, path: Path, encoding: str = "utf-8") -> None:
        self.path = path
        self._encoding = encoding
        self._mark = 0
        self._seen = 0  # bytes that the file had at least
        self._moved = b""  # what has gone to the backup since the mark

    def text(self) -> str:
        """Everything since the last mark; empty while there is no file."""
        data = self._read(self.path)
        if len(data) < self._seen:
            backup = self._read(self.path.with_name(self.path.name + ".bk"))
            self._moved += backup[self._mark:]
            self._mark = 0
        self._seen = len(data)
        return (self._moved + data[self._mark:]).decode(self._encoding, errors="replace")

    def whole(self) -> str:
        """Everything in the file, whatever was marked."""
        return self.path.read_bytes().decode(self._encoding)

    def mark(self) -> None:
        """From now on only what is written later counts."""
        self._mark = self.path.stat().st_size if self.path.exists() else 0
        self._seen = self._mark
        self._moved = b""

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

    @staticmethod
    def _read(path: Path) -> bytes:
        try:
            return path.read_bytes()
        except FileNotFoundError:
            return b""
