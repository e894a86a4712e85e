"""What a newcomer sees of the assistant while its service is not used."""

from __future__ import annotations

from pathlib import Path

from .assistant import Assistant
from .localquestions import ask_row, shipped_questions, unfold, wait_for_local_questions

# How the launcher starts the program, and the login state that keeps it offline.
ARGUMENTS = ("--Type=ombra",)
LOGGED_OUT = {"LoginMode/loginstate": "0"}

# A question whose answer has a picture, counted from 0.
_ROW = 1


class OfflineTour:
    """Looks at the local questions and asks one; stops with NotSeen at the first thing missing."""

    def __init__(self, assistant: Assistant, folder: Path, first_number: int) -> None:
        """Pictures go to folder, numbered from first_number on."""
        self._assistant = assistant
        self._folder = folder
        self._number = first_number
        self.pictures: list[Path] = []

    def run(self) -> None:
        wait_for_local_questions(self._assistant)
        self._save("offline")
        answer = ask_row(self._assistant, _ROW, shipped_questions()[_ROW])[-1]
        self._save("local-answer")
        unfold(self._assistant, answer)
        self._save("local-answer-unfolded")
        status = self._assistant.close()
        if status != 0:
            raise RuntimeError(f"closing the window: the program ended with status {status}")

    def _save(self, name: str) -> None:
        path = self._folder / f"{self._number + len(self.pictures):02}-{name}.png"
        self._assistant.look().save(path)
        self.pictures.append(path)
