"""The demo service's page in a browser, its knowledge file's check, and the reading again."""

from __future__ import annotations

import json
import shutil
import subprocess
import tempfile
import unittest
import urllib.error
import urllib.request
from pathlib import Path
from typing import Any

from desktop.demoservice import DemoService
from desktop.installation import default_settings
from desktop.project import CONFORMANCE, DEMO_SERVICE, KNOWLEDGE, base_environment
from desktop.settings import Settings
from desktop.waiting import wait_until

from webdriver import BROWSER, DRIVER, MISSING, Browser

QUESTION = "如何登录云桌面？"
PATIENCE_S = 120.0


class PageTest(unittest.TestCase):
    def setUp(self) -> None:
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory(prefix="miravel-test-")))
        self.knowledge = self.folder / "knowledge/knowledge.json"
        shutil.copytree(KNOWLEDGE.parent / "pictures", self.knowledge.parent / "pictures")
        shutil.copy(KNOWLEDGE, self.knowledge)

    def start(self) -> DemoService:
        return self.enterContext(DemoService(self.folder / "service", knowledge=self.knowledge))

    def examine(self, service: DemoService) -> list[dict[str, Any]]:
        """Right and wrong requests of every kind."""
        settings = Settings(self.folder / "Miravel.ini", default_settings())
        settings.update({"IpAndPort/mserverhttpsport": str(service.http_port)})
        result = self.folder / "result.json"
        subprocess.run([CONFORMANCE, self.folder / "Miravel.ini", "--json", result, "--question",
                        QUESTION, "--answers", "1"], env=base_environment(), capture_output=True,
                       timeout=PATIENCE_S, check=False)
        return list(json.loads(result.read_text(encoding="utf-8"))["checks"])


@unittest.skipIf(DRIVER is None or BROWSER is None, MISSING)
class BrowserTest(PageTest):
    def test_page_shows_requests_and_edits_an_answer(self) -> None:
        service = self.start()
        with Browser(self.folder / "browser") as browser:
            browser.open(f"http://127.0.0.1:{service.http_port}/")
            wait_until(lambda: browser.run("return document.querySelectorAll('option').length") > 60,
                       "the entries")
            self.assertEqual("none yet", browser.text("#count"))
            self.assertEqual(QUESTION, browser.run("return byId('question').value"))
            self.assertNotIn("<p>", browser.run("return byId('reply').value"))

            self.examine(service)
            wait_until(lambda: "newest first" in browser.text("#count"), "the requests")
            self.check_steps(browser, "bad-signature", "failed", 6)
            self.check_steps(browser, "stale", "failed", 4)
            self.check_steps(browser, "replayed-nonce", "failed", 7)

            browser.type("#reply", "Open the client.\n\nType <b>your</b> name.")
            browser.click("#save")
            wait_until(lambda: browser.text("#saved") == "Saved. Ask again.", "the saved answer")
            typed = [check for check in self.examine(service) if check["id"] == "ask.typed"]
            self.assertIn("QA_RESULT", typed[0]["what"])
            replies = {entry["question"]: entry["reply"] for entry in service.entries()}
            self.assertIn("Open the client.", replies[QUESTION])
            browser.type("#question", "")
            browser.click("#save")
            wait_until(lambda: "must not be empty" in browser.text("#saved"), "the refusal")

    def check_steps(self, browser: Browser, reason: str, outcome: str, place: int) -> None:
        """A request that was refused for this reason has failed at this step and reached no more."""
        steps = browser.run(
            "const found = [...document.querySelectorAll('details')].find("
            "  one => one.querySelector('summary').textContent.includes(arguments[0]));"
            "return found && [...found.querySelectorAll('li')].map(one => one.className)", reason)
        self.assertIsNotNone(steps, reason)
        self.assertEqual(["passed"] * place + [outcome] + ["notreached"] * (8 - place), steps)


class KnowledgeTest(PageTest):
    def check(self, text: str) -> tuple[int, str]:
        self.knowledge.write_text(text, encoding="utf-8")
        done = subprocess.run([DEMO_SERVICE, "--check", self.knowledge], capture_output=True,
                              text=True, timeout=PATIENCE_S, check=False)
        return done.returncode, done.stdout + done.stderr

    def test_shipped_file_is_good(self) -> None:
        status, said = self.check(KNOWLEDGE.read_text(encoding="utf-8"))
        self.assertEqual(0, status, said)
        self.assertIn("entries, all good", said)

    def test_mistakes_are_told_with_their_lines(self) -> None:
        one = '{"id":1,"question":"a [{","reply":"x \\" ["}'
        for text, line, words in (
                ('{"entries":[\n' + one + ',\n\n{"id":0,"question":"b","reply":"y"}]}', 4, "above 0"),
                ('{"note":[{}],\n"entries":[' + one + ",\n" + one + "]}", 3, "there twice"),
                ('{"entries":\n\n[\n7]}', 4, "entry number 1"),
                ('{"entries":[\n' + one + ',\n{"id":2,"question":"b","reply":"y","recommends":[9]}]}',
                 3, "recommends 9"),
                ('{"entries":[\n{"id":3,"question":"b","reply":"y","colour":1}]}', 2, "colour")):
            with self.subTest(words):
                status, said = self.check(text)
                self.assertEqual(2, status, said)
                self.assertIn(f"knowledge.json:{line}: ", said)
                self.assertIn(words, said)

    def test_broken_json_is_told_with_its_line(self) -> None:
        status, said = self.check('{"entries":[\n{"id":1,,}]}')
        self.assertEqual(2, status, said)
        self.assertIn("line 2", said)

    def test_changed_file_is_read_again_and_a_broken_one_is_not(self) -> None:
        service = self.start()
        whole = json.loads(self.knowledge.read_text(encoding="utf-8"))
        self.assertGreater(len(service.entries()), 60)
        few = [entry for entry in whole["entries"] if "recommends" not in entry][:2]
        self.knowledge.write_text(json.dumps({"entries": few}), encoding="utf-8")
        self.assertEqual(2, len(service.entries()))
        self.knowledge.write_text('{"entries":[', encoding="utf-8")
        self.assertEqual(2, len(service.entries()))
        self.assertIn("the knowledge stays as it was", service.printed())

    def test_only_the_page_itself_may_edit(self) -> None:
        service = self.start()
        body = json.dumps({"id": 1, "question": "q", "reply": "r"}).encode("ascii")
        for headers in ({"Host": "evil.invalid", "Content-Type": "application/json"},
                        {"Content-Type": "text/plain"}):
            request = urllib.request.Request(
                f"http://127.0.0.1:{service.http_port}/demo/knowledge", data=body, method="PUT",
                headers=headers)
            with self.assertRaises(urllib.error.HTTPError) as refused:
                urllib.request.urlopen(request, timeout=10)
            self.assertEqual(403, refused.exception.code)

    def test_schema_fits_the_shipped_file_and_its_members(self) -> None:
        schema = json.loads((KNOWLEDGE.parent / "knowledge.schema.json").read_text(encoding="utf-8"))
        members = schema["properties"]["entries"]["items"]["properties"]
        self.assertEqual({"id", "question", "aliases", "reply", "recommends", "hot", "noHit"},
                         set(members))
        try:
            import jsonschema
        except ImportError:
            self.skipTest("python3-jsonschema is not installed")
        jsonschema.Draft7Validator.check_schema(schema)
        validator = jsonschema.Draft7Validator(schema)
        validator.validate(json.loads(KNOWLEDGE.read_text(encoding="utf-8")))
        for wrong in ({}, {"entries": [{"id": 0, "question": "q", "reply": "r"}]},
                      {"entries": [{"id": 1, "question": "q", "reply": "r", "colour": 1}]}):
            self.assertFalse(validator.is_valid(wrong), wrong)


if __name__ == "__main__":
    unittest.main()
