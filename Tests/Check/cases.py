"""Cases by their numbers: case N is always the same."""

import random
from dataclasses import dataclass, field

import chains
import damages
from draft import Draft
from schedules import cycle_of

IDENTS = ("blits", "ebu-5.1", "blits", "ebu-5.1", "ebu-stereo-1000", "ebu-stereo-400")
RATES = (48000, 48000, 48000, 48000, 44100, 96000, 32000)
AROUND = ("nothing", "silence", "noise", "speech", "music")
ROUND = 20  # kinds of cases come back after so many
NOT_YET_FROM = 1_000_000


@dataclass
class Case:
    number: int
    maker: str  # of the line-up
    draft: Draft
    families: tuple
    chain: chains.Chain
    start: float  # s, where the recording begins in the line-up
    seconds: float  # of line-up
    before: tuple = ("nothing", 0)
    after: tuple = ("nothing", 0)
    expected: dict = field(default_factory=dict)

    def told(self):
        """What is done, a line each."""
        draft = self.draft
        lines = [f"{draft.ident} of {self.maker}, {draft.rate} Hz, from {self.start:.4f} s on for {self.seconds:.4f} s",
                 f"before it {self.before[1]:.2f} s of {self.before[0]}, after it {self.after[1]:.2f} s of {self.after[0]}",
                 f"families: {', '.join(self.families) or 'none'}"]
        lines += [str(stage) for stage in draft.early]
        if draft.matrix.shape[0] != draft.matrix.shape[1] or (draft.matrix != damages.numpy.eye(len(draft.matrix))).any():
            lines.append(f"inputs of {draft.channels}: {draft.matrix.round(5).tolist()}")
        lines += [str(stage) for stage in draft.stages + draft.late]
        return [*lines, f"{self.chain.name}: {self.chain.arguments(len(draft.matrix))}", f"check {draft.arguments}"]


def wanted_families(number, generator):
    """Which kind of case this is: names of families, one in the order of the table so that none is left out, and
    whether a lossy codec follows."""
    place, turn = number % ROUND, number // ROUND
    names = list(damages.FAMILIES)
    if number >= NOT_YET_FROM:
        return [list(damages.NOT_YET)[number % len(damages.NOT_YET)]], False
    if place < 3:
        return [], place == 2
    if place < 10:
        return [names[(turn * 7 + place - 3) % len(names)]], False
    if place < 17:
        social = [name for name in names if name not in damages.ALONE]
        first = social[(turn * 7 + place - 10) % len(social)]
        return with_others(first, 1 if place < 15 else 2, generator), False
    return generator.sample(damages.ROBUST, place - 17), True


def with_others(first, count, generator):
    others = [name for name in damages.FAMILIES if name not in (first, *damages.ALONE)]
    return [first, *generator.sample(others, count)]


def damaged(generator, ident, rate, names, lossy):
    draft = Draft(generator, ident, rate, lossy, alone=len(names) < 2)
    table = {**damages.FAMILIES, **damages.NOT_YET}
    for name in sorted(names, key=list(table).index):
        if not table[name](draft):
            return None
    return draft


def draw(number):
    generator = random.Random(number)
    names, lossy = wanted_families(number, generator)
    draft = None
    for attempt in range(100):
        ident = generator.choice(IDENTS)
        rate = 48000 if lossy else generator.choice(RATES)
        draft = damaged(generator, ident, rate, names, lossy)
        if draft is not None:
            break
        if attempt % 10 == 9 and len(names) > 1:  # they do not go together
            names = with_others(names[0], len(names) - 1, generator)
    if draft is None:
        raise ValueError(f"case {number}: {names} go with no sequence")
    return placed(number, generator, draft, tuple(names), lossy)


def placed(number, generator, draft, names, lossy):
    count = len(draft.matrix)
    if lossy:
        chain = generator.choice(chains.fitting(chains.LOSSY, count))
    else:
        likely = chains.LOSSLESS[:1] * 8 + chains.LOSSLESS if names else chains.LOSSLESS
        chain = generator.choice(chains.fitting(likely, count))
        if draft.rate != 48000 and chain.extension in ("ts", "mxf"):
            chain = chains.LOSSLESS[0]
    if "truncated" in names:
        chain = chains.LOSSLESS[0]
    cycle = cycle_of(draft.ident)
    start = generator.choice((0, generator.uniform(0, cycle)))
    # One whole cycle; of the short one more than two, so that its gap is there between two whole tones.
    seconds = cycle * generator.uniform(1.02, 1.15) if cycle > 5 else generator.uniform(2.1, 3) * cycle
    maker = generator.choice(("the plug-in", "the plug-in", "the schedule"))
    around = [(generator.choice(AROUND), generator.uniform(0.3, 3)) for _ in range(2)]
    around = [pair if pair[0] != "nothing" else ("nothing", 0) for pair in around]
    return Case(number, maker, draft, names, chain, start, seconds, *around, expected=draft.expected())
