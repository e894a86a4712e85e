"""The assistant without its service: it lists the local questions and answers them."""

from __future__ import annotations

import shutil
import subprocess
import sys
import unittest

from desktop.assistant import Assistant
from desktop.conversation import ANSWER, QUESTION
from desktop.installation import free_port
from desktop.localquestions import (ROWS, ask_row, shipped_questions, show_next_page,
                                    wait_for_local_questions, wait_for_rows)
from desktop.project import SOURCE
from desktop.testcase import DesktopTest

ONLINE_QUESTION = "怎样进入和退出全屏"


class ShippedFilesTest(unittest.TestCase):
    def test_files_are_made_of_their_sources(self) -> None:
        script = SOURCE / "resources/library/make_library.py"
        done = subprocess.run([sys.executable, "-B", script, "--check"], capture_output=True,
                              text=True, check=False)
        self.assertEqual((0, ""), (done.returncode, done.stderr))


class LocalLibraryTest(DesktopTest):
    def start_logged_out(self) -> Assistant:
        """The program as the launcher starts it before the desktop is logged in."""
        self.installation.client_settings.update({"LoginMode/loginstate": "0"})
        return self.enterContext(Assistant(self.installation, self.display,
                                           arguments=("--Type=ombra",)))

    def test_logged_out_start_lists_and_answers(self) -> None:
        assistant = self.start_logged_out()
        wait_for_local_questions(assistant)
        ask_row(assistant, 1, shipped_questions()[1])
        self.close_cleanly(assistant)

    def test_next_page_is_answered_too(self) -> None:
        questions = shipped_questions()
        assistant = self.start_logged_out()
        wait_for_local_questions(assistant)
        show_next_page(assistant, len(questions) - ROWS)
        ask_row(assistant, 2, questions[ROWS + 2])
        show_next_page(assistant, ROWS)
        self.close_cleanly(assistant)

    def test_service_that_is_down_at_the_start(self) -> None:
        self.installation.use_service(free_port())
        assistant = self.start_assistant()
        wait_for_local_questions(assistant)
        assistant.wait_for_log("netHotWork：true")
        ask_row(assistant, 0, shipped_questions()[0])
        self.close_cleanly(assistant)

    def test_service_that_goes_down_meanwhile(self) -> None:
        service = self.start_service()
        assistant = self.start_greeted()
        service.stop()
        assistant.ask(ONLINE_QUESTION)
        count = len(shipped_questions())
        assistant.wait_for_log("get network problem signal", "before getIDP = true, show LocalQA",
                               f"parse localQuest. questLocation size{count}")
        assistant.wait_for_bubbles((QUESTION, ANSWER), "the message about the network")
        wait_for_rows(assistant, ROWS)
        ask_row(assistant, 0, shipped_questions()[0])
        self.close_cleanly(assistant)

    def test_installation_without_the_library(self) -> None:
        shutil.rmtree(self.installation.program.parent / "LocalQA")
        assistant = self.start_logged_out()
        assistant.wait_for_window()
        assistant.rest()
        assistant.wait_for_log("End of reading local QA, Number: 29",
                               "Location_hot_questions_num: (%d)0netHotWork：false")
        assistant.wait_for_bubbles((ANSWER,), "the message that the service is not used")
        wait_for_rows(assistant, 0)
        self.close_cleanly(assistant)


if __name__ == "__main__":
    unittest.main()
