"""Many streams at once from one machine: the processor time of each, ours beside the rival's in the same minutes.

    python3 Benchmarks/SideBySide/many_streams.py --lineup build/release/bin/lineup [--streams 100] [--seconds 30]

The two kinds take turns, since together they would be twice as many. Every stream has a receiver on the loopback that
the system holds and nobody reads: what it could not take more of it counts, so that the table says what came. L24 is
held to one processor. What other programs took meanwhile stands in the table's last column; where that is much, the
figures are the machine's as much as ours. Without options it takes about ten minutes."""

import argparse
import contextlib
import json
import os
import shlex
import shutil
import socket
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass

from race import processor_seconds

PICTURE = "--ident blits --audio-codec ac3 --bitrate 3M"
GIVEN = f"{{lineup}} send {{given}} {PICTURE} --for 134 --clock free -y -q"
FFMPEG = ("ffmpeg -nostdin -v error -re -stream_loop -1 -i {given} -c copy -f mpegts -muxrate 3000000 "
          "'udp://127.0.0.1:{port}?pkt_size=1316&bitrate=3000000'")
SIXTEEN = ("gst-launch-1.0 -q audiotestsrc is-live=true wave=sine freq=1000 volume=0.25 samplesperbuffer=48 "
           "! audio/x-raw,format=S24BE,rate=48000,channels=16,layout=interleaved,channel-mask=(bitmask)0x0 "
           "! rtpL24pay mtu=2400 min-ptime=1000000 max-ptime=1000000 ! udpsink host=127.0.0.1 port={port}")
TICKS = os.sysconf("SC_CLK_TCK")


@dataclass
class Contest:
    name: str
    ours: str
    theirs: str
    rival: str
    given: str
    share: float  # of the streams that were asked for
    datagrams: float  # a second and stream
    one_processor: bool


CONTESTS = (
    Contest("H.264 1080p25 and AC-3, BLITS", f"{{lineup}} send udp://127.0.0.1:{{port}} {PICTURE} --json", FFMPEG,
            "ffmpeg -re -stream_loop -1 -c copy", GIVEN, 1, 3e6 / (7 * 188 * 8), False),
    Contest("H.264 1080p25 and AC-3, BLITS, from one process", f"{{lineup}} send {{urls}} {PICTURE} --json", FFMPEG,
            "ffmpeg -re -stream_loop -1 -c copy", GIVEN, 1, 3e6 / (7 * 188 * 8), False),
    Contest("L24, 16 channels, 1 ms",
            "{lineup} send 'rtp://127.0.0.1:{port}?mtu=9000' --format l24 --copies 8 --json", SIXTEEN,
            "GStreamer rtpL24pay", "", 0.5, 1000, True),
)


def resident_mebibytes(process):
    with open(f"/proc/{process}/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") / 2**20


def machine_seconds():
    """The processor time of all that runs, by the system's accounts."""
    with open("/proc/stat", encoding="ascii") as file:
        user, nice, system, _, _, irq, softirq, steal = map(int, file.readline().split()[1:9])
    return (user + nice + system + irq + softirq + steal) / TICKS


def not_taken(ports):
    """How many datagrams found no room at these ports."""
    with open("/proc/net/udp", encoding="ascii") as file:
        rows = [line.split() for line in file.readlines()[1:]]
    return sum(int(row[-1]) for row in rows if int(row[1].rpartition(":")[2], 16) in ports)


def last_status(output):
    """What one of our senders said last: {} before the first line is whole."""
    output.seek(0)
    lines = [line for line in output.read().split("\n")[:-1] if '"datagrams"' in line]
    return json.loads(lines[-1]) if lines else {}


class Streams:
    """So many processes of one command, each with its receiver, for as long as `with` lasts; where the command has
    {urls}, one process for all receivers."""

    def __init__(self, command, count, processors, **places):
        self.command, self.count, self.processors, self.places = command, count, processors, places
        self.receivers, self.outputs, self.processes = [], [], []

    def __enter__(self):
        try:
            ports = [self.receive() for _ in range(self.count)]
            if "{urls}" in self.command:
                self.start(urls=" ".join(f"udp://127.0.0.1:{port}" for port in ports))
            else:
                for port in ports:
                    self.start(port=port)
        except BaseException:
            self.end()
            raise
        return self

    def receive(self):
        receiver = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        receiver.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)  # full at once
        self.receivers.append(receiver)
        receiver.bind(("127.0.0.1", 0))
        return receiver.getsockname()[1]

    def start(self, **where):
        self.outputs.append(tempfile.TemporaryFile(mode="w+"))
        line = shlex.split(self.command.format(**where, **self.places))
        self.processes.append(subprocess.Popen(line, stdin=subprocess.DEVNULL, stdout=self.outputs[-1]))
        os.sched_setaffinity(self.processes[-1].pid, self.processors)

    def __exit__(self, *_):
        self.end()

    def end(self):
        for process in self.processes:
            process.terminate()
        for process in self.processes:
            try:
                process.wait(20)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        for each in (*self.receivers, *self.outputs):
            each.close()

    def check(self):
        ended = [process.args for process in self.processes if process.poll() is not None]
        if ended:
            raise RuntimeError(f"{len(ended)} streams ended by themselves: {shlex.join(ended[0])}")

    def wait_for_all(self, seconds):
        """Until something has come from each."""
        ports = [receiver.getsockname()[1] for receiver in self.receivers]
        end = time.monotonic() + seconds
        while any(not_taken({port}) == 0 for port in ports):
            self.check()
            if time.monotonic() > end:
                raise RuntimeError(f"not all of {self.count} streams had begun after {seconds:.0f} s")
            time.sleep(1)

    def measure(self, seconds):
        """Of a stretch: ms of processor a second and stream, datagrams that came, what others took, lateness."""
        ports = {receiver.getsockname()[1] for receiver in self.receivers}
        statuses = [last_status(output) for output in self.outputs]
        before = [processor_seconds(process.pid) for process in self.processes]
        machine, lost, start = machine_seconds(), not_taken(ports), time.perf_counter()
        time.sleep(seconds)
        passed = time.perf_counter() - start
        came, all_taken = not_taken(ports) - lost, machine_seconds() - machine
        self.check()
        taken = sum(processor_seconds(process.pid) for process in self.processes) - sum(before)
        then = [last_status(output) for output in self.outputs]
        return {
            "ms": 1000 * taken / passed / self.count,
            "came": came / passed / self.count,
            "others": max(0.0, (all_taken - taken) / passed),
            "processors": taken / passed,
            "mebibytes": sum(resident_mebibytes(process.pid) for process in self.processes) / self.count,
            "late": sum(now.get("late", 0) - was.get("late", 0) for now, was in zip(then, statuses)),
            "sent": sum(now.get("datagrams", 0) - was.get("datagrams", 0) for now, was in zip(then, statuses)),
            "worst": max((now.get("worstLateMs", 0) for now in then), default=0),
        }


def run(contest, command, count, options, **places):
    processors = {min(os.sched_getaffinity(0))} if contest.one_processor else os.sched_getaffinity(0)
    with Streams(command, count, processors, **places) as streams:
        streams.wait_for_all(options.patience)
        time.sleep(options.settle)
        return streams.measure(options.seconds)


def show(who, row, contest, count):
    print(f"  {who:<36} {count:>4} {row['ms']:>9.2f} {row['mebibytes']:>6.0f} {row['processors']:>10.2f} "
          f"{100 * row['came'] / contest.datagrams:>8.1f} {row['others']:>7.2f}", flush=True)


def compete(contest, options, **places):
    count = max(1, round(options.streams * contest.share))
    if contest.given:
        subprocess.run(shlex.split(contest.given.format(**places)), check=True)
    print(f"{contest.name}{', all on one processor' if contest.one_processor else ''}\n"
          f"  {'':<36} {'n':>4} {'ms/s each':>9} {'MiB':>6} {'processors':>10} {'came, %':>8} {'others':>7}")
    ours = run(contest, contest.ours, count, options, **places)
    show("lineup send", ours, contest, count)
    if shutil.which(shlex.split(contest.theirs)[0]) is None:
        print(f"  {contest.rival}: not installed")
        return
    theirs = run(contest, contest.theirs, count, options, **places)
    show(contest.rival, theirs, contest, count)
    if theirs["came"] < 0.95 * contest.datagrams:
        count = max(1, count // 10)
        print(f"  the rival does not keep up with so many; {count} of it:")
        theirs = run(contest, contest.theirs, count, options, **places)
        show(contest.rival, theirs, contest, count)
    print(f"  ratio {theirs['ms'] / max(ours['ms'], 1e-9):.2f} (above 1: ours takes less); ours were more than 2 ms late "
          f"{ours['late']} times of {ours['sent']} while measured, the worst since the start {ours['worst']:.1f} ms")
    if max(ours["others"], theirs["others"]) > 0.2:
        print("  the machine was not quiet: times and lateness are larger than they would be, ours and theirs")
    sys.stdout.flush()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--lineup", required=True)
    parser.add_argument("--streams", type=int, default=100, help="half as many of L24 [100]")
    parser.add_argument("--seconds", type=float, default=30, help="that are measured [30]")
    parser.add_argument("--settle", type=float, default=10,
                        help="before, once all have begun; 300 leaves out what encodes the first cycles [10]")
    parser.add_argument("--patience", type=float, default=180, help="seconds until all must have begun [180]")
    parser.add_argument("--only", default="", metavar="TEXT", help="what has TEXT in its name")
    options = parser.parse_args()
    lineup = os.path.abspath(options.lineup)
    print(f"{os.cpu_count()} processors, load {os.getloadavg()[0]:.1f} before")
    with tempfile.TemporaryDirectory(prefix="lineup-streams-") as folder, contextlib.suppress(KeyboardInterrupt):
        for contest in CONTESTS:
            if options.only in contest.name:
                compete(contest, options, lineup=lineup, given=os.path.join(folder, "given.ts"))
    return 0


if __name__ == "__main__":
    sys.exit(main())
