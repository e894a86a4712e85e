"""What the scripts that draw pictures with words in them share: a canvas and a few things to draw.

Needs python3-pil and the font Noto Sans CJK (fonts-noto-cjk). Everything is drawn at four times its
size and scaled down, which smooths all edges.
"""

import pathlib

from PIL import Image, ImageDraw, ImageFont

FONTS = pathlib.Path("/usr/share/fonts/opentype/noto")
SIMPLIFIED_CHINESE = 2  # face number inside the font collection
SCALE = 4

BLUE = (42, 100, 244)
SOFT_BLUE = (223, 237, 255)
MID_BLUE = (150, 184, 250)
INK = (29, 38, 51)
GREY = (117, 125, 138)
LINE = (214, 221, 232)
PAPER = (247, 249, 253)
WHITE = (255, 255, 255)
GREEN = (38, 166, 122)
RED = (228, 92, 84)


class Canvas:
    """A drawing surface in final pixels."""

    def __init__(self, width, height, background=PAPER):
        self.width, self.height = width, height
        self.image = Image.new("RGB", (width * SCALE, height * SCALE), background)
        self.draw = ImageDraw.Draw(self.image)

    @staticmethod
    def _up(*values):
        return [round(value * SCALE) for value in values]

    def box(self, x, y, w, h, fill=WHITE, outline=LINE, radius=8, stroke=1.2):
        self.draw.rounded_rectangle(
            self._up(x, y, x + w, y + h), radius * SCALE, fill, outline,
            round(stroke * SCALE) if outline else 0)

    def disc(self, x, y, r, fill=BLUE, outline=None, stroke=1.2):
        self.draw.ellipse(self._up(x - r, y - r, x + r, y + r), fill, outline,
                          round(stroke * SCALE) if outline else 0)

    def line(self, points, fill=BLUE, stroke=2.0):
        flat = [tuple(self._up(*point)) for point in points]
        self.draw.line(flat, fill, round(stroke * SCALE), joint="curve")
        for x, y in flat:  # round ends
            r = stroke * SCALE / 2
            self.draw.ellipse((x - r, y - r, x + r, y + r), fill)

    def shape(self, points, fill=BLUE):
        self.draw.polygon([tuple(self._up(*point)) for point in points], fill)

    def arc(self, x, y, r, start, end, fill=BLUE, stroke=2.0):
        self.draw.arc(self._up(x - r, y - r, x + r, y + r), start, end, fill,
                      round(stroke * SCALE))

    def text(self, x, y, text, size=14, fill=INK, anchor="lm", bold=False):
        name = "NotoSansCJK-Bold.ttc" if bold else "NotoSansCJK-Regular.ttc"
        font = ImageFont.truetype(str(FONTS / name), size * SCALE, index=SIMPLIFIED_CHINESE)
        self.draw.text(self._up(x, y), text, fill, font, anchor)

    def done(self, factor=1):
        """The picture, at factor times its size."""
        size = (self.width * factor, self.height * factor)
        return self.image.resize(size, Image.LANCZOS)


def frame(canvas):
    canvas.box(0.6, 0.6, canvas.width - 1.2, canvas.height - 1.2, PAPER, LINE, 10)


def window(canvas, x, y, w, h, title):
    canvas.box(x, y, w, h, WHITE, LINE, 9)
    canvas.box(x, y, w, 30, SOFT_BLUE, LINE, 9)
    canvas.draw.rectangle(canvas._up(x + 0.8, y + 20, x + w - 1, y + 30), SOFT_BLUE)
    canvas.line([(x + 1, y + 30), (x + w - 1, y + 30)], LINE, 1)
    canvas.text(x + 14, y + 15, title, 12, INK, bold=True)
    for i in range(3):
        canvas.disc(x + w - 16 - 16 * i, y + 15, 4, MID_BLUE)


def button(canvas, x, y, w, h, text, primary=True):
    canvas.box(x, y, w, h, BLUE if primary else WHITE, None if primary else LINE, 5)
    canvas.text(x + w / 2, y + h / 2 - 0.5, text, 12, WHITE if primary else INK, "mm")


def cloud(canvas, x, y, size=1.0, fill=SOFT_BLUE, outline=BLUE):
    lobes = [(-20, 4, 13), (-4, -8, 17), (16, 0, 15)]
    if outline:
        for dx, dy, r in lobes:
            canvas.disc(x + dx * size, y + dy * size, r * size + 2, outline)
        canvas.box(x - 33 * size - 2, y + 0 * size, 66 * size + 4, 18 * size + 2, outline, None,
                   9 * size)
    for dx, dy, r in lobes:
        canvas.disc(x + dx * size, y + dy * size, r * size, fill)
    canvas.box(x - 33 * size, y + 1 * size, 66 * size, 17 * size, fill, None, 8.5 * size)


def monitor(canvas, x, y, w, h, fill=SOFT_BLUE, outline=BLUE):
    canvas.box(x - w / 2, y - h / 2, w, h, fill, outline, 5, 2)
    canvas.line([(x, y + h / 2), (x, y + h / 2 + 8)], outline, 3)
    canvas.line([(x - w / 5, y + h / 2 + 9), (x + w / 5, y + h / 2 + 9)], outline, 2.5)


def tick(canvas, x, y, size=1.0, fill=WHITE):
    canvas.line([(x - 4 * size, y), (x - 1 * size, y + 3 * size), (x + 4.5 * size, y - 3.5 * size)],
                fill, 1.8 * size)


def cross(canvas, x, y, size=1.0, fill=WHITE):
    canvas.line([(x - 3.2 * size, y - 3.2 * size), (x + 3.2 * size, y + 3.2 * size)], fill,
                1.8 * size)
    canvas.line([(x - 3.2 * size, y + 3.2 * size), (x + 3.2 * size, y - 3.2 * size)], fill,
                1.8 * size)


def switch(canvas, x, y, on):
    canvas.box(x, y - 8, 32, 16, BLUE if on else LINE, None, 8)
    canvas.disc(x + (24 if on else 8), y, 6, WHITE)


def step(canvas, x, y, number):
    canvas.disc(x, y, 9, BLUE)
    canvas.text(x, y - 0.5, str(number), 11, WHITE, "mm", True)


def toolbar_symbol(c, number, x, y, ink):
    if number == 0:
        for sx in (-1, 1):
            for sy in (-1, 1):
                c.line([(x + 8 * sx, y + 3 * sy), (x + 8 * sx, y + 7 * sy), (x + 4 * sx, y + 7 * sy)],
                       ink, 1.6)
    elif number == 1:
        c.line([(x, y + 8), (x, y - 8)], ink, 1.6)
        c.shape([(x - 3, y - 6), (x + 3, y - 6), (x, y - 11)], ink)
        c.line([(x, y + 4), (x - 6, y), (x - 6, y - 3)], ink, 1.6)
        c.line([(x, y + 1), (x + 6, y - 3), (x + 6, y - 6)], ink, 1.6)
        c.disc(x, y + 8, 2.6, ink)
    elif number == 2:
        c.box(x - 7, y - 7, 14, 16, WHITE, ink, 2, 1.6)
        c.box(x - 4, y - 10, 8, 5, ink, None, 2)
        c.line([(x - 3, y), (x + 3, y)], ink, 1.2)
        c.line([(x - 3, y + 4), (x + 3, y + 4)], ink, 1.2)
    elif number == 3:
        c.shape([(x - 9, y - 3), (x - 5, y - 3), (x + 1, y - 8), (x + 1, y + 8), (x - 5, y + 3),
                 (x - 9, y + 3)], ink)
        c.arc(x + 1, y, 6, -50, 50, ink, 1.6)
        c.arc(x + 1, y, 10, -50, 50, ink, 1.6)
    elif number == 4:
        c.box(x - 11, y - 7, 22, 15, WHITE, ink, 3, 1.6)
        for i in range(3):
            c.disc(x - 6 + 6 * i, y - 2, 1.2, ink)
        c.line([(x - 5, y + 3.5), (x + 5, y + 3.5)], ink, 1.4)
    else:
        c.arc(x, y, 8, -60, 240, ink, 1.8)
        c.line([(x, y - 10), (x, y - 1)], ink, 1.8)


def sheet(c, x, y, lines=4):
    c.box(x, y, 56, 70, WHITE, BLUE, 5, 1.8)
    for i in range(lines):
        c.line([(x + 11, y + 18 + 12 * i), (x + (45 if i % 2 == 0 else 36), y + 18 + 12 * i)],
               MID_BLUE, 2.4)


def toolbar_symbol_small(c, x, y):
    c.box(x - 4, y - 2, 8, 9, BLUE, None, 1.5)
    c.box(x - 2.6, y - 7, 5.2, 5, WHITE, BLUE, 0.5, 1.2)


def shield(c, x, y, size, fill):
    """A shield whose sides curve down to its point."""
    start, pull, end = (40, -14), (40, 32), (0, 52)
    side = []
    for i in range(21):
        t = i / 20
        a, b, d = (1 - t) ** 2, 2 * t * (1 - t), t ** 2
        side.append((a * start[0] + b * pull[0] + d * end[0],
                     a * start[1] + b * pull[1] + d * end[1]))
    right = [(0, -52), (40, -38)] + side
    left = [(-dx, dy) for dx, dy in reversed(right)]
    c.shape([(x + dx * size, y + dy * size) for dx, dy in right + left], fill)
