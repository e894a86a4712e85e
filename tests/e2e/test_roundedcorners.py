"""Menus and dialogs with rounded corners and shadows, on a screen with a compositor and on one
without."""

from __future__ import annotations

import unittest

from PIL import Image

from desktop import floating
from desktop.assistant import INPUT_BOX, Assistant
from desktop.display import Display
from desktop.testcase import DesktopTest

# The About dialog in the middle of the window, in px: its window, and the card inside the margins.
DIALOG = (245, 197, 675, 443)
MARGIN = 5
BLACK = (0, 0, 0)


def corners(box: tuple[int, int, int, int]) -> list[tuple[int, int]]:
    left, top, right, bottom = box
    return [(left, top), (right - 1, top), (left, bottom - 1), (right - 1, bottom - 1)]


def colours(window: Image.Image, places: list[tuple[int, int]]) -> list[tuple[int, ...]]:
    return [window.getpixel(place) for place in places]


class RoundedCornersTest(DesktopTest):
    def setUp(self) -> None:
        super().setUp()
        self.start_service()

    def start_on(self, *, composited: bool) -> Assistant:
        display = self.display
        if not composited:
            display = self.enterContext(Display(self.folder / "plain", composited=False))
        assistant = self.enterContext(Assistant(self.installation, display))
        assistant.wait_for_greeting()
        return assistant

    def check_menu(self, assistant: Assistant) -> None:
        before = assistant.look()
        assistant.click(*INPUT_BOX, button=3)
        menu = floating.wait_for_menu(assistant, before, INPUT_BOX, floating.INPUT_MENU_SIZE)
        width, height = floating.INPUT_MENU_SIZE
        left, top = INPUT_BOX
        # The pointer covers the first corner.
        places = corners((left, top, left + width, top + height))[1:]
        self.assertEqual(colours(before, places), colours(menu, places))
        assistant.person.press("Escape")
        self.close_cleanly(assistant)

    def check_dialog(self, assistant: Assistant) -> None:
        before = assistant.look()
        assistant.click(*floating.ABOUT_BUTTON)
        assistant.rest()
        shown = floating.wait_for_change(assistant, before, DIALOG, "the About dialog")
        self.assertEqual(colours(before, corners(DIALOG)), colours(shown, corners(DIALOG)))
        dialog = shown.crop(DIALOG)
        black = dict((colour, count) for count, colour in dialog.getcolors(1 << 20)).get(BLACK, 0)
        self.assertEqual(0, black)
        # The card fills its place, so the dialog is where it is said to be.
        left, top, right, bottom = DIALOG
        edges = [(left + MARGIN, (top + bottom) // 2), (right - MARGIN - 1, (top + bottom) // 2),
                 ((left + right) // 2, top + MARGIN), ((left + right) // 2, bottom - MARGIN - 1)]
        self.assertEqual([(255, 255, 255)] * 4, colours(shown, edges))
        assistant.person.press("Escape")
        floating.wait_for_return(assistant, before, DIALOG, "the About dialog")
        self.close_cleanly(assistant)

    def test_menu_with_a_compositor(self) -> None:
        self.check_menu(self.start_on(composited=True))

    def test_menu_without_a_compositor(self) -> None:
        self.check_menu(self.start_on(composited=False))

    def test_dialog_with_a_compositor(self) -> None:
        self.check_dialog(self.start_on(composited=True))

    def test_dialog_without_a_compositor(self) -> None:
        self.check_dialog(self.start_on(composited=False))


if __name__ == "__main__":
    unittest.main()
