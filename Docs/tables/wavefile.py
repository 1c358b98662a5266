"""Samples out of a Wave file."""

import array
import struct

# The speakers of a channel mask's bits, as the pages name them.
SPEAKERS = {0: "L", 1: "R", 2: "C", 3: "LFE", 9: "Ls", 10: "Rs"}


def chunks(data):
    at = 12
    while at + 8 <= len(data):
        name, size = struct.unpack_from("<4sI", data, at)
        yield name, data[at + 8:at + 8 + size]
        at += 8 + size + size % 2


def read(path):
    """(rate in Hz, {channel's name: its samples}) of a file of 32-bit floats."""
    with open(path, "rb") as file:
        found = dict(chunks(file.read()))
    kind, count, rate, _, _, bits = struct.unpack_from("<HHIIHH", found[b"fmt "])
    mask = struct.unpack_from("<I", found[b"fmt "], 20)[0] if kind == 0xFFFE else (1 << count) - 1
    if bits != 32:
        raise ValueError(f"{path}: {bits} bits a sample, not 32")
    names = [SPEAKERS[bit] for bit in range(18) if mask >> bit & 1]
    samples = array.array("f", found[b"data"])
    return rate, {name: samples[c::count] for c, name in enumerate(names)}


def read_24(path):
    """The samples of a file of one channel of 24 bits; full scale is 1."""
    with open(path, "rb") as file:
        data = dict(chunks(file.read()))[b"data"]
    return [int.from_bytes(data[at:at + 3], "little", signed=True) / (1 << 23) for at in range(0, len(data), 3)]
