"""Pictures that are no card: of FFmpeg's sources, with the statistics of photographs, of games, of packages, of a folder."""

import os
from dataclasses import dataclass

import numpy

import picture_footage
from sound_files import run

SIZE = (640, 360)
GENERATED = (
    "testsrc=size=640x360", "mandelbrot=size=640x360", "color=white:size=640x360", "color=black:size=640x360",
    "rgbtestsrc=size=640x360", "pal75bars=size=720x576", "pal100bars=size=720x576", "yuvtestsrc=size=640x360",
    "testsrc2=size=640x360", "gradients=size=640x360", "life=size=640x360:mold=10:life_color=white",
    "nullsrc=size=640x360,geq=random(1)*255:128:128", "allrgb=rate=1,scale=640:360:flags=neighbor", "haldclutsrc",
    "cellauto=size=640x360", "sierpinski=size=640x360", "color=blue:size=640x360,drawgrid=w=64:h=36:c=white",
    "gradients=size=640x360:nb_colors=7:type=linear")
NATURAL = 24  # pictures whose spectrum falls as that of photographs does
GAMES = 24  # walls, tiles and figures of few colours


def natural(index):
    """Noise of 1/f, for each colour, some of it common to all of them; with a horizon in every other one."""
    generator = numpy.random.default_rng(index)
    width, height = SIZE
    across, down = numpy.fft.rfftfreq(width), numpy.fft.fftfreq(height)
    falling = 1 / numpy.maximum(numpy.hypot(across[None, :], down[:, None]), 1 / width) ** (1 + 0.1 * (index % 5))

    def field():
        plane = numpy.fft.irfft2(numpy.fft.rfft2(generator.standard_normal((height, width))) * falling, (height, width))
        return plane / plane.std()

    light = field()
    picture = numpy.stack([128 + 45 * light + 18 * field() for _ in range(3)], axis=-1)
    if index % 2:
        horizon = int(generator.integers(height // 4, height * 3 // 4))
        picture[:horizon] = picture[:horizon] / 4 + generator.integers(80, 230, 3)
    return picture


def game(index):
    """Tiles of few colours, columns and walls in bars, and figures in front of them."""
    generator = numpy.random.default_rng(1000 + index)
    width, height = SIZE
    colours = generator.integers(0, 4, (8, 3)) * 85
    picture = numpy.zeros((height, width, 3))
    for x in numpy.arange(0, width, width // int(generator.integers(5, 12))):
        picture[:, x:] = colours[generator.integers(len(colours))]
    tile = int(generator.choice([8, 16, 32]))
    for top in range(int(height * generator.uniform(0.5, 0.8)), height, tile):
        for left in range(0, width, tile):
            picture[top:top + tile, left:left + tile] = colours[generator.integers(len(colours))]
    for _ in range(int(generator.integers(3, 12))):
        left, top = generator.integers(0, width - 60), generator.integers(0, height - 60)
        across, down = generator.integers(10, 60, 2)
        picture[top:top + down, left:left + across] = colours[generator.integers(len(colours))]
    return picture


@dataclass(frozen=True)
class Other:
    """Something to look at: `source` is an FFmpeg source, a number, or a file, of which `view` is a filter."""

    kind: str
    source: object
    view: str = ""
    at: float = 0  # s
    frames: int = 1  # all of a film


SOURCES, NATURE, TILES = "FFmpeg's sources", "noise with the spectrum of photographs", "tiles and figures of games"


def generated():
    return [*(Other(SOURCES, name) for name in GENERATED), *(Other(NATURE, i) for i in range(NATURAL)),
            *(Other(TILES, i) for i in range(GAMES))]


def of_folder(folder):
    return [Other("photographs", os.path.join(root, file), "scale=640:-2") for root, _, files in os.walk(folder)
            for file in sorted(files) if file.lower().endswith(picture_footage.ENDINGS)]


def of_packages(folder, pool):
    """Photographs, and films that are made here; of a film some frames by themselves too."""
    others = [Other(f"photographs of {package}", file, view) for package in picture_footage.PHOTOGRAPHS
              for file in picture_footage.photographs(package) for view in picture_footage.VIEWS]
    for name, film, frames in pool.imap(picture_footage.record, [(folder, game) for game in picture_footage.GAMES]):
        others.append(Other(f"a film of {name}", film, frames=frames))
        others += [Other(f"frames of {name}", film, "null", at)
                   for at in range(0, frames // picture_footage.RATE, picture_footage.STILLS_EVERY)]
    return others


def write(other, path):
    """The frame that is to be looked at."""
    end = ["-frames:v", "1", "-pix_fmt", "yuv422p", "-c:v", "ffv1", path]
    if other.kind in (NATURE, TILES):
        pixels = (natural if other.kind == NATURE else game)(other.source)
        plain = path + ".raw"
        numpy.clip(pixels, 0, 255).astype(numpy.uint8).tofile(plain)
        run(["ffmpeg", "-v", "error", "-y", "-f", "rawvideo", "-pixel_format", "rgb24", "-video_size",
             "{}x{}".format(*SIZE), "-i", plain, *end])
        os.remove(plain)
    elif other.view:
        run(["ffmpeg", "-v", "error", "-y", "-ss", str(other.at), "-i", other.source, "-vf", other.view, *end])
    else:
        run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", other.source, *end])
