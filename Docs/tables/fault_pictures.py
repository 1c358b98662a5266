#!/usr/bin/env python3
"""Draws what each fault of the sound looks like: fault_pictures.py LINEUP FOLDER [--check]

The EBU stereo ident, as the program renders it, is damaged in one way a fault, and drawn over what was sent. --check
also holds each damaged line-up against what `lineup check` names."""

import array
import json
import math
import os
import random
import struct
import subprocess
import sys
import tempfile

import wavefile

RATE, CYCLE = 48000, 3.0
LEFT, WIDTH, LANE, GAP = 18, 380, 46, 6
SENT, CAME, TEXT = "#c9c9c9", "#2a6f97", "#222222"
FULL_SCALE = 0.2  # of a lane: the line-up has 0.125


def mapped(function):
    """A damage of all samples of some lanes: function(x, second)."""
    def of(lanes):
        return lambda sound: [
            array.array("f", (function(x, n / RATE) for n, x in enumerate(samples))) if lane in lanes else samples
            for lane, samples in enumerate(sound)]
    return of


def both(function):
    return mapped(function)((0, 1))


def right(function):
    return mapped(function)((1,))


def moved(when):
    """What is heard at second t is that of second when(t), between two samples by a line."""
    def damage(sound):
        out = []
        for samples in sound:
            heard = array.array("f")
            for n in range(len(samples)):
                at = when(n / RATE) * RATE
                whole = int(at)
                if not 0 <= whole < len(samples) - 1:
                    break
                heard.append(samples[whole] + (at - whole) * (samples[whole + 1] - samples[whole]))
            out.append(heard)
        return out
    return damage


def lost(count):
    at = int(1.5 * RATE)
    return lambda sound: [samples[:at] + samples[at + count:] for samples in sound]


def repeated(count):
    at = int(1.5 * RATE)
    return lambda sound: [samples[:at] + samples[at - count:] for samples in sound]


def delayed(count):
    return lambda sound: [sound[0], array.array("f", [0] * count) + sound[1][:-count]]


def click(sound):
    left = sound[0][:]
    left[int(1.5 * RATE)] = -0.18
    return [left, sound[1]]


def mixed(sound):
    return [array.array("f", (a + 0.2 * b for a, b in zip(*sound))), sound[1]]


def noise(sound):
    chance = random.Random(1)
    return [array.array("f", (x + chance.uniform(-0.02, 0.02) for x in samples)) for samples in sound]


def hum(x, second):
    return x + 0.03 * math.sin(2 * math.pi * 50 * second)


def wow(hertz, seconds):
    return moved(lambda second: second + seconds * (1 + math.sin(2 * math.pi * hertz * second)))


def bent(factor):
    """A third harmonic; the fundamental keeps its level."""
    return both(lambda x, _: x + factor * (x ** 3 - 0.75 * 0.125 ** 2 * x))


def silent(x, second):
    return 0 if 1.5 <= second < 1.54 else x


def softer(x, second):
    return 0.8 * x if second >= 1.5 else x


def truncated(steps):
    return lambda x, _: math.floor(x * steps) / steps


# As much as can be seen brings another fault along; so less is done where it is checked.
CHECKED = {"bits-truncated": both(truncated(2 ** 13)), "speed-unsteady": wow(1.3, 0.00012), "distorted": bent(12)}

# The fault; what is done; from where to where it is drawn, s; what was asked for, where that is another ident.
WHOLE, GAP_OF_LEFT, CLOSE = (0, CYCLE), (2.65, 3.1), (1.4972, 1.5032)
FAULTS = (
    ("channel-missing", right(lambda x, _: 0), WHOLE, None),
    ("channels-swapped", lambda sound: [sound[1], sound[0]], WHOLE, None),
    ("channel-duplicated", lambda sound: [sound[0], sound[0]], WHOLE, None),
    ("channel-mixed", mixed, GAP_OF_LEFT, None),
    ("polarity-inverted", right(lambda x, _: -x), CLOSE, None),
    ("level-wrong", both(lambda x, _: 0.6 * x), CLOSE, None),
    ("level-unbalanced", right(lambda x, _: 0.6 * x), CLOSE, None),
    ("level-changes", both(softer), WHOLE, None),
    ("delay", delayed(9), CLOSE, None),
    ("speed-wrong", moved(lambda second: second * 1001 / 1000), CLOSE, None),
    ("speed-unsteady", wow(80, 0.0003), (1.49, 1.515), None),
    ("dropout", both(silent), (1.45, 1.59), None),
    ("samples-lost", lost(19), CLOSE, None),
    ("samples-repeated", repeated(19), CLOSE, None),
    ("click", click, CLOSE, None),
    ("clipped", both(lambda x, _: max(-0.07, min(0.07, x))), CLOSE, None),
    ("distorted", bent(60), CLOSE, None),
    ("noise", noise, CLOSE, None),
    ("hum", both(hum), (1.48, 1.54), None),
    ("dc-offset", both(lambda x, _: x + 0.04), CLOSE, None),
    ("bits-truncated", both(truncated(40)), CLOSE, None),
    ("sequence-other", lambda sound: sound, CLOSE, "ebu-stereo-400"),
)


def render(program, folder, ident, cycles):
    path = os.path.join(folder, f"{ident}-{cycles}.wav")
    subprocess.run([program, "render", path, "--ident", ident, "--cycles", str(cycles), "--audio-codec", "pcm-f32",
                    "--sample-rate", str(RATE), "--quiet"], check=True)
    return list(wavefile.read(path)[1].values())


def curve(samples, window, top, colour):
    """A line through the samples, or, of many, a band from the least to the greatest of each column."""
    middle = top + LANE / 2
    first, last = (int(second * RATE) for second in window)
    count = last - first

    def height(x):
        return middle - max(-1.0, min(1.0, x / FULL_SCALE)) * LANE / 2

    def value(n):
        return samples[n] if n < len(samples) else 0
    if count <= 4 * WIDTH:
        points = [(LEFT + WIDTH * i / count, height(value(first + i))) for i in range(count)]
        drawn = 'fill="none" stroke-width="1.5"'
    else:
        ends = [first + count * i // WIDTH for i in range(WIDTH + 1)]
        columns = [samples[begin:end] or [0] for begin, end in zip(ends, ends[1:])]
        points = [(LEFT + i, height(max(column))) for i, column in enumerate(columns)]
        points += [(LEFT + i, height(min(column)) + 0.5) for i, column in reversed(list(enumerate(columns)))]
        drawn = f'fill="{colour}" stroke-width="0.5"'
    return f'<polyline points="{" ".join(f"{x:.1f},{y:.1f}" for x, y in points)}" {drawn} stroke="{colour}"/>'


def picture(sent, came, window):
    height = 2 * LANE + 3 * GAP
    width = LEFT + WIDTH + GAP
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" viewBox="0 0 {width} {height}" '
             'font-family="DejaVu Sans, sans-serif" font-size="12">',
             f'<rect width="{width}" height="{height}" fill="#ffffff"/>']
    for lane, name in enumerate("LR"):
        top = GAP + lane * (LANE + GAP)
        parts += [f'<text x="4" y="{top + LANE / 2 + 4:.1f}" fill="{TEXT}">{name}</text>',
                  curve(sent[lane], window, top, SENT), curve(came[lane], window, top, CAME)]
    return "\n".join([*parts, "</svg>", ""])


def write_wave(path, sound):
    """A file of 24 bits."""
    full = 1 << 23
    data = b"".join(min(full - 1, max(-full, int(x * full))).to_bytes(3, "little", signed=True)
                    for frame in zip(*sound) for x in frame)
    head = struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", 36 + len(data), b"WAVE", b"fmt ", 16, 1, 2, RATE, RATE * 6, 6, 24,
                       b"data", len(data))
    with open(path, "wb") as file:
        file.write(head + data)


def named(program, path, asked):
    done = subprocess.run([program, "check", path, "--json", *(["--expect", asked] if asked else [])],
                          capture_output=True, check=False)
    return [fault["id"] for fault in json.loads(done.stdout)["faults"]]


def main():
    program, folder, *options = sys.argv[1:]
    wrong = 0
    with tempfile.TemporaryDirectory() as scratch:
        sounds = {ident: render(program, scratch, f"ebu-stereo-{ident}", 2) for ident in ("1000", "400")}
        for fault, damage, window, asked in FAULTS:
            sent = sounds["400" if asked else "1000"]
            with open(os.path.join(folder, f"fault-{fault}.svg"), "w", encoding="utf-8") as file:
                file.write(picture(sent, damage(sounds["1000"]), window))
            if "--check" in options:
                path = os.path.join(scratch, "damaged.wav")
                write_wave(path, CHECKED.get(fault, damage)(sounds["1000"]))
                found = named(program, path, asked)
                print(f"{fault}: {', '.join(found)}")
                wrong += found != [fault]
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
