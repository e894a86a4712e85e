"""A translation beside the program is used when the system speaks its language; without one, and in
every other language, the window is the same as ever."""

from __future__ import annotations

import shutil
import unittest

from PIL import Image, ImageChops

from desktop.assistant import WINDOW_SIZE
from desktop.project import BUILD
from desktop.testcase import DesktopTest
from desktop.waiting import wait_until

ENGLISH = BUILD / "translations/Miravel_en.qm"
LOADED = "translation: Miravel_en.qm"
# Without the title bar, whose shadow differs by a shade, and the input box, which changes its style.
COMPARED = (0, 60, WINDOW_SIZE[0], 490)


class TranslationTest(DesktopTest):
    def setUp(self) -> None:
        super().setUp()
        self.start_service()
        self.beside = self.installation.program.parent / ENGLISH.name

    def run_in(self, *languages: str, like: Image.Image | None = None) -> tuple[Image.Image, bool]:
        """The greeting window on a system that speaks these languages, and whether the program says
        that it took a translation. Waits for a window like the given one."""
        self.installation.log.mark()
        assistant = self.start_greeted({"LANGUAGE": ":".join(languages)})
        if like is not None:
            wait_until(lambda: self.width_of_difference(like, assistant.look()) == 0,
                       "the window as it is in Chinese")
        picture = assistant.look()
        loaded = self.installation.log.has(LOADED)
        self.close_cleanly(assistant)
        return picture, loaded

    def width_of_difference(self, left: Image.Image, right: Image.Image) -> int:
        first, second = (picture.convert("RGB").crop(COMPARED) for picture in (left, right))
        box = ImageChops.difference(first, second).getbbox()
        return 0 if box is None else box[2] - box[0]

    def test_translation_is_used_only_when_it_is_there_and_asked_for(self) -> None:
        chinese, loaded = self.run_in("zh_CN")
        self.assertFalse(loaded)
        _, loaded = self.run_in("en_US", like=chinese)
        self.assertFalse(loaded)

        shutil.copy(ENGLISH, self.beside)
        english, loaded = self.run_in("en_US")
        self.assertTrue(loaded)
        self.assertGreater(self.width_of_difference(chinese, english), 100)
        for languages in (("zh_CN",), ("de_DE", "en_US"), ("zh_TW", "en")):
            with self.subTest(languages):
                _, loaded = self.run_in(*languages, like=chinese)
                self.assertFalse(loaded)

    def test_damaged_translation_changes_nothing(self) -> None:
        chinese, _ = self.run_in("zh_CN")
        self.beside.write_bytes(b"no translation")
        _, loaded = self.run_in("en_GB", like=chinese)
        self.assertFalse(loaded)
        self.assertTrue(self.installation.log.has("translation cannot be read: Miravel_en.qm"))


if __name__ == "__main__":
    unittest.main()
