"""Sound between programs: 32-bit float WAV files and FFmpeg's pipes. samples[n, channel] everywhere."""

import struct
import subprocess

import numpy

MASKS = {1: 0x4, 2: 0x3, 6: 0x60F}


def run(command, **options):
    """Runs a program and returns its output; what it says on standard error is the error."""
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, check=False, **options)
    if done.returncode != 0:
        raise RuntimeError(f"{' '.join(command)}: {done.stderr.decode(errors='replace').strip()[-2000:]}")
    return done.stdout


def write_wave(path, samples, rate):
    data = numpy.ascontiguousarray(samples, dtype="<f4")
    channels = data.shape[1]
    extensible = struct.pack("<HHIIHHHHI", 0xFFFE, channels, rate, rate * channels * 4, channels * 4, 32, 22, 32,
                             MASKS.get(channels, 0)) + bytes.fromhex("0300000000001000800000aa00389b71")
    with open(path, "wb") as file:
        file.write(b"RIFF" + struct.pack("<I", 4 + 8 + len(extensible) + 8 + data.nbytes) + b"WAVE")
        file.write(b"fmt " + struct.pack("<I", len(extensible)) + extensible)
        file.write(b"data" + struct.pack("<I", data.nbytes))
        file.write(data.tobytes())


def read_wave(path):
    """(samples, rate) of a file of 32-bit floats, as write_wave and SoX write them."""
    with open(path, "rb") as file:
        data = file.read()
    at, channels, rate = 12, 0, 0
    while True:
        name, size = struct.unpack_from("<4sI", data, at)
        if name == b"fmt ":
            channels, rate = struct.unpack_from("<HI", data, at + 10)
        elif name == b"data":
            samples = numpy.frombuffer(data, dtype="<f4", count=size // 4, offset=at + 8)
            return samples.reshape(-1, channels), rate
        at += 8 + size + size % 2


def read_sound(path, channels):
    """The samples of a file's first track, whatever its kind, as FFmpeg decodes them."""
    data = run(["ffmpeg", "-v", "error", "-i", path, "-map", "0:a:0", "-f", "f32le", "-"])
    return numpy.frombuffer(data, dtype="<f4").reshape(-1, channels)
