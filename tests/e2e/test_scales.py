"""The window on scaled screens, with the real program: its size, the places of its parts, how sharp they
are, and the preview. The pictures are kept for whoever wants to look."""

from __future__ import annotations

import unittest

from PIL import Image, ImageChops, ImageStat

from desktop import preview
from desktop.assistant import Assistant
from desktop.conversation import WINDOW_SIZE, conversation_changed
from desktop.display import Display
from desktop.preview import Preview
from desktop.project import BUILD
from desktop.runner import Runner
from desktop.testcase import DesktopTest
from desktop.waiting import wait_until

SCREENSHOTS = BUILD / "screenshots"
DESKTOP_KEY = r"HKCU\Control Panel\Desktop"
DOTS_PER_INCH = 96

QUESTION = "如何登录云桌面"
PICTURE_SIZE = (400, 232)
# Places in the window, in px from its upper left corner.
OPEN_BUTTON = (327, 201)
PICTURE_PLACE = (190, 287)
SMALLEST = (600, 400)
# The area of the send button and around it, and the colour of the button.
INPUT_PANEL = (400, 560, 640, 638)
SEND_BLUE = (42, 100, 244)
# What must be sharp: the title's picture, the three buttons, the robot's portrait, hot questions.
SHARP = {"title": (24, 16, 135, 42), "buttons": (828, 21, 898, 37), "portrait": (22, 78, 70, 120),
         "questions": (680, 125, 890, 250)}
# Neighbouring pixels differ more by this than in what is only enlarged.
SHARPER = 1.08
# Sides fall on whole pixels.
ROUNDING = 1


def scaled(numbers: tuple[int, ...], scale: float) -> tuple[int, ...]:
    return tuple(round(number * scale) for number in numbers)


def sharpness(picture: Image.Image) -> float:
    """How much neighbouring pixels differ, in the mean of squares."""
    grey = picture.convert("L")
    moved = ImageChops.offset(grey, 1, 0)
    return ImageStat.Stat(ImageChops.difference(grey, moved)).rms[0]


def box_of(picture: Image.Image, colour: tuple[int, int, int]) -> tuple[int, int, int, int]:
    """The box around everything of this colour."""
    plain = Image.new("RGB", picture.size, colour)
    other = ImageChops.difference(picture, plain).convert("L").point(lambda value: 255 * (value > 0))
    box = ImageChops.invert(other).getbbox()
    assert box is not None, "nothing of that colour"
    return box


class ScalesTest(DesktopTest):
    SCREEN = (2200, 1500)

    def setUp(self) -> None:
        super().setUp()
        self.display.manage_windows()

    def start_at(self, percent: int, scale: float, display: Display | None = None) -> Assistant:
        """The program on a desktop of this scale; scale is that of its window."""
        def prepare(runner: Runner) -> None:
            runner.set_registry_number(DESKTOP_KEY, "LogPixels", DOTS_PER_INCH * percent // 100)
        self.installation.log.mark()
        return Assistant(self.installation, display or self.display, prepare=prepare, scale=scale)

    def test_window_and_preview_grow_with_the_scale_and_stay_sharp(self) -> None:
        self.start_service()
        stated = self.look_at(100)
        for percent in (125, 150, 200):
            with self.subTest(percent=percent):
                self.compare(stated, self.look_at(percent), percent / 100)

    def test_window_is_no_larger_than_the_screen(self) -> None:
        self.start_service()
        with Display(self.folder / "small", size=(1280, 800)) as display:
            display.manage_windows()
            with self.start_at(200, 1.25, display) as assistant:
                assistant.wait_for_window()
                self.assertEqual((1150, 800), assistant.size())
                self.close_cleanly(assistant)

    def compare(self, stated: Image.Image, window: Image.Image, scale: float) -> None:
        """The window at this scale with the one that is not scaled."""
        expected = scaled(box_of(stated.crop(INPUT_PANEL), SEND_BLUE), scale)
        found = box_of(window.crop(scaled(INPUT_PANEL, scale)), SEND_BLUE)
        for one, other in zip(expected, found):
            self.assertAlmostEqual(one, other, delta=ROUNDING, msg=f"{expected} {found}")
        for name, box in SHARP.items():
            part = window.crop(scaled(box, scale))
            enlarged = stated.crop(box).resize(part.size, Image.Resampling.BILINEAR)
            self.assertGreater(sharpness(part), SHARPER * sharpness(enlarged), name)

    def look_at(self, percent: int) -> Image.Image:
        """The greeted window at this scale; then uses its preview."""
        scale = percent / 100
        with self.start_at(percent, scale) as assistant:
            assistant.wait_for_greeting()
            self.assertEqual(scaled(WINDOW_SIZE, scale), assistant.size())
            window = assistant.look_closely()
            SCREENSHOTS.mkdir(exist_ok=True)
            window.save(SCREENSHOTS / f"window-at-{percent}.png")
            self.use_preview(assistant, percent)
            self.close_cleanly(assistant)
        return window

    def use_preview(self, assistant: Assistant, percent: int) -> None:
        scale = percent / 100
        assistant.ask(QUESTION)
        assistant.wait_for_log("nSize_Recom:")
        before = assistant.look()
        assistant.click(*OPEN_BUTTON)
        assistant.rest()
        wait_until(lambda: conversation_changed(before, assistant.look()), "the unfolded answer")
        assistant.click(*PICTURE_PLACE)
        assistant.rest()
        window = Preview(assistant, self.display)
        self.assertEqual(scaled(preview.SIZE, scale), window.place()[2:])
        wait_until(lambda: self.is_about(scaled(PICTURE_SIZE, scale), window.picture_size()),
                   "the picture in its size")
        self.keep(f"preview-at-{percent}", window)
        left, top, *_ = window.place()
        width, height = preview.SIZE
        window.drag((width - 2, height - 2), (-round(600 * scale), -round(600 * scale)))
        wait_until(lambda: window.place() == (left, top, *scaled(SMALLEST, scale)),
                   "the smallest size")
        self.keep(f"small-preview-at-{percent}", window)
        assistant.person.press("Escape")
        wait_until(lambda: not window.is_open, "the end of the preview")

    def is_about(self, expected: tuple[int, ...], found: tuple[int, ...]) -> bool:
        return all(abs(one - other) <= ROUNDING for one, other in zip(expected, found))

    def keep(self, name: str, window: Preview) -> None:
        window.look().save(SCREENSHOTS / f"{name}.png")


if __name__ == "__main__":
    unittest.main()
