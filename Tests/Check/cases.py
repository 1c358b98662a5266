"""Cases by their numbers: case N is always the same."""

import random
from dataclasses import dataclass

import chains
import damages
from draft import Draft
from schedules import FILE_ORDER, SCHEDULES, STEREO, TONE, cycle_of

IDENTS = ("blits", "ebu-5.1", "blits", "ebu-5.1", "ebu-stereo-1000", "ebu-stereo-400", TONE)
RATES = (48000,) * 6 + (44100, 96000)
AROUND = ("nothing", "silence", "noise", "speech", "music")
ROUND = 20  # kinds of cases come back after so many
NOT_YET_FROM = 1_000_000
TONE_LEVEL_DB = {"the plug-in": -20.0, "FFmpeg": -18.0618, "SoX": -18.0}  # FFmpeg's sine has an amplitude of 1/8


@dataclass
class Case:
    number: int
    maker: str  # of the line-up
    draft: Draft
    chain: chains.Chain
    start: float  # s, where the recording begins in the line-up
    seconds: float  # of line-up
    before: tuple  # what comes before it, s
    after: tuple

    @property
    def families(self):
        return self.draft.families

    def told(self):
        """What is done, a line each."""
        draft = self.draft
        lines = [f"{draft.ident} of {self.maker}, {draft.rate} Hz, from {self.start:.4f} s on for {self.seconds:.4f} s",
                 "around it " + " and ".join(f"{seconds:.2f} s of {kind}" for kind, seconds in (self.before, self.after)),
                 f"families: {', '.join(self.families) or 'none'}"]
        lines += [str(stage) for stage in draft.early]
        if draft.mixes():
            lines.append(f"inputs of {draft.channels}: {draft.matrix.round(5).tolist()}")
        lines += [str(stage) for stage in draft.stages + draft.late]
        arguments = self.chain.arguments(len(draft.matrix))
        return [*lines, f"{self.chain.name}: {' '.join(arguments)}", f"lineup check {' '.join(draft.arguments)}"]


def with_others(first, count, generator):
    others = [name for name in damages.FAMILIES if name not in (first, *damages.ALONE)]
    return [first, *generator.sample(others, count)]


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


def damaged(generator, names, lossy):
    ident = generator.choice(IDENTS)
    rate = 48000 if lossy else generator.choice(RATES)
    channels = generator.choice((STEREO, FILE_ORDER)) if ident == TONE else SCHEDULES[ident][1]
    table = {**damages.FAMILIES, **damages.NOT_YET}
    names = tuple(sorted(names, key=list(table).index))
    draft = Draft(generator, ident, channels, rate, lossy, names)
    return draft if all(table[name](draft) for name in names) else None


def draw(number):
    generator = random.Random(number)
    names, lossy = wanted_families(number, generator)
    for attempt in range(100):
        draft = damaged(generator, names, lossy)
        if draft is not None:
            return placed(number, generator, draft)
        if attempt % 10 == 9 and len(names) > 1:  # they do not go together
            names = with_others(names[0], len(names) - 1, generator)
    raise ValueError(f"case {number}: {names} go with no sequence")


def chain_for(generator, draft, maker):
    if maker == "FFmpeg" and "truncated" not in draft.families and not draft.lossy:
        return chains.LOSSLESS[1]  # its sine has 16 bits
    if draft.lossy:
        return generator.choice(chains.fitting(chains.LOSSY, draft))
    plain = chains.LOSSLESS[0]
    if "truncated" in draft.families:
        return plain
    likely = (plain,) * 8 + chains.LOSSLESS if draft.families else chains.LOSSLESS
    chain = generator.choice(chains.fitting(likely, draft))
    return plain if draft.label != 48000 and chain.extension in ("ts", "mxf") else chain


def placed(number, generator, draft):
    cycle = cycle_of(draft.ident)
    start = generator.choice((0, generator.uniform(0, cycle)))
    # One whole cycle; of the short ones more than two, so that a gap is there between two whole tones.
    seconds = cycle * generator.uniform(1.02, 1.15) if cycle > 5 else generator.uniform(2.1, 3) * cycle
    maker = generator.choice(("the plug-in", "the plug-in", "the schedule"))
    if draft.tone:
        maker = generator.choice(list(TONE_LEVEL_DB))
        draft.arguments = ["--expect", "tone", "--frequency", "1000", "--level", f"{TONE_LEVEL_DB[maker]:.4f}"]
    chain = chain_for(generator, draft, maker)
    around = [(generator.choice(AROUND), generator.uniform(0.3, 3)) for _ in range(2)]
    around = [pair if pair[0] != "nothing" else ("nothing", 0) for pair in around]
    return Case(number, maker, draft, chain, start, seconds, *around)
