#!/usr/bin/env python3
"""The drawing of the rooms tells the truth: docs/architecture.dot has the libraries and programs of
the build with the folders they lie in and what each links, the picture shows that source, and no
file includes one of a room that its own room does not use."""

from __future__ import annotations

import html
import re
import unittest
from pathlib import Path
from xml.etree import ElementTree

ROOT = Path(__file__).resolve().parents[2]
SOURCE = ROOT / "docs/architecture.dot"
PICTURE = ROOT / "docs/images/architecture.svg"
ROOMS_IN = ("app", "service", "localchannel", "locallibrary", "ui", "resources")
NO_OTHERS = {"tests", "bench", "build", "fuzz"}  # link what they like; the drawing leaves them out

Arrows = set[tuple[str, str]]

NODE = re.compile(r"^\s*(\w+) \[label=<(.*)>\];$", re.MULTILINE)
ARROW = re.compile(r"^\s*(\w+) -> (\w+);$", re.MULTILINE)
LIBRARY = re.compile(r"\bmiravel_add_library\(\s*miravel_(\w+)\s+SOURCES\b([^)]*)\)")
PROGRAM = re.compile(r"\badd_executable\(\s*(\w+)\s")
LINKED = re.compile(r"\btarget_link_libraries\(\s*(\w+)\s([^)]*)\)")
OURS = re.compile(r"\bmiravel_(\w+)")
INCLUDE = re.compile(r'^#include "([^"]+)"', re.MULTILINE)
NOT_A_ROOM = {"options"}


def drawn_nodes() -> dict[str, str]:
    """The label of each node, by its name."""
    return dict(NODE.findall(SOURCE.read_text(encoding="utf-8")))


def drawn_arrows() -> Arrows:
    return set(ARROW.findall(SOURCE.read_text(encoding="utf-8")))


def bold(label: str) -> str:
    return re.findall(r"<b>(.*?)</b>", label)[0]


def words(label: str) -> list[str]:
    """The lines of text that a label shows."""
    lines = re.split(r"<br/>", label)
    return [html.unescape(re.sub(r"<[^>]*>", "", line)) for line in lines]


class Build:
    """What the CMakeLists.txt files say."""

    def __init__(self) -> None:
        self.folders: dict[str, str] = {}
        self.programs: dict[str, str] = {}
        self.links: Arrows = set()
        for path in ROOT.rglob("CMakeLists.txt"):
            folder = path.parent.relative_to(ROOT)
            if folder.parts[:1] and folder.parts[0] in NO_OTHERS:
                continue
            self._read(path.read_text(encoding="utf-8"), str(folder))

    def _read(self, text: str, folder: str) -> None:
        text = re.sub(r"#.*", "", text)
        for name, body in LIBRARY.findall(text):
            self.folders[name] = folder
            self._link(name, body.partition("LINK")[2])
        for name in PROGRAM.findall(text):
            self.programs[name] = folder
        for name, body in LINKED.findall(text):
            self._link(name.removeprefix("miravel_"), body)

    def _link(self, name: str, body: str) -> None:
        self.links |= {(name, to) for to in OURS.findall(body) if to not in NOT_A_ROOM}


def reached(start: str, arrows: Arrows) -> set[str]:
    """The rooms below a room, itself not among them."""
    found: set[str] = set()
    waiting = [start]
    while waiting:
        here = waiting.pop()
        for origin, to in arrows:
            if origin == here and to not in found:
                found.add(to)
                waiting.append(to)
    return found


def without_what_follows(arrows: Arrows) -> Arrows:
    return {
        (origin, to)
        for origin, to in arrows
        if not any(to in reached(over, arrows) for start, over in arrows if start == origin)
    }


class ArchitectureTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        cls.build = Build()

    def test_every_room_and_program_is_drawn(self) -> None:
        self.assertGreater(len(self.build.folders), 10)
        expected = {*self.build.folders, *self.build.programs}
        self.assertEqual(expected, set(drawn_nodes()))

    def test_a_room_is_labelled_with_its_folder(self) -> None:
        labels = {name: bold(label) for name, label in drawn_nodes().items()}
        for name, folder in self.build.folders.items():
            self.assertEqual(folder, labels[name])
        for name in self.build.programs:
            self.assertTrue((ROOT / labels[name]).exists(), labels[name])

    def test_a_room_names_the_folders_in_it(self) -> None:
        for name, folder in self.build.folders.items():
            inner = sorted({p.parent.name for p in (ROOT / folder).glob("*/*.cpp")})
            small = re.findall(r'<font point-size="10">(.*?)</font>', drawn_nodes()[name])
            self.assertEqual(inner, " ".join(small).split(), folder)

    def test_the_arrows_are_the_link_lines(self) -> None:
        self.assertGreater(len(self.build.links), 20)
        self.assertEqual(sorted(self.build.links), sorted(drawn_arrows()))

    def test_no_arrow_leads_back(self) -> None:
        for name in drawn_nodes():
            self.assertNotIn(name, reached(name, drawn_arrows()))

    def test_no_file_includes_one_of_a_room_above(self) -> None:
        rooms = sorted(((f, n) for n, f in self.build.folders.items()), key=lambda r: -len(r[0]))

        def room_of(path: str) -> str | None:
            return next((name for folder, name in rooms if path.startswith(f"{folder}/")), None)

        wrong, seen = [], 0
        for top in ROOMS_IN:
            for path in sorted((ROOT / top).rglob("*.[ch]*")):
                here = str(path.relative_to(ROOT))
                room = room_of(here)
                if path.suffix not in (".h", ".cpp") or here == "app/startup/main.cpp":
                    continue
                allowed = {room} | reached(str(room), self.build.links)
                for included in INCLUDE.findall(path.read_text(encoding="utf-8")):
                    seen += 1
                    other = room_of(included)
                    if other is not None and other not in allowed:
                        wrong.append(f"{here} includes {included}")
        self.assertGreater(seen, 100)
        self.assertEqual([], wrong)

    def test_the_picture_shows_the_source(self) -> None:
        again = "draw it again: scripts/architecture.sh"
        space = {"svg": "http://www.w3.org/2000/svg"}
        groups = ElementTree.parse(PICTURE).getroot().findall(".//svg:g", space)
        titles = {"node": {}, "edge": {}}
        for group in groups:
            if group.get("class") in titles:
                title = group.findtext("svg:title", "", space)
                shown = ["".join(text.itertext()) for text in group.findall(".//svg:text", space)]
                titles[group.get("class", "")][title] = shown
        expected = {name: words(label) for name, label in drawn_nodes().items()}
        self.assertEqual(expected, titles["node"], again)
        arrows = {tuple(title.split("->")) for title in titles["edge"]}
        self.assertEqual(sorted(without_what_follows(drawn_arrows())), sorted(arrows), again)


if __name__ == "__main__":
    unittest.main()
