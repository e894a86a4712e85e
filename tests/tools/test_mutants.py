"""The random changes that `make mutants` tries: which they are, what they are called, what is counted."""

from __future__ import annotations

import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts/mutants"))

from bench import Outcome
from mutation import Mutation, mutations
from run import chosen, explained, summary

SOURCE = """#include "a.h"

void f(int count)
{
    show(count); // twice (or so);
    for (int i = 0; i < count; ++i) {
        take(i,
             "(;");
    }
    // i < count
    show(count); // twice (or so);
}
"""


class Changes(unittest.TestCase):
    def names(self) -> list[str]:
        return [mutation.name for mutation in mutations("f.cpp", SOURCE)]

    def test_each_kind_once(self) -> None:
        self.assertEqual(self.names(), [
            "f.cpp: removed call: show(count); // twice (or so);  ->  ;",
            "f.cpp: boundary: for (int i = 0; i < count; ++i) {  ->  "
            "for (int i = 0; i <= count; ++i) {",
            "f.cpp: sign: for (int i = 0; i < count; ++i) {  ->  for (int i = 0; i < count; --i) {",
            "f.cpp: constant: for (int i = 0; i < count; ++i) {  ->  "
            "for (int i = 1; i < count; ++i) {",
            "f.cpp: removed call: take(i, \"(;\");  ->  ;",
            "f.cpp: removed call: show(count); // twice (or so);  ->  ; (2)",
        ])

    def test_a_name_stays_when_lines_come_above(self) -> None:
        longer = SOURCE.replace("{\n", "{\n    int other;\n", 1)
        self.assertEqual([mutation.name for mutation in mutations("f.cpp", longer)], self.names())

    def test_one_statement_goes_and_nothing_else(self) -> None:
        change = next(change for change in mutations("f.cpp", SOURCE) if "take" in change.name)
        lines = SOURCE.split("\n")
        self.assertEqual(change.applied(SOURCE).split("\n"), lines[:6] + ["    ;"] + lines[8:])


class Choice(unittest.TestCase):
    def test_a_seed_gives_one_order(self) -> None:
        first = [mutation.name for mutation in chosen(1)]
        self.assertEqual([mutation.name for mutation in chosen(1)], first)
        self.assertEqual(len(set(first)), len(first))
        other = [mutation.name for mutation in chosen(2)]
        self.assertNotEqual(other, first)
        self.assertEqual(sorted(other), sorted(first))

    def test_what_is_explained_is_possible_and_has_a_reason(self) -> None:
        possible = {mutation.name for mutation in chosen(1)}
        for name, reason in explained().items():
            self.assertIn(name, possible)
            self.assertGreater(len(reason), 20, name)


class Summary(unittest.TestCase):
    def test_survivors_are_named_and_the_explained_have_their_reason(self) -> None:
        killed, explained_one, alive, broken = (
            Mutation("f.cpp", line, "sign", ("a",), (after,))
            for line, after in enumerate(("b", "c", "d", "e")))
        outcomes = {killed: Outcome("tst_f", 3), explained_one: Outcome("", 0),
                    alive: Outcome("", 7), broken: Outcome("invalid", 0)}
        self.assertEqual(summary(outcomes, {explained_one.name: "nobody sees c"}).split("\n"), [
            "explained: f.cpp:2: sign: a  ->  c", "    nobody sees c",
            "survivor: f.cpp:3: sign: a  ->  d",
            "mutants: 3 tried, 1 killed (33.3 %), 1 explained, 1 survived; "
            "1 more did not compile; 10 test programs run"])


if __name__ == "__main__":
    unittest.main()
