"""A log file that another process is writing."""

from __future__ import annotations

import os
from pathlib import Path

from .waiting import PATIENCE_S, wait_until


class ProgramLog:
    """Reads from a mark on, so that a test sees only what came after its own action. A full file
    becomes its backup and is begun anew; what it had is still seen."""

    def __init__(self, path: Path, encoding: str = "utf-8") -> None:
        self.path = path
        self._encoding = encoding
        self._mark = 0
        self._inode: int | None = None  # of the file that the mark is in
        self._seen = 0  # bytes that it had at least
        self._moved = b""  # what has gone to the backup since the mark

    def text(self) -> str:
        """Everything since the last mark; empty while there is no file."""
        inode, data = self._read(self.path)
        # A file may get the inode of one that is gone.
        if self._inode is not None and (inode != self._inode or len(data) < self._seen):
            moved, backup = self._read(self.path.with_name(self.path.name + ".bk"))
            # Where one more file has been moved there since, the first is gone.
            self._moved += backup[self._mark:] if moved == self._inode else backup
            self._mark = 0
        self._inode = inode
        self._seen = len(data)
        return (self._moved + data[self._mark:]).decode(self._encoding, errors="replace")

    def lines(self) -> list[str]:
        """The lines since the last mark, without the one that is just being written."""
        return [line.rstrip("\r") for line in self.text().split("\n")[:-1]]

    def whole(self) -> str:
        """Everything in the file, whatever was marked."""
        return self.path.read_bytes().decode(self._encoding)

    def mark(self) -> None:
        """From now on only what is written later counts."""
        self._inode, data = self._read(self.path)
        self._mark = self._seen = len(data)
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
    def _read(path: Path) -> tuple[int | None, bytes]:
        """Which file is there, and what is in it."""
        try:
            with path.open("rb") as file:
                return os.fstat(file.fileno()).st_ino, file.read()
        except FileNotFoundError:
            return None, b""
