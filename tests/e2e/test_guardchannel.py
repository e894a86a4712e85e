"""The guard channel of the real program: other programs on the machine ask in the user's stead."""

from __future__ import annotations

import os
import socket
import unittest
from typing import Iterator

from desktop.assistant import Assistant
from desktop.conversation import ANSWER, QUESTION
from desktop.demoservice import DemoService
from desktop.guardchannel import GuardClient, channel_port, document
from desktop.installation import LOOPBACK, free_port
from desktop.project import ON_WINE, SLOWNESS
from desktop.testcase import DesktopTest
from desktop.waiting import wait_until

TEXT = "客户端的服务器地址怎么填"
OTHER_TEXT = "怎样进入和退出全屏"
LISTENING = "Tcp listen the port"
SENT = "send messages(Sysguard) by idp qa request, isGetHotQuests:true. netHotWork:false"

MIB = 1024 * 1024
LARGE = 64 * MIB
# Loopback delivers as much in one piece.
READ_AT_ONCE = 32 * 1024
# What may stay after a hard case: the log's and the heap's buffers, and a few bubbles.
MAY_STAY_KIB = 24 * 1024
WARM_UP = 3

# Hundreds of questions, inside each other or one after the other.
MANY_S = 120 * SLOWNESS

# Sanitizers keep what was freed; Wine's processes hold more than the program.
MEMORY_COUNTS = "TSAN_OPTIONS" not in os.environ and not ON_WINE


class GuardChannelTest(DesktopTest):
    def start_listening(self) -> tuple[Assistant, DemoService, int]:
        """The program when its channel is open; its first hot questions do not come for a while."""
        service = self.start_service()
        service.fault("hot", "delay", arg=2000)
        assistant = self.start_assistant()
        assistant.wait_for_log(LISTENING)
        return assistant, service, channel_port(self.installation)

    def start_ready(self) -> tuple[Assistant, DemoService, int]:
        service = self.start_service()
        return self.start_greeted(), service, channel_port(self.installation)

    def good_question(self, assistant: Assistant, service: DemoService, text: str = TEXT) -> None:
        """Asks a good question on a connection of its own: it is asked and acknowledged."""
        service.log.mark()
        with GuardClient(channel_port(self.installation)) as client:
            client.send(document(text))
            self.assertTrue(client.acknowledged())
        service.log.wait_for("call=ask", "verdict=accepted", f'question="{text}"',
                             'source="rawquery"')
        self.assertTrue(assistant.alive)

    def send_and_leave(self, assistant: Assistant, pieces: list[bytes]) -> None:
        """Sends what is no question, each piece as a message of its own, and leaves. Returns when
        all of it is read: until then its sender is the client that spoke last."""
        assistant.log.mark()
        with GuardClient(channel_port(self.installation)) as client:
            for piece in pieces:
                client.send(piece)
                assistant.wait_for_log("sysguard bytearray date")
                assistant.log.mark()
            # The connection's end would say so too, but Wine swallows one end in a hundred.
            if max(map(len, pieces)) > READ_AT_ONCE:
                wait_until(client.is_heard, "the end of a large message")

    def asked(self, service: DemoService) -> list[str]:
        """The questions that the service was asked since the mark."""
        return [line.split('question="')[1].split('"')[0]
                for line in service.log.lines() if "call=ask" in line]

    def test_question_before_readiness_is_asked_after_the_greeting(self) -> None:
        assistant, service, port = self.start_listening()
        with GuardClient(port) as client:
            client.send(document(TEXT))
            self.assertTrue(client.acknowledged())
            self.assertEqual([], self.asked(service))
            assistant.wait_for_log("right region initialize success: true",
                                   "sysMessage list is not empty, size: 1",
                                   "After remove, sysMessage size: 0",
                                   "emit sysQuests_signal sysMessageList ", "send Sysguard Quest: ",
                                   SENT, "send QAFinished signal")
            assistant.wait_for_bubbles((ANSWER, QUESTION, ANSWER), "greeting, question, answer")
        self.close_cleanly(assistant)

    def test_question_when_ready_is_acknowledged_when_it_is_answered(self) -> None:
        assistant, service, port = self.start_ready()
        service.fault("ask", "delay", arg=500)
        assistant.watch()
        with GuardClient(port) as client:
            client.send(document(TEXT))
            self.assertTrue(client.acknowledged())
            self.assertTrue(assistant.log.has("emit sysQuests_signal now", SENT, "nSize_Recom:",
                                              "send QAFinished signal",
                                              'reply content: {"code":"0"}'))
            assistant.wait_for_bubbles((QUESTION, ANSWER), "the guard question's answer")
        self.close_cleanly(assistant)

    def test_two_clients_interleaved(self) -> None:
        assistant, service, port = self.start_ready()
        first = self.enterContext(GuardClient(port))
        second = self.enterContext(GuardClient(port))
        first.send(document(TEXT))
        self.assertTrue(first.acknowledged())
        second.send(document(OTHER_TEXT))
        self.assertTrue(second.acknowledged())
        first.send(document(TEXT))
        self.assertTrue(first.acknowledged())
        second.send(document(OTHER_TEXT))
        self.assertTrue(second.acknowledged())
        # Whoever leaves takes along the client that spoke last.
        first.close()
        self.assertTrue(second.closed())
        self.assertEqual([TEXT, OTHER_TEXT] * 2, self.asked(service))
        self.good_question(assistant, service)
        self.close_cleanly(assistant)

    def test_hard_messages(self) -> None:
        assistant, service, port = self.start_ready()
        for _ in range(WARM_UP):
            self.good_question(assistant, service)
        for name, pieces in hard_messages():
            with self.subTest(name):
                before = self.held_kib(assistant)
                self.send_and_leave(assistant, pieces)
                self.good_question(assistant, service)
                if MEMORY_COUNTS:
                    wait_until(lambda: self.held_kib(assistant) < before + MAY_STAY_KIB,
                               f"the memory of {name}")
        self.close_cleanly(assistant)
        with self.subTest("memory"):
            if not MEMORY_COUNTS:
                self.skipTest("sanitizers keep what was freed, Wine holds more than the program")

    def test_two_hundred_clients_at_once(self) -> None:
        assistant, service, port = self.start_ready()
        texts = [f"{TEXT} {number:03}" for number in range(200)]
        service.log.mark()
        clients = [self.enterContext(GuardClient(port)) for _ in texts]
        for client, text in zip(clients, texts):
            client.send(document(text))
        wait_until(lambda: len(self.asked(service)) >= len(texts), "all questions", MANY_S)
        self.assertEqual(texts, sorted(self.asked(service)))
        assistant.wait_for_log(*["send QAFinished signal"] * len(texts))
        for client in clients:
            client.close()
        self.good_question(assistant, service)
        self.close_cleanly(assistant)

    def test_ten_thousand_questions_before_readiness(self) -> None:
        assistant, service, port = self.start_listening()
        # Most have no question in them, so that this is not about ten thousand bubbles.
        texts = [f"{TEXT} {number}" if number % 500 == 0 else "" for number in range(10_000)]
        service.fault("hot", "none")
        with GuardClient(port) as client:
            for text in texts:
                client.send(document(text))
                self.assertTrue(client.acknowledged())
            wait_until(lambda: self.asked(service) == [text for text in texts if text],
                       "every question, in order", MANY_S)
        self.good_question(assistant, service)
        self.close_cleanly(assistant)

    def test_client_that_never_reads(self) -> None:
        assistant, service, port = self.start_ready()
        with GuardClient(port) as client:
            for _ in range(200):
                assistant.log.mark()
                client.send(b"{}")
                assistant.wait_for_log("send QAFinished signal")
            self.good_question(assistant, service)
        self.close_cleanly(assistant)

    def test_port_taken(self) -> None:
        with socket.create_server((LOOPBACK, 0)) as other:
            self.installation.settings.update(
                {"SysguardPort/port1": str(other.getsockname()[1])})
            service = self.start_service()
            assistant = self.start_greeted()
            self.assertIn("Critical:", assistant.log.whole())
            self.assertNotIn(LISTENING, assistant.log.whole())
            service.log.mark()
            assistant.ask(TEXT)
            assistant.wait_for_answer(TEXT)
            self.close_cleanly(assistant)

    def test_port_zero(self) -> None:
        self.installation.settings.update({"SysguardPort/port1": "0"})
        self.start_service()
        assistant = self.start_greeted()
        self.assertIn(f"{LISTENING} 0 is success.", assistant.log.whole())
        assistant.ask(TEXT)
        assistant.wait_for_answer(TEXT)
        self.close_cleanly(assistant)

    def test_port_out_of_range(self) -> None:
        port = free_port()
        self.installation.settings.update({"SysguardPort/port1": str(65536 + port)})
        service = self.start_service()
        assistant = self.start_greeted()
        self.assertIn(f"SysguardQuestsThread port ={65536 + port}", assistant.log.whole())
        self.assertIn(f"{LISTENING} {port} is success.", assistant.log.whole())
        self.good_question(assistant, service)
        self.close_cleanly(assistant)

    def test_window_closed_while_clients_are_connected(self) -> None:
        assistant, _, port = self.start_ready()
        silent = self.enterContext(GuardClient(port))
        current = self.enterContext(GuardClient(port))
        current.send(document(TEXT))
        self.assertTrue(current.acknowledged())
        self.close_cleanly(assistant)
        self.assertTrue(silent.closed())
        self.assertTrue(current.closed())

    def test_window_closed_while_guard_questions_wait(self) -> None:
        assistant, service, port = self.start_listening()
        client = self.enterContext(GuardClient(port))
        service.fault("ask", "no-answer")
        service.log.mark()
        for number in range(100):
            client.send(document(f"{TEXT} {number}"))
            self.assertTrue(client.acknowledged())
        service.log.wait_for("call=ask")
        self.close_cleanly(assistant)
        self.assertEqual([f"{TEXT} 0"], self.asked(service))

    def test_window_closed_while_guard_questions_are_asked_inside_each_other(self) -> None:
        assistant, service, port = self.start_ready()
        service.fault("ask", "no-answer", times=20)
        clients = [self.enterContext(GuardClient(port)) for _ in range(20)]
        for client in clients:
            service.log.mark()
            client.send(document(TEXT))
            service.log.wait_for("call=ask")
        self.close_cleanly(assistant)

    @staticmethod
    def held_kib(assistant: Assistant) -> int:
        """What the program holds in memory of its own."""
        if not MEMORY_COUNTS:
            return 0
        with open(f"/proc/{assistant.process.pid}/status", encoding="ascii") as status:
            return next(int(line.split()[1]) for line in status if line.startswith("RssAnon:"))


def hard_messages() -> Iterator[tuple[str, list[bytes]]]:
    """Messages that are no questions, each with the pieces in which it is sent."""
    good = document(TEXT)
    yield "byte by byte", [bytes([byte]) for byte in good[:30]]
    yield "half a document", [good[:len(good) // 2]]
    yield "two documents", [good + good]
    yield "64 MB that are no document", [b"x" * LARGE]
    yield "64 MB of text in a document", [b'{"question":"' + b"x" * LARGE + b'"}']
    yield "binary", [bytes(range(256)) * 64]
    yield "a NUL", [b"\0"]
    yield "a NUL inside", [good[:20] + b"\0" + good[20:]]
    yield "invalid UTF-8", [b'{"other":"\xff\xfe\xc3"}']
    yield "an array", [b"[1,2,3]"]
    yield "100,000 lists inside each other", [b"[" * 100_000]
    yield "nothing but blanks", [b" \r\n\t "]


if __name__ == "__main__":
    unittest.main()
