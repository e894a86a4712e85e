#!/usr/bin/env python3
"""Draws the pictures of the local library into the folder "pictures" beside this script.

Needs python3-pil and the font Noto Sans CJK (fonts-noto-cjk). Two runs write the same bytes. An
answer shows at most 430 x 110 px of a picture; they are drawn at twice that size, for the preview
window and for sharp displays.
"""

import pathlib
import sys

from PIL import Image

FOLDER = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(FOLDER.parents[1] / "scripts"))

from drawing import (BLUE, GREEN, GREY, INK, LINE, MID_BLUE, PAPER, RED, SOFT_BLUE, WHITE, Canvas,
                     button, cloud, cross, frame, monitor, sheet, step, switch, tick,
                     toolbar_symbol)

WIDTH, HEIGHT = 430, 110  # px of an answer
SHARPNESS = 2
COLOURS = 256


def card():
    c = Canvas(WIDTH, HEIGHT)
    frame(c)
    return c


def arrow(c, x1, x2, y, fill=BLUE):
    tip = 1 if x2 > x1 else -1
    c.line([(x1, y), (x2 - 4 * tip, y)], fill, 2)
    c.shape([(x2, y), (x2 - 8 * tip, y - 5), (x2 - 8 * tip, y + 5)], fill)


def dashes(c, x1, x2, y, fill=RED):
    for x in range(x1, x2, 11):
        c.line([(x, y), (x + 4, y)], fill, 2.2)


def verdict(c, x, y, good):
    c.disc(x, y, 9, GREEN if good else RED)
    (tick if good else cross)(c, x, y)


def gateway(c, x, y):
    c.box(x - 24, y - 18, 48, 36, WHITE, BLUE, 6, 2)
    for row in (-8, 8):
        c.disc(x - 14, y + row, 3, GREEN)
        c.line([(x - 6, y + row), (x + 16, y + row)], MID_BLUE, 2)


def login():
    c = card()
    fields = ((1, "用户名", "zhangsan"), (2, "密码", ""), (3, "", ""), (4, "", ""))
    for number, label, value in fields[:2]:
        x = 34 + 116 * (number - 1)
        c.box(x - 16, 42, 104, 30, WHITE, LINE, 5)
        c.text(x - 8, 57, value, 12, INK)
        c.text(x + 4, 26, label, 12, GREY)
        step(c, x - 8, 26, number)
    for dot in range(6):
        c.disc(144 + 10 * dot, 57.5, 2.6, INK)
    step(c, 258, 26, 3)
    button(c, 250, 42, 62, 30, "登 录")
    arrow(c, 320, 340, 57)
    step(c, 360, 22, 4)
    monitor(c, 382, 52, 62, 40, WHITE)
    cloud(c, 382, 52, 0.5)
    c.text(215, 93, "先联网（在外面先连 VPN），再按 1 至 4 的顺序操作", 11, GREY, "mm")
    return c


def segments():
    c = card()
    monitor(c, 52, 40, 54, 36)
    gateway(c, 212, 42)
    cloud(c, 376, 44, 0.85)
    for x, name in ((52, "您的电脑"), (212, "接入网关"), (376, "云桌面")):
        c.text(x, 84, name, 12, INK, "mm")
    arrow(c, 92, 178, 42, GREEN)
    dashes(c, 248, 330, 42)
    verdict(c, 134, 42, True)
    verdict(c, 290, 42, False)
    c.text(134, 66, "① 本地网络", 11, GREEN, "mm")
    c.text(290, 66, "② 先断的一段", 11, RED, "mm")
    return c


def vpn():
    c = card()
    monitor(c, 48, 40, 54, 36)
    cloud(c, 380, 44, 0.85)
    c.box(116, 24, 198, 36, SOFT_BLUE, BLUE, 18, 1.6)
    c.text(226, 41, "NORVIK VPN", 13, BLUE, "mm", True)
    c.box(142, 34, 16, 13, BLUE, None, 3)
    c.arc(150, 34, 5, 180, 360, BLUE, 2)
    arrow(c, 84, 112, 42)
    arrow(c, 318, 340, 42)
    for x, name in ((48, "家里、出差"), (215, "加密的通道"), (380, "公司内网")):
        c.text(x, 84, name, 12, INK, "mm")
    return c


def toolbar():
    c = card()
    c.box(14, 12, 402, 54, WHITE, LINE, 12)
    names = ("全屏", "USB", "剪贴板", "音量", "发送 C-A-D", "断开")
    for number, name in enumerate(names):
        x = 50 + 66 * number
        chosen = number == 4
        if chosen:
            c.box(x - 31, 15, 62, 48, SOFT_BLUE, BLUE, 8, 1.6)
        toolbar_symbol(c, number, x, 30, BLUE if chosen else GREY)
        c.text(x, 53, name, 10, INK if chosen else GREY, "mm")
    c.line([(314, 86), (314, 76)], BLUE, 1.8)
    c.shape([(308, 78), (320, 78), (314, 69)])
    c.text(314, 94, "点击这里，再选择“任务管理器”", 11, BLUE, "mm")
    return c


def signal():
    c = card()
    for x, bars, name, good in ((70, 1, "隔一堵墙", False), (215, 3, "同一房间", True)):
        for bar in range(4):
            height = 10 + 11 * bar
            c.box(x - 34 + 18 * bar, 64 - height, 12, height,
                  (GREEN if good else RED) if bar <= bars else LINE, None, 3)
        verdict(c, x + 50, 54, good)
        c.text(x, 86, name, 12, INK, "mm")
    c.box(330, 34, 60, 26, WHITE, BLUE, 5, 2)
    for port in range(3):
        c.box(338 + 17 * port, 44, 11, 9, SOFT_BLUE, BLUE, 2, 1.4)
    c.line([(343, 53), (343, 68), (312, 68)], BLUE, 2.2)
    verdict(c, 404, 54, True)
    c.text(358, 86, "网线最稳", 12, INK, "mm")
    return c


def leave():
    c = card()
    for x, name, running, note in ((112, "断开连接", True, "程序还在运行"),
                                   (318, "注销", False, "程序全部关闭")):
        c.box(x - 92, 10, 184, 90, WHITE, LINE, 8)
        monitor(c, x - 46, 46, 56, 38, SOFT_BLUE if running else PAPER)
        if running:
            for row, width in ((-8, 32), (0, 22), (8, 28)):
                c.line([(x - 64, 46 + row), (x - 64 + width, 46 + row)], BLUE, 2.4)
        else:
            cross(c, x - 46, 46, 2.2, GREY)
        c.text(x - 4, 38, name, 14, BLUE, bold=True)
        c.text(x - 4, 62, note, 11, GREY)
        c.text(x - 4, 82, "下次接着用" if running else "下次从头开始", 11, GREEN if running else RED)
    return c


def screens():
    c = card()
    monitor(c, 82, 40, 92, 52, SOFT_BLUE)
    monitor(c, 196, 40, 92, 52, WHITE)
    for x, number, name in ((82, "1", "主显示器"), (196, "2", "扩展显示器")):
        c.text(x, 38, number, 26, BLUE, "mm", True)
        c.text(x, 94, name, 12, INK, "mm")
    c.box(272, 22, 138, 28, WHITE, LINE, 5)
    c.box(282, 29, 14, 14, BLUE, None, 3)
    tick(c, 289, 36, 0.9)
    c.text(304, 36, "使用所有显示器", 12, INK)
    c.text(341, 70, "在登录窗口的设置里勾选", 11, GREY, "mm")
    return c


def scale():
    c = card()
    for x, size, percent in ((74, 11, "100%"), (180, 17, "150%")):
        monitor(c, x, 40, 84, 50, WHITE)
        c.text(x, 39, "文字", size, INK, "mm", True)
        c.text(x, 94, percent, 12, BLUE if size > 11 else GREY, "mm", size > 11)
    c.text(256, 24, "缩放", 12, INK, bold=True)
    c.box(256, 36, 156, 28, WHITE, BLUE, 5, 1.6)
    c.text(266, 50, "150%（推荐）", 12, INK)
    c.shape([(392, 47), (404, 47), (398, 54)])
    c.text(256, 84, "先改本机，再重新登录云桌面", 11, GREY)
    return c


def clipboard():
    c = card()
    for x, name in ((44, "本机"), (330, "云桌面")):
        if x > 100:
            c.box(x - 10, 4, 76, 82, SOFT_BLUE, None, 10)
        sheet(c, x, 10)
        c.text(x + 28, 97, name, 12, INK, "mm")
    arrow(c, 122, 306, 30, GREEN)
    c.box(150, 17, 118, 26, WHITE, LINE, 6)
    c.text(209, 29.5, "一般允许", 12, GREEN, "mm")
    dashes(c, 130, 310, 66)
    c.shape([(122, 66), (130, 61), (130, 71)], RED)
    c.box(150, 53, 118, 26, WHITE, LINE, 6)
    c.text(209, 65.5, "需要申请", 12, RED, "mm")
    return c


def usb():
    c = card()
    c.box(26, 32, 30, 22, BLUE, None, 4)
    c.box(56, 37, 14, 12, WHITE, BLUE, 1, 1.8)
    monitor(c, 138, 40, 60, 40)
    cloud(c, 250, 44, 0.85)
    arrow(c, 78, 104, 42)
    arrow(c, 174, 210, 42)
    for x, name in ((46, "U 盘"), (138, "本机"), (250, "云桌面")):
        c.text(x, 88, name, 12, INK, "mm")
    c.box(304, 16, 112, 62, WHITE, LINE, 7)
    for y, name, on in ((34, "U 盘", True), (60, "加密锁", False)):
        c.text(314, y - 0.5, name, 12, INK)
        switch(c, 374, y, on)
    c.text(360, 94, "工具栏的 USB 列表", 11, GREY, "mm")
    return c


def sound():
    c = card()
    cloud(c, 60, 44, 0.85)
    monitor(c, 178, 40, 60, 40)
    arrow(c, 104, 140, 34)
    arrow(c, 140, 104, 52, GREEN)
    for y, number, name in ((32, 3, "扬声器  远程音频"), (76, 0, "麦克风  远程音频")):
        c.disc(250, y, 16, SOFT_BLUE)
        if number:
            toolbar_symbol(c, number, 250, y, BLUE)
        else:
            c.box(246, y - 10, 8, 13, BLUE, None, 4)
            c.arc(250, y - 2, 8, 10, 170, BLUE, 1.6)
            c.line([(250, y + 6), (250, y + 10)], BLUE, 1.6)
        c.box(276, y - 14, 138, 28, WHITE, LINE, 5)
        c.text(286, y - 0.5, name, 12, INK)
        c.shape([(396, y - 2), (406, y - 2), (401, y + 4)])
    for x, name in ((60, "云桌面"), (178, "本机")):
        c.text(x, 88, name, 12, INK, "mm")
    return c


PICTURES = (login, segments, vpn, toolbar, signal, leave, screens, scale, clipboard, usb, sound)


def main():
    for draw in PICTURES:
        picture = draw().done(SHARPNESS)
        # A small palette without dithering keeps the files, and with them the library, small.
        reduced = picture.quantize(COLOURS, method=Image.Quantize.MEDIANCUT,
                                   dither=Image.Dither.NONE)
        reduced.save(FOLDER / "pictures" / f"{draw.__name__}.png", optimize=True)


if __name__ == "__main__":
    main()
