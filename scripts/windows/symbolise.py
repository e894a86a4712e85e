#!/usr/bin/env python3
"""Says in which functions the threads of a crash dump were, from the kept symbols of the release.

Usage: symbolise.py DUMP PROGRAMS SYMBOLS
  DUMP      the .dmp file
  PROGRAMS  the folder with the release's Miravel.exe and libraries (the portable zip, unpacked)
  SYMBOLS   the folder with the release's *.debug files (the symbols zip, unpacked)

Functions come from the symbols; in libraries without, the nearest name that the library exports is
given, in brackets. The callers are found by looking through the stack for addresses behind a call, so
that some lines may be of calls that had returned already."""

from __future__ import annotations

import bisect
import struct
import subprocess
import sys
from pathlib import Path

import pefile

from binary import TRIPLET
from minidump import Minidump, Module, Thread

_MOST_LINES = 60
# Lengths of the call instructions through a register or memory, with their first byte.
_INDIRECT_CALLS = (2, 3, 4, 6, 7)


class Binary:
    """One of the release's files, with its symbols where there are any."""

    def __init__(self, path: Path, symbols: Path) -> None:
        self._symbols = symbols if symbols.exists() else None
        with pefile.PE(str(path)) as image:
            self._base = image.OPTIONAL_HEADER.ImageBase
            self._memory = image.get_memory_mapped_image()
            exports = getattr(image, "DIRECTORY_ENTRY_EXPORT", None)
            named = [(symbol.address, symbol.name.decode("ascii", "replace"))
                     for symbol in (exports.symbols if exports else []) if symbol.name]
        self._exports = sorted(named)

    def is_behind_call(self, offset: int) -> bool:
        """Whether the instruction before this place calls something."""
        before = self._memory[max(0, offset - 7):offset]
        return (before[-5:-4] == b"\xe8"
                or any(before[-length:-length + 1] == b"\xff"
                       and before[-length + 1:][:1] and (before[-length + 1] & 0x38) == 0x10
                       for length in _INDIRECT_CALLS if len(before) >= length))

    def describe(self, offset: int) -> str:
        """The function at this place, with file and line where they are known."""
        if self._symbols:
            text = subprocess.run(
                [f"{TRIPLET}-addr2line", "-f", "-C", "-i", "-p", "-s", "-e", str(self._symbols),
                 hex(self._base + offset)], check=True, capture_output=True, text=True).stdout
            if text and not text.startswith("??"):
                return text.strip().replace("\n (inlined by) ", " < ")
        place = bisect.bisect_right(self._exports, (offset, "\x7f")) - 1
        return f"[{self._exports[place][1]}]" if place >= 0 else ""


class Symboliser:
    """Names addresses of one dump."""

    def __init__(self, dump: Minidump, programs: Path, symbols: Path) -> None:
        self._dump = dump
        self._files = {path.name.lower(): path for path in programs.rglob("*")}
        self._symbols = symbols
        self._binaries: dict[str, Binary | None] = {}

    def _binary(self, module: Module) -> Binary | None:
        name = module.name.lower()
        if name not in self._binaries:
            path = self._files.get(name)
            self._binaries[name] = path and Binary(path, self._symbols / f"{path.name}.debug")
        return self._binaries[name]

    def line(self, address: int, *, is_return: bool) -> str:
        """What is at an address; empty for a return address that is none."""
        module = self._dump.module_at(address)
        if module is None:
            return "" if is_return else f"{address:#x} in no module"
        offset = address - module.base
        binary = self._binary(module)
        if binary is None:
            return "" if is_return else f"{module.name}+{offset:#x}"
        if is_return and not binary.is_behind_call(offset):
            return ""
        return f"{module.name}+{offset:#x} {binary.describe(offset - is_return)}"

    def stack(self, thread: Thread) -> list[str]:
        lines = [self.line(thread.address, is_return=False)]
        for at in range(0, len(thread.stack) - 7, 8):
            [value] = struct.unpack_from("<Q", thread.stack, at)
            line = self.line(value, is_return=True)
            if line:
                lines.append(line)
            if len(lines) == _MOST_LINES:
                break
        return lines


def main() -> int:
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    dump_path, programs, symbols = map(Path, sys.argv[1:])
    dump = Minidump(dump_path)
    symboliser = Symboliser(dump, programs, symbols)
    if dump.crash:
        print(f"thread {dump.crash.thread}: exception {dump.crash.code:#x} at "
              + symboliser.line(dump.crash.address, is_return=False))
    for thread in dump.threads:
        print(f"\nthread {thread.number}:")
        for line in symboliser.stack(thread):
            print(f"    {line}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
