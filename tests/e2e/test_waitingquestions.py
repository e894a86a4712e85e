"""Hundreds of questions that hang: they use up no descriptors, what cannot be sent is said, and the
program recovers."""

from __future__ import annotations

import resource
import unittest
from pathlib import Path

from desktop.assistant import Assistant
from desktop.conversation import ANSWER
from desktop.testcase import DesktopTest
from desktop.waiting import wait_until

HOT_ROW = (740, 135)
NEXT = "怎样进入和退出全屏"
ASKED = "Ask_And_Answer question:"
NOT_SENT = "question is not sent, so many wait: "
MOST = 160
# More than anything else of the program holds open at a time.
RESERVE = 60


class WaitingQuestionsTest(DesktopTest):
    def ask_until_refused(self, assistant: Assistant) -> int:
        """Clicks a hot question again and again while none is answered; how many wait then."""
        assistant.log.mark()
        for asked in range(1, MOST + 2):
            assistant.click(*HOT_ROW)
            wait_until(lambda: assistant.log.text().count(ASKED) >= asked
                       or assistant.log.has(NOT_SENT), f"question {asked}")
            self.assertTrue(assistant.alive, assistant.process.printed())
            if assistant.log.has(NOT_SENT):
                return asked - 1
        self.fail("none was refused")

    def hang(self, descriptors: int | None) -> tuple[int, int]:
        """Lets questions hang until one is refused, then the service answer again. How many waited,
        and how many descriptors were open then."""
        service = self.start_service()
        assistant = self.start_greeted()
        pid = assistant.process.pid
        if descriptors is not None:
            resource.prlimit(pid, resource.RLIMIT_NOFILE, (descriptors, descriptors))
        service.fault("ask", "no-answer", times=MOST + 10)
        waiting = self.ask_until_refused(assistant)
        opened = len(list(Path(f"/proc/{pid}/fd").iterdir()))
        assistant.click(*HOT_ROW)
        assistant.wait_for_log(NOT_SENT, NOT_SENT)
        assistant.wait_for_bubbles((ANSWER,), "what is said of the refused question")
        service.stop()
        wait_until(lambda: assistant.log.text().count("reply is empty") +
                   assistant.log.text().count("Network problem! No reply.") >= waiting,
                   "the end of all waits")
        self.start_service(http_port=service.http_port)
        assistant.ask(NEXT)
        assistant.wait_for_answer(NEXT)
        self.close_cleanly(assistant)
        print(f"{waiting} questions waited, {opened} descriptors were open", flush=True)
        return waiting, opened

    def test_questions_that_hang_leave_descriptors_to_spare(self) -> None:
        soft, _ = resource.getrlimit(resource.RLIMIT_NOFILE)
        limit = min(soft, 1024)
        waiting, opened = self.hang(limit)
        self.assertEqual(MOST, waiting)
        self.assertLess(opened, limit - RESERVE)

    def test_fewer_questions_wait_where_few_descriptors_are_allowed(self) -> None:
        waiting, opened = self.hang(256)
        self.assertGreaterEqual(waiting, 10)
        self.assertLess(opened, 256 - RESERVE // 2)


if __name__ == "__main__":
    unittest.main()
