"""The identification sequences as they are published (EBU Tech 3304), and the sound of them. A steady tone has no
schedule; it stands beside them, for as long as a short sequence."""

import numpy

FILE_ORDER = ("L", "R", "C", "LFE", "Ls", "Rs")
STEREO = ("L", "R")
ALL = FILE_ORDER
TONE = "tone"
TONE_SECONDS = 3.0


def ebu_stereo(frequency):
    return [(0, 2.75, ("L",), frequency, 0), (0, 3, ("R",), frequency, 0)]


def ebu_surround():
    together = ("L", "R", "C", "Ls", "Rs")
    rows = [(0, 3, together, 1000, 0), (9, 12, together, 1000, 0), (0, 12, ("LFE",), 80, 0)]
    return rows + [(3.5 + i, 4 + i, (name,), 1000, 0) for i, name in enumerate(("L", "C", "R", "Rs", "Ls"))]


def blits(low_frequency):
    pitches = (880, 880, 1320, low_frequency, 660, 660)
    rows = [(0.8 * i, 0.8 * i + 0.6, (name,), hz, 0) for i, (name, hz) in enumerate(zip(FILE_ORDER, pitches))]
    rows += [(4.8, 9.9, ("R",), 1000, 0)]
    left = ((4.8, 5.8), (6.1, 6.4), (6.7, 7.0), (7.3, 7.6), (7.9, 9.9))
    rows += [(start, end, ("L",), 1000, 0) for start, end in left]
    return rows + [(10.2, 13.2, ALL, 2000, -6)]


# name: cycle in seconds, channels in the order of files, rows of (start, end, channels, Hz, dB over the line-up level)
SCHEDULES = {
    "ebu-stereo-1000": (3.0, STEREO, ebu_stereo(1000)),
    "ebu-stereo-400": (3.0, STEREO, ebu_stereo(400)),
    "ebu-5.1": (12.0, FILE_ORDER, ebu_surround()),
    "blits": (13.4, FILE_ORDER, blits(82.5)),
}


def cycle_of(ident):
    return TONE_SECONDS if ident == TONE else SCHEDULES[ident][0]


def synthesise(ident, rate, level_db, seconds):
    """samples[n, channel]; each burst begins at phase 0 and rises, and one that goes on in the next cycle goes on."""
    cycle, channels, rows = SCHEDULES[ident]
    length = round(cycle * rate)
    cycles = int(-(-seconds // cycle))
    samples = numpy.zeros((length * cycles, len(channels)))
    for start, end, names, hz, db in rows:
        n = numpy.arange(round(start * rate), round(end * rate))
        for number in range(cycles):
            at = n + number * length
            goes_on = start == 0 or end == cycle
            phase = 2 * numpy.pi * hz / rate * (at if goes_on else at - at[0])
            for name in names:
                samples[at, channels.index(name)] = 10 ** ((level_db + db) / 20) * numpy.sin(phase)
    return samples[:round(seconds * rate)].astype(numpy.float32)
