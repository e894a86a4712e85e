"""Which libraries the program loads on Windows: its own and the system's, whatever others have put into
the working directory, the search path or beside the configuration."""

from __future__ import annotations

import contextlib
import os
import shutil
import unittest
from pathlib import Path

from desktop.assistant import Assistant
from desktop.guardchannel import GuardClient, channel_port, document
from desktop.preview import Preview
from desktop.project import BUILD, GATEWAY_LIBRARY_NAME, PROGRAM
from desktop.testcase import DesktopTest
from desktop.waiting import wait_until
from tracedwine import TracedWine, asked_libraries, loaded_libraries

PLANTED = BUILD / "tests/planted.dll"
PLANTED_NAME = "miravelplanted.dll"
PICTURE_QUESTION = "如何登录云桌面"
OPEN_BUTTON = (327, 201)
PICTURE_PLACE = (190, 287)
ABOUT_BUTTON = (835, 29)
ABOUT_TITLE = "关于"
TLS_LIBRARIES = ("libssl-3-x64.dll", "libcrypto-3-x64.dll")
SYSTEM = "c:\\windows\\"


def windows_path(path: Path) -> str:
    return "Z:" + str(path).replace("/", "\\")


class WindowsLibraryTest(DesktopTest):
    maxDiff = None

    def setUp(self) -> None:
        super().setUp()
        self.display.manage_windows()
        self.planted = self.folder / "planted"
        self.planted.mkdir()
        self.own = windows_path(self.installation.program.parent).lower() + "\\"

    def start_traced(self, channels: str, name: str, **variables: str) -> Assistant:
        """With the planted folder as working directory and first in the search path, and with variables
        of the environment."""
        folder = self.folder / name
        with contextlib.chdir(self.planted):
            return self.enterContext(Assistant(
                self.installation, self.display, runner=TracedWine(folder, channels),
                environment={"WINEPATH": windows_path(self.planted), **variables}))

    def go_through_the_states(self, assistant: Assistant) -> None:
        """Greeting, an answer over https, its picture, the About dialog."""
        assistant.wait_for_greeting()
        assistant.ask(PICTURE_QUESTION)
        assistant.wait_for_answer(PICTURE_QUESTION)
        before = assistant.look()
        assistant.click(*OPEN_BUTTON)
        assistant.rest()
        wait_until(lambda: assistant.look() != before, "the whole answer")
        assistant.click(*PICTURE_PLACE)
        preview = Preview(assistant, self.display)
        assistant.person.press("Escape")
        wait_until(lambda: not preview.is_open, "the end of the preview")
        assistant.click(*ABOUT_BUTTON)
        wait_until(lambda: assistant.person.windows(ABOUT_TITLE), "the About dialog")
        assistant.person.press("Escape")
        wait_until(lambda: not assistant.person.windows(ABOUT_TITLE), "its end")

    def plant(self, names: set[str]) -> None:
        """Libraries of these names in each folder where others may put one."""
        for folder in (self.planted, self.installation.root / "config"):
            for name in names:
                shutil.copy(PLANTED, folder / name)

    def assert_own_or_system(self, loaded: set[str]) -> None:
        foreign = sorted(name for name in loaded
                         if not name.startswith((SYSTEM, self.own)) and "\\" in name)
        self.assertEqual([], foreign)
        self.assertIn(self.own + "qt5core.dll", loaded)
        self.assertIn(self.own + "platforms\\qwindows.dll", loaded)

    def test_planted_libraries_are_never_loaded(self) -> None:
        self.start_service(https=True)
        clean = self.start_traced("+loaddll,+module", "clean")
        self.go_through_the_states(clean)
        self.assertEqual(0, clean.close())
        self.assert_own_or_system(loaded_libraries(clean))
        names = {Path(name.replace("\\", "/")).name
                 for name in asked_libraries(clean) | loaded_libraries(clean)}
        wanted = {name if name.endswith((".dll", ".drv")) else name + ".dll" for name in names
                  if not name.startswith(("api-ms-", "ext-ms-", "miravel"))}
        self.assertGreater(len(wanted), 50)
        self.plant(wanted)

        assistant = self.start_traced("+loaddll", "planted-run")
        self.go_through_the_states(assistant)
        self.assertEqual(0, assistant.close())
        loaded = loaded_libraries(assistant)
        self.assert_own_or_system(loaded)
        for library in TLS_LIBRARIES:
            self.assertIn(self.own + library, loaded)
        print(f"\n    {len(wanted)} names planted in three places; {len(loaded)} libraries loaded, "
              f"{sum(name.startswith(self.own) for name in loaded)} of the program's folder, "
              f"all others of the system's", flush=True)

    def test_missing_tls_libraries_are_not_taken_from_the_search_path(self) -> None:
        """Qt looks there itself, folder by folder. A question over https then fails as without any."""
        self.start_service(https=True)
        own = self.installation.program.parent
        for gone in (TLS_LIBRARIES, TLS_LIBRARIES[:1], TLS_LIBRARIES[1:]):
            with self.subTest(gone=gone):
                self.installation.log.mark()
                for name in TLS_LIBRARIES:
                    shutil.copy(PROGRAM.parent / name, own / name)
                    # The right ones would be loaded, and would do.
                    shutil.copy(PROGRAM.parent / name, self.planted / name)
                for name in gone:
                    (own / name).unlink()
                assistant = self.start_traced("+loaddll", "without-" + "-".join(gone))
                assistant.wait_for_window()
                assistant.wait_for_log("failed to get hot issues.")
                loaded = loaded_libraries(assistant)
                self.assert_own_or_system(loaded)
                for name in gone:
                    self.assertNotIn(name, {Path(file.replace("\\", "/")).name for file in loaded})
                self.assertEqual(0, assistant.close())

    def test_library_asked_for_by_name_is_not_taken_from_elsewhere(self) -> None:
        """As whatever is loaded into the program may ask; here the gateway library does."""
        self.plant({PLANTED_NAME})
        self.add_gateway_library(self.installation.program.parent)
        assistant = self.start_traced("+loaddll", "by-name", MIRAVEL_TEST_GATEWAY_LOADS=PLANTED_NAME)
        self.ask_gateway(assistant)
        self.assert_own_or_system(loaded_libraries(assistant))
        self.assertEqual(0, assistant.close())

    def test_library_of_its_name_beside_the_program_is_taken(self) -> None:
        """Otherwise the test before would see nothing whatever happens."""
        self.add_gateway_library(self.installation.program.parent)
        shutil.copy(PLANTED, self.installation.program.parent / PLANTED_NAME)
        assistant = self.start_traced("+loaddll", "own", MIRAVEL_TEST_GATEWAY_LOADS=PLANTED_NAME)
        self.ask_gateway(assistant)
        self.assertIn(self.own + PLANTED_NAME, loaded_libraries(assistant))
        self.assertEqual(0, assistant.close())

    def test_gateway_library_is_found_on_the_search_path(self) -> None:
        self.add_gateway_library(self.planted)
        assistant = self.start_traced("+loaddll", "gateway")
        self.ask_gateway(assistant)
        found = windows_path(self.planted / GATEWAY_LIBRARY_NAME).lower()
        self.assertIn(found, loaded_libraries(assistant))
        self.assertEqual(0, assistant.close())

    def test_gateway_library_that_cannot_be_loaded_is_warned_of_once(self) -> None:
        """Two questions ask for it; the fixed lines stay as they are."""
        (self.planted / GATEWAY_LIBRARY_NAME).write_bytes(b"MZ damaged")
        assistant = self.start_traced("+loaddll", "damaged")
        self.ask_gateway(assistant)
        assistant.wait_for_log("failed to get hot issues.")
        with GuardClient(channel_port(self.installation)) as client:
            client.send(document(PICTURE_QUESTION))
            assistant.wait_for_log("get no korinfo when connect vd", "get no korinfo when connect vd")
        self.assertEqual(0, assistant.close())
        warnings = [line for line in assistant.log.whole().splitlines() if "cannot be loaded" in line]
        self.assertEqual(1, len(warnings), warnings)
        self.assertIn(windows_path(self.planted / GATEWAY_LIBRARY_NAME), warnings[0])
        self.assertRegex(warnings[0], r"^Warning:.* \(193\)$")

    def add_gateway_library(self, folder: Path) -> None:
        shutil.copy(os.environ["MIRAVEL_GATEWAY_LIBRARY"], folder / GATEWAY_LIBRARY_NAME)

    def ask_gateway(self, assistant: Assistant) -> None:
        assistant.wait_for_window()
        assistant.wait_for_log("can not ping, try kor", "get no korinfo when connect vd")


if __name__ == "__main__":
    unittest.main()
