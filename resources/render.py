#!/usr/bin/python3
"""Draws every picture under images/ anew from the sources under svg/, and the Windows icon.

Each picture is drawn at its stated size and, for scaled screens, at twice that: as <name>@2x, which Qt
finds by itself, or, a strip of rows, under large/: the places of its rows stand in styles.

Run it after a change to a source and commit what it wrote; the build itself uses the committed
pictures. Two runs write the same bytes. Needs librsvg2-bin, python3-pil, gifsicle, optipng and icoutils.
"""

import io
import math
import pathlib
import subprocess
import tempfile

from PIL import Image

HERE = pathlib.Path(__file__).resolve().parent
SOURCES = HERE / "svg"
PICTURES = HERE / "images"

SCALES = (1, 2)

ICON_SIZES = (16, 24, 32, 48, 64, 128, 256)
# Below 64 px the mark is drawn for the size; the other sizes are divisions of its 256 px grid.
ICON_SOURCES = {16: "miravel-16", 24: "miravel-24", 32: "miravel-32", 48: "miravel-48"}

# The pointed ends of the bubbles have to be of the bubbles' very colour, on soft edges too.
POINTS = {
    "icon-triangle_right": (223, 237, 255),
    "icon-triangle_left": (244, 245, 248),
}

# One glyph in the colour of the button's text in each state.
SWITCH_COLOURS = {
    "btn-switch": (51, 47, 29),
    "btn-switch-hover": (41, 100, 245),
    "btn-switch-pressed": (37, 90, 219),
    "btn-switch-association": (117, 117, 117),
}

# Strips of rows, from which a style cuts one.
STRIPS = {"btn-close", "btn-max", "btn-min", *(f"btn-preview-{number}" for number in range(1, 7))}

# Pictures that are another picture turned round: the rasteriser itself is not quite symmetrical.
MIRRORED = {
    "btn-retract": ("btn-open", Image.Transpose.FLIP_TOP_BOTTOM),
    "btn-preview-6": ("btn-preview-5", Image.Transpose.FLIP_LEFT_RIGHT),
}

LARGE = 20_000  # pixels

FRAMES = 24
FRAME_DELAY = 7  # hundredths of a second
EYE_HEIGHT = 15  # px
EYE_MIDDLE = 99.5  # px from the top
BLINK = {11: 7, 12: 3, 13: 7}  # lower eyes in these frames
GIF_COLOURS = 63  # and one for "nothing here"
VEILED_WINDOW = (207, 207, 207)  # white under a 20 % veil of rgb(17, 17, 17)


def rasterise(svg: bytes, size: int = 0, scale: int = 1) -> Image.Image:
    """The SVG text as an RGBA picture, at `scale` times its own size or scaled to a square of `size`
    px."""
    command = ["rsvg-convert", "--format=png", f"--zoom={scale}"]
    if size:
        command += [f"--width={size}", f"--height={size}"]
    png = subprocess.run(command, input=svg, stdout=subprocess.PIPE, check=True).stdout
    return Image.open(io.BytesIO(png)).convert("RGBA")


def source(name: str) -> bytes:
    return (SOURCES / f"{name}.svg").read_bytes()


def with_palette(picture: Image.Image) -> Image.Image:
    """The same pixels, each a number of a colour; the picture has at most 256 of them."""
    pixels = list(picture.convert("RGBA").getdata())
    colours = sorted(set(pixels), key=lambda colour: (colour[3], colour))  # transparent ones first
    numbers = {colour: number for number, colour in enumerate(colours)}
    indexed = Image.new("P", picture.size)
    indexed.putpalette([part for colour in colours for part in colour[:3]])
    indexed.putdata([numbers[pixel] for pixel in pixels])
    if colours[0][3] < 255:
        indexed.info["transparency"] = bytes(colour[3] for colour in colours)
    return indexed


def large(name: str, scale: int) -> str:
    """What the picture is called at this scale."""
    if scale == 1:
        return name
    return f"large/{name}" if name in STRIPS else f"{name}@{scale}x"


def save_png(picture: Image.Image, name: str) -> None:
    """Saves the picture as a PNG file whose rows are not filtered.

    Filters are meant for photographs: these drawings come out smaller without, and the program,
    which reads them when it starts, has them in half the time. A large one of few colours is read
    three times as fast when each pixel is one byte.
    """
    path = PICTURES / f"{name}.png"
    opaque = picture.getchannel("A").getextrema()[0] == 255
    large = picture.width * picture.height > LARGE
    if large and picture.getcolors(256):
        picture = with_palette(picture)
    elif opaque:
        picture = picture.convert("RGB")
    picture.save(path)
    # Colours stay as they are.
    command = ["optipng", "-quiet", "-force", "-f0", "-zc9", "-zm9", "-zs0", "-nb", "-nc", "-np"]
    subprocess.run([*command, str(path)], check=True)


def flattened(picture: Image.Image, colour: tuple) -> Image.Image:
    """The picture's shape in one colour: only its transparency is kept."""
    flat = Image.new("RGBA", picture.size, colour + (255,))
    flat.putalpha(picture.getchannel("A"))
    return flat


def symmetrical(picture: Image.Image) -> Image.Image:
    """The picture with its upper half repeated upside down below."""
    result = picture.copy()
    upper = picture.crop((0, 0, picture.width, picture.height // 2))
    result.paste(upper.transpose(Image.Transpose.FLIP_TOP_BOTTOM), (0, picture.height // 2))
    return result


def draw_icons() -> None:
    for size in ICON_SIZES:
        picture = rasterise(source(ICON_SOURCES.get(size, "miravel")), size)
        save_png(picture, f"Miravel-{size}")
    # The window's icon, which every start decodes: systems show it at no more than 128 px.
    save_png(rasterise(source("miravel"), 128), "Miravel")
    save_png(rasterise(source("miravel"), 64), "Sysico")
    save_png(rasterise(source("miravel"), 128), "Sysico@2x")
    save_png(rasterise(source("miravel-16"), 16), "logo-16")
    save_png(rasterise(source("miravel-32"), 32), "logo-16@2x")

    files = [str(PICTURES / f"Miravel-{size}.png") for size in ICON_SIZES]
    command = ["icotool", "--create", f"--output={HERE / 'Miravel.ico'}"]
    subprocess.run(command + files[:-1] + [f"--raw={files[-1]}"], check=True)


def draw_pictures(scale: int) -> None:
    def drawn(name: str) -> Image.Image:
        return rasterise(source(name), scale=scale)

    def save(picture: Image.Image, name: str) -> None:
        save_png(picture, large(name, scale))

    special = set(POINTS) | set(SWITCH_COLOURS)
    for path in sorted(SOURCES.glob("*.svg")):
        if not path.stem.startswith("miravel") and path.stem not in special:
            save(drawn(path.stem), path.stem)
    for name, colour in POINTS.items():
        save(flattened(symmetrical(drawn(name)), colour), name)
    for name, colour in SWITCH_COLOURS.items():
        save(flattened(drawn("btn-switch"), colour), name)
    for name, (other, way) in MIRRORED.items():
        save(drawn(other).transpose(way), name)


def wave(phase: float) -> float:
    """A smooth pulse over one turn of the animation: 0 at rest, 1 at its height."""
    return (1 - math.cos(2 * math.pi * phase)) / 2


def frame_values(number: int) -> dict:
    """What fills the gaps of the loading animation's source in one frame."""
    turn = number / FRAMES
    height = wave(turn)
    values = {"BOB": f"{-6 * height:.2f}", "SHADOW": f"{28 - 7 * height:.2f}"}
    eye = BLINK.get(number, EYE_HEIGHT)
    values["EYE_HEIGHT"] = str(eye)
    values["EYE_TOP"] = str(EYE_MIDDLE - eye / 2)
    for dot in range(3):
        pulse = wave(turn - dot / 6) ** 2
        values[f"DOT{dot + 1}"] = f"{3.2 + 1.6 * pulse:.2f}"
        low, high = (190, 208, 250), (42, 100, 244)
        tint = [round(a + (b - a) * pulse) for a, b in zip(low, high)]
        values[f"TINT{dot + 1}"] = "#%02x%02x%02x" % tuple(tint)
    return values


def draw_frames(scale: int) -> list:
    template = (SOURCES / "waiting.svg.in").read_text(encoding="utf-8")
    frames = []
    for number in range(FRAMES):
        svg = template
        for key, value in frame_values(number).items():
            svg = svg.replace(f"@{key}@", value)
        frames.append(rasterise(svg.encode("utf-8"), scale=scale))
    return frames


def one_palette(frames: list) -> list:
    """The frames as palette pictures that share one palette; its last entry stands for nothing."""
    width, height = frames[0].size
    opaque = Image.new("RGB", (width * len(frames), height))
    for number, frame in enumerate(frames):
        card = Image.new("RGB", frame.size, VEILED_WINDOW)
        card.paste(frame, mask=frame.getchannel("A"))
        opaque.paste(card, (number * width, 0))
    indexed = opaque.quantize(GIF_COLOURS, method=Image.Quantize.MEDIANCUT, dither=Image.Dither.NONE)
    colours = indexed.getpalette()[: 3 * GIF_COLOURS]
    result = []
    for number, frame in enumerate(frames):
        picture = indexed.crop((number * width, 0, (number + 1) * width, height))
        nothing = frame.getchannel("A").point(lambda alpha: 255 if alpha == 0 else 0)
        picture.paste(GIF_COLOURS, mask=nothing)
        picture.putpalette(colours + [0, 0, 0])
        result.append(picture)
    return result


def draw_waiting(scale: int) -> None:
    with tempfile.TemporaryDirectory() as folder:
        files = []
        for number, picture in enumerate(one_palette(draw_frames(scale))):
            files.append(f"{folder}/{number:02}.gif")
            picture.save(files[-1], transparency=GIF_COLOURS)
        # "background" clears the old frame, so that nothing of the bobbing mark is left behind.
        command = ["gifsicle", "--no-warnings", "-O3", "--disposal=background", "--loopcount=forever"]
        command += [f"--delay={FRAME_DELAY}",
                    f"--output={PICTURES / large('waiting', scale)}.gif"]
        subprocess.run(command + files, check=True)
    # Frame 0 alone, which the program shows before it reads the animation.
    with Image.open(PICTURES / f"{large('waiting', scale)}.gif") as animation:
        save_png(animation.convert("RGBA"), large("waiting-first", scale))


if __name__ == "__main__":
    (PICTURES / "large").mkdir(parents=True, exist_ok=True)
    draw_icons()
    for factor in SCALES:
        draw_pictures(factor)
        draw_waiting(factor)
