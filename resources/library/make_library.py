#!/usr/bin/env python3
"""Writes the local library, ../LocalQA/0.txt to 29.txt, from the entries and pictures beside this
script. With --check it writes nothing and fails when a file is not what it would write.

An entry is a text file named after its number. Blocks are parted by empty lines: the first is the
question, every other one a paragraph of the answer, whose lines become lines of the paragraph. "<b>"
and "</b>" are the only tags. A block "{picture:NAME}" is the picture pictures/NAME.png.
"""

from __future__ import annotations

import base64
import re
import sys
from pathlib import Path

FOLDER = Path(__file__).resolve().parent
LIBRARY = FOLDER.parent / "LocalQA"

LARGEST_NUMBER = 29
PICTURE = re.compile(r"\{picture:([a-z-]+)\}")
TAG = re.compile(r"</?b>")
STEP = re.compile(r"\d\. ")

# Each paragraph is a text of its own to the assistant, without a margin. Lines are blocks, because
# those have none either; steps are indented behind their numbers; a low empty line parts a paragraph
# from what follows, and from a picture before it.
STEP_STYLE = "margin-left:14px;text-indent:-14px;margin-top:2px"
GAP = '<div style="font-size:7px">&nbsp;</div>'


def refuse(entry: Path, what: str) -> None:
    sys.exit(f"{entry.name}: {what}")


def picture_paragraph(entry: Path, name: str) -> str:
    path = FOLDER / "pictures" / f"{name}.png"
    if not path.exists():
        refuse(entry, f"there is no picture {name}")
    data = base64.b64encode(path.read_bytes()).decode("ascii")
    # The assistant reads the picture up to the quote that is followed by " style=".
    return f'<p><img src="data:image/png;base64,{data}" style="width:430px"/></p>'


def line_markup(line: str) -> str:
    return f'<div style="{STEP_STYLE}">{line}</div>' if STEP.match(line) else f"<div>{line}</div>"


def check_text(entry: Path, block: str) -> None:
    plain = TAG.sub("", block)
    for mark in ("<", ">", "&", "{", "img"):  # a text with "img" in it would count as a picture
        if mark in plain:
            refuse(entry, f"{mark!r} stands in a text")
    if block.count("<b>") != block.count("</b>"):
        refuse(entry, "a <b> is not closed in its paragraph")


def paragraphs(entry: Path, blocks: list[str]) -> list[str]:
    """The paragraphs of an answer."""
    result = []
    pictures = [PICTURE.fullmatch(block) for block in blocks]
    for number, (block, picture) in enumerate(zip(blocks, pictures)):
        if picture:
            result.append(picture_paragraph(entry, picture[1]))
            continue
        check_text(entry, block)
        lines = "".join(line_markup(line.strip()) for line in block.splitlines())
        before = GAP if number > 0 and pictures[number - 1] else ""
        after = GAP if number + 1 < len(blocks) else ""
        result.append(f"<p>{before}{lines}{after}</p>")
    return result


def entry_number(entry: Path) -> int:
    number = int(entry.name.split("-", 1)[0])
    if number > LARGEST_NUMBER:
        refuse(entry, f"the largest number is {LARGEST_NUMBER}")
    return number


def library_file(entry: Path) -> str:
    question, *blocks = re.split(r"\n{2,}", entry.read_text(encoding="utf-8").strip())
    if not blocks or "\n" in question:
        refuse(entry, "a question of one line and an answer are needed")
    # Five characters that the assistant drops.
    prefix = f"问题{entry_number(entry):02}："
    check_text(entry, question)
    asked = f"<p>{prefix}{question}</p>"
    return "\n".join(['<html>', '<head><meta charset="utf-8"></head>', '<body>', asked,
                      *paragraphs(entry, blocks), '</body>', '</html>', ''])


def main() -> None:
    files = {LIBRARY / f"{entry_number(entry)}.txt": library_file(entry).encode("utf-8")
             for entry in sorted((FOLDER / "entries").glob("*.txt"))}
    if sys.argv[1:] == ["--check"]:
        present = set(LIBRARY.glob("*"))
        wrong = [path.name for path in present | set(files)
                 if path not in present or files.get(path) != path.read_bytes()]
        if wrong:
            sys.exit(f"run {Path(__file__).name} again for {', '.join(sorted(wrong))}")
        return
    LIBRARY.mkdir(exist_ok=True)
    for path, content in files.items():
        path.write_bytes(content)


if __name__ == "__main__":
    main()
