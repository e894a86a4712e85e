"""Suggestions, menus and the veil of the real program, seen and clicked on a real screen."""

from __future__ import annotations

import unittest

from desktop import conversation, floating
from desktop.assistant import CLOSE_BUTTON, INPUT_BOX
from desktop.testcase import DesktopTest
from desktop.waiting import wait_until

TYPED = "登录"
ASKED = "打印机无法打印怎么办"
SUGGESTED = "如何登录云桌面？"
DIALOG = (260, 100, 660, 540)
SLOW_MS = 2000
PASTE_ROW = (50, 74)  # in the context menu


class FloatingTest(DesktopTest):
    MANAGED_ON_WINE = True

    def test_suggestion_is_shown_and_asked(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        floating.type_text(assistant, TYPED)
        assistant.rest()
        count = floating.wait_for_suggestions(assistant)
        service.log.mark()
        assistant.ask_by_click(*floating.suggestion_place(count, 0))
        assistant.wait_for_answer(SUGGESTED)
        service.log.wait_for("call=ask", f'question="{SUGGESTED}"', 'source="associate"')
        self.close_cleanly(assistant)

    def test_context_menu_pastes(self) -> None:
        self.start_service()
        assistant = self.start_greeted()
        floating.type_text(assistant, TYPED)
        assistant.person.press("ctrl+a", "BackSpace")
        before = assistant.look()
        assistant.click(*INPUT_BOX, button=3)
        floating.wait_for_menu(assistant, before, INPUT_BOX, floating.INPUT_MENU_SIZE)
        assistant.click(INPUT_BOX[0] + PASTE_ROW[0], INPUT_BOX[1] + PASTE_ROW[1])
        assistant.rest()
        wait_until(lambda: conversation.input_changed(before, assistant.look()),
                   "the pasted text")
        self.close_cleanly(assistant)

    def test_about_menu_opens_the_dialog(self) -> None:
        self.start_service()
        self.installation.settings.update({"SysEnvironment/EnvType": "0"})
        assistant = self.start_greeted()
        before = assistant.look()
        assistant.click(*floating.ABOUT_BUTTON)
        floating.wait_for_menu(assistant, before, floating.ABOUT_BUTTON, floating.ABOUT_MENU_SIZE)
        assistant.person.press("Down", "Down", "Return")
        floating.wait_for_change(assistant, before, DIALOG, "the About dialog")
        assistant.person.press("Escape")
        floating.wait_for_return(assistant, before, DIALOG, "the About dialog")
        self.close_cleanly(assistant)

    def test_window_closed_under_the_veil(self) -> None:
        service = self.start_service()
        service.fault("hot", "no-answer")
        assistant = self.start_assistant()
        assistant.wait_for_window()
        floating.wait_for_veil(assistant)
        self.close_cleanly(assistant)

    def test_window_closed_while_suggestions_are_shown(self) -> None:
        self.start_service()
        assistant = self.start_greeted()
        floating.type_text(assistant, TYPED)
        floating.wait_for_suggestions(assistant)
        self.close_cleanly(assistant)

    def test_window_closed_while_suggestions_are_awaited(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        service.fault("association", "no-answer", times=20)
        floating.type_text(assistant, TYPED)
        assistant.wait_for_log("/robot/v1/associations")
        self.close_cleanly(assistant)

    def test_window_closed_while_an_answer_and_suggestions_are_awaited(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        service.fault("ask", "no-answer")
        # Another text than is typed afterwards: one that a tick finds again fetches nothing.
        assistant.ask(ASKED)
        assistant.wait_for_log(f"Ask_And_Answer question:{ASKED}", "mServerIP:")
        service.fault("association", "delay", arg=SLOW_MS, times=20)
        floating.type_text(assistant, TYPED)
        assistant.wait_for_log("/robot/v1/associations")
        self.close_cleanly(assistant)

    def test_window_closed_while_the_login_is_awaited(self) -> None:
        self.start_service()
        self.installation.client_settings.update({"LoginMode/loginstate": "0"})
        assistant = self.start_assistant(arguments=("--Type=ombra",))
        assistant.wait_for_window()
        assistant.wait_for_log("Account not logged in!", "Get Location hot issues !")
        self.close_cleanly(assistant)

    def test_window_closed_while_the_service_is_looked_for(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        self.assertEqual(0, service.stop())
        assistant.ask(TYPED)
        assistant.wait_for_log("start ping, time: ")
        self.close_cleanly(assistant)

    def test_window_closed_with_a_menu_open(self) -> None:
        self.start_service()
        assistant = self.start_greeted()
        before = assistant.look()
        assistant.click(*INPUT_BOX, button=3)
        floating.wait_for_menu(assistant, before, INPUT_BOX, floating.INPUT_MENU_SIZE)
        assistant.click(*CLOSE_BUTTON)  # which closes the menu
        floating.wait_for_return(assistant, before, (330, 545, 450, 600), "the menu")
        self.close_cleanly(assistant)


if __name__ == "__main__":
    unittest.main()
