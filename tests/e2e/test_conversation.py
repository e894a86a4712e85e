"""The real program, a real screen, a real service: questions and their answers."""

from __future__ import annotations

import os
import re
import shutil
import unittest

from desktop import conversation
from desktop.conversation import QUESTION
from desktop.installation import LOOPBACK, SECRET, encoded, free_port
from desktop.project import GATEWAY_LIBRARY_NAME
from desktop.testcase import DesktopTest

QUESTION_TEXT = "客户端的服务器地址怎么填"
OTHER_TEXT = "怎样进入和退出全屏"
CHARACTER_PX = 14  # the advance of a Chinese character in the conversation's font
WIDTH_TOLERANCE_PX = 3
CONNECT_LIMIT_MS = 1000

SENT = "send messages by idp qa request, isGetHotQuests:true. netHotWork:false"
NOT_ACCEPTED = 'The HTTPS request returns a result before it times out, buf:{"'
CLOCK = r"(\d\d):(\d\d):(\d\d)\.(\d{3})"


def milliseconds(clock: tuple[str, ...]) -> int:
    """The time of day of a log message in ms."""
    hours, minutes, seconds, rest = map(int, clock)
    return ((hours * 60 + minutes) * 60 + seconds) * 1000 + rest


class ConversationTest(DesktopTest):
    def test_question_is_asked_and_answered(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        service.log.mark()
        assistant.ask(QUESTION_TEXT)
        bubbles = assistant.wait_for_answer(QUESTION_TEXT)

        asked = [bubble for bubble in bubbles if bubble.kind == QUESTION][-1]
        width = conversation.question_width(assistant.look(), asked)
        self.assertAlmostEqual(CHARACTER_PX * len(QUESTION_TEXT), width, delta=WIDTH_TOLERANCE_PX)
        assistant.wait_for_log(SENT, f"Ask_And_Answer question:{QUESTION_TEXT}", "nSize_Recom:")
        self.assertIn("The HTTPS request returns a result before it times out!",
                      assistant.log.text())
        self.assert_asked(service, QUESTION_TEXT)
        self.close_cleanly(assistant)

    def test_nothing_is_warned_of_when_all_is_well(self) -> None:
        self.start_service()
        assistant = self.start_greeted()
        assistant.ask(QUESTION_TEXT)
        assistant.wait_for_answer(QUESTION_TEXT)
        self.close_cleanly(assistant)
        self.assertEqual([], re.findall(r"^(?:Warning|Critical|Fatal):.*$", assistant.log.whole(),
                                        re.MULTILINE))

    def test_send_button_sends_like_the_return_key(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        service.log.mark()
        assistant.ask(QUESTION_TEXT, by_button=True)
        assistant.wait_for_answer(QUESTION_TEXT)
        self.assert_asked(service, QUESTION_TEXT)
        self.close_cleanly(assistant)

    def test_question_over_https(self) -> None:
        service = self.start_service(https=True)
        assistant = self.start_greeted()
        service.log.mark()
        assistant.ask(QUESTION_TEXT)
        assistant.wait_for_answer(QUESTION_TEXT)
        assistant.wait_for_log(f"url:https://{LOOPBACK}:{service.https_port}/robot/v1/answers")
        self.assert_asked(service, QUESTION_TEXT)
        self.close_cleanly(assistant)

    def test_changed_secret_is_refused_until_it_is_mended(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        service.log.mark()
        wrong = SECRET[:-1] + "T"
        self.installation.settings.update({"Authorization/xcasecond": encoded(wrong)})
        assistant.ask(QUESTION_TEXT)
        assistant.wait_for_log(f"Ask_And_Answer question:{QUESTION_TEXT}", NOT_ACCEPTED,
                               "The network is connected, but the reply is empty.")
        assistant.wait_for_answer(QUESTION_TEXT)
        service.log.wait_for("signature=bad")

        self.installation.settings.update({"Authorization/xcasecond": encoded(SECRET)})
        service.log.mark()
        assistant.ask(OTHER_TEXT)
        assistant.wait_for_answer(OTHER_TEXT)
        self.assert_asked(service, OTHER_TEXT)
        self.close_cleanly(assistant)

    def test_wrong_secret_from_the_start_leaves_the_window_usable(self) -> None:
        service = self.start_service()
        self.installation.settings.update({"Authorization/xcasecond": encoded("wrong")})
        assistant = self.start_assistant()
        assistant.wait_for_window()
        assistant.wait_for_log(NOT_ACCEPTED, "Network problem! failed to get hot issues.")

        self.installation.settings.update({"Authorization/xcasecond": encoded(SECRET)})
        assistant.ask(QUESTION_TEXT)
        assistant.wait_for_answer(QUESTION_TEXT)
        assistant.wait_for_log(
            "send messages by idp qa request, isGetHotQuests:true. netHotWork:true")
        self.assert_asked(service, QUESTION_TEXT)
        self.close_cleanly(assistant)

    def test_stopped_service_is_said_and_comes_back(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        self.assertEqual(0, service.stop())
        assistant.ask(QUESTION_TEXT)
        assistant.wait_for_log("can not ping, try kor", "get no korinfo when connect vd",
                               "Network problem! No reply.")
        assistant.wait_for_answer(QUESTION_TEXT)
        self.assertGreaterEqual(self.connecting_ms(assistant.log.text()), CONNECT_LIMIT_MS)

        service = self.start_service(http_port=service.http_port)
        assistant.ask(OTHER_TEXT)
        assistant.wait_for_answer(OTHER_TEXT)
        self.assert_asked(service, OTHER_TEXT)
        self.close_cleanly(assistant)

    def test_gateway_is_asked_for_and_used_when_the_service_cannot_be_reached(self) -> None:
        service = self.start_service()
        self.installation.use_service(free_port())
        shutil.copy(os.environ["MIRAVEL_GATEWAY_LIBRARY"],
                    self.installation.program.parent / GATEWAY_LIBRARY_NAME)
        calls = self.folder / "gateway-calls.txt"
        assistant = self.start_greeted({"MIRAVEL_TEST_GATEWAY_ADDRESS": "=" + LOOPBACK,
                                        "MIRAVEL_TEST_GATEWAY_PORT": str(service.http_port),
                                        "MIRAVEL_TEST_GATEWAY_CALLS": str(calls)})
        service.log.mark()
        assistant.ask(QUESTION_TEXT)
        assistant.wait_for_answer(QUESTION_TEXT)
        assistant.wait_for_log("can not ping, try kor",
                               f"strAddr:{LOOPBACK}strPort:{service.http_port}",
                               f"url:http://{LOOPBACK}:{service.http_port}/robot/v1/answers")
        self.assert_asked(service, QUESTION_TEXT)
        self.assertIn('DoGetSelectedKorInfoBlock(" ", 1, -1)', calls.read_text())
        self.close_cleanly(assistant)

    def assert_asked(self, service, question: str) -> None:
        """The service took exactly one question with a right signature, and it was this one."""
        lines = [line for line in service.log.lines() if "call=ask" in line]
        self.assertEqual(1, len(lines), lines)
        self.assertIn("signature=good", lines[0])
        self.assertIn("verdict=accepted", lines[0])
        self.assertIn(f'question="{question}"', lines[0])

    def connecting_ms(self, log: str) -> int:
        """How long the last look for the service took."""
        start = re.findall("start ping, time: " + CLOCK, log)[-1]
        end = re.findall("end ping, time: " + CLOCK, log)[-1]
        return (milliseconds(end) - milliseconds(start)) % (24 * 60 * 60 * 1000)


if __name__ == "__main__":
    unittest.main()
