#!/usr/bin/env python3
"""The programs, going on for long: the studio playing, send, check of a stream that does not end and of recordings one after
the other, and the MLT producer, all at once, under a watch of their memory and descriptors. The system's clock leaps for them
(LeapingClock.cpp), and now and then they are stopped and go on (SIGSTOP, SIGCONT), as on a machine that is put to sleep.

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


class Checks:
    """lineup check of one recording, again and again: it says the same every time, and leaves no process and no file."""

    def __init__(self, lineup, folder, environment):
        self.environment = {**os.environ, **environment}
        self.command, self.folder = [lineup, "check", "bars.mov"], folder
        subprocess.run([lineup, "render", "bars.mov", "--size", "320x180", "--ident", "blits", "--duration", "14"],
                       cwd=folder, check=True, capture_output=True)
        self.said, self.count, self.faults, self.process = None, 0, [], None

    def go_on(self):
        if self.process is not None and self.process.poll() is None:
            return
        if self.process is not None:
            said = self.process.stdout.read()
            self.process.stdout.close()
            self.count += 1
            self.said = self.said or said
            if self.process.returncode != 0 or said != self.said:
                self.faults.append(f"run {self.count} ended with {self.process.returncode}: {said.decode()[-300:]}")
        self.process = subprocess.Popen(self.command, cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                        env=self.environment)

    def end(self):
        self.process.wait()
        self.process.stdout.close()
        if self.count == 0:
            self.faults.append("it came to no end")
        return self.faults


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--minutes", type=float, required=True)
    arguments = parser.parse_args()
    build = arguments.build.resolve()
    lineup = str(build / "bin/lineup")
    with tempfile.TemporaryDirectory() as folder:
        leaps = {"LD_PRELOAD": str(build / "tests/leaping_clock.so")}
        checks = Checks(lineup, folder, leaps)

        def watched(name, *commands):
            return Watched(name, *commands, environment=leaps, folder=folder)

        by_the_clock = watched("send by the system's clock", [lineup, "send", "udp://127.0.0.1:45211", "--size", "320x180",
                                                              "--clock", "wall", "--json"])
        programs = [
            watched("studio playing", [str(build / "tests/playing_studio")]),
            watched("send", [lineup, "send", "udp://127.0.0.1:45210", "--size", "640x360", "--quiet"]),
            by_the_clock,
            watched("send into check", [lineup, "send", "-", "--size", "320x180", "--quiet"], [lineup, "check", "-"]),
            watched("send into check --watch", [lineup, "send", "-", "--size", "320x180", "--quiet"],
                    [lineup, "check", "--watch", "-"]),
            watched("MLT producer", [str(build / "bin/lineup-mlt"), "melt", "barsandtone:", "length=100000000", "out=99999999",
                                     "-consumer", "null"])]
        status = 0
        try:
            watch(programs, arguments.minutes * 60, checks.go_on)
        finally:
            for program in programs:
                for fault in program.end():
                    print(f"{program.name}: {fault}")
                    status = 1
        for fault in faults_of_leaps(by_the_clock.log):
            print(f"{by_the_clock.name}: {fault}")
            status = 1
        for fault in checks.end():
            print(f"check, one recording after the other: {fault}")
            status = 1
        for program in programs:
            print(program.summary())
        print(f"check, one recording after the other: {checks.count} runs")
    return status


if __name__ == "__main__":
    sys.exit(main())
