"""The guard tool's side of the loopback channel."""

from __future__ import annotations

import json
import select
import socket
import subprocess
from types import TracebackType

from .installation import LOOPBACK, Installation
from .project import GUARD_POST, base_environment
from .waiting import PATIENCE_S

ACKNOWLEDGEMENT = b'{"code":"0"}'

_CHUNK = 65536
_SOON_S = 1.0


def channel_port(installation: Installation) -> int:
    """The port on which the program listens."""
    return int(installation.settings["SysguardPort/port1"]) % 65536


def document(question: str) -> bytes:
    """The message that asks a question."""
    return json.dumps({"question": question, "rawquery": question},
                      ensure_ascii=False).encode("utf-8")


def post(installation: Installation, question: str) -> None:
    """Posts a question by the tool that comes with the program; it must be acknowledged."""
    done = subprocess.run([GUARD_POST, "--config", installation.root, question],
                          env=base_environment(), capture_output=True, timeout=4 * PATIENCE_S,
                          check=False)
    printed = done.stdout.strip()
    if done.returncode != 0 or printed != ACKNOWLEDGEMENT:
        raise RuntimeError(f"guardpost: status {done.returncode}, it printed {printed!r}, "
                           f"{done.stderr.decode('utf-8', errors='replace')}")


class GuardClient:
    """One connection to the channel."""

    def __init__(self, port: int) -> None:
        self._socket = socket.create_connection((LOOPBACK, port), PATIENCE_S)
        self._socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)

    def __enter__(self) -> GuardClient:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self.close()

    def send(self, data: bytes) -> None:
        """Sends bytes, in one piece as far as they fit into one."""
        self._socket.sendall(data)

    def acknowledged(self, count: int = 1) -> bool:
        """Waits for so many acknowledgements; False when something else came, or the connection
        ended."""
        wanted = ACKNOWLEDGEMENT * count
        received = b""
        while len(received) < len(wanted):
            try:
                data = self._socket.recv(min(_CHUNK, len(wanted) - len(received)))
            except ConnectionError:
                return False
            if not data:
                return False
            received += data
        return received == wanted

    def is_heard(self) -> bool:
        """Sends an empty question: whether it is acknowledged soon. It is not when it is read
        together with what was sent before."""
        self.send(b"{}")
        readable, _, _ = select.select([self._socket], [], [], _SOON_S)
        return bool(readable) and self.acknowledged()

    def closed(self) -> bool:
        """Waits for the end of the connection; False when something came instead."""
        try:
            return self._socket.recv(1) == b""
        except ConnectionError:
            return True

    def close(self) -> None:
        self._socket.close()
