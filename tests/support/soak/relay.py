"""The way to the service, which can be cut and mended while both ends run."""

from __future__ import annotations

import contextlib
import select
import socket
import threading
from types import TracebackType

from desktop.installation import LOOPBACK

_CHUNK = 65536
_POLL_S = 0.2


class Relay:
    """Passes connections on to a port. While it is cut, nobody listens and every connection that
    there was has ended."""

    def __init__(self, target: int) -> None:
        self._target = target
        self._lock = threading.Lock()
        self._open: set[socket.socket] = set()
        self._listener: socket.socket | None = None
        self.port = 0
        self.mend()

    def __enter__(self) -> Relay:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self.cut()

    def mend(self) -> None:
        """Listens, always on the same port."""
        listener = socket.socket()
        listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        listener.bind((LOOPBACK, self.port))
        listener.listen(64)
        self.port = listener.getsockname()[1]
        self._listener = listener
        threading.Thread(target=self._accept, args=(listener,), daemon=True).start()

    def cut(self) -> None:
        """Listens no more and ends every connection."""
        listener, self._listener = self._listener, None
        if listener is not None:
            with contextlib.suppress(OSError):
                listener.shutdown(socket.SHUT_RDWR)  # or accept() would hold the port open
            listener.close()
        self.drop()

    def drop(self) -> None:
        """Ends every connection and goes on listening, as a service does that starts anew."""
        with self._lock:
            for one in self._open:
                with contextlib.suppress(OSError):
                    one.shutdown(socket.SHUT_RDWR)

    def _accept(self, listener: socket.socket) -> None:
        while True:
            try:
                client, _ = listener.accept()
            except OSError:
                return
            threading.Thread(target=self._serve, args=(client,), daemon=True).start()

    def _serve(self, client: socket.socket) -> None:
        with contextlib.suppress(OSError), client, \
                socket.create_connection((LOOPBACK, self._target)) as server:
            with self._lock:
                self._open |= {client, server}
            try:
                _pass_on(client, server)
            finally:
                with self._lock:
                    self._open -= {client, server}


def _pass_on(client: socket.socket, server: socket.socket) -> None:
    """Until one of the two ends."""
    other = {client: server, server: client}
    while True:
        readable, _, _ = select.select([client, server], [], [], _POLL_S)
        for one in readable:
            data = one.recv(_CHUNK)
            if not data:
                return
            other[one].sendall(data)
