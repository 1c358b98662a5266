"""What the laboratory's page says of pictures: a section of its own, at the end."""

import collections
import re
from dataclasses import dataclass

import picture_figures
import picture_oddities
import reached

HEADING = "## Pictures\n"

RULE = """The card, or bars of FFmpeg and GStreamer, from 640x360 to UHD, damaged by filters of FFmpeg and converters of GStreamer,
through codecs, and with tags that bit stream filters and muxers rewrote. A case is right when exactly the faults that
are due are named, with their sizes; what a damage may bring along, such as 8 bits of a filter, may be named or not.
`{command}`"""


@dataclass
class Rest:
    """What belongs to the pictures beside the cases."""

    histories: list  # of results
    others: list  # (picture that is no card, card, faults)
    oddities: list  # of picture_oddities, or nothing
    figures: list  # of picture_figures, or nothing

    @property
    def found(self):
        """Those that were taken for one."""
        return [entry for entry in self.others if entry[1] or entry[2]]

    @property
    def holds(self):
        return (not self.found and all(result.right for result in self.histories)
                and picture_figures.holds(self.figures)
                and (not self.oddities or picture_oddities.holds(self.oddities)))


def tally(results, names_of):
    counts = collections.Counter()
    for result in results:
        for name in names_of(result.picture):
            counts[name, "cases"] += 1
            counts[name, "right"] += result.right
    return counts


def table(head, results, names_of):
    counts = tally(results, names_of)
    names = sorted({name for name, _ in counts})
    return "\n".join([f"| {head} | cases | right |", "| --- | ---: | ---: |",
                      *(f"| {name} | {counts[name, 'cases']} | {counts[name, 'right']} |" for name in names)])


def families_of(picture):
    return picture.families or (f"undamaged, {picture.bars}'s bars" if picture.bars else "undamaged",)


def size_of(picture):
    return ("{}x{}".format(*picture.sheet.sent),)


def score(results):
    undamaged = [result for result in results if not result.picture.families]
    wrong = [result for result in undamaged if result.got]
    own = [result.off for result in undamaged if not result.picture.bars]
    right = sum(result.right for result in results)
    return right, len(undamaged), len(wrong), max(own, default=0)


def histories(results):
    rows = [f"| {result.picture.families[0]} | {result.picture.sheet.codec.name} | {', '.join(result.picture.sheet.due)} | "
            f"{', '.join(result.got) or 'nothing'} |" for result in results]
    return "\n".join(["What has gone on air before, each in the form in which it is told of:\n",
                      "| history | codec | due | named |", "| --- | --- | --- | --- |", *rows])


def others(rest):
    """What was looked at that is no card."""
    counts = collections.Counter()
    for other, card, faults in rest.others:
        counts[other.kind, "frames"] += other.frames
        counts[other.kind, "found"] += bool(card or faults)
    kinds = list(dict.fromkeys(other.kind for other, _, _ in rest.others))
    total = sum(counts[kind, "frames"] for kind in kinds)
    return "\n".join([f"Pictures that are no card: {total}, of which {len(rest.found)} were taken for one. A film is one recording:",
                      "of its frames some are searched everywhere, all of them as a whole.\n",
                      "| what | pictures | taken for a card |", "| --- | ---: | ---: |",
                      *(f"| {kind} | {counts[kind, 'frames']} | {counts[kind, 'found']} |" for kind in kinds)])


ODDITIES, FIGURES, OTHERS = ("### What a stranger may hand in", "### How exactly pictures are measured", "### What is no card")


def rest_sections(command, rest):
    """{heading: text} of what was looked at."""
    texts = {ODDITIES: picture_oddities.table(rest.oddities) if rest.oddities else "",
             FIGURES: picture_figures.table(rest.figures) if rest.figures else "", OTHERS: others(rest)}
    return {heading: f"{heading}\n\n`{command}`\n\n{text}\n" for heading, text in texts.items() if text}


def put_rest_into(page, command, rest):
    """The page with these sections in place of those that it had, or at its end."""
    for heading, text in rest_sections(command, rest).items():
        before, found, after = page.partition(heading + "\n")
        following = re.search(r"^##", after, re.MULTILINE)
        tail = after[following.start():] if following else ""
        page = (before.rstrip("\n") + "\n\n" if found else page.rstrip("\n") + "\n\n") + text + ("\n" + tail if tail else "")
    return page


def section(command, results, rest):
    right, undamaged, wrong, off = score(results)
    told = (f"{len(results)} cases: {right} right, {100 * right / max(1, len(results)):.2f} %. In {undamaged} nothing was "
            f"due; in {wrong} of these something was named. Patches of undamaged cards are off by {off:.2f} codes at most.\n"
            f"The aim is {100 * reached.PICTURES_AIM:g} %; a release must have {100 * reached.PICTURES_REACHED:g} % at least.")
    missed = [f"- case {result.picture.number} ({result.picture.name}): due {', '.join(result.picture.sheet.due) or 'nothing'}; "
              f"named {', '.join(result.got) or 'nothing'}" for result in results if not result.right]
    parts = [HEADING + "\n" + RULE.replace("{command}", command), told,
             *(["Those that are wrong:", "\n".join(missed)] if missed else []),
             histories(rest.histories), table("damage", results, families_of),
             table("codec", results, lambda picture: (picture.sheet.codec.name,)), table("size", results, size_of),
             *(text.rstrip("\n") for text in rest_sections(command, rest).values())]
    return "\n\n".join(parts) + "\n"


def put_into(page, text):
    """The page with this section in place of the one that it had."""
    return page.split(HEADING)[0].rstrip("\n") + "\n\n" + text
