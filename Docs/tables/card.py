"""The card: where its patches are, and what they are in frames and in files.

A name is `card-map CARD`, `card-places CARD`, `card-colours CARD` or `card-nominal CARD`. Places and coded values come from a frame of the
plug-in, taken apart by card_patches; those in files from v210 files that the program writes, read back by FFmpeg; the
names of colours from the card's own source."""

import json
import os
import re
import struct
import subprocess

from markdown import number, table

SIZES = {"hd": (1920, 1080), "sd": (720, 486)}
SOURCE_TABLES = {"hd": "HDYuvTable", "sd": "NTSCYuvTable"}
SOURCE = "Src/BarsAndToneImporter/ColourBarTables.cpp"
BARS = ("yellow", "cyan", "green", "magenta", "red", "blue")  # of 75 % where the source says no more
RAMP = "ramp"
# Kr and Kb of each card's file: BT.709 in HD, BT.601 in SD.
MATRICES = {"hd": (0.2126, 0.0722), "sd": (0.299, 0.114)}
PRIMARIES = {"white": "RGB", "grey": "RGB", "yellow": "RG", "cyan": "GB", "green": "G", "magenta": "RB", "red": "R",
             "blue": "B"}
# What is published for the colours that no percentage of R'G'B' makes, in 10 bits, by the codes they have here: RP 219-2
# for the HD card, EG 1 in digital form for the SD card, as other open programs have them in their tables.
PUBLISHED = {"hd": {(58, 156, 98): (244, 612, 395), (44, 171, 148): (141, 697, 606), (16, 128, 128): (64, 512, 512),
                    (12, 128, 128): (46, 512, 512), (20, 128, 128): (82, 512, 512), (25, 128, 128): (99, 512, 512)},
             "sd": {(58, 156, 97): (64, 633, 380), (44, 171, 148): (64, 698, 598), (16, 128, 128): (64, 512, 512),
                    (7, 128, 128): (29, 512, 512), (25, 128, 128): (99, 512, 512)}}
MAP_WIDTH = 96


def source_names(root, card):
    """{(Y, Cb, Cr) in 8 bits: the colour's name}, from the comments of the card's table."""
    with open(os.path.join(root, SOURCE), encoding="utf-8") as file:
        text = file.read().split(SOURCE_TABLES[card] + " = ")[1].split("};")[0]
    names = {}
    for v, u, y, name in re.findall(r"\{ *(\d+), *(\d+), *(\d+), *255\}, *0\}, *// (.+)", text):
        name = re.sub(r" \(Y \d+\)$", "", name).replace("%", " %")
        names[int(y), int(u), int(v)] = "75 % " + name if name in BARS else name
    return names


def codes(colour):
    """8-bit BT.601 codes of float Y'CbCr; ValueError where they are not whole."""
    exact = (16 + 219 * colour[0], 128 + 224 * colour[1], 128 + 224 * colour[2])
    whole = tuple(round(value) for value in exact)
    if max(abs(a - b) for a, b in zip(exact, whole)) > 1e-3:
        raise ValueError(f"{colour} is no 8-bit colour")
    return whole


def red_green_blue(colour):
    """R'G'B' in per cent, through the BT.601 matrix."""
    y, cb, cr = colour
    kr, kb = 0.299, 0.114
    red, blue = y + 2 * (1 - kr) * cr, y + 2 * (1 - kb) * cb
    return tuple(100 * value for value in (red, (y - kr * red - kb * blue) / (1 - kr - kb), blue))


def nominal(name, card):
    """10-bit Y'CbCr of a colour that is named by a percentage, exact but for the rounding; None for another."""
    match = re.fullmatch(r"(\d+) % (\w+)", name)
    if not match:
        return None
    level = int(match[1]) / 100
    red, green, blue = (level if part in PRIMARIES[match[2]] else 0.0 for part in "RGB")
    kr, kb = MATRICES[card]
    y = kr * red + (1 - kr - kb) * green + kb * blue
    return (round(64 + 876 * y), round(512 + 896 * (blue - y) / (2 * (1 - kb))),
            round(512 + 896 * (red - y) / (2 * (1 - kr))))


def in_the_whole():
    """What makes FFmpeg decode a picture with its edges, which versions from 7.1 on cut off where a file says so."""
    said = subprocess.run(["ffmpeg", "-version"], check=True, capture_output=True, text=True).stdout
    version = re.match(r"ffmpeg version (\d+)\.(\d+)", said)
    return ["-apply_cropping", "codec"] if version and (int(version[1]), int(version[2])) >= (7, 1) else []


class Planes:
    """A 10-bit 4:2:2 picture of a file."""

    def __init__(self, file, width, height):
        data = subprocess.run(["ffmpeg", "-v", "error", *in_the_whole(), "-i", file, "-frames:v", "1", "-f", "rawvideo",
                               "-pix_fmt", "yuv422p10le", "-"], check=True, capture_output=True).stdout
        self.values = struct.unpack(f"<{2 * width * height}H", data)
        self.width, self.height = width, height

    def at(self, x, y):
        luma = self.width * self.height
        chroma = y * (self.width // 2) + x // 2
        return self.values[y * self.width + x], self.values[luma + chroma], self.values[luma + luma // 2 + chroma]


def together(values):
    return " ".join(map(str, values))


class Patch:
    def __init__(self, band, found, names):
        self.left, self.right = found["left"], found["right"]
        self.top, self.bottom = band["top"], band["bottom"]
        self.colour = found["colour"]
        self.is_ramp = "last" in found
        self.last = found.get("last")
        self.name = RAMP if self.is_ramp else names[codes(self.colour)]

    def middle(self):
        return (self.left + self.right) // 2, (self.top + self.bottom) // 2


class Maker:
    def __init__(self, root, build, folder):
        self.root, self.build, self.folder = root, build, folder

    def patches(self, card):
        """Those of a card from its top left corner on, band by band."""
        program = os.path.join(self.build, "tests", "card_patches")
        bundle = os.path.join(self.build, "BarsAndTone.bundle")
        text = subprocess.run([program, bundle, card, *map(str, SIZES[card])], check=True, capture_output=True).stdout
        names = source_names(self.root, card)
        return [[Patch(band, found, names) for found in band["patches"]] for band in json.loads(text)]

    def file(self, card, width, height):
        target = os.path.join(self.folder, f"{card}-{height}.mov")
        subprocess.run([os.path.join(self.build, "bin", "lineup"), "render", target, "--card", card, "--size",
                        f"{width}x{height}", "--video-codec", "v210", "--duration", "0.04", "--overwrite", "--quiet"],
                       check=True)
        return Planes(target, width, height)

    def map(self, card):
        number_of_patch = 0
        lines = ["```text"]
        for band in self.patches(card):
            line = ""
            for patch in band:
                number_of_patch += 1
                end = round(patch.right * MAP_WIDTH / SIZES[card][0])
                line += "|" + str(number_of_patch).center(end - len(line) - 1)
            lines.append(line + "|")
        return lines + ["```"]

    def places(self, card):
        rows = []
        for patch in (patch for band in self.patches(card) for patch in band):
            coded = "0 to 1, see below" if patch.is_ramp else together(codes(patch.colour))
            rows.append((len(rows) + 1, patch.name, patch.left, patch.top, patch.right - patch.left,
                         patch.bottom - patch.top, coded))
        return table(("#", "patch", "x", "y", "width", "height", "Y′ Cb Cr"), rows)

    def widest(self, card):
        """{coded colour: the widest patch of it}, in the order in which the card first shows them."""
        widest = {}
        for patch in (patch for band in self.patches(card) for patch in band if not patch.is_ramp):
            key = codes(patch.colour)
            if key not in widest or patch.right - patch.left > widest[key].right - widest[key].left:
                widest[key] = patch
        return widest

    def in_file(self, card, size):
        """A function that gives the codes of a patch's middle in a file of that size."""
        planes = self.file(card, *SIZES[size])
        def read(patch):
            x, y = patch.middle()
            return planes.at(x * planes.width // SIZES[card][0], y * planes.height // SIZES[card][1])
        return read

    def colours(self, card):
        in_sd, in_hd = self.in_file(card, "sd"), self.in_file(card, "hd")
        rows = []
        for key, patch in self.widest(card).items():
            rows.append((patch.name, together(key), " ".join(number(v, 4) for v in patch.colour),
                         " ".join(number(v, 1) for v in red_green_blue(patch.colour)), together(in_sd(patch)),
                         together(in_hd(patch))))
        return table(("colour", "coded", "float", "R′ G′ B′ %", "10 bits, SD file", "10 bits, HD file"), rows)

    def nominal(self, card):
        read = self.in_file(card, card)
        rows = []
        for key, patch in self.widest(card).items():
            exact, found = nominal(patch.name, card) or PUBLISHED[card].get(key), read(patch)
            if exact:
                rows.append((patch.name, together(exact), together(found),
                             " ".join(f"{b - a:+d}".replace("+0", "0").replace("-", "−")
                                      for a, b in zip(exact, found))))
        return table(("colour", "published", "in the file", "difference"), rows)

    def make(self, name):
        what, card = name.split()
        return {"card-map": self.map, "card-places": self.places, "card-colours": self.colours,
                "card-nominal": self.nominal}[what](card)
