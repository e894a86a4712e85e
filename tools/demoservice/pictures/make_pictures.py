#!/usr/bin/env python3
"""Draws the pictures of the knowledge file into the folder of this script.

Needs python3-pil and the font Noto Sans CJK (fonts-noto-cjk). Everything is drawn at four times its
size and scaled down, which smooths all edges.
"""

import pathlib

from PIL import Image, ImageDraw, ImageFont

FOLDER = pathlib.Path(__file__).resolve().parent
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

    def done(self):
        return self.image.resize((self.width, self.height), Image.LANCZOS)


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


def login():
    c = Canvas(400, 232)
    frame(c)
    window(c, 60, 18, 280, 196, "桌面客户端")
    cloud(c, 200, 72, 0.55)
    for number, y, label in ((1, 98, "用户名"), (2, 132, "密码")):
        c.box(108, y, 196, 26, WHITE, LINE, 4)
        c.text(118, y + 12.5, label, 12, GREY)
        step(c, 88, y + 13, number)
    for i in range(6):
        c.disc(166 + 10 * i, 145, 2.4, INK)
    c.line([(166, 104), (166, 118)], BLUE, 1.2)
    button(c, 108, 170, 196, 28, "登 录")
    step(c, 88, 184, 3)
    return c.done()


def toolbar():
    c = Canvas(460, 126)
    frame(c)
    c.box(20, 20, 420, 58, WHITE, LINE, 12)
    names = ["全屏", "USB", "剪贴板", "音量", "发送 C-A-D", "断开"]
    for i, name in enumerate(names):
        x = 58 + 69 * i
        active = i == 4
        c.box(x - 30, 24, 60, 50, SOFT_BLUE if active else WHITE, BLUE if active else None, 8, 1.6)
        ink = BLUE if active else GREY
        toolbar_symbol(c, i, x, 40, ink)
        c.text(x, 64, name, 10, INK if active else GREY, "mm")
    c.line([(334, 100), (334, 84)], BLUE, 1.6)
    c.shape([(329, 87), (339, 87), (334, 80)])
    c.text(334, 109, "点击这里发送 Ctrl + Alt + Del", 12, BLUE, "mm")
    return c.done()


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


def network():
    c = Canvas(440, 150)
    frame(c)
    monitor(c, 70, 58, 62, 42)
    c.text(70, 118, "本地电脑", 12, INK, "mm")
    c.box(192, 36, 56, 44, WHITE, BLUE, 6, 2)
    for i in range(2):
        c.disc(204, 50 + 16 * i, 3, GREEN)
        c.line([(214, 50 + 16 * i), (238, 50 + 16 * i)], MID_BLUE, 2)
    c.text(220, 118, "接入网关", 12, INK, "mm")
    cloud(c, 372, 60, 1.0)
    c.text(372, 118, "云桌面", 12, INK, "mm")
    c.line([(112, 60), (182, 60)], GREEN, 2.4)
    c.disc(147, 60, 10, GREEN)
    tick(c, 147, 60)
    for i in range(6):
        c.line([(258 + 12 * i, 60), (263 + 12 * i, 60)], RED, 2.4)
    c.disc(292, 60, 10, RED)
    cross(c, 292, 60)
    c.text(292, 86, "先检查这一段", 11, RED, "mm")
    return c.done()


def sheet(c, x, y, lines=4):
    c.box(x, y, 56, 70, WHITE, BLUE, 5, 1.8)
    for i in range(lines):
        c.line([(x + 11, y + 18 + 12 * i), (x + (45 if i % 2 == 0 else 36), y + 18 + 12 * i)],
               MID_BLUE, 2.4)


def clipboard():
    c = Canvas(420, 160)
    frame(c)
    sheet(c, 54, 30)
    c.text(82, 124, "本地文件", 12, INK, "mm")
    c.box(308, 24, 76, 82, SOFT_BLUE, None, 10)
    sheet(c, 318, 30)
    c.text(346, 124, "云桌面文件", 12, INK, "mm")
    for y, sign, label in ((48, 1, "Ctrl + C"), (84, -1, "Ctrl + V")):
        left, right = 142, 278
        c.line([(left, y), (right, y)], BLUE, 2)
        tip = right if sign > 0 else left
        c.shape([(tip + 8 * sign, y), (tip - 3 * sign, y - 6), (tip - 3 * sign, y + 6)])
        c.box(176, y - 12, 68, 24, WHITE, LINE, 6)
        c.text(210, y - 0.5, label, 12, BLUE, "mm")
    return c.done()


def display():
    c = Canvas(420, 206)
    frame(c)
    monitor(c, 130, 74, 132, 84)
    monitor(c, 290, 74, 132, 84, WHITE)
    for x, number in ((130, "1"), (290, "2")):
        c.text(x, 72, number, 34, BLUE, "mm", True)
    c.text(130, 146, "主显示器", 12, INK, "mm")
    c.text(290, 146, "扩展显示器", 12, INK, "mm")
    c.box(104, 162, 52, 24, BLUE, None, 5)
    c.text(130, 173.5, "标识", 12, WHITE, "mm")
    c.box(166, 162, 150, 24, WHITE, LINE, 5)
    c.text(178, 173.5, "1920 × 1080（推荐）", 11, INK)
    return c.done()


def usb():
    c = Canvas(400, 190)
    frame(c)
    window(c, 30, 16, 340, 158, "外设管理")
    rows = (("U 盘  资料 32 GB", True), ("扫描仪  S-2000", True), ("加密锁  UKey", False))
    for i, (name, on) in enumerate(rows):
        y = 70 + 36 * i
        c.box(48, y - 11, 22, 22, SOFT_BLUE, None, 5)
        toolbar_symbol_small(c, 59, y)
        c.text(82, y - 0.5, name, 12, INK)
        c.text(286, y - 0.5, "云桌面" if on else "本地", 11, BLUE if on else GREY, "rm")
        switch(c, 312, y, on)
        if i < 2:
            c.line([(48, y + 18), (352, y + 18)], LINE, 0.8)
    return c.done()


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


def certificate():
    c = Canvas(400, 184)
    frame(c)
    shield(c, 86, 84, 1.0, BLUE)
    shield(c, 86, 84, 0.8, SOFT_BLUE)
    tick(c, 85, 85, 3.2, BLUE)
    c.text(160, 44, "服务器证书", 15, INK, bold=True)
    rows = (("颁发给", "desktop.example"), ("颁发者", "公司根证书"), ("有效期至", "2030-12-31"))
    for i, (name, value) in enumerate(rows):
        y = 74 + 26 * i
        c.text(160, y, name, 12, GREY)
        c.text(226, y, value, 12, INK)
        c.line([(160, y + 13), (368, y + 13)], LINE, 0.8)
    c.disc(168, 158, 7, GREEN)
    tick(c, 168, 158, 0.8)
    c.text(182, 157, "证书可信，连接是安全的", 12, GREEN)
    return c.done()


def sound():
    c = Canvas(380, 150)
    frame(c)
    for i, (name, value) in enumerate((("扬声器", 0.7), ("麦克风", 0.45))):
        y = 48 + 54 * i
        c.disc(48, y, 18, SOFT_BLUE)
        if i == 0:
            toolbar_symbol(c, 3, 48, y, BLUE)
        else:
            c.box(44, y - 11, 8, 14, BLUE, None, 4)
            c.arc(48, y - 2, 8, 10, 170, BLUE, 1.6)
            c.line([(48, y + 6), (48, y + 10)], BLUE, 1.6)
        c.text(80, y - 0.5, name, 13, INK)
        c.line([(140, y), (320, y)], LINE, 4)
        c.line([(140, y), (140 + 180 * value, y)], BLUE, 4)
        c.disc(140 + 180 * value, y, 8, WHITE, BLUE, 2)
        c.text(354, y - 0.5, str(round(100 * value)), 12, GREY, "rm")
    return c.done()


def snapshot():
    c = Canvas(440, 150)
    frame(c)
    c.line([(50, 62), (390, 62)], MID_BLUE, 3)
    points = ((70, "初始", "3月1日"), (170, "装好软件", "3月8日"), (270, "升级前", "4月2日"),
              (370, "现在", "今天"))
    for i, (x, name, day) in enumerate(points):
        now = i == 3
        c.disc(x, 62, 9 if now else 8, BLUE if now else WHITE, BLUE, 2)
        c.text(x, 90, name, 12, INK, "mm", now)
        c.text(x, 110, day, 11, GREY, "mm")
    c.arc(320, 58, 50, 205, 335, GREEN, 2.2)
    c.shape([(268, 44), (279, 34), (280, 45)], GREEN)
    c.text(320, 26, "恢复", 12, GREEN, "mm")
    c.text(220, 133, "恢复后，快照之后的改动会丢失", 11, GREY, "mm")
    return c.done()


def desk():
    c = Canvas(480, 270, SOFT_BLUE)
    for y in range(270):
        t = y / 269
        mix = tuple(round(a + (b - a) * t) for a, b in zip((206, 224, 255), (247, 250, 255)))
        c.draw.rectangle(c._up(0, y, 480, y + 1), mix)
    c.disc(392, 62, 26, WHITE)
    c.shape([(0, 214), (110, 150), (200, 184), (300, 160), (480, 222), (480, 270), (0, 270)],
            (190, 211, 250))
    c.box(0, 222, 480, 50, (232, 240, 254), None, 0)
    monitor(c, 240, 132, 220, 136, WHITE)
    c.box(136, 70, 208, 108, SOFT_BLUE, None, 3)
    c.box(136, 166, 208, 14, BLUE, None, 3)
    cloud(c, 240, 116, 1.15, WHITE)
    for i in range(4):
        c.box(146 + 16 * i, 169.5, 8, 7, WHITE, None, 2)
    c.box(176, 224, 128, 14, WHITE, LINE, 5)
    for i in range(9):
        c.box(182 + 13 * i, 228, 9, 6, SOFT_BLUE, None, 1.5)
    c.box(330, 222, 20, 16, WHITE, LINE, 7)
    c.box(88, 196, 30, 40, WHITE, LINE, 5)
    c.arc(122, 214, 9, -90, 90, LINE, 2.5)
    return c.done()


def progress_frames():
    count = 20
    for i in range(count + 6):
        done = min(i / count, 1.0)
        c = Canvas(360, 110)
        frame(c)
        c.text(24, 34, "正在更新桌面客户端…" if done < 1 else "更新完成，请重新登录", 13, INK)
        c.text(336, 34, f"{round(done * 100)}%", 13, BLUE, "rm", True)
        c.line([(28, 70), (332, 70)], LINE, 9)
        if done > 0:
            c.line([(28, 70), (28 + 304 * done, 70)], GREEN if done == 1 else BLUE, 9)
        yield c.done()


def reconnect_frames():
    count = 18
    for i in range(count):
        c = Canvas(360, 140)
        frame(c)
        monitor(c, 66, 56, 62, 42)
        cloud(c, 292, 58, 1.0)
        for dot in range(5):
            x = 118 + (dot * 28 + i * 28 * 5 / count) % 130
            near = 1 - abs(x - 183) / 65
            c.disc(x, 58, 2.5 + 2.5 * near, BLUE)
        c.text(180, 116, "正在重新连接" + "." * (1 + i // 6), 13, INK, "mm")
        yield c.done()


def save_animation(name, frames, ms):
    # One palette for all frames keeps the colours from flickering.
    frames = list(frames)
    sheet_of_all = Image.new("RGB", (frames[0].width, frames[0].height * 3))
    for i, at in enumerate((0, len(frames) // 2, len(frames) - 1)):
        sheet_of_all.paste(frames[at], (0, i * frames[0].height))
    palette = sheet_of_all.quantize(96)
    reduced = [one.quantize(palette=palette, dither=Image.Dither.NONE) for one in frames]
    reduced[0].save(FOLDER / name, save_all=True, append_images=reduced[1:], duration=ms, loop=0,
                    optimize=False)


def main():
    stills = {"login": login, "toolbar": toolbar, "network": network, "clipboard": clipboard,
              "display": display, "usb": usb, "certificate": certificate, "sound": sound,
              "snapshot": snapshot}
    for name, draw in stills.items():
        draw().save(FOLDER / f"{name}.png", optimize=True)
    desk().save(FOLDER / "desk.jpg", quality=88, optimize=True)
    save_animation("progress.gif", progress_frames(), 120)
    save_animation("reconnect.gif", reconnect_frames(), 80)


if __name__ == "__main__":
    main()
