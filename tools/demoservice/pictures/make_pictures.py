#!/usr/bin/env python3
"""Draws the pictures of the knowledge file into the folder of this script.

Needs python3-pil and the font Noto Sans CJK (fonts-noto-cjk).
"""

import pathlib
import sys

from PIL import Image

FOLDER = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(FOLDER.parents[2] / "scripts"))

from drawing import (BLUE, GREEN, GREY, INK, LINE, MID_BLUE, RED, SOFT_BLUE, WHITE, Canvas, button,
                     cloud, cross, frame, monitor, sheet, shield, step, switch, tick,
                     toolbar_symbol, toolbar_symbol_small, window)

# The assistant shows no more of an animation's height, and scales it badly.
SHOWN_HEIGHT = 110


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
        c = Canvas(360, SHOWN_HEIGHT)
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
        c = Canvas(360, SHOWN_HEIGHT)
        frame(c)
        monitor(c, 66, 44, 56, 38)
        cloud(c, 292, 46, 0.9)
        for dot in range(5):
            x = 118 + (dot * 28 + i * 28 * 5 / count) % 130
            near = 1 - abs(x - 183) / 65
            c.disc(x, 46, 2.5 + 2.5 * near, BLUE)
        c.text(180, 92, "正在重新连接" + "." * (1 + i // 6), 13, INK, "mm")
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
