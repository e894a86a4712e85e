"""How the program ends on Windows: from every state, by the button, by a request from outside and with
the user's session; and that a session whose end is called off leaves it as it was. Prints a table."""

from __future__ import annotations

import time
import unittest
from typing import Callable

import windowhand
from desktop import floating
from desktop.assistant import INPUT_BOX, Assistant
from desktop.guardchannel import GuardClient, channel_port, document
from desktop.preview import Preview
from desktop.testcase import DesktopTest
from desktop.waiting import wait_until
from windowhand import End, Hand

SLOW = "客户端的服务器地址怎么填"
PICTURE_QUESTION = "如何登录云桌面"
OPEN_BUTTON = (327, 201)
PICTURE_PLACE = (190, 287)
TYPED = "登录"
ABOUT_TITLE = "关于"
LICENCE_TITLE = "开源许可"
LICENCE_BUTTON = (57, 211)
ABOUT_BUTTON = (835, 29)
MANY_QUESTIONS = 1000
# What a session leaves a program before the user is asked to end it by force.
MOST_MS = 5000
# How often a state that lasts only 0.4 s is tried to be met.
ATTEMPTS = 5

ROWS: dict[str, dict[str, str]] = {}


class WindowsEndTest(DesktopTest):
    maxDiff = None

    def setUp(self) -> None:
        super().setUp()
        self.display.manage_windows()

    @classmethod
    def tearDownClass(cls) -> None:
        """What a reader of the results wants to see at a glance."""
        print(f"\n{'state':28}{'button':>16}{'WM_CLOSE':>16}{'end of session':>16}   called off")
        for state, ends in ROWS.items():
            print(f"{state:28}" + "".join(f"{ends.get(way, '-'):>16}"
                                          for way in ("button", "close", "end"))
                  + f"   {ends.get('kept', '-')}")
        super().tearDownClass()

    def ends_in_every_way(self, state: str, reach: Callable[[], Assistant], *,
                          before_button: Callable[[Assistant], None] | None = None) -> None:
        """Each end gets a program of its own that was brought into the state. before_button does what
        a user must do before the button can be clicked."""
        row = ROWS.setdefault(state, {})
        for way in ("button", "close", "end"):
            with self.subTest(state=state, way=way):
                assistant = reach()
                if way == "button":
                    self.outlives_a_cancelled_end(assistant)
                    row["kept"] = "stays"
                    if before_button is not None:
                        before_button(assistant)
                    end = self.end_by_button(assistant)
                else:
                    end = Hand(assistant, way, self.folder).end()
                row[way] = f"{end.status}, {end.milliseconds} ms"
                self.assertEqual(0, end.status)
                self.assertLess(end.milliseconds, MOST_MS)
                self.ended_cleanly(assistant)

    def outlives_a_cancelled_end(self, assistant: Assistant) -> None:
        titles = self.titles(assistant)
        self.assertEqual("allowed", windowhand.done(assistant, "ask-end", self.folder))
        windowhand.done(assistant, "keep-on", self.folder)
        self.assertTrue(assistant.alive)
        self.assertEqual(titles, self.titles(assistant))

    def titles(self, assistant: Assistant) -> list[str]:
        """Which windows are open."""
        return [title for title in ("Miravel", ABOUT_TITLE, LICENCE_TITLE, "图片预览")
                if assistant.person.windows(title)]

    def end_by_button(self, assistant: Assistant) -> End:
        begun = time.monotonic()
        status = assistant.close()
        return End(status, round((time.monotonic() - begun) * 1000))

    def ended_cleanly(self, assistant: Assistant) -> None:
        """Nothing was printed, and the log's last line is whole."""
        self.assertEqual("", assistant.process.printed())
        self.assertTrue(assistant.log.path.read_bytes().endswith(b"\r\n"))

    def test_idle(self) -> None:
        self.start_service()
        self.ends_in_every_way("idle", self.start_greeted)

    def test_first_fetch_hanging(self) -> None:
        service = self.start_service()
        service.fault("hot", "no-answer", times=3)

        def reach() -> Assistant:
            assistant = self.start_assistant()
            assistant.wait_for_window()
            assistant.wait_for_log("begin to start qthread for get hot questions", "mServerIP:")
            return assistant
        self.ends_in_every_way("first fetch hanging", reach)

    def test_question_waiting(self) -> None:
        service = self.start_service()
        service.fault("ask", "no-answer", times=3)

        def reach() -> Assistant:
            assistant = self.start_greeted()
            assistant.ask(SLOW)
            assistant.wait_for_log(f"Ask_And_Answer question:{SLOW}", "mServerIP:")
            return assistant
        self.ends_in_every_way("question waiting", reach)

    def test_preview_open(self) -> None:
        self.start_service()

        def reach() -> Assistant:
            assistant = self.start_greeted()
            assistant.ask(PICTURE_QUESTION)
            assistant.wait_for_answer(PICTURE_QUESTION)
            before = assistant.look()
            assistant.click(*OPEN_BUTTON)
            assistant.rest()
            wait_until(lambda: assistant.look() != before, "the whole answer")
            assistant.click(*PICTURE_PLACE)
            Preview(assistant, self.display)
            return assistant
        self.ends_in_every_way("preview", reach, before_button=self.close_preview)

    def close_preview(self, assistant: Assistant) -> None:
        """It covers the button."""
        assistant.person.press("Escape")
        wait_until(lambda: not assistant.person.windows("图片预览"), "the end of the preview")

    def test_about_open(self) -> None:
        self.start_service()
        self.ends_in_every_way("About", self.open_about, before_button=self.close_dialogs)

    def test_licence_open(self) -> None:
        self.start_service()

        def reach() -> Assistant:
            assistant = self.open_about()
            left, top = assistant.person.position(assistant.person.windows(ABOUT_TITLE)[0])
            assistant.person.click(left + LICENCE_BUTTON[0], top + LICENCE_BUTTON[1])
            wait_until(lambda: assistant.person.windows(LICENCE_TITLE), "the licence")
            return assistant
        self.ends_in_every_way("licence", reach, before_button=self.close_dialogs)

    def open_about(self) -> Assistant:
        assistant = self.start_greeted()
        assistant.click(*ABOUT_BUTTON)
        wait_until(lambda: assistant.person.windows(ABOUT_TITLE), "the About dialog")
        return assistant

    def close_dialogs(self, assistant: Assistant) -> None:
        """They are modal."""
        for title in (LICENCE_TITLE, ABOUT_TITLE):
            if assistant.person.windows(title):
                assistant.person.press("Escape")
                wait_until(lambda: not assistant.person.windows(title), f"the end of {title}")

    def test_menu_open(self) -> None:
        self.start_service()

        def reach() -> Assistant:
            assistant = self.start_greeted()
            before = assistant.look()
            assistant.click(*INPUT_BOX, button=3)
            floating.wait_for_menu(assistant, before, INPUT_BOX, floating.INPUT_MENU_SIZE)
            return assistant
        self.ends_in_every_way("menu open", reach,
                               before_button=lambda assistant: assistant.person.press("Escape"))

    def test_guard_client_connected(self) -> None:
        self.start_service()

        def reach() -> Assistant:
            assistant = self.start_greeted()
            client = self.enterContext(GuardClient(channel_port(self.installation)))
            client.send(document(SLOW))
            self.assertTrue(client.acknowledged())
            return assistant
        self.ends_in_every_way("guard client connected", reach)

    def test_many_guard_questions_waiting(self) -> None:
        service = self.start_service()
        service.fault("ask", "no-answer", times=MANY_QUESTIONS)

        def reach() -> Assistant:
            assistant = self.start_greeted()
            client = self.enterContext(GuardClient(channel_port(self.installation)))
            client.send(document(SLOW))
            assistant.wait_for_log("send Sysguard Quest: ", "mServerIP:")
            client.send(document(SLOW) * (MANY_QUESTIONS - 1))
            assistant.wait_for_log("sysguard bytearray date", "sysguard bytearray date")
            return assistant
        self.ends_in_every_way("1,000 guard questions", reach)

    def test_suggestion_waiting(self) -> None:
        """The state lasts 0.4 s: everything is made ready before."""
        service = self.start_service()
        row = ROWS.setdefault("suggestion waiting", {})
        for way in ("button", "close", "end"):
            with self.subTest(way=way):
                for _ in range(ATTEMPTS):
                    service.fault("association", "no-answer", times=20)
                    assistant, end = self.end_during_a_suggestion(way)
                    row[way] = f"{end.status}, {end.milliseconds} ms"
                    self.assertEqual(0, end.status)
                    self.assertLess(end.milliseconds, MOST_MS)
                    self.ended_cleanly(assistant)
                    if assistant.log.has("/robot/v1/associations", "HTTPS request given up"):
                        break
                    row[way] += " late"

    def end_during_a_suggestion(self, way: str) -> tuple[Assistant, End]:
        assistant = self.start_greeted()
        hand = None if way == "button" else Hand(assistant, way, self.folder, held=True)
        floating.type_text(assistant, TYPED)
        assistant.wait_for_log("/robot/v1/associations")
        if hand is None:
            return assistant, self.end_by_button(assistant)
        hand.let_go()
        return assistant, hand.end()


if __name__ == "__main__":
    unittest.main()
