"""The look at the running programs a minute after the first answer, on a clock that is put
forward."""

from __future__ import annotations

import unittest

from desktop import floating
from desktop.assistant import Assistant
from desktop.clock import MovableClock
from desktop.localquestions import wait_for_local_questions
from desktop.processlist import LOOK_S
from desktop.testcase import DesktopTest

TYPED = "登录"
QUESTION = "怎样进入和退出全屏"


class ProcessWatchTest(DesktopTest):
    def setUp(self) -> None:
        super().setUp()
        self.clock = MovableClock(self.folder)
        self.start_service()

    def start_on_clock(self) -> Assistant:
        return self.start_greeted(self.clock.environment())

    def let_the_watch_look(self) -> None:
        processes = self.installation.processes
        before = processes.calls()
        self.clock.put_forward(LOOK_S)
        processes.wait_for_call(before)

    def test_newcomer_stays_online_after_each_look(self) -> None:
        assistant = self.start_on_clock()
        for _ in range(2):
            self.let_the_watch_look()
            floating.type_text(assistant, TYPED)
            assistant.rest()
            floating.wait_for_suggestions(assistant)
            assistant.person.press("Escape", "ctrl+a", "BackSpace")
            assistant.ask(QUESTION)
            assistant.wait_for_answer(QUESTION)
        self.close_cleanly(assistant)

    def test_client_that_has_ended_sends_the_assistant_offline(self) -> None:
        assistant = self.start_on_clock()
        self.installation.processes.end_client()
        self.let_the_watch_look()
        wait_for_local_questions(assistant)
        self.close_cleanly(assistant)


if __name__ == "__main__":
    unittest.main()
