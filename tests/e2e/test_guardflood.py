"""A program on the machine that means harm floods the guard channel. The user's window goes on, and
the channel does again when the flood is over."""

from __future__ import annotations

import contextlib
import os
import resource
import socket
import time
import unittest

from desktop.guardchannel import GuardClient, channel_port, document
from desktop.installation import LOOPBACK
from desktop.project import SLOWNESS
from desktop.testcase import DesktopTest
from desktop.waiting import wait_until

TEXT = "客户端的服务器地址怎么填"
TYPED = "怎样进入和退出全屏"

MIB = 1024 * 1024
PIECE = b"x" * MIB
CLIENTS = 5
QUESTIONS_EACH = 1000
CONNECTIONS = 500
# What a flood may cost: what is on its way to the window, as bytes and as text, and the log's line.
MAY_HOLD_KIB = 256 * 1024
LONG_S = 60 * SLOWNESS
REFUSED_S = 0.05
ALLOWED = 128
IDLE_S = 1.5
SANITIZED = bool({"ASAN_OPTIONS", "TSAN_OPTIONS"} & set(os.environ))


class GuardFloodTest(DesktopTest):
    def setUp(self) -> None:
        super().setUp()
        # The flood comes from this process: it must not be the one that runs out of descriptors.
        _, most = resource.getrlimit(resource.RLIMIT_NOFILE)
        resource.setrlimit(resource.RLIMIT_NOFILE, (most, most))
        self.service = self.start_service()
        self.assistant = self.start_greeted()
        self.port = channel_port(self.installation)

    def connected(self) -> GuardClient:
        return self.enterContext(GuardClient(self.port))

    def user_is_served(self) -> None:
        """A person asks, and gets the answer."""
        self.assistant.ask(TYPED)
        self.assistant.wait_for_answer(TYPED)

    def guard_is_served(self, question: str = TEXT) -> None:
        def acknowledged() -> bool:
            with GuardClient(self.port) as client:
                client.send(document(question))
                return client.acknowledged()
        wait_until(acknowledged, "the channel's acknowledgement", LONG_S)

    def processor_s(self) -> float:
        """What the program has used of the processors, all its threads."""
        with open(f"/proc/{self.assistant.process.pid}/stat", encoding="ascii") as stat:
            user, system = stat.read().rpartition(")")[2].split()[11:13]
        return (int(user) + int(system)) / os.sysconf("SC_CLK_TCK")

    def held_kib(self) -> int:
        with open(f"/proc/{self.assistant.process.pid}/status", encoding="ascii") as status:
            return next(int(line.split()[1]) for line in status if line.startswith("RssAnon:"))

    def test_connections_that_say_nothing(self) -> None:
        for _ in range(CONNECTIONS):
            self.connected()
        self.user_is_served()
        self.guard_is_served()
        self.close_cleanly(self.assistant)

    @unittest.skipIf(SANITIZED, "without a free descriptor the sanitizer takes every object for none")
    def test_more_connections_than_the_system_allows(self) -> None:
        pid = self.assistant.process.pid
        _, most = resource.prlimit(pid, resource.RLIMIT_NOFILE)
        resource.prlimit(pid, resource.RLIMIT_NOFILE, (ALLOWED, most))
        with contextlib.ExitStack() as flood:
            for _ in range(200):
                with contextlib.suppress(TimeoutError):  # the last ones are not accepted any more
                    flood.enter_context(socket.create_connection((LOOPBACK, self.port), REFUSED_S))
            self.assistant.wait_for_log("too many clients are connected, the next ones wait.")
            self.user_is_served()
            self.assertLess(len(os.listdir(f"/proc/{pid}/fd")), ALLOWED)
            before = self.processor_s()
            time.sleep(IDLE_S)  # what is used while nothing happens shows over a time only
            self.assertLess(self.processor_s() - before, IDLE_S / 2)
        self.guard_is_served()
        self.user_is_served()
        self.close_cleanly(self.assistant)

    def test_connections_that_come_and_go(self) -> None:
        for _ in range(2000):
            socket.create_connection((LOOPBACK, self.port)).close()
        self.guard_is_served()
        self.user_is_served()
        self.close_cleanly(self.assistant)

    def test_half_messages(self) -> None:
        half = document(TEXT)[:-5]
        for _ in range(CONNECTIONS):
            self.connected().send(half)
        self.user_is_served()
        self.guard_is_served()
        self.close_cleanly(self.assistant)

    def test_a_message_without_end(self) -> None:
        before = self.held_kib()
        client = self.connected()
        most = 0
        for _ in range(300):
            client.send(PIECE)
            most = max(most, self.held_kib())
        if not SANITIZED:  # sanitizers keep what was freed
            self.assertLess(most - before, MAY_HOLD_KIB)
        self.user_is_served()
        client.close()
        self.guard_is_served()
        self.close_cleanly(self.assistant)

    def test_five_thousand_questions_of_five_clients(self) -> None:
        """Nobody reads the acknowledgements. The user's question is asked among them, and the window
        closes when the user wants it to."""
        clients = [self.connected() for _ in range(CLIENTS)]
        message = document(TEXT)
        for _ in range(QUESTIONS_EACH):
            for client in clients:
                client.send(message)
        # What meets on a connection counts as one message, and two questions in one as none: on a
        # busy machine that may be all of them.
        wait_until(lambda: self.service.log.has("call=ask", f'question="{TEXT}"')
                   or clients[0].send(message), "one of the questions at the service", LONG_S)
        self.assistant.ask(TYPED)
        self.service.log.wait_for("call=ask", f'question="{TYPED}"', timeout_s=LONG_S)
        self.close_cleanly(self.assistant)


if __name__ == "__main__":
    unittest.main()
