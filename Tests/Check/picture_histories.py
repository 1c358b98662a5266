"""What has gone on air before: the same damages as in the cases, each in the very form in which it is told of."""

import random
from dataclasses import dataclass

from picture_chains import FFV1_444, H264_23, LOSSY, V210
from picture_damages import FAMILIES, Sheet

FIRST = 1_000_000  # numbers that no case has
SEED = 1
MPEG2_422 = next(codec for codec in LOSSY if codec.name == "MPEG-2 4:2:2")


@dataclass(frozen=True)
class History:
    told: str
    damage: object  # of a Sheet
    codec: object
    size: tuple = (1280, 720)


def one_sample_late(sheet):
    sheet.add("chromashift=cbh=1:crh=1:edge=smear")
    sheet.is_due("chroma-shifted", 2, 0.5)


def full_as_limited_twice(sheet):
    sheet.add(*(("scale=in_range=limited:out_range=full", "setparams=range=tv") * 2))
    sheet.is_due("range-wrong")
    sheet.open += ["blacks-crushed", "whites-clipped", "bits-truncated"]


def pluge_removed(sheet):
    sheet.add("format=yuv420p", "lutyuv=y=max(val\\,16)")
    sheet.is_due("blacks-crushed", 16, 0.5)


HISTORIES = (
    History("BT.601 for BT.709 in an upload of 8 bits", FAMILIES["matrix-missing"], H264_23),
    History("a coefficient of green that is wrong in the third digit", FAMILIES["green-coefficient"], V210),
    History("full range read as limited, twice", full_as_limited_twice, FFV1_444),
    History("limited range read as full, twice", FAMILIES["squeezed-twice"], FFV1_444),
    History("v210 with colour one sample late", one_sample_late, V210),
    History("NTSC's setup of 7.5 %", FAMILIES["setup"], MPEG2_422, (720, 480)),
    History("R'G'B' through sRGB's curve once too often", FAMILIES["srgb-once-more"], FFV1_444),
    History("U and V swapped", FAMILIES["swapped"], H264_23),
    History("4:1:1 in the middle", FAMILIES["four-one-one"], V210, (720, 576)),
    History("what lies below black removed by an encoder for the web", pluge_removed, H264_23),
)


def sheet_of(index):
    history = HISTORIES[index]
    sheet = Sheet(random.Random(SEED), *history.size, history.codec, history.size[1] >= 720)
    history.damage(sheet)
    return sheet
