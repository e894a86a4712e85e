"""What a user and the guard tool do during a soak."""

from __future__ import annotations

import itertools
import threading
import time

from desktop.assistant import INPUT_BOX, Assistant
from desktop.guardchannel import GuardClient, document
from desktop.waiting import NotSeen

# Short answers, long ones, still and moving pictures, further questions.
TEXTS = ("如何登录云桌面", "如何调整分辨率", "怎样进入和退出全屏", "云桌面运行很慢怎么办",
         "打印机无法打印怎么办", "客户端的服务器地址怎么填", "登录后黑屏怎么办",
         "如何查看网络时延和丢包", "今天食堂有什么好吃的", "如何设置双屏或多屏显示",
         "云桌面经常断线重连是什么原因", "桌面背景和个性化设置能保留吗")

_JUNK = (b"{\"question\":", b"{}{}", b"\x00\xff\xfe", b"[" * 100_000, b"[]", b"{\"question\":7}",
         b"plain text", b"{\"question\":\"\"}")
_JUNK_EVERY = 5

CONNECTIONS = 20
_SUGGESTION_S = 1.5


def numbered(kind: str, number: int) -> str:
    """A question that occurs once."""
    return f"{TEXTS[number % len(TEXTS)]} {kind}{number:05}"


class GuardTraffic:
    """Posts questions, and between them what is none, over several connections in turn: two messages
    that meet on one connection would count as one. One thread posts, another may pause it."""

    def __init__(self, port: int) -> None:
        self._clients = [GuardClient(port) for _ in range(CONNECTIONS)]
        self._turn = itertools.cycle(self._clients)
        self._junk = itertools.cycle(_JUNK)
        self.posted: list[str] = []
        self._posting = threading.Lock()
        self._pausing = False

    def post(self, number: int) -> None:
        with self._posting:
            if self._pausing:
                return
            question = numbered("G", number)
            self.posted.append(question)
            next(self._turn).send(document(question))
            if number % _JUNK_EVERY == 0:
                next(self._turn).send(next(self._junk))

    def pause(self) -> list[str]:
        """Posts nothing from now on; all that was posted, the one just on its way included."""
        with self._posting:
            self._pausing = True
            return list(self.posted)

    def go_on(self) -> None:
        with self._posting:
            self._pausing = False

    def close(self) -> None:
        for client in self._clients:
            client.close()


class UserTraffic:
    """Types questions, and the beginnings of some for their suggestions."""

    def __init__(self, assistant: Assistant) -> None:
        self._assistant = assistant
        self.typed = 0
        self.missed = 0

    def step(self, number: int) -> None:
        """One thing that a user does. The window goes and comes with its screen, and takes the
        pointer with it: then the user tries the next thing."""
        try:
            self._do(number)
        except NotSeen:
            self.missed += 1

    def _do(self, number: int) -> None:
        person = self._assistant.person
        self._assistant.click(*INPUT_BOX)
        if number % 2 == 0:
            person.paste(TEXTS[number % len(TEXTS)][:2 + number % 3])
            time.sleep(_SUGGESTION_S)  # the suggestions come with the next full second
            person.press("Escape", "ctrl+a", "Delete")
        else:
            person.paste(numbered("T", number))
            person.press("Return")
            self.typed += 1
