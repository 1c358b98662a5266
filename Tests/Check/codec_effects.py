"""What a lossy codec does by itself, measured without the product: some move the level of a tone, or turn its phase, by
more than what counts as a fault. Such a fault is then neither due nor wrong."""

import numpy

from schedules import SCHEDULES

LEVEL_DB, DELAY_SAMPLES = 0.07, 0.4  # somewhat less than what the check lets through
BLOCK_SECONDS = 0.1


def own_pitch(draft, channel):
    if draft.tone:
        return 1000
    rows = SCHEDULES[draft.ident][2]
    alone = [hz for _, _, names, hz, _ in rows if names == (channel,)]
    return (alone or [hz for _, _, names, hz, _ in rows if channel in names])[0]


def lag(before, after):
    """By how many samples the codec is late."""
    length = 1 << (len(before) + len(after)).bit_length()
    spectra = (numpy.fft.rfft(sound.sum(axis=1), length) for sound in (before, after))
    first, second = spectra
    found = int(numpy.fft.irfft(numpy.conj(first) * second).argmax())
    return found if found < length // 2 else found - length


def effect(before, after, rate, hz):
    """(dB, samples late) of a tone's loud blocks."""
    count = int(BLOCK_SECONDS * rate)
    kernel = numpy.hanning(count) * numpy.exp(-2j * numpy.pi * hz / rate * numpy.arange(count))
    blocks = [sound[:len(sound) // count * count].astype(numpy.float64).reshape(-1, count) @ kernel
              for sound in (before, after)]
    loud = numpy.abs(blocks[0]) > 0.9 * numpy.quantile(numpy.abs(blocks[0]), 0.98)
    change = blocks[1][loud] / blocks[0][loud]
    return (20 * numpy.log10(numpy.median(numpy.abs(change))),
            -numpy.angle(numpy.median(change.real) + 1j * numpy.median(change.imag)) / (2 * numpy.pi * hz) * rate)


def open_faults(before, after, draft):
    late = lag(before, after)
    before, after = before[max(0, -late):], after[max(0, late):]
    length = min(len(before), len(after))
    effects = [effect(before[:length, number], after[:length, number], draft.rate, own_pitch(draft, channel))
               for number, channel in enumerate(draft.holds()) if channel is not None]
    levels, delays = numpy.array(effects).T
    found = ()
    if numpy.abs(levels).max() > LEVEL_DB:
        found += ("level-wrong", "level-unbalanced")
    if numpy.abs(delays - numpy.median(delays)).max() > DELAY_SAMPLES:
        found += ("delay",)
    return found
