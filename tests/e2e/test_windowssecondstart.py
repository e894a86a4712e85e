"""A second start on Windows: it hands the right to come to the front to the first copy, and ends."""

from __future__ import annotations

import re
import unittest

import windowhand
from desktop.assistant import Assistant
from desktop.runner import Runner
from desktop.testcase import DesktopTest
from desktop.waiting import wait_until
from tracedwine import TracedWine

DEBUG_KEY = r"HKCU\Software\Wine\Debug"
GRANT = "user32.AllowSetForegroundWindow"
PROCESS_OF_PIPE = "kernel32.GetNamedPipeServerProcessId"


def grants(trace: str) -> list[int]:
    """The processes that were given the right."""
    return [int(call, 16) for call in re.findall(rf"Call {re.escape(GRANT)}\(([0-9a-f]+)\)", trace)]


class SecondStartTest(DesktopTest):
    def setUp(self) -> None:
        super().setUp()
        self.display.manage_windows()
        self.start_service()

    def state(self, assistant: Assistant) -> str:
        return windowhand.done(assistant, "state", self.folder)

    def test_minimised_window_is_restored_and_in_front(self) -> None:
        assistant = self.start_greeted()
        windowhand.done(assistant, "minimise", self.folder)
        wait_until(lambda: self.state(assistant) == "minimised", "the minimised window")
        self.assertEqual(0, assistant.start_again())
        wait_until(lambda: self.state(assistant) == "normal front", "the window in front")
        self.assertEqual(2, assistant.log.whole().count("Caller Type: vdi"))
        self.close_cleanly(assistant)

    def test_about_dialog_stays_and_the_window_is_restored(self) -> None:
        assistant = self.start_greeted()
        assistant.click(835, 29)
        wait_until(lambda: assistant.person.windows("关于"), "the About dialog")
        self.assertEqual(0, assistant.start_again())
        self.assertTrue(assistant.person.windows("关于"))
        self.assertTrue(self.state(assistant).startswith("normal"))

    def test_second_copy_lets_the_first_come_to_the_front(self) -> None:
        """Wine itself lets everyone take the foreground: what counts is the call."""
        def prepare(runner: Runner) -> None:
            runner.set_registry_text(DEBUG_KEY, "RelayInclude", f"{GRANT};{PROCESS_OF_PIPE}")
        wine = TracedWine(self.folder / "traced", "+relay")
        assistant = self.enterContext(Assistant(self.installation, self.display, runner=wine,
                                                prepare=prepare))
        assistant.wait_for_greeting()
        self.assertEqual([], grants(assistant.process.printed()))
        second = assistant.start_beside(self.installation.program, "--Type=vdi",
                                        output=self.folder / "second.txt")
        self.addCleanup(second.stop)
        self.assertEqual(0, second.wait())
        told = windowhand.done(assistant, "process", self.folder)
        first_process = int(re.search(r"^process (\d+)$", told, re.MULTILINE)[1])
        self.assertEqual([first_process], grants(second.printed()))


if __name__ == "__main__":
    unittest.main()
