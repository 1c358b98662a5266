"""What a lossy codec does to levels by itself, measured without the product: some codecs move the level of a tone by more
than what counts as a fault. Such a fault is then neither due nor wrong."""

import numpy

from schedules import SCHEDULES

TOLERANCE_DB = 0.1  # of the check, unless it is told another
DOUBT_DB = 0.03
BLOCK_SECONDS = 0.1


def own_pitch(draft, channel):
    if draft.tone:
        return 1000
    rows = SCHEDULES[draft.ident][2]
    alone = [hz for _, _, names, hz, _ in rows if names == (channel,)]
    return (alone or [hz for _, _, names, hz, _ in rows if channel in names])[0]


def level_db(samples, rate, hz):
    """The usual level of a tone where it sounds."""
    count = int(BLOCK_SECONDS * rate)
    blocks = samples[:len(samples) // count * count].astype(numpy.float64).reshape(-1, count) * numpy.hanning(count)
    levels = numpy.abs(blocks @ numpy.exp(-2j * numpy.pi * hz / rate * numpy.arange(count))) / count * 4
    loud = levels[levels > 0.7 * numpy.quantile(levels, 0.98)]
    return 20 * numpy.log10(numpy.median(loud))


def open_faults(before, after, draft):
    moved = []
    for number, channel in enumerate(draft.holds()):
        if channel is not None:
            hz = own_pitch(draft, channel)
            moved.append(level_db(after[:, number], draft.rate, hz) - level_db(before[:, number], draft.rate, hz))
    return ("level-wrong", "level-unbalanced") if max(map(abs, moved)) > TOLERANCE_DB - DOUBT_DB else ()
