"""Holds what was named against what was due."""

from collections import Counter
from dataclasses import dataclass

NOTHING = "nothing"
CANNOT_TELL = "cannot tell"
# Notes that say of a kind of fault that it cannot be known here.
PERIODS = "whole periods of the tone more or fewer"  # so it may as well have gone the other way
JUMPS = ("samples-lost", "samples-repeated")
OPEN_BY_NOTE = {"polarity-not-known": ("polarity-inverted", "delay"), "distortion-not-known": ("distorted",)}


@dataclass
class Outcome:
    number: int
    families: tuple
    chain: str
    expected: dict  # id: inputs or None
    untold: list  # ids of which a note says that they cannot be known
    verdict: str
    got: dict  # id: inputs
    texts: list

    @property
    def cannot_tell(self):
        return self.verdict == "cannot-tell" or (bool(self.untold) and self.got.keys() <= self.expected.keys())

    @property
    def right(self):
        return not self.cannot_tell and self.got.keys() == self.expected.keys() and not self.misplaced()

    def misplaced(self):
        """Faults that were named at other inputs than theirs."""
        return [name for name, inputs in self.expected.items()
                if inputs is not None and name in self.got and self.got[name] != inputs]

    def confusions(self):
        """(due, named) of a case, where "nothing" stands for what was not due or was not named."""
        if self.cannot_tell:
            untold = [(name, CANNOT_TELL) for name in self.untold]
            return untold + [(name, name if name in self.got else CANNOT_TELL)
                             for name in self.expected or (() if untold else (NOTHING,))]
        pairs = [(name, name) for name in self.expected if name in self.got]
        missed = [name for name in self.expected if name not in self.got]
        extra = [name for name in self.got if name not in self.expected]
        if missed and extra:
            pairs += [(due, named) for due in missed for named in extra]
        else:
            pairs += [(due, NOTHING) for due in missed] + [(NOTHING, named) for named in extra]
        return pairs or [(NOTHING, NOTHING)]


def either_way(fault, due, sure):
    """A jump's id; the one that is due, and not named for sure, where the check says that it may be either: a tone goes
    on in the same way after so many samples more or fewer, and no edge follows that would tell."""
    jumps = [name for name in JUMPS if name in due and name not in sure]
    return jumps[0] if fault["id"] in JUMPS and PERIODS in fault["text"] and len(jumps) == 1 else fault["id"]


def without_polarity(report, got, expected):
    """Takes those inputs from what is due of which the check says that their polarity cannot be known; the fault's name
    where there are such."""
    name = "polarity-inverted"
    heard = report["sound"]["channels"] if report["sound"] else ()  # where no line-up was found, there is no sound
    unknown = {channel["input"] for channel in heard if channel["polarity"] is None}
    if name not in got or not unknown & set(expected.get(name) or ()):
        return []
    expected[name] = [number for number in expected[name] if number not in unknown]
    return [name]


def outcome_of(case, report, unknown):
    """`unknown` are faults that may be there or not, as those that the draft leaves open: neither due nor wrong."""
    unknown = {*unknown, *case.draft.either}
    got = {}
    due = case.draft.expected()
    sure = {fault["id"] for fault in report["faults"] if PERIODS not in fault["text"]}
    for fault in report["faults"]:
        if fault["id"] not in unknown:
            got.setdefault(either_way(fault, due, sure), set()).update(fault["inputs"])
    expected = {name: inputs for name, inputs in due.items() if name not in unknown}
    partly = without_polarity(report, got, expected)
    open_ids = {fault for note in report["notes"] for fault in OPEN_BY_NOTE.get(note["id"], ())}
    untold = [name for name in expected if name not in got and name in open_ids]
    for name in untold:
        del expected[name]
    untold += partly
    texts = [fault["text"] for fault in report["faults"]] + [f"({note['text']})" for note in report["notes"]]
    return Outcome(case.number, case.families, case.chain.name, expected, untold, report["verdict"],
                   {name: sorted(inputs) for name, inputs in got.items()}, texts)


def matrix(outcomes):
    """A table in Markdown: rows are due, columns named; cells count cases."""
    counts = Counter(pair for outcome in outcomes for pair in outcome.confusions())
    rows = sorted({due for due, _ in counts} - {NOTHING}) + [NOTHING]
    columns = sorted({named for _, named in counts} - {NOTHING, CANNOT_TELL}) + [NOTHING, CANNOT_TELL]
    lines = ["| due \\ named | " + " | ".join(columns) + " |", "| --- |" + " ---: |" * len(columns)]
    lines += ["| " + " | ".join([f"`{row}`" if row != NOTHING else row,
                                 *(str(counts[row, column] or "") for column in columns)]) + " |" for row in rows]
    return "\n".join(lines)


def score(outcomes):
    """Counts of a run."""
    undamaged = [outcome for outcome in outcomes if not outcome.expected]
    told = [outcome for outcome in outcomes if not outcome.cannot_tell]
    return {"cases": len(outcomes), "right": sum(outcome.right for outcome in outcomes), "told": len(told),
            "cannot tell": len(outcomes) - len(told), "undamaged": len(undamaged),
            "undamaged wrong": sum(bool(outcome.got) for outcome in undamaged)}
