"""How exactly pictures are measured, against what is promised: patch means after codecs, and places at any scale."""

import os
import random

from figures import HEAD, Figure
from sound_files import run

SEED = 1
FRAME = (1280, 720)
SENT = (640, 360)
PLACES = 12  # of each codec
CODECS = (  # (name, arguments, extension, size)
    ("ProRes", "-c:v prores_ks -profile:v 3 -pix_fmt yuv422p10le", "mov", (1280, 720)),
    ("DNxHR", "-c:v dnxhd -profile:v dnxhr_hq -pix_fmt yuv422p", "mov", (1280, 720)),
    ("H.264, 1 Mbit/s", "-c:v libx264 -preset veryfast -b:v 1M -maxrate 1M -bufsize 1M -pix_fmt yuv420p", "mp4", (1280, 720)),
    ("MPEG-2, 3 Mbit/s", "-c:v mpeg2video -b:v 3M -maxrate 3M -bufsize 1M -pix_fmt yuv420p", "ts", (720, 576)),
)
PLACE_CODECS = (("FFV1", "-c:v ffv1 -pix_fmt yuv422p", "mkv"), ("H.264 crf 23", "-c:v libx264 -preset veryfast -crf 23 -pix_fmt yuv420p", "mp4"))
ODD = ("-I", "+Q", "below", "above")


def patch_errors(lineup, folder, check, card, index):
    name, arguments, extension, _ = CODECS[index]
    path = os.path.join(folder, f"figure-{index}.{extension}")
    run(["ffmpeg", "-v", "error", "-y", "-stream_loop", "3", "-i", card, "-an", *arguments.split(), path])
    picture = check(lineup, [path], ["--expect", "none"])[0]["picture"]
    os.remove(path)
    return [found - due for patch in picture["patches"] if not patch["name"].startswith(ODD)
            for found, due in zip(patch["measured"], patch["expected"])]


def place_errors(lineup, folder, check, card, index):
    """A card that was made smaller or larger, somewhere in a frame."""
    generator = random.Random(SEED + index)
    name, arguments, extension = PLACE_CODECS[index % len(PLACE_CODECS)]
    scale = generator.uniform(0.5, 2.0)
    width, height = (round(side * scale / 2) * 2 for side in SENT)
    left, top = (generator.randrange(0, most - side + 1, 2) for most, side in zip(FRAME, (width, height)))
    path = os.path.join(folder, f"place-{index}.{extension}")
    run(["ffmpeg", "-v", "error", "-y", "-i", card, "-an", "-vf",
         f"scale={width}:{height}:flags=bicubic,pad={FRAME[0]}:{FRAME[1]}:{left}:{top}", *arguments.split(), path])
    place = check(lineup, [path], ["--expect", "none", "--card", "hd"])[0]["picture"]["place"]
    os.remove(path)
    if place is None:
        return [None]
    return [place["x"] - left, place["y"] - top, place["x"] + place["width"] - left - width,
            place["y"] + place["height"] - top - height]


def measure(work):
    kind, lineup, folder, check, card, index = work
    return (patch_errors if kind == "patches" else place_errors)(lineup, folder, check, card, index)


def all_figures(lineup, folder, check, pool, card_of_size):
    works = [("patches", lineup, folder, check, card_of_size(codec[3]), i) for i, codec in enumerate(CODECS)]
    works += [("place", lineup, folder, check, card_of_size(SENT), i) for i in range(PLACES * len(PLACE_CODECS))]
    figures = {}
    for (kind, *_, index), errors in zip(works, pool.map(measure, works, chunksize=1)):
        over = CODECS[index][0] if kind == "patches" else "50 to 200 %, " + PLACE_CODECS[index % len(PLACE_CODECS)][0]
        if kind == "patches":
            figure = figures.setdefault(over, Figure("patch means", "codes", 1, over, []))
        else:
            figure = figures.setdefault(over, Figure("place", "pixels", 0.25, over, []))
        figure.errors += [error for error in errors if error is not None]
        figure.unknown += errors.count(None)
    return list(figures.values())


def holds(measured):
    """Whether each is as exact as it must be."""
    return all(figure.errors and not figure.unknown and figure.worst <= figure.most for figure in measured)


def table(measured):
    return "\n".join([HEAD, *(figure.row() for figure in measured)])
