"""The examination of a question service finds nothing wrong with the demo service, names each of its
faults, and names what a service that checks nothing lets through."""

from __future__ import annotations

import base64
import json
import shutil
import tempfile
import unittest
from pathlib import Path
from typing import Any

from desktop.console import Console
from desktop.demoservice import DemoService
from desktop.installation import SECRET, default_settings, encoded, free_port
from desktop.project import CONFORMANCE, ON_WINE, PROGRAM, SOURCE
from desktop.settings import Settings

from laxservice import ANSWER, HOT, LaxService

PATIENCE_S = 200.0
# Under Wine a request takes longer than on a user's machine when other tests run beside it.
SLOW_SUGGESTIONS = "the fastest of 3 replies took"
ATTEMPTS = 5 if ON_WINE else 1
CASE_BY_CASE = unittest.skipIf(
    ON_WINE, "its many examinations take Wine many seconds each; one of each kind runs")
CALLS = ("hot", "association", "ask")

# A fault of the demo service, its argument, and what is said of it; None: depends on the call.
FAULTS = (
    ("delay", 1500, "no reply within 1 s"),
    ("error", None, 'a right request is refused: errorCode "50000"'),
    ("http", 500, "HTTP status 500 for a right request"),
    ("http", 404, "HTTP status 404 for a right request"),
    ("http", 204, "HTTP status 204 for a right request"),
    ("empty", None, "the reply has no body"),
    ("broken-json", None, ("the reply is no JSON", "the reply ends inside a character")),
    ("truncate", None, "the connection broke: RemoteHostClosedError"),
    # How much has arrived when the connection ends decides what is said.
    ("drop", None, ("the reply is no JSON", "the reply ends inside a character",
                    "the connection broke")),
    ("huge", 1000000, ("question has 1000000 characters", "the reply is too long")),
    ("huge-junk", 1000000, "the reply is no JSON, at byte 1"),
    ("not-utf8", None, "the reply is not UTF-8"),
    ("nul", "inside", "there is a NUL byte at byte"),
    ("nul", "end", "there is a NUL byte at byte"),
    ("deep", 10000, "the reply is nested too deep"),
    ("no-answer", None, "no reply within 1 s"),
    ("trickle", 100, "no whole reply within 1 s"),
)
EMPTY_REPLIES = {"hot": "the list is empty", "association": "no suggestion for",
                 "ask": "reply is missing, empty or no text"}

# What must be refused, as the names of the checks say it.
MUST_BE_REFUSED = {
    "wrong-signature", "other-secret", "empty-signature", "changed-nonce", "changed-time",
    "unknown-tenant", "unknown-key", "stale", "early", "bad-time", "no-tenant", "no-key", "no-time",
    "no-nonce", "no-signature", "damaged-body", "empty-body", "list-body", "replayed-nonce"}
MAY_BE_TAKEN = {"bad-nonce", "no-host", "wrong-type", "bare-body", "wrong-path", "wrong-method"}

PNG = base64.b64encode((SOURCE / "tools/demoservice/pictures/usb.png").read_bytes()).decode("ascii")
GOOD_PICTURE = f'<p><img src="data:image/png;base64,{PNG}" style="max-width:100%;"/></p>'

BAD_TEXTS = (
    (GOOD_PICTURE.replace(" style", "  style"), "not written in the one form"),
    (GOOD_PICTURE.replace("100%", "90%"), "not written in the one form"),
    (GOOD_PICTURE.replace("<p>", "<p>see "), "not written in the one form"),
    (GOOD_PICTURE.replace("image/png", "image/webp"), "not written in the one form"),
    (GOOD_PICTURE.replace("image/png", "image/gif"), "a picture says image/gif and is png"),
    (GOOD_PICTURE.replace(PNG, "AAAA"), "a picture cannot be read"),
    (GOOD_PICTURE.replace(PNG, PNG[:-1]), "no Base64"),
    (GOOD_PICTURE.replace(PNG, PNG[:len(PNG) // 8 * 4]), "a picture is damaged"),
    ('<p><img src="https://example.invalid/a.png"/></p>', "it is not shown"),
    ("<p class='x'>words</p>", "a paragraph tag has attributes"),
    ("<p>one</p>two<p>three</p>", "text outside the paragraphs"),
    ("words alone", "text outside the paragraphs"),
    ("<p> </p>", "nothing of the reply is shown"),
    ("<p>" + "字" * 40001 + "</p>", "the reply is too long"),
    ("<p>a\0b</p>", "a text holds a NUL character"),
)

BAD_ANSWERS = (
    ({"resultType": "normal"}, 'resultType is "normal"'),
    ({"standardQuestion": None}, "standardQuestion is missing"),
    ({"reply": 1}, "reply is missing, empty or no text"),
    ({"recommends": None}, "recommends is missing or no list"),
    ({"recommends": [{"question": "q", "questionId": 2**31}]},
     "questionId is no whole number within 32 bits"),
    ({"recommends": [{"question": "", "questionId": 1}]}, "question is missing, empty"),
)

BAD_LISTS = (
    ([{"id": 2**63, "question": "q"}], "id is no whole number within 64 bits"),
    ([{"id": 1.5, "question": "q"}], "id is no whole number within 64 bits"),
    ([{"id": "1", "question": "q"}], "id is no whole number within 64 bits"),
    ([{"question": "q"}], "id is no whole number within 64 bits"),
    ([{"id": 1, "question": " "}], "question is missing, empty"),
    ([{"id": 1, "question": "q" * 301}], "question has 301 characters"),
    (["q"], "it is no object"),
    ({"question": "q"}, "result is missing or no list"),
)


class ConformanceTest(unittest.TestCase):
    maxDiff = None
    console: Console
    program = CONFORMANCE

    @classmethod
    def setUpClass(cls) -> None:
        folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory(prefix="miravel-test-")))
        cls.console = cls.enterClassContext(Console(folder))
        if ON_WINE:  # where a program's libraries lie beside it
            shutil.copytree(PROGRAM.parent, folder / "bin")
            cls.program = Path(shutil.copy(CONFORMANCE, folder / "bin"))

    def setUp(self) -> None:
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory(prefix="miravel-test-")))
        self.settings = Settings(self.folder / "Miravel.ini", default_settings())

    def examine(self, port: int, *arguments: str | Path) -> tuple[int, str]:
        """The exit status and all that was printed."""
        self.settings.update({"IpAndPort/mserverhttpsport": str(port)})
        for _ in range(ATTEMPTS):
            status, said = self.console.run(self.program, self.folder / "Miravel.ini", *arguments,
                                            patience_s=PATIENCE_S)
            if SLOW_SUGGESTIONS not in said:
                break
        return status, said

    def checks(self, port: int, *arguments: str) -> list[dict[str, Any]]:
        self.examine(port, "--json", self.folder / "result.json", *arguments)
        result = json.loads((self.folder / "result.json").read_text(encoding="utf-8"))
        return list(result["checks"])

    def mends(self, port: int, *arguments: str) -> list[tuple[str, str]]:
        return [(check["id"], check["what"]) for check in self.checks(port, *arguments)
                if check["grade"] == "mend"]

    def assert_named(self, found: list[tuple[str, str]], call: str,
                     words: str | tuple[str, ...]) -> None:
        accepted = (words,) if isinstance(words, str) else words
        named = [what for name, what in found if name.startswith(f"{call}.")]
        self.assertTrue(any(word in what for word in accepted for what in named),
                        f"{call}: {words} is not in {found}")


class DemoServiceTest(ConformanceTest):
    service: DemoService

    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory(prefix="miravel-test-")))
        cls.service = cls.enterClassContext(DemoService(folder, https=True))

    def test_demo_service_conforms(self) -> None:
        status, said = self.examine(self.service.http_port, "--answers", "60")
        self.assertEqual(0, status, said)
        self.assertNotIn("MEND", said)
        self.assertNotIn("note", said)
        for call in CALLS:
            for name in MUST_BE_REFUSED | MAY_BE_TAKEN:
                self.assertIn(f"  ok    {call}.refuses.{name}: ", said)
            self.assertIn(f"  ok    {call}.nonce-kept: ", said)
        for name in ("hot.few", "association.many", "ask.associate", "ask.recommend", "ask.unknown"):
            self.assertIn(f"  ok    {name}: ", said)
        self.assertEqual(40, said.count("  ok    ask.hotquestion: "))

    def test_https_conforms(self) -> None:
        status, said = self.examine(self.service.http_port, "--address",
                                    f"https://127.0.0.1:{self.service.https_port}")
        self.assertEqual(0, status, said)
        self.assertIn(f"The question service at https://127.0.0.1:{self.service.https_port}", said)

    @CASE_BY_CASE
    def test_every_fault_is_named_in_every_call(self) -> None:
        for kind, argument, words in FAULTS:
            for call in CALLS:
                with self.subTest(f"{call}={kind}:{argument}"):
                    self.service.fault(call, kind, arg=argument, times=1000)
                    found = self.mends(self.service.http_port, "--wait", "1", "--answers", "1")
                    self.service.fault(call, "none")
                    self.assert_named(found, call, words)
                    self.assertEqual([], [name for name, _ in found
                                          if not name.startswith(f"{call}.")
                                          and not name.startswith(("association.", "ask."))])

    def test_empty_replies_are_named(self) -> None:
        for call, words in EMPTY_REPLIES.items():
            with self.subTest(call):
                self.service.fault(call, "empty-reply", times=1000)
                found = self.mends(self.service.http_port)
                self.service.fault(call, "none")
                self.assert_named(found, call, words)

    @CASE_BY_CASE
    def test_suggestions_later_than_the_client_waits_are_named(self) -> None:
        self.service.fault("association", "delay", arg=600, times=1000)
        found = self.mends(self.service.http_port)
        self.service.fault("association", "none")
        self.assert_named(found, "association", "the fastest of 3 replies took 6")
        self.assertEqual(3, len(found), found)

    @CASE_BY_CASE
    def test_slow_answers_within_the_limit_are_good(self) -> None:
        self.service.fault("ask", "delay", arg=600, times=1000)
        found = self.mends(self.service.http_port)
        self.service.fault("ask", "none")
        self.assertEqual([], found)

    def test_wrong_credentials_are_named_and_never_shown(self) -> None:
        wrong = "wrong-" + SECRET
        self.settings.update({"Authorization/xcasecond": encoded(wrong)})
        summary = self.folder / "summary.txt"
        status, said = self.examine(self.service.http_port, "--verbose", "--summary", summary,
                                    "--json", self.folder / "result.json")
        self.assertEqual(1, status, said)
        self.assertIn("the signature does not fit the request", said)
        written = said + summary.read_text("utf-8") + (self.folder / "result.json").read_text("utf-8")
        self.assertNotIn(wrong, written)
        self.assertNotIn(encoded(wrong), written)

    def test_result_is_json_and_a_page_for_the_files(self) -> None:
        self.service.fault("hot", "empty", times=1)
        status, said = self.examine(self.service.http_port, "--json", "-", "--summary",
                                    self.folder / "summary.txt")
        self.assertEqual(1, status)
        result = json.loads(said[said.index("{\n"):said.rindex("}") + 1])
        grades = [check["grade"] for check in result["checks"]]
        self.assertEqual({grade: grades.count(grade) for grade in ("good", "note", "mend")},
                         result["counts"])
        self.assertEqual(1, result["counts"]["mend"])
        self.assertFalse(result["conforms"])
        page = (self.folder / "summary.txt").read_text("utf-8")
        self.assertIn("it does not conform", page)
        self.assertIn("To mend\n  hot.reply: the reply has no body\n    -> ", page)
        self.assertIn("Slowest reply\n  hot: ", page)

    def test_wrong_command_lines(self) -> None:
        for arguments in (("--no-such-option",), ("--wait", "0"), ("--wait", "soon"), ("second",),
                          ("--answers", "-1"), ("--address", "127.0.0.1"),
                          ("--address", "ftp://127.0.0.1"),
                          ("--summary", self.folder / "no/such/folder")):
            with self.subTest(arguments):
                status, said = self.examine(self.service.http_port, *arguments)
                self.assertEqual(2, status, said)


class LaxServiceTest(ConformanceTest):
    def setUp(self) -> None:
        super().setUp()
        self.service = self.enterContext(LaxService())

    def test_all_that_is_let_through_is_named(self) -> None:
        checks = self.checks(self.service.port)
        for call in CALLS:
            refused = {check["id"].rpartition(".")[2]: check for check in checks
                       if check["id"].startswith(f"{call}.refuses.")}
            self.assertEqual(MUST_BE_REFUSED | MAY_BE_TAKEN, set(refused))
            for name, check in refused.items():
                self.assertEqual("mend" if name in MUST_BE_REFUSED else "note", check["grade"], name)
                self.assertIn("it is accepted", check["what"])

    @CASE_BY_CASE
    def test_refusal_without_words_is_named(self) -> None:
        for body in (b"", b"<html/>", b'{"errorCode":401,"errorMsg":"","result":null}',
                     b'{"errorCode":"401","result":null}',
                     b'{"errorCode":"401","errorMsg":"no","result":{}}'):
            with self.subTest(body):
                self.service.nonces.clear()
                self.service.refusal = (401, body)
                found = self.mends(self.service.port)
                self.assertIn("it is refused, but not in words",
                              dict(found)["hot.refuses.wrong-signature"])

    def test_refusal_that_gives_the_secret_away_is_named(self) -> None:
        self.service.refusal = (401, ('{"errorCode":"1","errorMsg":"secret is %s","result":null}'
                                      % SECRET).encode("ascii"))
        found = dict(self.mends(self.service.port))
        self.assertIn("the refusal gives away a secret", found["hot.refuses.wrong-signature"])

    def test_nonce_used_up_by_a_forged_request_is_named(self) -> None:
        self.service.keeps_nonces = True
        found = dict(self.mends(self.service.port))
        for call in CALLS:
            self.assertIn("used up the nonce", found[f"{call}.nonce-kept"])

    def test_more_suggestions_than_rows_are_named(self) -> None:
        self.service.results["associations"] = [{"id": n, "question": f"q{n}"} for n in range(22)]
        self.assert_named(self.mends(self.service.port), "association", "22 suggestions")
        self.service.results["associations"] = [{"id": n, "question": f"q{n}"} for n in range(21)]
        self.assertNotIn("suggestions", str(self.mends(self.service.port)))

    @CASE_BY_CASE
    def test_bad_lists_are_named(self) -> None:
        for result, words in BAD_LISTS:
            with self.subTest(words):
                self.service.results.update({"hot-questions": result, "associations": result})
                found = self.mends(self.service.port)
                self.assert_named(found, "hot", words)
                self.assert_named(found, "association", words)

    def test_widest_ids_are_good(self) -> None:
        wide = [{"id": 2**63 - 1, "question": "question a"}, {"id": -2**63, "question": "b"},
                {"id": 0, "question": "c"}]
        narrow = [{"questionId": 2**31 - 1, "question": "a"}, {"questionId": -2**31, "question": "b"}]
        self.service.results.update({"hot-questions": wide, "associations": wide, "answers":
                                     {**ANSWER, "resultType": "NO_RESULT", "recommends": narrow}})
        accepted = [name for name, _ in self.mends(self.service.port) if ".refuses." not in name]
        self.assertEqual([], accepted)

    @CASE_BY_CASE
    def test_bad_answers_are_named(self) -> None:
        for change, words in BAD_ANSWERS:
            with self.subTest(words):
                self.service.results["answers"] = {**ANSWER, **change}
                self.assert_named(self.mends(self.service.port), "ask", words)
        self.service.results["answers"] = HOT
        self.assert_named(self.mends(self.service.port), "ask", "result is missing or no object")

    @CASE_BY_CASE
    def test_bad_texts_are_named(self) -> None:
        for text, words in BAD_TEXTS:
            with self.subTest(words):
                self.service.results["answers"] = {**ANSWER, "reply": text}
                self.assert_named(self.mends(self.service.port), "ask", words)

    def test_good_text_is_good(self) -> None:
        self.service.results["answers"] = {
            **ANSWER, "reply": "<p>words, <b>bold</b><br/>\n<a href=\"https://a.invalid\">a</a></p>\n"
                               + GOOD_PICTURE + "<p>" + "字" * 30000 + "</p>"}
        self.assertEqual([], [what for name, what in self.mends(self.service.port)
                              if name.startswith("ask.") and ".refuses." not in name])

    def test_reply_with_blanks_is_named(self) -> None:
        self.service.body = json.dumps({"errorCode": "0", "result": HOT}).encode("ascii")
        self.assert_named(self.mends(self.service.port), "hot", "the reply is written with blanks")

    def test_error_code_that_is_a_number_is_named(self) -> None:
        self.service.body = b'{"errorCode":0,"result":[]}'
        self.assert_named(self.mends(self.service.port), "hot", "errorCode is missing or no text")

    def test_port_that_nobody_listens_on_is_named(self) -> None:
        status, said = self.examine(free_port())
        self.assertEqual(1, status)
        self.assertIn("hot.reply: the connection broke: ConnectionRefusedError", said)


if __name__ == "__main__":
    unittest.main()
