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
