"""A newcomer's first look at the assistant, with a picture of each thing seen."""

from __future__ import annotations

from pathlib import Path

from PIL import Image

from . import floating, guardchannel
from .assistant import INPUT_BOX, Assistant
from .clock import MovableClock
from .demoservice import DemoService
from .processlist import LOOK_S

# A question whose answer is paragraphs, one with pictures and further questions, one unknown, each
# with what the program then logs.
PLAIN = ("怎样进入和退出全屏", "Hit question, But no Recommend!")
RICH = ("如何登录云桌面", "Hit question, and have Recommends!")
UNKNOWN = ("今天食堂有什么好吃的", "No hits and no recommendation questions!")

# What another program on the machine asks in the user's stead, and what the program then logs.
GUARD = ("客户端的服务器地址怎么填", "Hit question")

# The eighth row of the hot questions, in px from the window's upper left corner, and its text.
HOT_ROW = (760, 344)
HOT_QUESTION = "云桌面连接不上怎么办？"
# The first row of the recommendations below the answer that was asked for last.
RECOMMENDED_ROW = (160, 284)
RECOMMENDED = "忘记登录密码怎么办？"
# What is typed for suggestions, and the first of them.
TYPED = "登录"
SUGGESTED = "如何登录云桌面？"
# The same text, typed within the second after it has been sent, asks for nothing.
TYPED_NEXT = "密码"

# How long the service keeps the first look waiting, so that the veil is seen, in ms.
LOADING_MS = 1500
# With this value the about button opens a menu.
MENU_SETTING = {"SysEnvironment/EnvType": "2"}

_DIALOG = (260, 100, 660, 540)


class Tour:
    """Does what a person would do, in order; stops with NotSeen at the first thing missing."""

    def __init__(self, assistant: Assistant, clock: MovableClock, service: DemoService,
                 folder: Path) -> None:
        """The assistant goes by clock. Pictures go to folder; those of an earlier tour are
        removed."""
        self._assistant = assistant
        self._clock = clock
        self._service = service
        self._folder = folder
        self.pictures: list[Path] = []
        folder.mkdir(parents=True, exist_ok=True)
        for old in folder.glob("*.png"):
            old.unlink()

    def run(self) -> None:
        self._assistant.wait_for_window()
        self._assistant.rest()
        self._keep(floating.wait_for_veil(self._assistant), "loading")
        self._assistant.wait_for_greeting()
        self._save("greeting")
        self._outlive_the_watch()
        self._ask(*PLAIN, "answer")
        self._ask(*RICH, "rich-answer")
        self._click(RECOMMENDED_ROW, RECOMMENDED, "recommend", "recommendation")
        self._ask(*UNKNOWN, "unknown-question")
        self._click(HOT_ROW, HOT_QUESTION, "hotquestion", "hot-question")
        self._post(*GUARD, "guard-question")
        self._look_at_suggestions()
        self._look_at_input_menu()
        self._look_at_about()
        self._close()

    def _outlive_the_watch(self) -> None:
        """What comes next is answered and suggested only while the client is found running."""
        processes = self._assistant.installation.processes
        before = processes.calls()
        self._clock.put_forward(LOOK_S)
        processes.wait_for_call(before)

    def _ask(self, question: str, logged: str, picture: str) -> None:
        self._service.log.mark()
        self._assistant.ask(question)
        self._assistant.wait_for_answer(question)
        self._assistant.wait_for_log(f"Ask_And_Answer question:{question}", logged)
        self._service.log.wait_for("call=ask", "verdict=accepted", "signature=good",
                                   f'question="{question}"')
        self._save(picture)

    def _click(self, place: tuple[int, int], question: str, source: str, picture: str) -> None:
        """A question that is asked by a click on it."""
        self._service.log.mark()
        self._assistant.ask_by_click(*place)
        self._assistant.wait_for_answer(question)
        self._assistant.wait_for_log(f"Ask_And_Answer question:{question}", "nSize_Recom:")
        self._service.log.wait_for("call=ask", "verdict=accepted", "signature=good",
                                   f'question="{question}"', f'source="{source}"')
        self._save(picture)

    def _post(self, question: str, logged: str, picture: str) -> None:
        """A question that comes over the guard channel; it is acknowledged once it is answered."""
        self._service.log.mark()
        self._assistant.watch()
        guardchannel.post(self._assistant.installation, question)
        self._assistant.wait_for_answer(question)
        self._assistant.wait_for_log("send messages(Sysguard) by idp qa request",
                                     f"Ask_And_Answer question:{question}", logged)
        self._service.log.wait_for("call=ask", "verdict=accepted", "signature=good",
                                   f'question="{question}"', 'source="rawquery"')
        self._save(picture)

    def _look_at_suggestions(self) -> None:
        floating.type_text(self._assistant, TYPED)
        self._assistant.rest()
        count = floating.wait_for_suggestions(self._assistant)
        self._save("suggestions")
        place = floating.suggestion_place(count, 0)
        self._click(place, SUGGESTED, "associate", "suggested-question")

    def _look_at_input_menu(self) -> None:
        floating.type_text(self._assistant, TYPED_NEXT)
        self._assistant.rest()
        floating.wait_for_suggestions(self._assistant)
        self._assistant.person.press("Escape", "ctrl+a")
        before = self._assistant.look()
        self._assistant.click(*INPUT_BOX, button=3)
        self._keep(floating.wait_for_menu(self._assistant, before, INPUT_BOX,
                                          floating.INPUT_MENU_SIZE), "input-menu")
        self._assistant.person.press("Escape")
        self._assistant.rest()

    def _look_at_about(self) -> None:
        before = self._assistant.look()
        self._assistant.click(*floating.ABOUT_BUTTON)
        self._keep(floating.wait_for_menu(self._assistant, before, floating.ABOUT_BUTTON,
                                          floating.ABOUT_MENU_SIZE), "about-menu")
        self._assistant.person.press("Down", "Down", "Return")
        self._assistant.wait_for_log("click to about btn")
        self._keep(floating.wait_for_change(self._assistant, before, _DIALOG,
                                            "the About dialog"), "about")
        self._assistant.person.press("Escape")
        floating.wait_for_return(self._assistant, before, _DIALOG, "the About dialog")

    def _save(self, name: str) -> None:
        self._keep(self._assistant.look(), name)

    def _keep(self, picture: Image.Image, name: str) -> None:
        path = self._folder / f"{len(self.pictures) + 1:02}-{name}.png"
        picture.save(path)
        self.pictures.append(path)

    def _close(self) -> None:
        status = self._assistant.close()
        if status != 0:
            raise RuntimeError(f"closing the window: the program ended with status {status}")
