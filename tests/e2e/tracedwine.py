"""A Wine that tells what a program asks of its system."""

from __future__ import annotations

import re
from pathlib import Path
from typing import Mapping

from desktop.assistant import Assistant
from desktop.wine import WinePrefix

_LOADED = re.compile(r'Loaded L"([^"]+)" at')
_ASKED = re.compile(r'looking for L"([^"]+)"')


class TracedWine(WinePrefix):
    """Its programs write what the channels of Wine's own log say into their output."""

    def __init__(self, folder: Path, channels: str) -> None:
        super().__init__(folder)
        self._channels = channels

    def environment(self, base: Mapping[str, str]) -> dict[str, str]:
        return {**super().environment(base), "WINEDEBUG": self._channels}


def loaded_libraries(assistant: Assistant) -> set[str]:
    """The files of every library that was loaded so far, in small letters; needs the channel
    "+loaddll"."""
    return {_plain(name) for name in _LOADED.findall(assistant.process.printed())}


def asked_libraries(assistant: Assistant) -> set[str]:
    """Every name by which a library was asked for so far, found or not; needs "+module"."""
    return {_plain(name) for name in _ASKED.findall(assistant.process.printed())}


def _plain(name: str) -> str:
    return name.replace("\\\\", "\\").lower()
