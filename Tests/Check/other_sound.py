"""Sound that is no line-up: none may be found in it."""

import os
import random

import numpy

from sound_files import run, write_wave
from workshop import WORDS

RATE = 48000
VOICES = ("en-gb", "en-us", "de", "fr-fr", "es", "it")
PIECE = 120  # s
KINDS = ("noise", "speech", "tones", "plucked")


def noise(generator, path):
    kind = generator.choice(("whitenoise", "pinknoise", "brownnoise"))
    run(["sox", "-R", "-n", "-r", str(RATE), "-b", "24", "-c", "2", path, "synth", str(PIECE), kind, "gain",
         str(generator.randint(-30, -3)), "tremolo", str(generator.choice((0.3, 1, 4))), "60"])


def speech(generator, path):
    words = (WORDS + " ").split(" ")
    text = " ".join(generator.choice(words) for _ in range(PIECE * 2))
    spoken = path + ".spoken.wav"
    run(["espeak-ng", "-v", generator.choice(VOICES), "-s", str(generator.randint(120, 200)), "-w", spoken, text])
    run(["sox", spoken, "-r", str(RATE), "-b", "24", path, "remix", "1", "1"])
    os.remove(spoken)


def tones(generator, path):
    """Tones of a line-up's pitches, but of other lengths, on any channels, with gaps between some. None is long enough
    for a steady tone, nor goes on in the next."""
    samples = numpy.zeros((PIECE * RATE, 6), dtype="f4")
    at, hz = 0.0, 0
    while at < PIECE - 5:
        length = generator.choice((0.1, 0.25, 0.4, 0.85, 1.3, 1.7)) * generator.uniform(0.9, 1.1)
        hz = generator.choice([other for other in (400, 440, 660, 880, 1000, 1000, 1320, 2000, 80) if other != hz])
        n = numpy.arange(int(at * RATE), int((at + length) * RATE))
        wave = 10 ** (generator.uniform(-30, -6) / 20) * numpy.sin(2 * numpy.pi * hz / RATE * n)
        for channel in generator.sample(range(6), generator.randint(1, 6)):
            samples[n, channel] = wave
        at += length + generator.choice((0, 0.13, 0.45, 0.77, 1.1))
    write_wave(path, samples, RATE)


def plucked(generator, path):
    """Chords of plucked strings, one after the other."""
    notes = ("C3", "D3", "E3", "F3", "G3", "A3", "B3", "C4", "D4", "E4", "F4", "G4", "A4", "C5")
    parts = []
    for number in range(12):
        part = f"{path}.{number}.wav"
        chord = [word for note in generator.sample(notes, 3) for word in ("pluck", note)]
        run(["sox", "-R", "-n", "-r", str(RATE), "-b", "24", part, "synth", f"{generator.uniform(0.3, 2):.3f}", *chord,
             "remix", "-", "-", "gain", "-9"])
        parts.append(part)
    sequence = [generator.choice(parts) for _ in range(PIECE)]
    run(["sox", *sequence, path, "trim", "0", str(PIECE)])
    for part in parts:
        os.remove(part)


def listen(work):
    """(kind, seconds, what was found) of one piece."""
    lineup, folder, check, number = work
    generator = random.Random(number)
    kind = KINDS[number % len(KINDS)]
    path = os.path.join(folder, f"other-{number}.wav")
    globals()[kind](generator, path)
    report = check(lineup, [path], [])[0]
    os.remove(path)
    found = report["sound"]["expected"] if report["sound"] else ""
    return kind, PIECE, found


def all_sound(lineup, folder, check, pool, hours):
    count = max(len(KINDS), round(hours * 3600 / PIECE))
    work = [(lineup, folder, check, number) for number in range(count)]
    return list(pool.imap_unordered(listen, work))


def told(heard):
    lines = ["| sound | minutes | line-ups found |", "| --- | ---: | ---: |"]
    for kind in KINDS:
        some = [item for item in heard if item[0] == kind]
        lines.append(f"| {kind} | {sum(seconds for _, seconds, _ in some) / 60:.0f} | "
                     f"{sum(bool(found) for _, _, found in some)} |")
    return "\n".join(lines)
