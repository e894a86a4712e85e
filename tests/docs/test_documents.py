#!/usr/bin/env python3
"""The documents name what is there: every link leads to a file and a heading, every path and every
operation of a class of ours that is set as code exists."""

from __future__ import annotations

import functools
import re
import subprocess
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DOCUMENTS = sorted([*ROOT.glob("*.md"), *(ROOT / "docs").glob("*.md")])

BLOCK = re.compile(r"^ *```.*?^ *```", re.MULTILINE | re.DOTALL)
OPENING = re.compile(r"^ *```(.*)\n((?:.*\n)*?) *```", re.MULTILINE)
INDENTED = re.compile(r"^(?:    )(?:make|scripts/|\.ci/|python3|build/)\S*", re.MULTILINE)
# What a block may be. "sh" and "python" are run by scripts/check_docs.py: as they stand, in a folder of
# their own, or as a service; "ci" is run by .ci/run, an example by nobody.
LABELS = {"sh", "sh scratch", "sh service", "sh ci", "sh example", "python", "python example",
          "text", "ini", "json", "html"}
MAKE = re.compile(r"^make(?: ([a-z-]+))?(?: |$)")
LINK = re.compile(r"\]\(([^)\s]+)\)")
CODE = re.compile(r"`([^`\n]+)`")
HEADING = re.compile(r"^#+ (.*)$", re.MULTILINE)
PATH = re.compile(r"(?<![\w./<$-])((?:[\w.*-]+/)+[\w.*-]*)(?![\w/<>])")
OPERATION = re.compile(r"^(\w+)::(\w+)\(\)$")
TYPE = re.compile(r"^\s*(?:class|struct|enum class)\s+(\w+)\b[^;]*$", re.MULTILINE)


def prose(document: Path) -> str:
    return BLOCK.sub("", document.read_text(encoding="utf-8"))


def anchors(document: Path) -> set[str]:
    """The headings as links name them."""
    words = (re.sub(r"[^\w\- ]", "", heading.lower()) for heading in HEADING.findall(prose(document)))
    return {heading.replace(" ", "-") for heading in words}


@functools.lru_cache
def tracked() -> list[str]:
    """Every file of the sources: from git, or from the folders of a copy without history."""
    listed = subprocess.run(
        ["git", "ls-files", "--cached", "--others", "--exclude-standard"],
        cwd=ROOT, capture_output=True, text=True, check=False,
    )
    if listed.returncode == 0 and listed.stdout:
        return [name for name in listed.stdout.splitlines() if (ROOT / name).is_file()]
    return [str(path.relative_to(ROOT)) for path in ROOT.rglob("*") if path.is_file()]


@functools.lru_cache
def top_folders() -> set[str]:
    return {name.partition("/")[0] for name in tracked() if "/" in name}


@functools.lru_cache
def headers() -> dict[str, str]:
    """The text of the header that declares a type, by the type's name."""
    found = {}
    for name in tracked():
        if name.endswith(".h"):
            text = (ROOT / name).read_text(encoding="utf-8")
            found.update({declared: text for declared in TYPE.findall(text)})
    return found


def exists(path: str) -> bool:
    return any(ROOT.glob(path.rstrip("/"))) if "*" in path else (ROOT / path).exists()


class DocumentsTest(unittest.TestCase):
    def test_every_link_leads_somewhere(self) -> None:
        wrong, seen = [], 0
        for document in DOCUMENTS:
            for link in LINK.findall(prose(document)):
                if re.match(r"[a-z]+:", link):
                    continue
                seen += 1
                path, _, anchor = link.partition("#")
                target = (document.parent / path).resolve() if path else document
                if not target.exists() or (anchor and anchor not in anchors(target)):
                    wrong.append(f"{document.name}: {link}")
        self.assertGreater(seen, 10)
        self.assertEqual([], wrong)

    def test_every_path_exists(self) -> None:
        wrong, seen = [], 0
        for document in DOCUMENTS:
            text = document.read_text(encoding="utf-8")
            for code in [*CODE.findall(prose(document)), *BLOCK.findall(text)]:
                for path in PATH.findall(code):
                    if path.partition("/")[0] not in top_folders():
                        continue  # of an installation, of the build, or of something else
                    seen += 1
                    if not exists(path):
                        wrong.append(f"{document.name}: {path}")
        self.assertGreater(seen, 50)
        self.assertEqual([], wrong)

    def test_every_block_says_what_it_is(self) -> None:
        seen = set()
        for document in DOCUMENTS:
            text = document.read_text(encoding="utf-8")
            for label, body in OPENING.findall(text):
                seen.add(label)
                self.assertIn(label, LABELS, f"{document.name}: {body[:60]}")
            self.assertEqual([], INDENTED.findall(BLOCK.sub("", text)),
                             f"{document.name}: commands stand in blocks that say what they are")
        self.assertLessEqual({"sh", "sh ci", "sh example", "text"}, seen)

    def test_what_the_check_runs_is_in_it(self) -> None:
        """The check calls the targets of make, or the scripts behind them."""
        check = (ROOT / ".ci/run").read_text(encoding="utf-8")
        makefile = (ROOT / "Makefile").read_text(encoding="utf-8")
        recipes = dict(re.findall(r"^([a-z-]+):.*\n\t(.*)$", makefile, re.MULTILINE))
        for document in DOCUMENTS:
            for label, body in OPENING.findall(document.read_text(encoding="utf-8")):
                for line in body.splitlines() if label == "sh ci" else []:
                    command = line.partition("#")[0].strip()
                    target = command.removeprefix("make ")
                    script = recipes.get(target, command)
                    self.assertTrue(command in check or script in check,
                                    f"{document.name}: {command}")

    def test_every_target_of_make_exists(self) -> None:
        makefile = (ROOT / "Makefile").read_text(encoding="utf-8")
        targets = set(re.findall(r"^([a-z-]+):", makefile, re.MULTILINE))
        named = set()
        for document in DOCUMENTS:
            text = document.read_text(encoding="utf-8")
            lines = [line.strip() for _, body in OPENING.findall(text) for line in body.splitlines()]
            for code in [*CODE.findall(prose(document)), *lines]:
                match = MAKE.match(code)
                if match and match[1]:
                    named.add(match[1])
        self.assertEqual(set(), named - targets)
        self.assertGreater(len(named), 10)

    def test_pictures_are_small(self) -> None:
        sizes = {path.name: path.stat().st_size for path in (ROOT / "docs/images").iterdir()}
        self.assertIn("asking.gif", sizes)
        self.assertEqual({}, {name: size for name, size in sizes.items() if size >= 1024 * 1024})

    def test_every_operation_exists(self) -> None:
        wrong, seen = [], 0
        for document in DOCUMENTS:
            for code in CODE.findall(prose(document)):
                match = OPERATION.match(code)
                if match is None or (code.startswith("Q") and match[1] not in headers()):
                    continue  # of Qt
                seen += 1
                if not re.search(rf"\b{match[2]}\(", headers().get(match[1], "")):
                    wrong.append(f"{document.name}: {code}")
        self.assertGreater(seen, 8)
        self.assertEqual([], wrong)


if __name__ == "__main__":
    unittest.main()
