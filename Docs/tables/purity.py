"""Total harmonic distortion and noise of tones in files: what is left of the samples beside the sine, in dB below it.

Each program writes a second of a sine at -18 dBFS in one channel of 24 bits."""

import math
import os
import subprocess

import wavefile
from markdown import number, table

TONES = ((48000, 100), (48000, 1000), (48000, 10000), (48000, 20000), (44100, 1000), (44100, 20000))

LEVEL_DB = -18
GAIN = 10 ** (LEVEL_DB / 20)

PROGRAMS = {
    "`lineup`": "{lineup} render {target} --sample-rate {rate} --frequency {hz} --level {level} --channels mono "
                "--duration 1 --overwrite --quiet",
    "SoX": "sox -D -r {rate} -n -b 24 -c 1 {target} synth 1 sine {hz} gain {level}",
    "FFmpeg": "ffmpeg -nostdin -v error -y -f lavfi -i aevalsrc={gain}*sin(2*PI*{hz}*t):s={rate}:d=1 "
              "-c:a pcm_s24le {target}",
}


def distortion_db(samples, cycles):
    """Of so many whole cycles in `samples`. The sine is the one that comes nearest, of any level and phase."""
    count = len(samples)
    step = 2 * math.pi * cycles / count
    sines = [math.sin(step * i) for i in range(count)]
    cosines = [math.cos(step * i) for i in range(count)]
    sine = 2 / count * sum(map(lambda a, b: a * b, samples, sines))
    cosine = 2 / count * sum(map(lambda a, b: a * b, samples, cosines))
    rest = sum((x - sine * s - cosine * c) ** 2 for x, s, c in zip(samples, sines, cosines))
    return 10 * math.log10(rest / count / ((sine ** 2 + cosine ** 2) / 2))


class Maker:
    def __init__(self, program, folder):
        self.program = program
        self.target = os.path.join(folder, "tone.wav")

    def measure(self, command, rate, hz):
        words = [word.format(lineup=self.program, target=self.target, rate=rate, hz=hz, level=LEVEL_DB, gain=GAIN)
                 for word in command.split()]
        subprocess.run(words, check=True)
        return distortion_db(wavefile.read_24(self.target), hz)

    def make(self, _):
        rows = [(f"{hz} Hz at {rate / 1000:g} kHz",
                 *(number(self.measure(command, rate, hz), 0) for command in PROGRAMS.values()))
                for rate, hz in TONES]
        return table(("tone", *(f"{name}, dB" for name in PROGRAMS)), rows)
