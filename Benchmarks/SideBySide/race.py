"""Paired runs: ours and each rival by turns, so that all meet the same machine in the same minutes."""

import os
import resource
import shlex
import socket
import statistics
import subprocess
import time
from dataclasses import dataclass

FRAME_RATE = 25
SCALED_SECONDS = 4  # of media, for rivals that would take minutes
MEBIBYTE = bytes(1 << 20)


@dataclass(frozen=True)
class Taken:
    """What a run took, s: on the wall, and of processors, which other work on the machine changes less."""

    wall: float
    processor: float

    def __add__(self, other):
        return Taken(self.wall + other.wall, self.processor + other.processor)

    def __sub__(self, other):
        return Taken(self.wall - other.wall, self.processor - other.processor)

    def __mul__(self, by):
        return Taken(self.wall * by, self.processor * by)


def children_seconds():
    """The processor time of all processes that have ended."""
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def median(runs, what):
    return statistics.median(getattr(run, what) for run in runs)


class Runner:
    def __init__(self, lineup, folder, rounds, unscaled):
        """What is measured writes into `folder`, which is emptied between the runs; what it reads lies elsewhere."""
        self.lineup = lineup
        self.folder = os.path.join(folder, "written")
        self.given = os.path.join(folder, "given")
        for each in (self.folder, self.given):
            os.makedirs(each, exist_ok=True)
        self.rounds = rounds
        self.unscaled = unscaled

    def line(self, command, seconds, size=0, waits=False):
        return command.format(
            sync="" if waits else "--no-sync",
            lineup=self.lineup,
            folder=self.folder,
            given=os.path.join(self.given, "given.wav"),
            given_folder=self.given,
            seconds=seconds,
            bytes=size,
            tenths=round(seconds * 10),
            frames_less_one=round(seconds * FRAME_RATE) - 1,
        )

    def give(self, command, seconds):
        if command:
            subprocess.run(["/bin/sh", "-c", self.line(command, seconds)], check=True)

    def clear(self):
        for name in os.listdir(self.folder):
            os.remove(os.path.join(self.folder, name))

    def ready_memory(self, size):
        """Writes and removes a file. The system's memory for as large a file is then at hand: a virtual machine
        may have given it back to its host, and getting it again takes longer than anything measured here."""
        name = os.path.join(self.folder, "ready")
        with open(name, "wb", buffering=0) as file:
            for _ in range(size // len(MEBIBYTE) + 1):
                file.write(MEBIBYTE)
        os.remove(name)

    def time(self, command, seconds, size=0, waits=False):
        """What one run took into a folder that is empty, with memory at hand for a file of `size` bytes. What the run
        before left to be written to the disk is written first."""
        self.clear()
        os.sync()
        self.ready_memory(size)
        line = self.line(command, seconds, size, waits)
        start, before = time.perf_counter(), children_seconds()
        subprocess.run(["/bin/sh", "-c", "exec " + line if "&&" not in line else line], check=True,
                       stdout=subprocess.DEVNULL, stdin=subprocess.DEVNULL)
        return Taken(time.perf_counter() - start, children_seconds() - before)

    def rival_time(self, rival, seconds, size):
        """The rival's time for `seconds` of media, and whether it was scaled up from fewer."""
        if not rival.scaled or self.unscaled or seconds <= SCALED_SECONDS:
            return self.time(rival.command, seconds, size, rival.waits), False
        start = self.time(rival.command, 1 / FRAME_RATE, size)
        shorter = self.time(rival.command, SCALED_SECONDS, size)
        return start + (shorter - start) * (seconds / SCALED_SECONDS), True

    def size_of(self, contest, seconds):
        """The bytes of our file, from a run that is not measured."""
        self.time(contest.command, seconds)
        return os.path.getsize(os.path.join(self.folder, contest.out)) if contest.out else 0

    def race(self, contest, seconds):
        """A row for each rival: medians over the rounds, the ratio being the median of each round's."""
        self.give(contest.given, seconds)
        times = {rival.name: [] for rival in contest.rivals}
        ours, scaled = {rival.name: [] for rival in contest.rivals}, set()
        size = self.size_of(contest, seconds)
        for _ in range(self.rounds):
            for rival in contest.rivals:
                ours[rival.name].append(self.time(contest.command, seconds, size, rival.waits))
                taken, was_scaled = self.rival_time(rival, seconds, size)
                times[rival.name].append(taken)
                if was_scaled:
                    scaled.add(rival.name)
        self.clear()
        return [
            {
                "contest": contest.name,
                "rival": rival.name,
                "mediaSeconds": seconds,
                "bytes": size,
                "ours": median(ours[rival.name], "wall"),
                "theirs": median(times[rival.name], "wall"),
                "ratio": statistics.median(t.wall / o.wall for t, o in zip(times[rival.name], ours[rival.name])),
                "oursProcessor": median(ours[rival.name], "processor"),
                "theirsProcessor": median(times[rival.name], "processor"),
                "goal": rival.goal,
                "scaledFromSeconds": SCALED_SECONDS if rival.name in scaled else None,
                "rounds": self.rounds,
            }
            for rival in contest.rivals
        ]

    def peak_kilobytes(self, command, seconds, given):
        """The peak of a run's resident memory, by time(1): a process that this one starts itself would
        inherit this one's peak."""
        self.give(given, seconds)
        self.clear()
        log = os.path.join(self.folder, "peak")
        line = self.line(command, seconds)
        subprocess.run(["/usr/bin/time", "-f", "%M", "-o", log, "/bin/sh", "-c", "exec " + line], check=True)
        with open(log, encoding="ascii") as file:
            return int(file.read().split()[-1])

    def memory(self, name, command, shorter, longer, given):
        short, long = (self.peak_kilobytes(command, seconds, given) for seconds in (shorter, longer))
        self.clear()
        return {
            "contest": name,
            "rival": f"{shorter} s of media",
            "mediaSeconds": longer,
            "ours": long / 1024,
            "theirs": short / 1024,
            "ratio": long / short,
            "goal": "<= 1.10",
            "unit": "MiB",
            "rounds": 1,
        }

    def stream(self, name, ours, theirs, given, seconds):
        """Milliseconds of processor time that a second of a stream takes, of two that run at the same time. What they
        do to begin with is not counted."""
        settle = 5
        given_file = os.path.join(self.given, "given.ts")
        places = {"lineup": self.lineup, "given": given_file}
        subprocess.run(shlex.split(given.format(port=0, **places)), check=True)
        receivers = [socket.socket(socket.AF_INET, socket.SOCK_DGRAM) for _ in range(2)]
        processes = []
        try:
            for receiver, command in zip(receivers, (ours, theirs)):
                receiver.bind(("127.0.0.1", 0))
                line = shlex.split(command.format(port=receiver.getsockname()[1], **places))
                processes.append(subprocess.Popen(line, stdin=subprocess.DEVNULL))
            time.sleep(settle)
            before = [processor_seconds(process.pid) for process in processes]
            time.sleep(seconds)
            taken = [1000 * (processor_seconds(process.pid) - was) / seconds
                     for process, was in zip(processes, before)]
        finally:
            for process in processes:
                process.terminate()
                process.wait()
            for receiver in receivers:
                receiver.close()
        return {
            "contest": name,
            "rival": "ffmpeg -c copy",
            "mediaSeconds": seconds,
            "ours": taken[0],
            "theirs": taken[1],
            "ratio": taken[1] / max(taken[0], 1e-9),
            "goal": ">= 1",
            "unit": "ms/s",
            "rounds": 1,
        }


def processor_seconds(process):
    """What a process that runs has taken so far, by the system's accounts."""
    with open(f"/proc/{process}/stat", encoding="ascii", errors="replace") as file:
        user, system = file.read().rpartition(")")[2].split()[11:13]
    return (int(user) + int(system)) / os.sysconf("SC_CLK_TCK")
