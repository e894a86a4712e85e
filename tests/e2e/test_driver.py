"""The driver's own parts: a check that cannot tell right from wrong proves nothing."""

from __future__ import annotations

import os
import sys
import tempfile
import unittest
from pathlib import Path

from PIL import Image, ImageDraw

from desktop import conversation
from desktop.child import Child
from desktop.conversation import ANSWER, QUESTION, WINDOW_SIZE
from desktop.display import HEIGHT, WIDTH, Display
from desktop.person import Person
from desktop.programlog import ProgramLog
from desktop.project import SOURCE, base_environment
from desktop.settings import Settings, quoted
from desktop.waiting import NotSeen, wait_until

sys.path.insert(0, str(SOURCE / "scripts"))
from check_results import judge, skips  # noqa: E402

SOON_S = 0.05

QUESTION_COLOUR = (223, 237, 255)
ANSWER_COLOUR = (244, 245, 248)
INK = (29, 38, 51)


def window_with(*shapes: tuple[tuple[int, int, int, int], tuple[int, int, int]]) -> Image.Image:
    """A white window with filled rectangles; corners are inclusive."""
    window = Image.new("RGB", WINDOW_SIZE, "white")
    draw = ImageDraw.Draw(window)
    for box, colour in shapes:
        draw.rectangle(box, fill=colour)
    return window


class ConversationReadingTest(unittest.TestCase):
    def test_empty_window_has_no_bubbles(self) -> None:
        self.assertEqual([], conversation.bubbles(window_with()))

    def test_bubbles_are_found_from_top_to_bottom(self) -> None:
        window = window_with(((300, 200, 567, 240), QUESTION_COLOUR),
                             ((86, 100, 554, 160), ANSWER_COLOUR),
                             ((86, 270, 554, 400), ANSWER_COLOUR))
        found = conversation.bubbles(window)
        self.assertEqual([ANSWER, QUESTION, ANSWER], [bubble.kind for bubble in found])
        self.assertEqual([(100, 161), (200, 241), (270, 401)],
                         [(bubble.top, bubble.bottom) for bubble in found])

    def test_bubble_in_another_colour_is_none(self) -> None:
        window = window_with(((86, 100, 554, 160), (244, 245, 249)))
        self.assertEqual([], conversation.bubbles(window))

    def test_bubble_below_the_list_is_none(self) -> None:
        window = window_with(((86, 500, 554, 560), ANSWER_COLOUR))
        self.assertEqual([], conversation.bubbles(window))

    def test_text_is_told_from_an_empty_bubble(self) -> None:
        empty = window_with(((86, 100, 554, 160), ANSWER_COLOUR))
        bubble = conversation.bubbles(empty)[0]
        self.assertEqual(0, conversation.ink(empty, bubble.text_box))
        written = window_with(((86, 100, 554, 160), ANSWER_COLOUR), ((100, 120, 140, 130), INK))
        self.assertGreater(conversation.ink(written, bubble.text_box), 0)

    def test_width_of_a_question_is_that_of_its_text(self) -> None:
        text_px = 140
        window = window_with(((568 - text_px - 25, 100, 567, 140), QUESTION_COLOUR))
        bubble = conversation.bubbles(window)[0]
        self.assertEqual(text_px, conversation.question_width(window, bubble))


class SettingsTest(unittest.TestCase):
    def test_value_that_would_be_cut_or_split_is_quoted(self) -> None:
        for value in ("a,b", "a;b", " a ", "", "@a"):
            self.assertEqual(f'"{value}"', quoted(value))

    def test_backslash_is_doubled(self) -> None:
        self.assertEqual(r'"C:\\temp"', quoted("C:\\temp"))

    def test_escape_does_not_swallow_what_follows(self) -> None:
        self.assertEqual(r'"\x4f60\x61z"', quoted("你az"))

    def test_base64_stays_as_it_is(self) -> None:
        self.assertEqual("ZGVtby1rZXk=", quoted("ZGVtby1rZXk="))

    def test_every_write_changes_the_size(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "a.ini"
            settings = Settings(path, {"A/b": "1"})
            before = path.stat().st_size
            settings.update({"A/b": "2"})
            self.assertNotEqual(before, path.stat().st_size)
            self.assertIn("[A]\nb=2\n", path.read_text())


class WaitingTest(unittest.TestCase):
    def test_what_never_comes_is_named(self) -> None:
        with self.assertRaisesRegex(NotSeen, "the moon"):
            wait_until(lambda: False, "the moon", SOON_S)

    def test_log_counts_only_after_the_mark_and_in_order(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "a.log"
            log = ProgramLog(path)
            self.assertFalse(log.has("one"))
            path.write_text("one two\n")
            self.assertTrue(log.has("one", "two"))
            self.assertFalse(log.has("two", "one"))
            log.mark()
            self.assertFalse(log.has("one"))

    def test_line_that_is_just_being_written_is_no_line_yet(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "a.log"
            log = ProgramLog(path)
            self.assertEqual([], log.lines())
            path.write_bytes(b"one\r\ntw")
            self.assertEqual(["one"], log.lines())
            path.write_bytes(b"one\r\ntwo\n")
            self.assertEqual(["one", "two"], log.lines())

    def test_log_that_becomes_its_backup_is_read_on(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "a.log"
            log = ProgramLog(path)
            path.write_text("one two\n")
            log.mark()
            path.write_text("one two\nthree\n")
            path.rename(path.with_name("a.log.bk"))
            self.assertTrue(log.has("three"))
            path.write_text("four\n")
            self.assertTrue(log.has("three", "four"))
            self.assertFalse(log.has("two"))
            log.mark()
            self.assertFalse(log.has("four"))

    def test_log_begun_anew_that_has_grown_past_the_mark_is_read_from_its_beginning(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "a.log"
            log = ProgramLog(path)
            path.write_text("before\n")
            log.mark()
            path.write_text("before\nfirst\n")
            path.rename(path.with_name("a.log.bk"))
            path.write_text("second, and much more than there was before\n")
            self.assertTrue(log.has("first", "second"))
            self.assertFalse(log.has("before", "first"))

    def test_of_a_log_that_became_its_backup_twice_the_rest_is_read(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "a.log"
            log = ProgramLog(path)
            path.write_text("first\n")
            log.mark()
            for text in ("second", "third"):
                path.rename(path.with_name("a.log.bk"))
                path.write_text(text)
            self.assertTrue(log.has("second", "third"))


class ChildTest(unittest.TestCase):
    def test_child_is_stopped_and_its_output_kept(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            with Child(["sh", "-c", "echo here; exec tail -f /dev/null"], env=base_environment(),
                       output=Path(folder) / "out") as child:
                wait_until(lambda: child.printed() == "here\n", "the output")
                self.assertTrue(child.alive)
            self.assertFalse(child.alive)

    def test_status_of_a_child_that_ended_by_itself(self) -> None:
        with Child(["sh", "-c", "exit 3"], env=base_environment(), output=None) as child:
            self.assertEqual(3, child.wait())


class DisplayTest(unittest.TestCase):
    def test_two_screens_at_once_are_two(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            with Display(Path(folder) / "a") as one, Display(Path(folder) / "b") as two:
                self.assertNotEqual(one.name, two.name)
                self.assertEqual((WIDTH, HEIGHT), one.shot().size)

    def test_pointer_and_windows_of_an_empty_screen(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            with Display(Path(folder)) as display, Person(display.name, Path(folder)) as person:
                self.assertEqual([], person.windows("Miravel"))
                person.point(10, 20)
                person.point(10, 20)  # moving to where it is already must not hang


class ResultsTest(unittest.TestCase):
    def judge(self, *cases: str) -> int:
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "results.xml"
            path.write_text(f"<testsuite>{''.join(cases)}</testsuite>")
            with open(os.devnull, "w") as nowhere:
                kept = sys.stdout, sys.stderr
                sys.stdout = sys.stderr = nowhere
                try:
                    return judge(str(path))
                finally:
                    sys.stdout, sys.stderr = kept

    def test_passed_tests_pass(self) -> None:
        self.assertEqual(0, self.judge('<testcase name="a" status="run"/>'))

    def test_failed_disabled_and_not_run_tests_fail(self) -> None:
        for status in ("fail", "disabled", "notrun"):
            self.assertEqual(1, self.judge('<testcase name="a" status="run"/>',
                                           f'<testcase name="b" status="{status}"/>'))

    def test_no_tests_at_all_fail(self) -> None:
        self.assertEqual(1, self.judge())

    def test_missing_results_fail(self) -> None:
        with open(os.devnull, "w") as nowhere:
            kept, sys.stderr = sys.stderr, nowhere
            try:
                self.assertEqual(1, judge("/does/not/exist.xml"))
            finally:
                sys.stderr = kept

    def test_skips_are_told_with_their_reason(self) -> None:
        output = ("PASS   : tst_A::one()\n"
                  "SKIP   : tst_A::two() needs a second screen\n"
                  "test_x (test_a.A.test_x) ... skipped 'no gateway'\n"
                  "test_y (test_a.A.test_y) ... ok\n")
        self.assertEqual(["tst_A::two(): needs a second screen", "test_x: 'no gateway'"],
                         skips(output))


if __name__ == "__main__":
    unittest.main()
