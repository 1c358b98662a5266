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


def channels_in(path):
    fields = ["-show_entries", "stream=channels,sample_rate", "-of", "csv=p=0"]
    rows = run(["ffprobe", "-v", "error", "-select_streams", "a:0", *fields, path]).decode().split()
    rate, channels = rows[0].split(",")[:2]
    return int(channels), int(rate)


def read_sound(path):
    """(samples, rate) of a file's first track."""
    channels, rate = channels_in(path)
    data = run(["ffmpeg", "-v", "error", "-i", path, "-map", "0:a:0", "-f", "f32le", "-"])
    return numpy.frombuffer(data, dtype="<f4").reshape(-1, channels), rate
