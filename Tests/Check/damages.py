"""What a path can do to a line-up, by families. A family's function changes the draft and says what is due for it; it
gives False where it does not go with the sequence or with what was done before."""

import math

import numpy

import events
from draft import Stage
from schedules import SCHEDULES

KNOWN_SPEEDS = (24 / 25, 25 / 24, 1000 / 1001, 1001 / 1000, 48 / 44.1)
ORDERS = (
    ("L", "C", "R", "Ls", "Rs", "LFE"),
    ("C", "L", "R", "Ls", "Rs", "LFE"),
    ("L", "R", "Ls", "Rs", "C", "LFE"),
)


def gain(db):
    return 10 ** (db / 20)


def either_way(draft, low, high):
    """A number whose size lies between the two, of either sign."""
    return draft.random.choice((-1, 1)) * draft.random.uniform(low, high)


def of_sequences(damage):
    """A damage that a steady tone, which names no channel, does not show."""
    return lambda draft: not draft.tone and damage(draft)


def missing(draft):
    # Without its left channel, the EBU stereo ident is a steady tone.
    channels = draft.take(draft.unmoved, 1 if draft.stereo or not draft.alone else draft.random.randint(1, 2),
                          ("R",) if draft.stereo else None)
    if channels is None:
        return False
    draft.untouched = [name for name in draft.untouched if name not in channels]
    for name in channels:
        draft.matrix[:, draft.number(name)] = 0
    return draft.due("channel-missing", homes=channels)


def swap(draft, order):
    """order[input] is the channel whose input goes there."""
    rows = [draft.number(name) for name in order]
    draft.matrix, draft.homes = draft.matrix[rows], [draft.homes[row] for row in rows]
    held = draft.holds()
    return draft.due("channels-swapped",
                     inputs=[i for i, name in enumerate(draft.homes) if held[i] and name != draft.channels[i]])


@of_sequences
def swapped(draft):
    pair = draft.take(draft.unmoved, 2)
    if pair is None:
        return False
    order = list(draft.channels)
    a, b = (order.index(name) for name in pair)
    order[a], order[b] = order[b], order[a]
    return swap(draft, order)


@of_sequences
def permuted(draft):
    ids = {due.id for due in draft.dues}
    if draft.stereo or ids & {"channel-duplicated", "channels-swapped", "channel-mixed"}:
        return False
    order = list(draft.channels)
    while tuple(order) == draft.channels:
        order = list(draft.random.choice(ORDERS)) if draft.random.random() < 0.3 else draft.random.sample(order, 6)
    draft.unmoved = []
    return swap(draft, order)


@of_sequences
def duplicated(draft):
    spoken_for = set().union(*(due.channels for due in draft.dues if due.channels))
    over = ["R"] if draft.stereo else [name for name in draft.unmoved if name not in spoken_for]
    # Without its left channel, the EBU stereo ident is a steady tone; so only its copy can be told.
    over = draft.take(draft.unmoved, 1, set(over) - spoken_for)
    source = over and draft.take(draft.unmoved)
    # Where all channels become the one that is too loud, the samples are those of a line-up that is too loud.
    if not source or (draft.stereo and "level-unbalanced" in {due.id for due in draft.dues}):
        return False
    draft.untouched = [name for name in draft.untouched if name != over[0]]
    draft.matrix[draft.number(over[0])] = draft.matrix[draft.number(source[0])]
    return draft.due("channel-duplicated", channels=source)


@of_sequences
def leak(draft):
    taken = draft.take(draft.unmoved, 2)
    if taken is None:
        return False
    # The left channel is never heard alone in the EBU stereo ident.
    source, into = ("R", "L") if draft.stereo else taken
    row = draft.matrix[draft.number(source)]
    draft.matrix[draft.number(into)] += gain(draft.random.uniform(-40 if "noisy" in draft.families else -54, -16)) * row
    return draft.due("channel-mixed", homes=[into])


@of_sequences
def folded(draft):
    if draft.stereo or not draft.alone:
        return False
    half = math.sqrt(0.5)
    rows = [[1, 0, half, 0, half, 0], [0, 1, half, 0, 0, half]]
    draft.matrix = numpy.array(rows) * draft.random.choice((1, 0.4142))
    return draft.due("channel-mixed", inputs=[0, 1])


def inverted(draft):
    # Of a steady tone, most channels are upright; of two, the first.
    present = sorted({name for name in draft.holds() if name and (not draft.tone or name != "L")})
    count = 1 if draft.stereo or not draft.alone else draft.random.randint(1, 3)
    channels = draft.random.sample(present, min(count, len(present)))
    if not channels or (draft.tone and not draft.matrix.any(axis=0).all()):
        return False
    for name in channels:
        draft.matrix[:, draft.number(name)] *= -1
    return draft.due("polarity-inverted", channels=channels)


def louder(draft):
    draft.matrix = draft.matrix * gain(either_way(draft, 0.6 if draft.lossy else 0.25, 9))
    return draft.due("level-wrong")


def unbalanced(draft):
    if draft.stereo and any(due.id in ("level-wrong", "channel-missing") for due in draft.dues):
        return False  # of two channels, either may be the wrong one; of one that is left, nothing is beside it
    channels = draft.take(draft.untouched)
    if channels is None:
        return False
    draft.matrix[:, draft.number(channels[0])] *= gain(either_way(draft, 0.6 if draft.lossy else 0.25, 9))
    return draft.due("level-unbalanced", channels=channels)


def most_delay(draft, channel):
    """20 ms; a quarter of its period, and less for safety, where a tone has no gaps."""
    if draft.stereo or draft.tone:
        return 0.2 / (400 if draft.ident.endswith("400") else 1000)
    return 0.2 / 80 if draft.ident == "ebu-5.1" and channel == "LFE" else 0.02


def delayed(draft):
    channels = draft.take(draft.untouched)
    if channels is None or ((draft.stereo or draft.tone) and not draft.matrix.any(axis=0).all()):
        return False
    most = most_delay(draft, channels[0])
    least = 4 if draft.lossy else 1
    samples = draft.random.randint(least, int(most * draft.rate))
    early = draft.random.random() < 0.4
    late = [(name in channels) != early for name in draft.channels]
    if draft.random.random() < 0.3 and not draft.lossy:
        fraction = samples - draft.random.random() * 0.4
        draft.early.append(Stage("python", events.Shift(late, fraction), f"{fraction:.3f} samples late: {late}"))
    elif draft.random.random() < 0.5:
        draft.early.append(Stage("ffmpeg", "adelay=" + "|".join(f"{samples * flag}S" for flag in late)))
    else:
        draft.early.append(Stage("sox", ["delay", *(f"{samples * flag}s" for flag in late)]))
    return draft.due("delay", channels=["R"] if draft.stereo else channels)


def clock(draft):
    """A clock that is off, or a known cause; the pitch goes along."""
    if draft.random.random() < 0.6:
        speed = 1 + either_way(draft, 8, 3000) * 1e-6
    else:
        speed = draft.random.choice(KNOWN_SPEEDS)
    label = {48000: 44100, 44100: 48000, 96000: 88200}.get(draft.rate)
    if label and draft.random.random() < 0.3 and not draft.lossy:
        draft.label = label
        draft.late.append(Stage("ffmpeg", f"asetrate={label}"))
    else:
        draft.add("sox", ["speed", f"{speed:.9f}", "rate", "-v", str(draft.rate)])
    return draft.due("speed-wrong")


@of_sequences
def retimed(draft):
    if not draft.alone:
        return False
    draft.add("ffmpeg", f"atempo={draft.random.choice((24 / 25, 25 / 24)):.9f}")
    return draft.due("speed-wrong")


def inputs_of(draft):
    count = len(draft.matrix)
    return sorted(draft.random.sample(range(count), draft.random.randint(1, count)))


def noisy(draft):
    inputs = inputs_of(draft)
    amplitude = gain(draft.random.uniform(-48 if draft.lossy else -56, -36)) * math.sqrt(3)  # uniformly distributed
    layout = {2: "stereo", 6: "5.1(side)"}[len(draft.matrix)]
    there = "|".join(f"c{i}=c{0 if i in inputs else 1}" for i in range(len(draft.matrix)))
    noise = f"anoisesrc=r={draft.rate}:a={amplitude:.6f}:seed={draft.random.randrange(2 ** 31)}:d=60"
    draft.add("ffmpeg", f"asplit=1[sound];{noise},aformat=channel_layouts=mono,pan=stereo|c0=c0|c1=0*c0,"
                        f"pan={layout}|{there}[noise];[sound][noise]amix=inputs=2:normalize=0:duration=first")
    return draft.due("noise", inputs=inputs)


def off_zero(draft):
    if draft.lossy:
        return False
    size = either_way(draft, 0.0015, 0.03)
    if draft.random.random() < 0.4:
        draft.add("sox", ["dcshift", f"{size:.6f}"])
        return draft.due("dc-offset", inputs=range(len(draft.matrix)))
    inputs = inputs_of(draft)
    offsets = [size * (i in inputs) for i in range(len(draft.matrix))]
    draft.add("python", lambda samples, *_: samples + numpy.array(offsets, dtype="f4"), f"+ {offsets}")
    return draft.due("dc-offset", inputs=inputs)


def truncated(draft):
    if draft.lossy:
        return False
    if draft.random.random() < 0.5:
        draft.late.append(Stage("ffmpeg", "aformat=sample_fmts=s16,aformat=sample_fmts=flt"))
    else:
        draft.late.append(Stage("python", events.Truncate(draft.random.randint(13, 20))))
    held = draft.holds()
    return draft.due("bits-truncated", inputs=[i for i, name in enumerate(held) if name])


@of_sequences
def another(draft):
    draft.arguments = ["--expect", draft.random.choice([name for name in SCHEDULES if name != draft.ident])]
    return draft.due("sequence-other")


# Families that the check can name, in the order in which they happen, and those that it does not look for yet.
FAMILIES = {
    "missing": missing, "inverted": inverted, "louder": louder, "unbalanced": unbalanced, "delayed": delayed,
    "leak": leak, "folded": folded, "duplicated": duplicated, "swapped": swapped, "permuted": permuted,
    "clock": clock, "retimed": retimed, "dropout": events.dropout, "lost": events.lost,
    "repeated": events.repeated, "click": events.click, "ridden": events.ridden, "limited": events.limited,
    "clipped": events.clipped, "distorted": events.distorted, "hum": events.hum, "wow": events.wow, "noisy": noisy,
    "off zero": off_zero, "truncated": truncated, "another": another,
}
ALONE = ("folded", "retimed")  # what goes with no other
NOT_YET = {}
ROBUST = ("inverted", "louder", "unbalanced", "delayed", "duplicated", "missing", "swapped", "permuted")
