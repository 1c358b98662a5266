"""A rendered file against the plug-in: every frame, every sample."""
import array
import subprocess

from failure import Failure

WIDTH, HEIGHT, RATE = 1920, 1080, 48000
FRAME = WIDTH * HEIGHT * 2  # codes of a picture in 4:2:2
FLAC_BLOCK = 4608  # samples; the framework fills the last one up with what its buffer held before

# Ten bits against eight: the nearest code of 8 bits lies within 2 of the code of 10 bits, over four.
MOST_CODES = 2
# The framework cuts samples off at 16 bits, full scale being 32767: less than one and a half steps in all.
MOST_STEPS = 1.5


def decode(file, code, *options):
    run = subprocess.run(["ffmpeg", "-v", "error", "-i", str(file), *options, "-"], capture_output=True, timeout=120,
                         stdin=subprocess.DEVNULL)
    if run.returncode != 0:
        raise Failure(f"FFmpeg cannot read {file}: {run.stderr.decode(errors='replace')}")
    return array.array(code, run.stdout)


def plug_in(lineup, folder, name, *options):
    """A file that `lineup render` writes."""
    file = folder / name
    subprocess.run([lineup, "render", str(file), "--overwrite", "--quiet", *options], check=True, timeout=120)
    return file


def expect_pictures(file, lineup, folder, frames):
    """Every picture is the plug-in's in BT.709, each code the nearest that 8 bits have. Says how near they are."""
    exact = decode(plug_in(lineup, folder, "card.mkv", "--video-codec", "ffv1", "--duration", "0.04"), "H",
                   "-frames:v", "1", "-f", "rawvideo", "-pix_fmt", "yuv422p10le")
    codes = decode(file, "B", "-f", "rawvideo", "-pix_fmt", "yuv422p")
    if len(exact) != FRAME or len(codes) != frames * FRAME:
        raise Failure(f"{file} should have {frames} pictures of 1920x1080, it has {len(codes) / FRAME:g}")
    first = codes[:FRAME]
    for i in range(1, frames):
        if codes[i * FRAME:(i + 1) * FRAME] != first:
            raise Failure(f"picture {i} of {file} differs from the first")
    furthest = max(abs(4 * code - value) for code, value in zip(first, exact))
    if furthest > MOST_CODES:
        raise Failure(f"a code of {file} is {furthest / 4:g} off the plug-in's")
    return f"{frames} pictures, each code the nearest of 8 bits (at most {furthest / 4:g} off)"


def expect_sound(file, lineup, folder, seconds, *tone):
    """Every sample is the plug-in's in 16 bits, up to the last block of the encoder. Says how near they are."""
    raw = ("-f", "f32le", "-acodec", "pcm_f32le")
    expected = decode(plug_in(lineup, folder, "sound.wav", "--audio-codec", "pcm-f32", "--duration", str(seconds), *tone),
                      "f", *raw)
    samples = decode(file, "f", *raw)
    count = 2 * RATE * seconds
    if len(expected) != count or not count <= len(samples) < count + 2 * FLAC_BLOCK:
        raise Failure(f"{file} should have {seconds} s of stereo sound, it has {len(samples) / 2 / RATE:g} s")
    furthest = max(abs(a - b) for a, b in zip(samples, expected)) * 32768
    if furthest > MOST_STEPS:
        at = next(i for i, (a, b) in enumerate(zip(samples, expected)) if abs(a - b) * 32768 > MOST_STEPS)
        raise Failure(f"sample {at // 2} of channel {at % 2} of {file} is {samples[at]}, the plug-in's {expected[at]}")
    return f"{count // 2} samples of both channels, at most {furthest:.2f} steps of 16 bits off"
