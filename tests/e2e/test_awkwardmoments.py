"""What people do while the assistant waits: they ask again, or close the window."""

from __future__ import annotations

import unittest

from desktop.conversation import ANSWER, QUESTION
from desktop.testcase import DesktopTest

SLOW = "客户端的服务器地址怎么填"
NEXT = "怎样进入和退出全屏"


class AwkwardMomentTest(DesktopTest):
    MANAGED_ON_WINE = True

    def test_second_question_while_the_first_waits_is_answered(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        service.fault("ask", "no-answer")
        assistant.ask(SLOW)
        assistant.wait_for_log(f"Ask_And_Answer question:{SLOW}")
        assistant.ask(NEXT)
        assistant.wait_for_log(f"Ask_And_Answer question:{NEXT}", "nSize_Recom:")
        assistant.wait_for_bubbles((QUESTION, QUESTION, ANSWER), "the second question's answer")
        self.close_cleanly(assistant)

    def test_window_closed_while_an_answer_is_awaited(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        service.fault("ask", "no-answer")
        assistant.ask(SLOW)
        assistant.wait_for_log(f"Ask_And_Answer question:{SLOW}", "mServerIP:")
        self.close_cleanly(assistant)

    def test_window_closed_while_two_answers_are_awaited(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        service.fault("ask", "no-answer", times=2)
        assistant.ask(SLOW)
        assistant.wait_for_log(f"Ask_And_Answer question:{SLOW}", "mServerIP:")
        assistant.ask(NEXT)
        assistant.wait_for_log(f"Ask_And_Answer question:{NEXT}", "mServerIP:")
        self.close_cleanly(assistant)

    def test_window_closed_while_the_first_hot_questions_are_awaited(self) -> None:
        service = self.start_service()
        service.fault("hot", "no-answer")
        assistant = self.start_assistant()
        assistant.wait_for_window()
        assistant.wait_for_log("begin to start qthread for get hot questions", "mServerIP:")
        self.close_cleanly(assistant)

    def test_question_before_the_first_hot_questions_is_explained(self) -> None:
        service = self.start_service()
        service.fault("hot", "no-answer")
        assistant = self.start_assistant()
        assistant.wait_for_window()
        assistant.ask(NEXT)
        assistant.wait_for_log("send messages when not logged in, isGetHotQuests:false. "
                               "netHotWork:false")
        self.close_cleanly(assistant)


if __name__ == "__main__":
    unittest.main()
