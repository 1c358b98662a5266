#!/usr/bin/env python3
"""The programs, going on for long: the studio playing, send, check of a stream that does not end and of recordings one after
the other, and the MLT producer, all at once, under a watch of their memory and descriptors. The system's clock leaps for them
(LeapingClock.cpp), and now and then they are stopped and go on (SIGSTOP, SIGCONT), as on a machine that is put to sleep. They
have no home folder, and what they would write of their own accord goes onto a disk that others of them fill.

usage: long_run.py --build FOLDER --minutes N
"""
import argparse
import json
import os
import pathlib
import subprocess
import sys
import tempfile

from watch import Watched, watch


def faults_of_leaps(log):
    """What is wrong with what a sender by the system's clock says of itself, a line a second: it goes on whatever the time."""
    said = [json.loads(line) for line in log.read_text().splitlines() if line.startswith("{")]
    faults = [] if said and said[-1]["jumps"] > 0 else ["it knows of no leap of the clock"]
    half = said[len(said) // 2:]
    return faults + ([] if half and half[-1]["datagrams"] > half[0]["datagrams"] else ["it stopped sending"])


class Repeated:
    """Commands one after the other, again and again. `fault_of` says what is wrong with a run that has ended, or nothing."""

    def __init__(self, name, commands, fault_of, folder, environment):
        self.name, self.commands, self.fault_of = name, commands, fault_of
        self.folder, self.environment = folder, environment
        self.count, self.faults, self.process = 0, [], None

    def go_on(self):
        if self.process is not None and self.process.poll() is None:
            return
        if self.process is not None:
            self.look()
        self.process = subprocess.Popen(self.commands[self.count % len(self.commands)], cwd=self.folder,
                                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=self.environment)

    def look(self):
        said = self.process.stdout.read().decode()
        self.process.stdout.close()
        self.count += 1
        if fault := self.fault_of(self.process.args, self.process.returncode, said):
            self.faults.append(f"run {self.count}: {fault}")
        self.process = None

    def end(self):
        """What was wrong, after all."""
        if self.process is not None:
            self.process.wait()
            self.look()
        return self.faults if self.count >= len(self.commands) else ["it came to no end"]

    def summary(self):
        return f"{self.name}: {self.count} runs"


def checks(lineup, folder, environment):
    """lineup check of one recording: it says the same every time."""
    command = [lineup, "check", "bars.mov"]
    subprocess.run([lineup, "render", "bars.mov", "--size", "320x180", "--ident", "blits", "--duration", "14"], cwd=folder,
                   check=True, capture_output=True)
    first = subprocess.run(command, cwd=folder, check=True, stdout=subprocess.PIPE,
                           stderr=subprocess.STDOUT, text=True).stdout

    def fault_of(_command, status, said):
        return "" if status == 0 and said == first else f"it ended with {status}: {said[-300:]}"

    return Repeated("check, one recording after the other", [command], fault_of, folder, environment)


def writers(lineup, folder, environment):
    """Programs that write onto a disk that is full: each says so, and leaves nothing but a stream of whole packets."""
    size = ["--size", "320x240"]
    commands = [[lineup, "send", "kept.ts", "-y", "--clock", "free", "--quiet", *size],
                [lineup, "render", "bars.mov", *size], [lineup, "settings", "tone.batn", "--defaults"]]

    def fault_of(command, status, said):
        kept = [f"{entry.name} of {entry.stat().st_size} bytes" for entry in os.scandir(folder)]
        bytes_kept = os.path.getsize(os.path.join(folder, "kept.ts")) if kept else 0
        expected = f"cannot write {command[2]}: No space left on device"
        if command[1] == "send":
            expected += f"; what was sent before is kept: {bytes_kept} bytes"
        right = status == 1 and expected in said and len(kept) == 1 and bytes_kept % 188 == 0
        return "" if right else f"{command[1]} ended with {status}: {said[-300:]}, and there is {kept}"

    return Repeated("writers onto a full disk", commands, fault_of, folder, environment)


class SmallDisk:
    """A disk of 256 KiB in a folder, which this process and its children see alone."""

    def __init__(self, folder):
        self.folder = folder

    def __enter__(self):
        os.mkdir(self.folder)
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=256k", "small", self.folder], check=True)
        return self.folder

    def __exit__(self, *_):
        subprocess.run(["umount", self.folder], check=True)


def with_mounts_of_its_own():
    """Begins this program anew where what it mounts is seen by nobody else."""
    if os.environ.get("LONG_RUN_ALONE") is None:
        as_root = [] if os.geteuid() == 0 else ["--map-root-user"]
        os.execvpe("unshare", ["unshare", *as_root, "--mount", sys.executable, "-B", *sys.argv],
                   {**os.environ, "LONG_RUN_ALONE": "1"})


def homeless(full_disk, clock):
    """What the programs find around them: a clock that leaps, no home, and temporary files on a disk that fills up."""
    kept = {name: value for name, value in os.environ.items() if not name.startswith("XDG_")}
    return {**kept, "LD_PRELOAD": str(clock), "HOME": "/nonexistent", "TMPDIR": full_disk}


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--minutes", type=float, required=True)
    arguments = parser.parse_args()
    with_mounts_of_its_own()
    with tempfile.TemporaryDirectory() as folder, SmallDisk(os.path.join(folder, "small")) as disk:
        return run(arguments.build.resolve(), arguments.minutes, folder, disk)


def run(build, minutes, folder, disk):
    lineup = str(build / "bin/lineup")
    environment = homeless(disk, build / "tests/leaping_clock.so")
    written = os.path.join(disk, "written")
    os.mkdir(written)
    repeated = [checks(lineup, folder, environment), writers(lineup, written, environment)]

    def watched(name, *commands, **changed):
        return Watched(name, *commands, environment={**environment, **changed}, folder=folder)

    by_the_clock = watched("send by the system's clock", [lineup, "send", "udp://127.0.0.1:45211", "--size", "320x180",
                                                          "--clock", "wall", "--json"])
    programs = [
        # Its sound server has its own folder; what it remembers of its window goes onto the full disk.
        watched("studio playing", [str(build / "tests/playing_studio"), disk], TMPDIR=folder),
        watched("send", [lineup, "send", "udp://127.0.0.1:45210", "--size", "640x360", "--quiet"]),
        by_the_clock,
        watched("send into check", [lineup, "send", "-", "--size", "320x180", "--quiet"], [lineup, "check", "-"]),
        watched("send into check --watch", [lineup, "send", "-", "--size", "320x180", "--quiet"],
                [lineup, "check", "--watch", "-"]),
        watched("MLT producer", [str(build / "bin/lineup-mlt"), "melt", "barsandtone:", "length=100000000", "out=99999999",
                                 "-consumer", "null"])]
    faults = []
    try:
        watch(programs, minutes * 60, lambda: [each.go_on() for each in repeated])
    finally:
        for program in [*programs, *repeated]:
            faults += [f"{program.name}: {fault}" for fault in program.end()]
    faults += [f"{by_the_clock.name}: {fault}" for fault in faults_of_leaps(by_the_clock.log)]
    print("\n".join([*faults, *(program.summary() for program in [*programs, *repeated])]))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
