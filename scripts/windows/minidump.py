"""Reads the part of a crash dump that tells where each thread was."""

from __future__ import annotations

import struct
from dataclasses import dataclass
from pathlib import Path

_THREADS = 3
_MODULES = 4
_EXCEPTION = 6
_MODULE_BYTES = 108
_THREAD_BYTES = 48
# Places in the context of a 64-bit thread.
_STACK_POINTER = 0x98
_INSTRUCTION_POINTER = 0xF8


@dataclass(frozen=True)
class Module:
    """A program or library in the process."""

    path: str
    base: int
    size: int

    @property
    def name(self) -> str:
        return self.path.replace("/", "\\").rsplit("\\", 1)[-1]


@dataclass(frozen=True)
class Thread:
    """One thread: where it was, and what its stack holds from the pointer on."""

    number: int
    address: int
    stack_pointer: int
    stack: bytes


@dataclass(frozen=True)
class Crash:
    """What ended the process."""

    thread: int
    code: int
    address: int


class Minidump:
    """ValueError when the file is not such a dump."""

    def __init__(self, path: Path) -> None:
        self._data = path.read_bytes()
        if self._data[:4] != b"MDMP":
            raise ValueError(f"{path} is no crash dump")
        count, directory = struct.unpack_from("<II", self._data, 8)
        self._streams = {}
        for index in range(count):
            kind, _, place = struct.unpack_from("<III", self._data, directory + 12 * index)
            self._streams[kind] = place
        self.modules = self._read_modules()
        self.crash = self._read_crash()
        self.threads = self._read_threads()

    def module_at(self, address: int) -> Module | None:
        for module in self.modules:
            if module.base <= address < module.base + module.size:
                return module
        return None

    def _read_modules(self) -> list[Module]:
        place = self._streams[_MODULES]
        [count] = struct.unpack_from("<I", self._data, place)
        modules = []
        for index in range(count):
            base, size, _, _, name = struct.unpack_from("<QIIII", self._data,
                                                        place + 4 + _MODULE_BYTES * index)
            [length] = struct.unpack_from("<I", self._data, name)
            text = self._data[name + 4:name + 4 + length].decode("utf-16-le")
            modules.append(Module(text.rstrip("\0"), base, size))
        return modules

    def _read_crash(self) -> Crash | None:
        if _EXCEPTION not in self._streams:
            return None
        place = self._streams[_EXCEPTION]
        thread, _, code, _, _, address = struct.unpack_from("<IIIIQQ", self._data, place)
        self._crash_context = struct.unpack_from("<II", self._data, place + 160)[1]
        return Crash(thread, code, address)

    def _read_threads(self) -> list[Thread]:
        place = self._streams[_THREADS]
        [count] = struct.unpack_from("<I", self._data, place)
        threads = []
        for index in range(count):
            at = place + 4 + _THREAD_BYTES * index
            [number] = struct.unpack_from("<I", self._data, at)
            start, size, memory, _, context = struct.unpack_from("<QIIII", self._data, at + 24)
            if self.crash and self.crash.thread == number:
                context = self._crash_context  # as it was when it happened, not when it was written
            [pointer] = struct.unpack_from("<Q", self._data, context + _STACK_POINTER)
            [address] = struct.unpack_from("<Q", self._data, context + _INSTRUCTION_POINTER)
            held = self._data[memory:memory + size]
            threads.append(Thread(number, address, pointer, held[max(0, pointer - start):]))
        return threads
