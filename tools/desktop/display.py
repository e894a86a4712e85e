"""A screen of its own in memory."""

from __future__ import annotations

import ctypes
import random
import socket
import struct
import subprocess
from pathlib import Path
from types import TracebackType

from PIL import Image

from .child import Child
from .project import base_environment
from .waiting import wait_until

WIDTH = 1280
HEIGHT = 800

_NUMBERS = range(100, 10000)
_ATTEMPTS = 20
_TOOL_S = 10.0

# The screen's memory is a file in the X window dump format: a header of big-endian 32-bit numbers
# (X11/XWDFile.h), the colour map, the pixels.
_HEADER_SIZE = 0
_PIXMAP_WIDTH = 4
_PIXMAP_HEIGHT = 5
_BYTES_PER_LINE = 12
_COLOURS = 19
_HEADER_NUMBERS = 25
_COLOUR_ENTRY_BYTES = 12


class Display:
    """One X server without hardware, with a number that no other server has."""

    def __init__(self, folder: Path, *, composited: bool = True,
                 size: tuple[int, int] = (WIDTH, HEIGHT)) -> None:
        """Starts the server with one screen of this size; its log and its memory lie in folder.
        Without composited, windows have no translucent places, as in some remote sessions."""
        folder.mkdir(parents=True, exist_ok=True)
        self._folder = folder
        self._size = size
        self._size = size
        self._memory = folder / "Xvfb_screen0"
        self._memory.unlink(missing_ok=True)
        self.name, self._server = self._start()
        self._manager: Child | None = None
        self._compositor: Child | None = None
        if composited:
            self._composite()

    def __enter__(self) -> Display:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        for child in (self._manager, self._compositor, self._server):
            if child is not None:
                child.stop()

    def manage_windows(self) -> None:
        """Starts a window manager, which gives windows the keyboard, and maximises them."""
        self._manager = Child(["openbox", "--sm-disable"],
                              env={**base_environment(), "DISPLAY": self.name},
                              output=self._folder / "openbox.log")
        wait_until(self._is_managed, "the window manager")

    def shot(self) -> Image.Image:
        """What the screen shows now."""
        data = self._memory.read_bytes()
        header = struct.unpack_from(f">{_HEADER_NUMBERS}I", data)
        start = header[_HEADER_SIZE] + header[_COLOURS] * _COLOUR_ENTRY_BYTES
        size = (header[_PIXMAP_WIDTH], header[_PIXMAP_HEIGHT])
        return Image.frombytes("RGB", size, data[start:], "raw", "BGRX", header[_BYTES_PER_LINE])

    def _composite(self) -> None:
        """Starts the program that blends windows with what is below them."""
        output = self._folder / "xcompmgr.log"
        self._compositor = Child(["xcompmgr"],
                                 env={**base_environment(), "DISPLAY": self.name}, output=output)
        wait_until(self._is_composited, "the compositor")

    def _is_composited(self) -> bool:
        """The compositor of a screen owns a selection; no command tells who does."""
        library = ctypes.CDLL("libX11.so.6")
        library.XOpenDisplay.restype = ctypes.c_void_p
        connection = ctypes.c_void_p(library.XOpenDisplay(self.name.encode("ascii")))
        if not connection:
            return False
        selection = library.XInternAtom(connection, b"_NET_WM_CM_S0", False)
        owner = library.XGetSelectionOwner(connection, ctypes.c_ulong(selection))
        library.XCloseDisplay(connection)
        return owner != 0

    def _is_managed(self) -> bool:
        """A managed screen tells how many desktops it has."""
        done = subprocess.run(["xdotool", "get_num_desktops"], capture_output=True, check=False,
                              env={**base_environment(), "DISPLAY": self.name}, timeout=_TOOL_S)
        return done.returncode == 0

    def _start(self) -> tuple[str, Child]:
        """The server could choose a number itself, but would then take over one that is in use; a
        number that it is given it locks, or ends at once."""
        for number in random.sample(_NUMBERS, _ATTEMPTS):
            server = Child(
                ["Xvfb", f":{number}", "-screen", "0", f"{self._size[0]}x{self._size[1]}x24",
                 "-fbdir", self._folder, "-nolisten", "tcp", "-noreset"],
                env=base_environment(), output=self._folder / "xvfb.log")
            wait_until(lambda: not server.alive or self._accepts(number), f"the screen :{number}")
            if server.alive:
                return f":{number}", server
        raise RuntimeError("Xvfb did not start: " + (self._folder / "xvfb.log").read_text())

    def _accepts(self, number: int) -> bool:
        """Whether the server lets clients in; its memory exists before that."""
        with socket.socket(socket.AF_UNIX) as client:
            try:
                client.connect(f"/tmp/.X11-unix/X{number}")
            except OSError:
                return False
        return self._memory.exists()
