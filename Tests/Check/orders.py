"""All orders of six channels, with random polarities, after a lossy codec."""

import itertools
import os
import random
from dataclasses import dataclass

import numpy

import schedules
from figures import RATE
from workshop import Sound, Workshop

IDENTS = ("blits", "ebu-5.1")
CODEC = ["-c:a", "aac", "-b:a", "192k"]
CHUNK = 8


@dataclass
class Tally:
    """Of one sequence: recordings, channels that were named wrongly, polarities that were wrong or not told."""

    ident: str
    recordings: int = 0
    wrong: int = 0
    unnamed: int = 0
    turned: int = 0
    unturned: int = 0
    examples: tuple = ()

    def add(self, other):
        for name in ("recordings", "wrong", "unnamed", "turned", "unturned", "examples"):
            setattr(self, name, getattr(self, name) + getattr(other, name))

    @property
    def holds(self):
        return self.wrong == 0 and self.turned == 0 and self.unnamed == 0

    def row(self):
        cells = (self.ident, self.recordings, self.wrong, self.unnamed, self.turned, self.unturned)
        return f"| {' | '.join(map(str, cells))} |"


HEAD = ("| sequence | recordings | channels named wrongly | not named | polarities that are wrong | not told |\n"
        "| --- | ---: | ---: | ---: | ---: | ---: |")


def drawn(ident, count):
    """`count` of the 720 orders, evenly spread; each with polarities of its own."""
    everything = list(itertools.permutations(range(6)))
    chosen = range(0, len(everything), max(1, len(everything) // count))
    return [(ident, everything[i], tuple(random.Random(f"{ident} {i}").choice((-1, 1)) for _ in range(6)))
            for i in chosen][:count]


def hear(work):
    lineup, folder, check, some = work
    workshop = Workshop(lineup, folder)
    paths = []
    for number, (ident, order, polarity) in enumerate(some):
        cycle = round(schedules.cycle_of(ident) * RATE)
        samples = workshop.line_up("the plug-in", ident, RATE)[:cycle, order] * numpy.array(polarity, dtype="f4")
        paths.append(workshop.scratch(f"order-{number}.m4a"))
        Sound(workshop, samples, RATE, None, (0, cycle)).encode(CODEC, paths[-1])
    tallies = [judged(*what, report["sound"]) for what, report in zip(some, check(lineup, paths, []), strict=True)]
    for path in paths:
        os.remove(path)
    return tallies


def judged(ident, order, polarity, sound):
    names = [schedules.FILE_ORDER[i] for i in order]
    found = sound["channels"] or [{"channel": None, "polarity": None}] * 6
    channels = [row["channel"] for row in found]
    signs = [row["polarity"] for row in found]
    tally = Tally(ident, 1)
    tally.unnamed, tally.unturned = channels.count(None), signs.count(None)
    tally.wrong = sum(name not in (None, due) for name, due in zip(channels, names))
    tally.turned = sum(sign not in (None, due) for sign, due in zip(signs, polarity))
    if tally.wrong or tally.turned:
        tally.examples = (f"{ident} {names} {polarity}: {channels} {signs}",)
    return tally


def all_orders(lineup, folder, check, pool, count):
    """A tally for each sequence, over `count` orders of each."""
    work = [item for ident in IDENTS for item in drawn(ident, count)]
    tallies = {ident: Tally(ident) for ident in IDENTS}
    chunks = [(lineup, folder, check, work[i:i + CHUNK]) for i in range(0, len(work), CHUNK)]
    for some in pool.imap_unordered(hear, chunks):
        for tally in some:
            tallies[tally.ident].add(tally)
    return list(tallies.values())
