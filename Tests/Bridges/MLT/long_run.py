"""Renders many minutes of clip with melt, on several threads, and watches the process: once it has warmed up its memory
must not grow and its number of threads must not change.

long_run.py LAUNCHER [--minutes N]: LAUNCHER is lineup-mlt, or `env MLT_REPOSITORY=...` in one argument."""
import argparse
import shlex
import subprocess
import sys
import time

FRAMES_PER_MINUTE = 1500
TRIES = 4
SLEEPS_ON = 20  # seconds on one thread alone: melt 7.12 now and then does not start; see Docs/mlt.md
BETWEEN = 0.02  # seconds from sample to sample
MOST_ENDING = 75  # samples, a second and a half
MOST_GROWTH = 1024  # KiB: an hour has 90000 frames, so that 12 bytes a frame would be seen

# A file format that takes everything; nothing is kept of it.
CONSUMER = ("avformat:/dev/null f=null vcodec=rawvideo pix_fmt=yuv422p acodec=pcm_f32le mlt_audio_format=f32le "
            "channels=6 real_time=-2 width=64 height=36")


def status(process):
    """Resident memory in KiB and threads of a running process; None when it has ended."""
    try:
        with open(f"/proc/{process.pid}/status") as file:
            fields = dict(line.split(":", 1) for line in file)
        return int(fields["VmRSS"].split()[0]), int(fields["Threads"])
    except (OSError, KeyError):
        return None


def watch(command, seconds):
    """Runs `command`; its samples of memory and threads. None when it slept on instead of starting."""
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    samples = []
    end = time.monotonic() + seconds
    alone_since = time.monotonic()
    try:
        while process.poll() is None:
            now = time.monotonic()
            sample = status(process)
            if sample:
                samples.append(sample)
                alone_since = alone_since if sample[1] == 1 else now
            if now - alone_since > SLEEPS_ON:
                return None
            if now > end:
                sys.exit(f"long_run: not done after {seconds} s")
            time.sleep(BETWEEN)
    finally:
        process.kill()
        process.wait()
    if process.returncode != 0:
        sys.exit(f"long_run: melt ended with status {process.returncode}")
    return samples


def problem_of(samples, minutes, seconds):
    """What is wrong with a run's samples, or None."""
    # From when all threads run to when they begin to go, but for the first fifth: pools fill.
    most = max(number for _, number in samples)
    running = [i for i, (_, number) in enumerate(samples) if number == most]
    steady = samples[running[0]:running[-1] + 1]
    if len(samples) - running[-1] > MOST_ENDING:
        return f"threads have gone before the end: of {most}, {samples[running[-1] + 1][1]} were left"
    steady = steady[len(steady) // 5:]
    if len(steady) < 12:
        return f"only {len(steady)} samples with {most} threads"
    half = len(steady) // 2
    before, after = (max(memory for memory, _ in part) for part in (steady[:half], steady[half:]))
    threads = sorted({number for _, number in steady})
    print(f"{minutes} minutes of clip in {seconds:.0f} s: at most {before} KiB in the first half, {after} KiB in the "
          f"second; threads: {', '.join(map(str, threads))} ({len(steady)} samples)")
    if after - before > MOST_GROWTH:
        return f"memory grows by {after - before} KiB"
    return None if len(threads) == 1 else "the number of threads changes"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("launcher")
    parser.add_argument("--minutes", type=int, default=60)
    arguments = parser.parse_args()
    frames = arguments.minutes * FRAMES_PER_MINUTE
    command = shlex.split(arguments.launcher) + ["melt", "-silent", "-profile", "dv_pal", "barsandtone:blits",
                                                 f"length={frames}", f"out={frames - 1}", "-consumer"] + CONSUMER.split()
    # On a busy machine samples come late; what is wrong with the program is wrong every time.
    problem = "melt did not start"
    for _ in range(TRIES):
        start = time.monotonic()
        samples = watch(command, 60 + 10 * arguments.minutes)
        if samples:
            problem = problem_of(samples, arguments.minutes, time.monotonic() - start)
            if problem is None:
                return
            print(f"long_run: {problem}", file=sys.stderr)
    sys.exit(f"long_run: in none of {TRIES} tries: {problem}")


if __name__ == "__main__":
    main()
