"""What is different on Windows, with the real program: the registry, the named pipe, the code page,
backslashes, and the picture that its window gives."""

from __future__ import annotations

import os
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

from PIL import Image, ImageChops

from desktop import conversation
from desktop.assistant import Assistant
from desktop.conversation import WINDOW_SIZE
from desktop.programlog import ProgramLog
from desktop.project import BUILD, LOG_ENCODING, SOURCE
from desktop.runner import Runner
from desktop.testcase import DesktopTest

QUESTION_TEXT = "客户端的服务器地址怎么填"
LOGON_KEY = r"HKLM\Software\VDAgent\LogonInfo"
REGISTRY_USER = "云桌面用户"
SCREENSHOTS = BUILD / "screenshots"
# The two systems' font engines give lines of slightly different height.
FONT_ENGINE_PX = 4
WIDTH_PX = 1
# Where the window shows pictures whose places no text moves: title bar, the robot's first portrait.
PICTURES = ((1, 1, 919, 56), (22, 78, 70, 120))


def gaps(bubbles: list[conversation.Bubble]) -> list[int]:
    """What lies between each bubble and the next, in px."""
    return [below.top - above.bottom for above, below in zip(bubbles, bubbles[1:])]


class WindowsTest(DesktopTest):
    def test_window_looks_as_on_the_other_system(self) -> None:
        """Both pictures, and both side by side, are kept for whoever wants to look."""
        linux = self.snapshot("linux-answer.png", SOURCE / "build/release")
        wine = self.snapshot("wine-answer.png", BUILD)
        both = Image.new("RGB", (linux.width + wine.width, linux.height))
        both.paste(linux, (0, 0))
        both.paste(wine, (linux.width, 0))
        both.save(SCREENSHOTS / "side-by-side.png")

        expected = conversation.bubbles(linux)
        found = conversation.bubbles(wine)
        self.assertEqual([bubble.kind for bubble in expected], [bubble.kind for bubble in found])
        self.assertEqual(3, len(found))
        self.assertEqual(expected[0].top, found[0].top)
        self.assertEqual(gaps(expected), gaps(found))
        for one, other in zip(expected, found):
            self.assertAlmostEqual(one.bottom - one.top, other.bottom - other.top,
                                   delta=FONT_ENGINE_PX)
        self.assertAlmostEqual(conversation.question_width(linux, expected[1]),
                               conversation.question_width(wine, found[1]), delta=WIDTH_PX)
        for box in PICTURES:
            self.assertIsNone(ImageChops.difference(linux.crop(box), wine.crop(box)).getbbox(), box)

    def snapshot(self, name: str, build: Path) -> Image.Image:
        """The window of the program in build, with a question answered."""
        SCREENSHOTS.mkdir(exist_ok=True)
        path = SCREENSHOTS / name
        path.unlink(missing_ok=True)
        subprocess.run([sys.executable, "-m", "desktop.snapshot", QUESTION_TEXT, path], check=True,
                       env={**os.environ, "MIRAVEL_BUILD_DIR": str(build)})
        return Image.open(path).convert("RGB")

    def test_user_name_of_a_shortcut_start_comes_from_the_registry(self) -> None:
        service = self.start_service()
        self.lay_out_for_shortcut()

        def prepare(runner: Runner) -> None:
            runner.set_registry_text(LOGON_KEY, "iRAIUser", REGISTRY_USER)
        assistant = self.enterContext(Assistant(self.installation, self.display, arguments=(),
                                                prepare=prepare))
        assistant.wait_for_greeting()
        assistant.ask(QUESTION_TEXT)
        assistant.wait_for_answer(QUESTION_TEXT)
        self.assertIn(f'accountId="{REGISTRY_USER}"', self.last_question(service))
        self.close_cleanly(assistant)

    def test_shortcut_start_without_the_registry_value_has_no_user_name(self) -> None:
        service = self.start_service()
        self.lay_out_for_shortcut()
        assistant = self.enterContext(Assistant(self.installation, self.display, arguments=()))
        assistant.wait_for_greeting()
        assistant.ask(QUESTION_TEXT)
        assistant.wait_for_answer(QUESTION_TEXT)
        self.assertIn('accountId=""', self.last_question(service))
        self.close_cleanly(assistant)

    def test_second_start_ends_and_leaves_the_first_answering(self) -> None:
        self.start_service()
        assistant = self.start_greeted()
        self.assertEqual(0, assistant.start_again())
        self.assertEqual(2, assistant.log.whole().count("Caller Type: vdi"))
        assistant.ask(QUESTION_TEXT)
        assistant.wait_for_answer(QUESTION_TEXT)
        self.close_cleanly(assistant)

    def test_log_is_written_in_the_code_page_with_windows_line_ends(self) -> None:
        self.start_service()
        assistant = self.start_greeted()
        assistant.ask(QUESTION_TEXT)
        assistant.wait_for_answer(QUESTION_TEXT)
        self.close_cleanly(assistant)
        data = assistant.log.path.read_bytes()
        self.assertIn(f"question:{QUESTION_TEXT}".encode("gbk"), data)
        self.assertNotIn(QUESTION_TEXT.encode("utf-8"), data)
        self.assertEqual(data.count(b"\n"), data.count(b"\r\n"))
        self.assertRegex(data.decode("gbk"), r"\[[-0-9]+ [:0-9]+ main\.cpp  line: \d+\]: Caller Type")

    def test_scale_factor_of_the_caller_leaves_the_size(self) -> None:
        self.start_service()
        assistant = self.start_greeted({"QT_SCALE_FACTOR": "2", "QT_QPA_PLATFORM": "nonexistent"})
        self.assertEqual(WINDOW_SIZE, assistant.size())
        self.close_cleanly(assistant)

    def test_scale_factor_in_small_letters_leaves_the_size(self) -> None:
        """On Windows that is the same name as the one in capitals."""
        self.start_service()
        assistant = self.start_greeted({"qt_scale_factor": "2", "Qt_Screen_Scale_Factors": "3",
                                        "qt_font_dpi": "300"})
        self.assertEqual(WINDOW_SIZE, assistant.size())
        self.close_cleanly(assistant)

    def test_program_started_by_a_path_with_backslashes(self) -> None:
        self.start_service()
        self.installation.program = Path("Z:" + str(self.installation.program).replace("/", "\\"))
        assistant = self.start_greeted()
        self.close_cleanly(assistant)

    def lay_out_for_shortcut(self) -> None:
        """Moves configuration and log into the program's folder."""
        folder = self.installation.program.parent
        shutil.copytree(self.installation.root / "config", folder / "config")
        os.remove(self.installation.root / "config/Miravel.ini")
        (folder / "log").mkdir()
        self.installation.log = ProgramLog(folder / "log/Miravel.log", LOG_ENCODING)

    def last_question(self, service) -> str:
        """The service's line about the last question that it was asked."""
        return [line for line in service.log.lines() if "call=ask" in line][-1]


if __name__ == "__main__":
    unittest.main()
