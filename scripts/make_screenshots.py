#!/usr/bin/env python3
"""Takes the pictures of every state of every window on the systems that are named ("linux", "wine")
and makes the page build/screenshots/index.html of them.

The first column is the standard. In the others the places that differ from it are framed: those of the
same size as they are, those of the double size brought down to it. Characters are drawn a little
differently everywhere; a place counts when it differs as a whole."""

from __future__ import annotations

import html
import os
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path
from typing import Sequence

from PIL import Image, ImageChops, ImageStat

from desktop.display import HEIGHT, WIDTH, Display
from desktop.project import SOURCE, base_environment

PAGE = SOURCE / "build/screenshots/states"
PROGRAMS = ("windowshots", "conversationshots")
SCALES = (1, 2)
PATIENCE_S = 300
BLOCK = 20  # px
DIFFERENT = 30  # of 255, on average over a block

Box = tuple[int, int, int, int]


def take(system: str, folder: Path, scale: int) -> None:
    with tempfile.TemporaryDirectory(prefix="miravel-") as private:
        size = (WIDTH * scale, HEIGHT * scale)  # no window is made smaller to fit
        with Display(Path(private) / "display", size=size) as display:
            display.manage_windows()
            env = {**base_environment(), "DISPLAY": display.name, "QT_SCALE_FACTOR": str(scale)}
            for program in PROGRAMS:
                run(command(system, program, folder), env)
            if system == "wine":
                end_wine()


def end_wine() -> None:
    """Wine's desktop outlives its programs and keeps the size of the display that it began on."""
    subprocess.run(["bash", "-c", "source scripts/windows/wine_environment.sh;"
                    ' env "${wine_environment[@]}" wineserver --kill; exec'
                    ' env "${wine_environment[@]}" wineserver --wait'], cwd=SOURCE, check=False,
                   timeout=PATIENCE_S)


def command(system: str, program: str, folder: Path) -> list[str | Path]:
    if system == "linux":
        return [SOURCE / "build/release/tests" / program, folder]
    exe = SOURCE / "build/windows/tests" / f"{program}.exe"
    return [SOURCE / "scripts/windows/wine_run.sh", exe, f"Z:{folder}"]


def run(words: Sequence[str | Path], env: dict[str, str]) -> None:
    done = subprocess.run([str(word) for word in words], env=env, capture_output=True, text=True,
                          errors="replace", timeout=PATIENCE_S, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{Path(words[-2]).name} ended with {done.returncode}:\n"
                           + (done.stdout + done.stderr)[-2000:])


def differences(standard: Image.Image, other: Image.Image) -> list[Box]:
    """The places of the other picture, in px of the standard, that differ from it."""
    if other.size != standard.size:
        other = other.resize(standard.size, Image.Resampling.BOX)
    difference = ImageChops.difference(standard.convert("L"), other.convert("L"))
    boxes = []
    for top in range(0, standard.height, BLOCK):
        for left in range(0, standard.width, BLOCK):
            box = (left, top, min(left + BLOCK, standard.width), min(top + BLOCK, standard.height))
            if ImageStat.Stat(difference.crop(box)).mean[0] > DIFFERENT:
                boxes.append(box)
    return joined(boxes)


def joined(boxes: list[Box]) -> list[Box]:
    """Neighbours in a row become one place."""
    rows: list[Box] = []
    for box in boxes:
        if rows and rows[-1][1] == box[1] and rows[-1][2] == box[0]:
            rows[-1] = (rows[-1][0], box[1], box[2], box[3])
        else:
            rows.append(box)
    return rows


def cell(name: str, column: str, size: tuple[int, int], boxes: list[Box]) -> str:
    width, height = size
    marks = "".join(
        f'<i style="left:{100 * left / width:.2f}%;top:{100 * top / height:.2f}%;'
        f'width:{100 * (right - left) / width:.2f}%;height:{100 * (bottom - top) / height:.2f}%">'
        "</i>" for left, top, right, bottom in boxes)
    path = html.escape(f"{column}/{name}")
    return (f'<td><a href="states/{path}"><img loading="lazy" src="states/{path}" alt="{path}">'
            f"{marks}</a></td>")


def page(columns: list[str]) -> str:
    names = sorted({path.name for path in PAGE.glob("*/*.png")})
    rows = []
    marked = 0
    for name in names:
        standard = Image.open(PAGE / columns[0] / name)
        cells = []
        for column in columns:
            file = PAGE / column / name
            if not file.exists():
                cells.append("<td>missing</td>")
                marked += 1
                continue
            boxes = [] if column == columns[0] else differences(standard, Image.open(file))
            marked += 1 if boxes else 0
            cells.append(cell(name, column, standard.size, boxes))
        rows.append(f"<tr><th>{html.escape(name[:-4])}</th>{''.join(cells)}</tr>")
    head = "".join(f"<th>{html.escape(column)} %</th>" for column in columns)
    print(f"screenshots: {len(names)} states, {marked} pictures with marked differences")
    return f"""<!DOCTYPE html>
<html lang="en"><meta charset="utf-8"><title>Every state of every window</title>
<style>
body {{ font: 14px sans-serif; background: #667; color: white; }}
th {{ vertical-align: top; text-align: left; padding: 4px; position: sticky; left: 0; top: 0; }}
a {{ position: relative; display: inline-block; }}
img {{ display: block; max-width: 640px; }}
i {{ position: absolute; border: 1px solid red; background: rgba(255, 0, 0, 0.15); }}
.plain i {{ display: none; }}
</style>
<p>{len(names)} states. Red: differs from {html.escape(columns[0])} %.
<label><input type="checkbox" onchange="document.body.classList.toggle('plain', this.checked)">
hide the marks</label></p>
<table><tr><th></th>{head}</tr>
{chr(10).join(rows)}
</table></html>
"""


def main() -> int:
    systems = sys.argv[1:] or ["linux"]
    shutil.rmtree(PAGE, ignore_errors=True)
    columns = []
    for system in systems:
        for scale in SCALES:
            column = f"{system}-{100 * scale}"
            folder = PAGE / column
            folder.mkdir(parents=True)
            take(system, folder, scale)
            columns.append(column)
    index = PAGE.parent / "index.html"
    index.write_text(page(columns), encoding="utf-8")
    print(os.path.relpath(index))
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except (RuntimeError, subprocess.TimeoutExpired) as error:
        print(f"screenshots: {error}", file=sys.stderr)
        sys.exit(1)
