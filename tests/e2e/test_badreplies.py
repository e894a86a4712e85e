"""Replies that no service should give: each is named in the log, gets the fixed message, and leaves
the window able to ask the next question."""

from __future__ import annotations

import unittest

from desktop.conversation import ANSWER, QUESTION
from desktop.testcase import DesktopTest

BAD = "客户端的服务器地址怎么填"
NEXT = "怎样进入和退出全屏"

BUFFER = "The HTTPS request returns a result before it times out, buf:"
ACCEPTED = "The HTTPS request returns a result before it times out!"
NOT_JSON = "QuestAndAnw---QJsonDocument::fromJson error code"
NO_REPLY = "The network is connected, but the reply is empty."

HUGE_BYTES = 50 * 1024 * 1024  # more than the log holds, more than anybody reads


class BadReplyTest(DesktopTest):
    MANAGED_ON_WINE = True

    def ask_twice(self, kind: str, *expected: str, arg: str | int | None = None,
                  shown: tuple[str, ...] = (QUESTION, ANSWER)) -> None:
        """Asks once with the fault and once without; expected are the log's texts in their order,
        shown the bubbles after the first question."""
        service = self.start_service()
        assistant = self.start_greeted()
        service.fault("ask", kind, arg=arg)
        assistant.ask(BAD)
        assistant.wait_for_log(*expected)
        assistant.wait_for_bubbles(shown, f"the message about the fault {kind!r}")

        assistant.ask(NEXT)
        assistant.wait_for_log(ACCEPTED, "nSize_Recom:")
        assistant.wait_for_answer(NEXT)
        self.close_cleanly(assistant)

    def test_empty_body(self) -> None:
        self.ask_twice("empty", BUFFER, NOT_JSON, NO_REPLY)

    def test_empty_answer_text(self) -> None:
        self.ask_twice("empty-reply", ACCEPTED, NO_REPLY, shown=(QUESTION, ANSWER, ANSWER))

    def test_broken_json(self) -> None:
        self.ask_twice("broken-json", NOT_JSON, NO_REPLY)

    def test_body_cut_off(self) -> None:
        self.ask_twice("truncate", NOT_JSON, NO_REPLY)

    def test_connection_dropped(self) -> None:
        """Qt may or may not call the early end an error, by how the last bytes arrive; the
        half of an answer is no JSON either way."""
        self.ask_twice("drop", NOT_JSON, NO_REPLY)

    def test_http_error(self) -> None:
        self.ask_twice("http", BUFFER, "https reply error:InternalServerError", arg=500)

    def test_refusal_by_the_service(self) -> None:
        self.ask_twice("error", BUFFER + "{", NO_REPLY)

    def test_huge_body_that_is_no_json(self) -> None:
        """The log quotes the whole body and goes over its limit: that line is in the backup."""
        self.ask_twice("huge-junk", NOT_JSON, NO_REPLY, arg=HUGE_BYTES)
        backup = self.installation.log.path.with_name("Miravel.log.bk")
        self.assertIn(BUFFER, backup.read_text(encoding="utf-8", errors="replace"))

    def test_huge_answer(self) -> None:
        """Only the beginning is laid out; the rest would freeze the window for minutes."""
        self.ask_twice("huge", ACCEPTED, "answer is too long to be shown whole",
                       shown=(QUESTION, ANSWER), arg=HUGE_BYTES)

    def test_bytes_that_are_not_utf8(self) -> None:
        self.ask_twice("not-utf8", "nSize_Recom:")

    def test_nul_byte_inside(self) -> None:
        self.ask_twice("nul", NOT_JSON, NO_REPLY, arg="inside")

    def test_nul_byte_at_the_end(self) -> None:
        self.ask_twice("nul", ACCEPTED, "nSize_Recom:", arg="end")

    def test_deeply_nested_json(self) -> None:
        self.ask_twice("deep", NOT_JSON, NO_REPLY)


if __name__ == "__main__":
    unittest.main()
