"""What sounds when: measured from samples that the program renders.

A name is `cadence IDENT` or `tone`. Silence is samples of exactly 0, looked for in blocks of 10 ms; where a block
begins or ends a tone, its first or last sample must lie within one sample of the block's edge, or the cadence is not
on that grid and nothing is made of it."""

import math
import os
import subprocess

import wavefile
from markdown import number, table

BLOCKS_PER_SECOND = 100


def level_db(gain):
    return 20 * math.log10(gain)


def frequency(samples, rate):
    """Hz, from the first rising zero crossing to the last one, each to a fraction of a sample."""
    rising = [i for i in range(1, len(samples)) if samples[i - 1] < 0 <= samples[i]]
    def moment(i):
        return i - samples[i] / (samples[i] - samples[i - 1])
    return rate * (len(rising) - 1) / (moment(rising[-1]) - moment(rising[0]))


def on_grid(samples, begin, end, rate):
    """Raises ValueError unless a tone that fills these blocks starts and stops at their edges."""
    size = rate // BLOCKS_PER_SECOND
    first, last = begin * size, end * size - 1
    if not any(samples[first:first + 2]) or not any(samples[last - 1:last + 1]):
        raise ValueError(f"a tone begins or ends inside the blocks from {begin} to {end}")


def tones(samples, rate):
    """The stretches of one channel that sound: (first block, block after the last, Hz, gain)."""
    size = rate // BLOCKS_PER_SECOND
    blocks = [any(samples[at:at + size]) for at in range(0, len(samples), size)]
    found = []
    at = 0
    while at < len(blocks):
        end = at
        while end < len(blocks) and blocks[end] == blocks[at]:
            end += 1
        if blocks[at]:
            on_grid(samples, at, end, rate)
            part = samples[at * size:end * size]
            found.append((at, end, steady_frequency(part, rate), max(map(abs, part))))
        at = end
    return found


def steady_frequency(samples, rate):
    """The frequency of a stretch that is one tone: both of its halves must have it."""
    middle = len(samples) // 2
    found = {round(frequency(part, rate), 1) for part in (samples[:middle], samples[middle:])}
    if len(found) != 1:
        raise ValueError(f"one stretch has the frequencies {found}")
    return round(frequency(samples, rate), 2)


def sounding(channels, block):
    """{channel: (Hz, gain)} at a block."""
    return {name: (hz, gain) for name, parts in channels.items() for begin, end, hz, gain in parts
            if begin <= block < end}


def seconds(block):
    return f"{block / BLOCKS_PER_SECOND:g}"


class Maker:
    def __init__(self, program, folder):
        self.program = program
        self.folder = folder

    def render(self, *options):
        target = os.path.join(self.folder, "sound.wav")
        subprocess.run([self.program, "render", target, "--audio-codec", "pcm-f32", "--overwrite", "--quiet",
                        *options], check=True)
        return wavefile.read(target)

    def tone(self):
        rate, channels = self.render()
        rows = []
        for name, samples in channels.items():
            [(begin, end, hz, gain)] = tones(samples, rate)
            rows.append((name, f"{seconds(begin)} to {seconds(end)}", f"{hz:g}", f"{gain:g}",
                         number(level_db(gain), 2)))
        return table(("channel", "seconds", "Hz", "gain", "dBFS"), rows)

    def cadence(self, ident):
        rate, channels = self.render("--ident", ident, "--cycles", "1")
        length = len(next(iter(channels.values()))) * BLOCKS_PER_SECOND // rate
        parts = {name: tones(samples, rate) for name, samples in channels.items()}
        edges = sorted({0, length} | {edge for part in parts.values() for tone in part for edge in tone[:2]})
        rows = []
        for begin, end in zip(edges, edges[1:]):
            now = sounding(parts, begin)
            levels = {number(level_db(gain), 2) for _, gain in now.values()}
            size = rate // BLOCKS_PER_SECOND
            rows.append((f"{seconds(begin)} to {seconds(end)}", f"{begin * size} to {end * size}",
                         *(f"{now[name][0]:g}" if name in now else "" for name in parts), ", ".join(levels)))
        return table(("seconds", f"samples at {rate / 1000:g} kHz", *parts, "dBFS"), rows)

    def make(self, name):
        return self.tone() if name == "tone" else self.cadence(name.removeprefix("cadence "))
