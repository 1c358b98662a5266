"""Damages with a place or a shape of their own, and what FFmpeg and SoX have no filter for."""

import numpy

# Of the fundamental: below it a harmonic may be no fault.
KNOWN_HARMONIC = 0.0012
# Of the fundamental: what counts as distortion, and what the edges of tops that are cut off sample by sample leave at
# harmonics by themselves, 0.0018 of 1000 Hz at 48 kHz.
KNOWN_BESIDE_CLIPPING = 0.001 + 0.0018


class Shift:
    """Delays the channels whose flag is set by a number of samples with a fraction, by a windowed sinc."""

    def __init__(self, flags, samples):
        self.flags, self.samples = flags, samples

    def __call__(self, samples, rate, random, span):
        whole = int(numpy.floor(self.samples))
        taps = numpy.arange(-32, 33)
        kernel = numpy.sinc(taps - (self.samples - whole)) * numpy.kaiser(67, 9)[1:-1]
        kernel /= kernel.sum()
        shifted = samples.copy()
        for channel, flag in enumerate(self.flags):
            if flag:
                filtered = numpy.convolve(samples[:, channel], kernel, mode="same")
                shifted[:, channel] = numpy.concatenate([numpy.zeros(whole), filtered])[:len(samples)]
        return shifted


class Truncate:
    """Cuts off what lies below so many bits."""

    def __init__(self, bits):
        self.scale = 2.0 ** (bits - 1)

    def __call__(self, samples, rate, random, span):
        return (numpy.floor(samples.astype(numpy.float64) * self.scale) / self.scale).astype(numpy.float32)

    def __str__(self):
        return f"cut to steps of 1/{self.scale:.0f}"


def place(samples, span, random, length, channel):
    """Where, in the span of the line-up, the channel sounds for so many samples and as many around it."""
    first, last = span
    heights = numpy.abs(samples[first:last, channel])
    for top in (heights.max(), numpy.quantile(heights, 0.98)):  # where samples were lost, the span ends in what follows
        grown = numpy.convolve(heights > 0.5 * top, numpy.ones(800), mode="same") > 0
        ends = numpy.flatnonzero(numpy.diff(grown.astype(numpy.int8), prepend=0, append=0))
        fitting = [(a, b) for a, b in zip(ends[::2], ends[1::2]) if b - a > 3 * length + 8000]
        if fitting:
            start, end = fitting[random.integers(len(fitting))]
            return first + int(random.integers(start + 4000 + length, end - 4000 - length))
    raise RuntimeError(f"nothing sounds for {length} samples at {channel}")


def interpolated(samples, at):
    """The samples at places between them, by a windowed sinc of 16."""
    whole = numpy.floor(at).astype(int)
    part = at - whole
    padded = numpy.pad(samples, ((8, 9), (0, 0)))
    found = numpy.zeros((len(at), samples.shape[1]))
    for tap in range(-7, 9):
        x = tap - part
        window = 0.5 + 0.5 * numpy.cos(numpy.pi * (x / 8.5).clip(-1, 1))
        found += (numpy.sinc(x) * window)[:, None] * padded[(whole + tap + 8).clip(0, len(padded) - 1)]
    return found.astype("f4")


def loudest(samples):
    return int((samples.astype(numpy.float64) ** 2).sum(axis=0).argmax())


def odd_count(draft, most):
    """So many samples that no steady tone goes on as if nothing had been."""
    while True:
        count = draft.random.randint(3, most)
        if all(min(count % (draft.rate / hz), -count % (draft.rate / hz)) > 2 for hz in (1000, 400)):
            return count


def event(draft, fault, function, label, inputs=None):
    draft.add("python", function, label)
    return draft.due(fault, inputs=inputs)


def dropout(draft):
    seconds = draft.random.uniform(0.02, 0.15)

    def apply(samples, rate, random, span):
        length = int(seconds * rate)
        at = place(samples, span, random, length, loudest(samples))
        samples = samples.copy()
        samples[at:at + length] = 0
        return samples

    return event(draft, "dropout", apply, f"{seconds:.3f} s of silence")


def lost(draft):
    count = odd_count(draft, 3000)

    def apply(samples, rate, random, span):
        at = place(samples, span, random, count, loudest(samples))
        return numpy.concatenate([samples[:at], samples[at + count:]])

    return event(draft, "samples-lost", apply, f"{count} samples are lost")


def repeated(draft):
    if (draft.tone or draft.stereo) and "lost" in draft.families:
        return False  # each may be taken for the other, by whole periods
    count = odd_count(draft, 3000)

    def apply(samples, rate, random, span):
        at = place(samples, span, random, count, loudest(samples))
        return numpy.concatenate([samples[:at], samples[at - count:]])

    return event(draft, "samples-repeated", apply, f"{count} samples come twice")


def click(draft):
    number, height = draft.random.randrange(len(draft.matrix)), draft.random.uniform(0.1, 0.8)

    def apply(samples, rate, random, span):
        samples = samples.copy()
        at = place(samples, span, random, 10, loudest(samples))
        samples[at, number] = height if samples[at, number] < 0 else -height
        return samples

    return event(draft, "click", apply, f"one sample of {height:.2f} at input {number}", [number])


def ridden(draft):
    db = draft.random.choice((-1, 1)) * draft.random.uniform(1, 6)
    at = draft.random.uniform(0.3, 0.7)

    def apply(samples, rate, random, span):
        gain = numpy.ones((len(samples), 1), dtype="f4")
        gain[int(span[0] + at * (span[1] - span[0])):] = 10 ** (db / 20)
        return samples * gain

    return event(draft, "level-changes", apply, f"{db:.2f} dB from {at:.2f} of it on")


def limited(draft):
    """Gain that follows the sound: what is loud becomes softer than what is sent 6 dB lower."""
    if draft.ident != "blits":
        return False
    draft.add("ffmpeg", "acompressor=threshold=0.05:ratio=4:attack=5:release=50:knee=1:link=maximum")
    # How loud it came in cannot be known: another threshold leaves the same samples. Of what one channel had more, a
    # quarter is left, which may be too little to be a fault.
    draft.either |= {"level-wrong", "level-unbalanced"}
    return draft.due("level-changes")


def clipped(draft):
    part = draft.random.uniform(0.5, 0.9)
    draft.cut = part
    # Of the tones: not of a click that stands above them, nor of what came before or after them until a channel was
    # late or time jumped.
    share = 0.98 if {"click", "delayed", "lost", "repeated"} & set(draft.families) else 1

    def apply(samples, rate, random, span):
        top = part * numpy.quantile(numpy.abs(samples[slice(*span)]), share)
        return samples.clip(-top, top)

    return event(draft, "clipped", apply, f"tops cut off at {part:.2f}")


def odd_harmonics(period):
    """The third, fifth and seventh of a period against its fundamental."""
    lines = numpy.fft.rfft(period)
    return numpy.real(lines[[3, 5, 7]] / lines[1])


def beside_clipping(part, third):
    """How far a bend moves the harmonics of a sine whose tops are cut off from those of any other such sine."""
    turn = numpy.sin(2 * numpy.pi * numpy.arange(1024) / 1024)
    cut = turn.clip(-part, part)
    bent = odd_harmonics(cut + 4 * third * cut ** 3 - 3 * third * cut)
    others = [odd_harmonics(turn.clip(-top, top)) for top in numpy.arange(0.2, 1, 0.002)]
    return numpy.abs(others - bent).max(axis=1).min()


def distorted(draft):
    third = 10 ** (draft.random.uniform(-52, -35) / 20)
    if third * numpy.abs(draft.matrix).max() ** 2 < KNOWN_HARMONIC:
        draft.either.add("distorted")  # what is softer is bent less
    if draft.cut < 1 and beside_clipping(draft.cut, third) < KNOWN_BESIDE_CLIPPING:
        draft.either.add("distorted")

    def apply(samples, rate, random, span):
        peak = 10 ** (-18 / 20)
        return (samples + 4 * third * samples ** 3 / peak ** 2 - 3 * third * samples).astype("f4")

    return event(draft, "distorted", apply, f"a third harmonic of {third:.4f}")


def hum(draft):
    hz, level = draft.random.choice((50, 60)), 10 ** (draft.random.uniform(-54, -36) / 20)

    def apply(samples, rate, random, span):
        t = numpy.arange(len(samples)) / rate
        wave = sum(numpy.sin(2 * numpy.pi * hz * k * t + k) / k ** 2 for k in (1, 2, 3, 5))
        return (samples + level * 2 ** 0.5 * wave[:, None]).astype("f4")

    return event(draft, "hum", apply, f"{hz} Hz of {level:.4f}", range(len(draft.matrix)))


def wow(draft):
    hz, depth = draft.random.uniform(0.5, 5), draft.random.uniform(0.0005, 0.004)

    def apply(samples, rate, random, span):
        n = numpy.arange(len(samples))
        swing = depth * rate / (2 * numpy.pi * hz)
        at = n + swing * numpy.sin(2 * numpy.pi * hz * n / rate)
        return interpolated(samples, at)

    return event(draft, "speed-unsteady", apply, f"{depth * 100:.2f} % of wow at {hz:.1f} Hz")
