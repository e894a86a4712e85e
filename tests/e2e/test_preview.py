"""A picture of the conversation opened large, and the two dialogs, with the real program. The
pictures of what the screen showed are kept for whoever wants to look."""

from __future__ import annotations

import unittest

from PIL import Image

from desktop import conversation, preview
from desktop.assistant import Assistant
from desktop.preview import Preview
from desktop.project import BUILD, ON_WINE
from desktop.testcase import DesktopTest
from desktop.waiting import wait_until

SCREENSHOTS = BUILD / "screenshots"

# Questions whose answers have a picture, and the sizes of the pictures.
STILL = "如何登录云桌面"
STILL_SIZE = (400, 232)
# A zoom step cuts both sides to whole pixels, and keeps the proportions within what is left.
ZOOMED_IN_SIZE = (439, 255)
ZOOMED_TWICE_SIZE = (482, 280)
ZOOMED_OUT_SIZE = (358, 208)
ANIMATED = "云桌面经常断线重连是什么原因"
ANIMATED_SIZE = (360, 110)

# The newest answer when it is folded: its open button. Then the pictures of the two.
OPEN_BUTTON = (327, 201)
STILL_PLACE = (190, 287)
ANIMATED_PLACE = (277, 343)

ABOUT_BUTTON = (835, 29)
ABOUT_TITLE = "关于"
ABOUT_LOGO = (20, 20, 200, 150)
LICENCE_BUTTON = (57, 211)
ABOUT_CLOSE_BUTTON = (393, 37)
LICENCE_TITLE = "开源许可"
LICENCE_CONFIRM_BUTTON = (325, 455)


class PreviewTest(DesktopTest):
    def setUp(self) -> None:
        super().setUp()
        self.display.manage_windows()

    def test_still_picture_zoomed_fitted_and_closed(self) -> None:
        assistant, window = self.open_preview(STILL, STILL_PLACE)
        left, top, *size = window.place()
        self.assertEqual(preview.SIZE, tuple(size))
        screen = self.display.shot().size
        self.assertLessEqual(abs(2 * left + size[0] - screen[0]), 2)
        self.assertLessEqual(abs(2 * top + size[1] - screen[1]), 2)
        window.wait_for_picture(STILL_SIZE)
        self.keep("preview-still", window)
        window.click(preview.ZOOM_IN)
        window.wait_for_picture(ZOOMED_IN_SIZE)
        window.click(preview.ZOOM_IN)
        window.wait_for_picture(ZOOMED_TWICE_SIZE)
        self.keep("preview-zoomed-in", window)
        window.click(preview.ONE_TO_ONE)
        window.wait_for_picture(STILL_SIZE)
        window.click(preview.ZOOM_OUT)
        window.wait_for_picture(ZOOMED_OUT_SIZE)
        self.keep("preview-zoomed-out", window)
        window.click(preview.FIT)
        # As wide as the area, and higher: all of it is shown, so its height decides.
        wait_until(lambda: window.picture_size()[1] == 518, "the picture as high as its area")
        self.keep("preview-fitted", window)
        assistant.person.press("Escape")
        wait_until(lambda: not window.is_open, "the end of the preview")
        self.close_cleanly(assistant)

    def test_animated_picture_plays_and_paging_stops_at_both_ends(self) -> None:
        self.start_service()
        assistant = self.start_greeted()
        self.ask(assistant, STILL)
        self.ask(assistant, ANIMATED)
        assistant.click(*ANIMATED_PLACE)
        assistant.rest()
        window = Preview(assistant, self.display)
        window.wait_for_picture(ANIMATED_SIZE)
        first = window.look()
        wait_until(lambda: window.look() != first, "another frame of the animation")
        self.keep("preview-animated", window)
        window.click(preview.ZOOM_IN)
        window.click(preview.NEXT)
        self.assertEqual(ANIMATED_SIZE, window.picture_size())
        window.click(preview.PREVIOUS)
        window.wait_for_picture(STILL_SIZE)
        window.click(preview.PREVIOUS)
        window.click(preview.ZOOM_IN)
        window.wait_for_picture(ZOOMED_IN_SIZE)
        self.keep("preview-first", window)
        window.click(preview.NEXT)
        window.wait_for_picture(ANIMATED_SIZE)
        window.click(preview.CLOSE)
        wait_until(lambda: not window.is_open, "the end of the preview")
        self.close_cleanly(assistant)

    def test_program_ends_with_the_main_window_although_the_preview_is_open(self) -> None:
        assistant, window = self.open_preview(STILL, STILL_PLACE)
        # The preview covers the middle of the main window: out of the way with it.
        window.drag((600, 20), (0, 500))
        wait_until(lambda: window.place()[1] > 400, "the preview further down")
        self.close_cleanly(assistant)

    @unittest.skipUnless(ON_WINE, "only there the program answers the system's hit test itself")
    def test_edges_are_dragged_down_to_the_smallest_size(self) -> None:
        assistant, window = self.open_preview(STILL, STILL_PLACE)
        left, top, width, height = window.place()
        window.drag((width - 2, 300), (-500, 0))
        wait_until(lambda: window.place() == (left, top, 600, height), "the smallest width")
        window.drag((300, 1), (0, 400))
        wait_until(lambda: window.place() == (left, top + height - 400, 600, 400),
                   "the smallest height")
        window.drag((1, 1), (-40, -30))
        wait_until(lambda: window.place() == (left - 40, top + height - 430, 640, 430),
                   "the window drawn larger by its corner")
        assistant.wait_for_log("reach min width !", "reach min height!")
        self.keep("preview-small", window)
        self.close_preview(assistant, window)

    def test_maximised_and_back(self) -> None:
        assistant, window = self.open_preview(STILL, STILL_PLACE)
        before = window.place()
        window.click(preview.MAXIMISE)
        wait_until(lambda: window.place()[2:] == self.display.shot().size, "the window maximised")
        self.keep("preview-maximised", window)
        window.click((window.place()[2] - 61, 30))
        wait_until(lambda: window.place() == before, "the window as it was")
        self.close_preview(assistant, window)

    def test_about_and_the_licence(self) -> None:
        self.start_service()
        assistant = self.start_greeted()
        assistant.click(*ABOUT_BUTTON)
        assistant.wait_for_log("click to about btn", "Current version = 1.0.0")
        self.wait_for_dialog(assistant, ABOUT_TITLE)
        self.keep_screen("about")
        logo = self.picture_of(assistant, ABOUT_TITLE).crop(ABOUT_LOGO)
        self.click_in(assistant, ABOUT_TITLE, LICENCE_BUTTON)
        assistant.wait_for_log("Enter on_opensrclicense_clicked")
        self.wait_for_dialog(assistant, LICENCE_TITLE)
        self.keep_screen("licence")
        self.click_in(assistant, LICENCE_TITLE, LICENCE_CONFIRM_BUTTON)
        wait_until(lambda: not assistant.person.windows(LICENCE_TITLE), "the end of the licence")
        assistant.rest()
        wait_until(lambda: self.picture_of(assistant, ABOUT_TITLE).crop(ABOUT_LOGO) == logo,
                   "About uncovered")
        self.click_in(assistant, ABOUT_TITLE, ABOUT_CLOSE_BUTTON)
        wait_until(lambda: not assistant.person.windows(ABOUT_TITLE), "the end of About")
        self.close_cleanly(assistant)

    def click_in(self, assistant: Assistant, title: str, place: tuple[int, int]) -> None:
        left, top = assistant.person.position(assistant.person.windows(title)[0])
        assistant.person.click(left + place[0], top + place[1])

    def wait_for_dialog(self, assistant: Assistant, title: str) -> None:
        """Waits until the dialog is on the screen and what it shows stays."""
        assistant.rest()
        wait_until(lambda: assistant.person.windows(title), title)
        wait_until(lambda: not self.is_blank(assistant, title), f"{title} painted")

    def is_blank(self, assistant: Assistant, title: str) -> bool:
        """Whether the dialog's middle shows a single colour. Wine may take a window away for a moment
        and map it anew."""
        if not assistant.person.windows(title):
            return True
        picture = self.picture_of(assistant, title)
        middle = picture.crop((20, 20, picture.width - 20, picture.height - 20))
        return middle.getcolors(1) is not None

    def picture_of(self, assistant: Assistant, title: str) -> Image.Image:
        """What the screen shows where the dialog is."""
        window = assistant.person.windows(title)[0]
        left, top = assistant.person.position(window)
        width, height = assistant.person.size(window)
        return self.display.shot().crop((left, top, left + width, top + height))

    def open_preview(self, question: str, place: tuple[int, int]) -> tuple[Assistant, Preview]:
        """The preview of a question's picture."""
        self.start_service()
        assistant = self.start_greeted()
        self.ask(assistant, question)
        assistant.click(*place)
        assistant.rest()
        return assistant, Preview(assistant, self.display)

    def ask(self, assistant: Assistant, question: str) -> None:
        """Asks and unfolds the answer."""
        assistant.ask(question)
        assistant.wait_for_answer(question)
        before = assistant.look()
        assistant.click(*OPEN_BUTTON)
        assistant.rest()
        wait_until(lambda: conversation.conversation_changed(before, assistant.look()),
                   "the unfolded answer")

    def close_preview(self, assistant: Assistant, window: Preview) -> None:
        assistant.person.press("Escape")
        wait_until(lambda: not window.is_open, "the end of the preview")
        self.close_cleanly(assistant)

    def keep(self, name: str, window: Preview) -> None:
        SCREENSHOTS.mkdir(exist_ok=True)
        window.look().save(SCREENSHOTS / f"{name}.png")

    def keep_screen(self, name: str) -> None:
        SCREENSHOTS.mkdir(exist_ok=True)
        self.display.shot().save(SCREENSHOTS / f"{name}.png")


if __name__ == "__main__":
    unittest.main()
