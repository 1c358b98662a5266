"""The ad-hoc signature that a linker writes into an executable for macOS: a sum of each page, and nobody's name."""

import hashlib
import struct

COMMAND = 0x1D  # LC_CODE_SIGNATURE
ALL_PARTS, DIRECTORY = 0xFADE0CC0, 0xFADE0C02
AD_HOC = 2
SHA256 = 2


def place(data):
    """Offset and size of the signature in the executable for one processor; None where there is no signature."""
    at = 32
    for _ in range(struct.unpack_from("<I", data, 16)[0]):
        command, size, offset, length = struct.unpack_from("<4I", data, at)
        if command == COMMAND:
            return offset, length
        at += size
    return None


def directory(data, offset):
    """Where the list of sums begins."""
    magic, _, count = struct.unpack_from(">3I", data, offset)
    if magic != ALL_PARTS:
        raise ValueError("no signature where the load command says")
    for part in range(count):
        _, start = struct.unpack_from(">2I", data, offset + 12 + 8 * part)
        if struct.unpack_from(">I", data, offset + start)[0] == DIRECTORY:
            return offset + start
    raise ValueError("a signature without sums")


def verify(data):
    """What kind of signature the executable has, when every page has the sum it says; None where there is none."""
    found = place(data)
    if found is None:
        return None
    start = directory(data, found[0])
    flags, sums, _, _, count, end = struct.unpack_from(">6I", data, start + 12)
    size_of_sum, kind, _, page_bits = struct.unpack_from("4B", data, start + 36)
    page = 1 << page_bits
    if not flags & AD_HOC or kind != SHA256 or size_of_sum != 32:
        raise ValueError(f"another kind of signature: flags {flags:#x}, sums of kind {kind}")
    if end != found[0] or count != -(-end // page):
        raise ValueError(f"{end} bytes are signed in {count} pages, {found[0]} stand before the signature")
    for number in range(count):
        stands = data[start + sums + 32 * number :][:32]
        if hashlib.sha256(data[number * page : min((number + 1) * page, end)]).digest() != stands:
            raise ValueError(f"page {number} has another sum")
    return f"ad hoc, {count} pages"
