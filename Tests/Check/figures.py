"""The figures that are promised of measuring, each with the largest error that was seen. What is true is known from how
the recording was made; levels after a codec are measured by least squares here."""

import os
import random
from dataclasses import dataclass

import numpy

import chains
import events
import schedules
from sound_files import read_sound
from workshop import Sound, Workshop

RATE = 48000
LEAD = 0.5  # s of silence before the line-up
GUARD = 0.035  # s at either end of a burst: a codec's delay and its echoes
BLOCK = RATE // 20
WITH_LEVELS = ("PCM 24, WAV", "PCM 16, WAV", "AAC 128, M4A", "AAC 192, M4A", "AC-3, TS", "Opus, OGG")
WITH_DELAYS = ("PCM 24, WAV", "PCM 16, WAV")
CYCLES = {"blits": 1, "ebu-5.1": 1, "ebu-stereo-1000": 3}


@dataclass
class Figure:
    what: str
    unit: str
    most: float  # that an error may be
    over: str
    errors: list
    unknown: int = 0  # numbers that the check left empty

    @property
    def worst(self):
        return max(map(abs, self.errors), default=float("nan"))

    @property
    def holds(self):
        return bool(self.errors) and self.worst <= self.most and self.unknown == 0

    def row(self):
        cells = (self.what, self.over, len(self.errors), self.unknown or "", f"{self.worst:.4f} {self.unit}",
                 f"{self.most:g} {self.unit}")
        return f"| {' | '.join(map(str, cells))} |"


HEAD = ("| what | over | numbers | not told | largest error | may be |\n"
        "| --- | --- | ---: | ---: | ---: | ---: |")


def own_bursts(ident, channel):
    """(start, end, Hz) of where a channel sounds as loud as the sequence does: alone, if it ever is. A codec that codes
    pairs of channels together makes it another level where they sound together."""
    cycle, _, rows = schedules.SCHEDULES[ident]
    loud = [row for row in rows if channel in row[2] and row[4] == 0]
    edges = sorted({at for row in rows for at in row[:2]})
    own = []
    for start, end in zip(edges, edges[1:]):
        sounding = [(names, hz) for first, last, names, hz, _ in rows if first < end and last > start and hz > 100]
        own += [(start, end, hz) for names, hz in sounding if names == (channel,) and len(sounding) == 1]
    own = own or [(start, end, hz) for start, end, _, hz, _ in loud]
    return [(start + number * cycle, end + number * cycle, hz) for number in range(CYCLES[ident])
            for start, end, hz in own]


def level_of(samples, ident, channel):
    """Peak of a channel's tone in dBFS: least squares over blocks of its bursts."""
    amplitudes = []
    for start, end, hz in own_bursts(ident, channel):
        first, last = (round((LEAD + at) * RATE) for at in (start + GUARD, end - GUARD))
        for at in range(first, last - BLOCK + 1, BLOCK):
            phase = 2 * numpy.pi * hz / RATE * numpy.arange(BLOCK)
            functions = numpy.stack([numpy.sin(phase), numpy.cos(phase), numpy.ones(BLOCK)], axis=1)
            a, b, _ = numpy.linalg.lstsq(functions, samples[at:at + BLOCK].astype(numpy.float64), rcond=None)[0]
            amplitudes.append(numpy.hypot(a, b))
    return 20 * numpy.log10(numpy.mean(amplitudes))


class Bench:
    """Makes recordings of a cycle, or of some short ones, and has them checked."""

    def __init__(self, lineup, folder, check):
        self.workshop, self.folder, self.lineup, self.check = Workshop(lineup, folder), folder, lineup, check

    def line_up(self, ident):
        seconds = CYCLES[ident] * schedules.cycle_of(ident)
        line_up = self.workshop.line_up("the schedule", ident, RATE)[:round(seconds * RATE)]
        return numpy.pad(line_up, ((round(LEAD * RATE), RATE // 2), (0, 0)))

    def heard(self, samples, chain):
        path = os.path.join(self.folder, f"figure-{os.getpid()}.{chain.extension}")
        sound = Sound(self.workshop, samples, RATE, None, (0, len(samples)))
        if chain.surround_filter and samples.shape[1] == 6:
            sound.do("ffmpeg", chain.surround_filter)
        sound.encode(chain.arguments(samples.shape[1]), path)
        report = self.check(self.lineup, [path], [])[0]["sound"]
        decoded = read_sound(path, samples.shape[1])
        os.remove(path)
        return report, decoded


def named(names):
    return [chain for chain in chains.LOSSLESS + chains.LOSSY if chain.name in names]


def level_errors(bench, chain, generator):
    errors = []
    for ident in CYCLES:
        sent = bench.line_up(ident)
        if not chain.arguments(sent.shape[1]):
            continue
        gains = numpy.array([10 ** (generator.uniform(-6, 6) / 20) for _ in range(sent.shape[1])], dtype="f4")
        report, decoded = bench.heard(sent * gains, chain)
        for number, channel in enumerate(schedules.SCHEDULES[ident][1]):
            level = report["channels"][number]["level"]
            errors.append(None if level is None else level - level_of(decoded[:, number], ident, channel))
    return errors


def delay_errors(bench, chain, generator):
    errors = []
    for ident in ("blits", "ebu-5.1"):
        samples = bench.line_up(ident)
        late = [generator.uniform(0, 0.02 * RATE) for _ in schedules.FILE_ORDER]
        if ident == "ebu-5.1":  # its LFE has no edges: it is known within a part of its period
            late[3] = float(numpy.median(late[:3] + late[4:])) + generator.uniform(-0.2, 0.2) / 80 * RATE
        for number, delay in enumerate(late):
            samples = events.Shift([i == number for i in range(6)], delay)(samples, RATE, None, None)
        report, _ = bench.heard(samples, chain)
        for channel, true in zip(report["channels"], late):
            found = channel["delay"]
            errors.append(None if found is None else found - (true - numpy.median(late)))
    return errors


def speed_errors(bench, chain, generator):
    errors = []
    for ident, ppm in (("blits", 0), ("ebu-5.1", generator.uniform(-200, 200)), ("blits", 1000), ("ebu-5.1", 7)):
        samples = bench.line_up(ident)
        at = numpy.arange(int(len(samples) / (1 + ppm * 1e-6)) - 20) * (1 + ppm * 1e-6)
        report, _ = bench.heard(events.interpolated(samples, at), chain)
        errors.append(report["speed"]["ppm"] - ppm if report["speed"] else None)
    return errors


# (what, unit, what an error may be, over, chains, how often)
PROMISED = (
    ("level", "dB", 0.02, "", WITH_LEVELS, 1, level_errors),
    ("delay between channels", "samples", 0.05, "±20 ms, ", WITH_DELAYS, 2, delay_errors),
    ("speed", "ppm", 0.1, "one cycle, ", ("PCM 24, WAV",), 1, speed_errors),
)


def errors_of(work):
    lineup, folder, check, row, chain, seed = work
    return PROMISED[row][-1](Bench(lineup, folder, check), chain, random.Random(seed))


def all_figures(lineup, folder, check, pool, seed):
    work = [(lineup, folder, check, row, chain, seed + again) for row, promise in enumerate(PROMISED)
            for chain in named(promise[4]) for again in range(promise[5])]
    figures = {}
    for (*_, row, chain, _), errors in zip(work, pool.map(errors_of, work, chunksize=1)):
        what, unit, most, over, *_ = PROMISED[row]
        figure = figures.setdefault((row, chain.name), Figure(what, unit, most, over + chain.name, []))
        figure.errors += [error for error in errors if error is not None]
        figure.unknown += errors.count(None)
    return list(figures.values())
