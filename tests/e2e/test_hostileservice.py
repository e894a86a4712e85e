"""A service that means harm, or whoever answers in its place: the window shows the fixed message, holds
no more memory than a reply may have, and asks the next question as ever."""

from __future__ import annotations

import contextlib
import os
import socket
import socketserver
import threading
import unittest
from typing import Callable

from desktop.assistant import Assistant
from desktop.conversation import ANSWER, QUESTION
from desktop.installation import LOOPBACK
from desktop.testcase import DesktopTest

BAD = "客户端的服务器地址怎么填"
NEXT = "怎样进入和退出全屏"

GIVEN_UP = "reply is longer than 134217728 bytes, it is given up."
CANCELED = "https reply error:OperationCanceledError"
NO_REPLY = "The network is connected, but the reply is empty."

# 64 KiB of nothing, compressed, that can follow themselves any number of times.
BOMB = bytes.fromhex("ecc101010000008090feafee080a" + "00" * 64 + "6a000000ffff")
MAY_HOLD_KIB = 384 * 1024
_POLL_S = 0.05
# Sanitizers keep what was freed.
MEMORY_COUNTS = not {"ASAN_OPTIONS", "TSAN_OPTIONS"} & set(os.environ)

Play = Callable[[socket.socket], None]


class HostileService(socketserver.ThreadingTCPServer):
    """Gives every request the same treatment; a context manager. Its thread has ended when it is
    left: one that waits in accept() can come back to the socket of the service that follows."""

    allow_reuse_address = True
    daemon_threads = True
    block_on_close = False  # who sends without end does so until the connection ends

    def __init__(self, play: Play) -> None:
        super().__init__((LOOPBACK, 0), _HostileConnection)
        self.play = play
        self.port: int = self.server_address[1]
        self.received: list[bytes] = []
        self._accepting = threading.Thread(target=self.serve_forever, args=(_POLL_S,), daemon=True)
        self._accepting.start()

    def __exit__(self, *details: object) -> None:
        self.shutdown()
        self._accepting.join()
        super().__exit__(*details)


class _HostileConnection(socketserver.BaseRequestHandler):
    server: HostileService
    request: socket.socket

    def handle(self) -> None:
        with contextlib.suppress(OSError):
            received = b""
            while not received.endswith(b"}"):
                data = self.request.recv(65536)
                if not data:
                    return  # it only looked whether somebody listens
                received += data
            self.server.received.append(received)
            self.server.play(self.request)


def without_end(head: bytes, piece: bytes) -> Play:
    def play(connection: socket.socket) -> None:
        connection.sendall(head)
        while True:
            connection.sendall(piece)
    return play


def once(reply: bytes) -> Play:
    return lambda connection: connection.sendall(reply)


class HostileServiceTest(DesktopTest):
    def survive(self, play: Play, *expected: str) -> None:
        """Asks the hostile service, then the good one; expected are the log's texts."""
        good = self.start_service()
        assistant = self.start_greeted()
        before = self.peak_kib(assistant)
        hostile = self.enterContext(HostileService(play))
        self.installation.use_service(hostile.port)
        assistant.ask(BAD)
        assistant.wait_for_log(*expected)
        assistant.wait_for_bubbles((QUESTION, ANSWER), "the message about the reply")
        if MEMORY_COUNTS:
            self.assertLess(self.peak_kib(assistant) - before, MAY_HOLD_KIB)
        self.installation.use_service(good.http_port)
        assistant.ask(NEXT)
        assistant.wait_for_answer(NEXT)
        self.close_cleanly(assistant)
        # Beside the suggestions for what was typed.
        asked = [request for request in hostile.received if b"/answers " in request]
        self.assertEqual(1, len(asked))

    def peak_kib(self, assistant: Assistant) -> int:
        with open(f"/proc/{assistant.process.pid}/status", encoding="ascii") as status:
            return next(int(line.split()[1]) for line in status if line.startswith("VmHWM:"))

    def test_body_without_end(self) -> None:
        self.survive(without_end(b"HTTP/1.1 200 OK\r\n\r\n", b"x" * 65536),
                     GIVEN_UP, CANCELED, NO_REPLY)

    def test_compressed_body_without_end(self) -> None:
        self.survive(without_end(b"HTTP/1.1 200 OK\r\nContent-Encoding: deflate\r\n\r\n\x78\xda",
                                 BOMB * 1000), GIVEN_UP, CANCELED, NO_REPLY)

    def test_redirect(self) -> None:
        with HostileService(once(b"")) as elsewhere:
            self.survive(once(b"HTTP/1.1 307 Temporary Redirect\r\nContent-Length: 0\r\n"
                              b"Location: http://127.0.0.1:%d/\r\n\r\n" % elsewhere.port), NO_REPLY)
            self.assertEqual([], elsewhere.received)

    def test_question_for_the_users_log_in(self) -> None:
        self.survive(once(b"HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: NTLM\r\n"
                          b"Content-Length: 0\r\n\r\n"), "AuthenticationRequiredError", NO_REPLY)

    def test_ten_thousand_headers(self) -> None:
        self.survive(once(b"HTTP/1.1 200 OK\r\n" + b"X-A: b\r\n" * 10_000
                          + b"Content-Length: 2\r\n\r\n{}"), NO_REPLY)


if __name__ == "__main__":
    unittest.main()
