"""Every window of the real program as somebody meets it who listens: read from the top through the
desktop's accessibility service, and gone through with the keyboard."""

from __future__ import annotations

import unittest

from desktop import floating
from desktop.assistant import INPUT_BOX, Assistant
from desktop.preview import TITLE as PREVIEW_TITLE
from desktop.screenreader import Heard, Reader, SpokenSession
from desktop.testcase import DesktopTest
from desktop.waiting import wait_until

TITLE = "Miravel"
ABOUT = "关于"
LICENCE = "开源许可"
CONVERSATION = "对话"
HOT_QUESTIONS = "热门问答"
SUGGESTIONS = "联想问题"
RECOMMENDED = "推荐问题"
NEXT_PAGE = "换一换"
TYPED = "登录"

# A question whose answer has a link, is folded and has fifteen recommendations, and how it is answered.
ASKED = "忘记登录密码怎么办"
ANSWERED = "忘记登录密码怎么办？"
LINK = "自助密码平台"
# One whose answer has a picture.
WITH_PICTURE = "如何登录云桌面"
WITH_PICTURE_TITLE = "如何登录云桌面？"

# What takes the focus, is pressed or stands for something that is seen has a name.
NAMED = {"push button", "link", "image", "animation", "text", "list", "list item", "menu item", "dialog",
         "frame", "check box", "combo box"}


class ScreenReaderTest(DesktopTest):
    def setUp(self) -> None:
        super().setUp()
        self.display.manage_windows()
        self.session = self.enterContext(SpokenSession(self.folder / "session", self.display.name))
        self.start_service()

    def test_main_window_and_greeting(self) -> None:
        assistant, reader = self.start()
        window = self.window(reader, TITLE)
        self.assertEqual("frame", window.role)
        self.assert_all_named(window)
        greeting = window.named(CONVERSATION, "list").children
        self.assertEqual(1, len(greeting))
        self.assertTrue(greeting[0].name.startswith("Miravel：您好"), greeting[0].name)
        # Buttons and boxes in reading order, the title bar first.
        controls = [heard.name for heard in window.everything()
                    if heard.role in ("push button", "text") and "focusable" in heard.states]
        self.assertEqual(["关于", "最小化", "关闭", "问题", "发送"], controls[:5])
        hot = window.named(HOT_QUESTIONS, "list").children
        self.assertEqual(16, len(hot))
        self.assertEqual({("push button", True)}, {(row.role, row.can_be_pressed) for row in hot})
        self.close_cleanly(assistant)

    def test_hot_question_is_pressed(self) -> None:
        assistant, reader = self.start()
        row = self.window(reader, TITLE).named(HOT_QUESTIONS, "list").children[1]
        assistant.watch()
        self.assertTrue(reader.press(row))
        assistant.wait_for_answer(row.name)
        entries = self.window(reader, TITLE).named(CONVERSATION, "list").children
        self.assertEqual([f"您：{row.name}", f"Miravel：{row.name}"],
                         [entry.name for entry in entries[1:]])
        self.close_cleanly(assistant)

    def test_answer_is_read_in_order(self) -> None:
        assistant, reader = self.start()
        answer = self.ask(assistant, reader, ASKED)
        entries = self.window(reader, TITLE).named(CONVERSATION, "list").children
        self.assertEqual([("list item", f"您：{ASKED}"), ("list item", f"Miravel：{ANSWERED}")],
                         [(entry.role, entry.name) for entry in entries[1:]])
        parts = answer.children
        self.assertEqual(("label", ANSWERED), (parts[0].role, parts[0].name))
        texts = [part.name for part in parts[1:-2]]
        self.assertEqual({"label"}, {part.role for part in parts[1:-2]})
        self.assertTrue(texts[0].startswith("您可以自助重置密码"), texts)
        self.assertTrue(texts[-1].startswith("新密码约一分钟后生效"), texts)
        link = answer.named(LINK, "link")
        self.assertTrue(link.can_be_pressed)
        self.assertIn("focusable", link.states)
        self.assertEqual(("push button", "展开"), (parts[-2].role, parts[-2].name))
        self.assertEqual(("panel", RECOMMENDED), (parts[-1].role, parts[-1].name))
        self.assertTrue(reader.press(parts[-2]))
        wait_until(lambda: self.last_entry(reader).children[-2].name == "收起", "the other fold bar")
        self.close_cleanly(assistant)

    def test_covered_page_of_recommendations_is_not_read(self) -> None:
        assistant, reader = self.start()
        answer = self.ask(assistant, reader, ASKED)
        first = self.recommendations(answer)
        self.assertEqual(5, len(first))
        self.assertTrue(reader.press(answer.children[-1].named(NEXT_PAGE)))
        second = self.recommendations(self.last_entry(reader))
        self.assertEqual(5, len(second))
        self.assertFalse(set(first) & set(second))
        self.close_cleanly(assistant)

    def test_link_under_the_tab_key_is_told(self) -> None:
        assistant, reader = self.start()
        self.ask(assistant, reader, ASKED)
        met: list[tuple[str, str]] = []

        def told() -> bool:
            assistant.person.press("shift+Tab")
            met.extend(reader.focused())
            return ("link", LINK) in met
        assistant.click(*INPUT_BOX)
        wait_until(told, "the link under the Tab key")
        self.assertIn(("push button", "展开"), met)
        self.close_cleanly(assistant)

    def test_suggestions_are_read_and_told_as_they_are_gone_through(self) -> None:
        assistant, reader = self.start()
        floating.type_text(assistant, TYPED)
        count = floating.wait_for_suggestions(assistant)
        window = self.window(reader, TITLE)
        self.assert_all_named(window)
        self.assertEqual(TYPED, window.named("问题", "text").text)
        rows = window.named(SUGGESTIONS, "list").children
        self.assertEqual(count, len(rows))
        self.assertTrue(all(row.can_be_pressed for row in rows), window.named(SUGGESTIONS, "list").outline())
        reader.focused()
        # One after the other, as a person who listens: of a row that is gone again nothing is heard.
        self.press_and_hear(assistant, reader, "Down", ("push button", rows[0].name))
        self.press_and_hear(assistant, reader, "Down", ("push button", rows[1].name))
        self.press_and_hear(assistant, reader, "Escape", ("text", "问题"))
        self.close_cleanly(assistant)

    def test_menu_entries_are_told(self) -> None:
        self.installation.settings.update({"SysEnvironment/EnvType": "0"})
        assistant, reader = self.start()
        floating.type_text(assistant, TYPED)
        assistant.person.press("ctrl+a")
        before = assistant.look()
        assistant.click(*INPUT_BOX, button=3)
        floating.wait_for_menu(assistant, before, INPUT_BOX, floating.INPUT_MENU_SIZE)
        self.assertEqual(["剪切", "复制", "粘贴"], self.entries_told(assistant, reader))
        assistant.person.press("Escape")
        floating.wait_for_return(assistant, before, (330, 545, 450, 600), "the menu")
        before = assistant.look()
        assistant.click(*floating.ABOUT_BUTTON)
        floating.wait_for_menu(assistant, before, floating.ABOUT_BUTTON, floating.ABOUT_MENU_SIZE)
        self.assertEqual(["帮助与反馈", ABOUT], self.entries_told(assistant, reader))
        assistant.person.press("Down", "Return")
        wait_until(lambda: assistant.person.windows(ABOUT), "the About dialog")
        self.close_dialog(assistant, ABOUT)
        self.close_cleanly(assistant)

    def test_dialogs(self) -> None:
        assistant, reader = self.start()
        reader.press(self.window(reader, TITLE).named(ABOUT, "push button"))
        about = self.window(reader, ABOUT)
        self.assertEqual("dialog", about.role)
        self.assert_all_named(about)
        read = [heard.name for heard in about.everything() if heard.name]
        for text in ("Miravel", "1.0.0", "关闭"):
            self.assertIn(text, read)
        self.assertTrue(any(text.startswith("©") for text in read), read)
        wait_until(lambda: ("push button", "关闭") in reader.focused(), "the focus in the dialog")
        self.assertTrue(reader.press(about.named(LICENCE, "push button")))
        licence = self.window(reader, LICENCE)
        self.assertEqual("dialog", licence.role)
        self.assert_all_named(licence)
        text = licence.named("开源协议", "text").text
        self.assertIsNotNone(text)
        self.assertTrue(str(text).startswith("Open-source software in Miravel"))
        self.assertTrue(licence.named("确定", "push button").can_be_pressed)
        self.close_dialog(assistant, LICENCE)
        self.close_dialog(assistant, ABOUT)
        self.close_cleanly(assistant)

    def test_preview(self) -> None:
        assistant, reader = self.start()
        answer = self.ask(assistant, reader, WITH_PICTURE)
        self.assertTrue(reader.press(answer.named("查看图片", "push button")))
        preview = self.window(reader, PREVIEW_TITLE)
        self.assertEqual("frame", preview.role)
        self.assert_all_named(preview)
        read = [heard.name for heard in preview.everything() if heard.name]
        self.assertEqual([PREVIEW_TITLE, PREVIEW_TITLE, "1 / 1", WITH_PICTURE_TITLE, "最小化", "最大化",
                          "关闭", WITH_PICTURE_TITLE, "原始大小", "适应窗口", "上一张", "下一张", "放大",
                          "缩小"], read)
        self.assertEqual("image", preview.named(WITH_PICTURE_TITLE, "image").role)
        self.assertTrue(reader.press(preview.named("关闭", "push button")))
        wait_until(lambda: not assistant.person.windows(PREVIEW_TITLE), "the end of the preview")
        self.close_cleanly(assistant)

    def start(self) -> tuple[Assistant, Reader]:
        """The greeted program, and who reads it."""
        assistant = self.start_greeted(self.session.environment)
        reader = self.enterContext(self.session.reader(assistant.process.pid))
        assistant.click(*INPUT_BOX)
        return assistant, reader

    def window(self, reader: Reader, name: str) -> Heard:
        """The window of this name, once it is told of."""
        return wait_until(lambda: next((window for window in reader.windows()
                                        if window.name == name and window.children), None),
                          f"the window {name} in what is read")

    def last_entry(self, reader: Reader) -> Heard:
        return self.window(reader, TITLE).named(CONVERSATION, "list").children[-1]

    def ask(self, assistant: Assistant, reader: Reader, question: str) -> Heard:
        """The entry with the answer."""
        assistant.ask(question)
        assistant.wait_for_answer(question)
        return self.last_entry(reader)

    def recommendations(self, answer: Heard) -> list[str]:
        box = answer.children[-1]
        self.assertEqual(RECOMMENDED, box.name)
        return [part.name for part in box.children
                if part.role == "push button" and part.name != NEXT_PAGE]

    def press_and_hear(self, assistant: Assistant, reader: Reader, key: str,
                       told: tuple[str, str]) -> None:
        """Presses a key; nothing but what it gives the focus is heard."""
        assistant.person.press(key)
        met: list[tuple[str, str]] = []

        def heard() -> bool:
            met.extend(reader.focused())
            return bool(met)
        wait_until(heard, f"what is told after {key}")
        self.assertEqual([told], met)

    def entries_told(self, assistant: Assistant, reader: Reader) -> list[str]:
        """The entries of the open menu, as Down goes through them."""
        met: list[str] = []
        reader.focused()

        def round_again() -> bool:
            before = len(met)
            assistant.person.press("Down")
            wait_until(lambda: met.extend(name for role, name in reader.focused()
                                          if role == "menu item") or len(met) > before,
                       f"another entry of the menu after {met}")
            return met[-1] == met[0] and len(met) > 1
        wait_until(round_again, "the first entry again")
        return met[:-1]

    def assert_all_named(self, window: Heard) -> None:
        """What is shown of these kinds has a name, what takes the focus too, and no area in a window
        passes for a window."""
        for heard in window.everything():
            if "showing" not in heard.states:
                continue
            if heard.role in NAMED or "focusable" in heard.states:
                self.assertTrue(heard.name.strip(), f"{heard.role} without a name in\n{window.outline()}")
            if heard.role == "push button":
                self.assertTrue(heard.can_be_pressed, f"{heard.name} in\n{window.outline()}")
            if heard is not window:
                self.assertNotIn(heard.role, ("frame", "window", "dialog"), window.outline())

    def close_dialog(self, assistant: Assistant, title: str) -> None:
        # A moment passes until a window that comes up, or is left over, is given the keyboard.
        wait_until(lambda: assistant.person.has_keyboard(title), f"the keyboard for {title}")
        assistant.person.press("Escape")
        wait_until(lambda: not assistant.person.windows(title), f"the end of {title}")


if __name__ == "__main__":
    unittest.main()
