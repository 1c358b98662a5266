"""The page that the laboratory writes about itself."""

import collections

import damages
import figures
import judge
import orders
import reached

TOP = """# The laboratory

Line-ups are damaged here in known ways, and what `lineup check` names is held against what was done. What damages and
what generates shares no code with the product: line-ups come from the plug-in, from the published schedules (EBU Tech
3304, synthesised in Python), from FFmpeg's `sine` and SoX's `synth`; they begin and end anywhere, with silence, noise,
speech or music around them; they are damaged by filters of FFmpeg and effects of SoX, and by Python where those have
none, and go through codecs and containers of FFmpeg. A case is drawn from its number, so each can be looked at again:

```console
./dev laboratory cases --case 17            # what was done, what was due, and what was named
./dev laboratory cases --case 17 --keep take.wav
./dev laboratory cases --cases 200 --first 5000
```

Everything below was written by the program: `{command}`.
"""

RULE = """## What is named

A case is right when exactly the faults that are due are named, at the inputs at which they are. Of the cases in which
something was told, 99.9 % are to be right, and no undamaged one may be called damaged. Where a codec alone moves
a level or turns a phase by more than a fault's size, which is measured without the product, that is left out of the
case. Where the check says of a polarity, a delay or the way of a jump that it cannot be known, that counts as told apart.
Numbers below 1300, from 5000 to 5199, from 7000 to 7199 and from 14000 to 14319, and some from 20000 to 21199, have been looked at
while the check was made; the others are new to it, and say more. Of the newest, 16000 to 16199, 190 of 192 were right when they
were first run, 99.0 %, and of 41 undamaged ones none was called damaged: the wrong ones are a channel copied over another
behind a limiter. Before them, of 12000 to 12399, 13000 to 13199 and 15000 to 15199, each as the check was then, 752 of 773
were right, 97.3 %.

Nobody can know, so no case asks for it: the left channel of the EBU stereo ident gone, or copied over (a steady tone is
left); a delay beyond a fifth of a period where a tone has no gaps (the right channel of EBU stereo, the LFE of EBU 5.1,
a steady tone); a jump by whole periods of a steady tone; which of two channels is the one that is too loud, where both
are off or one is gone; another channel in the LFE behind a codec that keeps low frequencies alone there; a leak below
the noise; a bend of tones whose tops are cut off, below what such tops leave at their harmonics once they are sampled
(0.0018 of 1000 Hz at 48 kHz).
"""


def named(outcomes):
    score = judge.score(outcomes)
    part = 100 * score["right"] / max(1, score["told"])
    text = (f"{score['cases']} cases: {score['right']} of {score['told']} right, {part:.2f} %; of "
            f"{score['cannot tell']} the check says that it cannot tell. In {score['undamaged']} nothing was due; in "
            f"{score['undamaged wrong']} of these something was named.")
    wrong = [f"- case {outcome.number} ({', '.join(outcome.families) or 'undamaged'}; {outcome.chain}): due "
             f"{', '.join(outcome.expected) or 'nothing'}; named {', '.join(outcome.got) or 'nothing'}"
             for outcome in outcomes if not outcome.right and not outcome.cannot_tell]
    return "\n".join([text, reached.told(score), "", "Rows are what was due, columns what was named.", "", judge.matrix(outcomes)] +
                     (["", "Those that are wrong:", "", *wrong] if wrong else []))


def by_family(outcomes):
    counts = collections.Counter()
    for outcome in outcomes:
        for family in outcome.families or ("undamaged",):
            counts[family, "cases"] += 1
            counts[family, "right"] += outcome.right
            counts[family, "cannot"] += outcome.cannot_tell
    lines = ["| damage | cases | right | cannot tell |", "| --- | ---: | ---: | ---: |"]
    lines += [f"| {name} | {counts[name, 'cases']} | {counts[name, 'right']} | {counts[name, 'cannot'] or ''} |"
              for name in ("undamaged", *damages.FAMILIES)]
    lines += [f"| {name} | not counted yet | | |" for name in damages.NOT_YET]
    return "\n".join(lines)


def by_chain(outcomes):
    counts = collections.Counter()
    for outcome in outcomes:
        counts[outcome.chain, "cases"] += 1
        counts[outcome.chain, "right"] += outcome.right
        counts[outcome.chain, "cannot"] += outcome.cannot_tell
    lines = ["| codec, container | cases | right | cannot tell |", "| --- | ---: | ---: | ---: |"]
    names = sorted({chain for chain, _ in counts})
    lines += [f"| {name} | {counts[name, 'cases']} | {counts[name, 'right']} | {counts[name, 'cannot'] or ''} |"
              for name in names]
    return "\n".join(lines)


def page(command, outcomes, measured, tallies, quiet):
    parts = [TOP.replace("{command}", command), RULE, named(outcomes), "## By damage", by_family(outcomes),
             "## By codec", by_chain(outcomes), "## What is measured",
             "\n".join([figures.HEAD, *(figure.row() for figure in measured)]),
             "## Orders of six channels after AAC at 192 kbit/s",
             "Each with random polarities, from one cycle.\n",
             "\n".join([orders.HEAD, *(tally.row() for tally in tallies)]), "## Other sound", quiet]
    return "\n\n".join(part.strip("\n") for part in parts) + "\n"
