"""Many streams at once from one machine: the processor time of each, ours beside the rival's in the same minute.

    python3 Benchmarks/SideBySide/many_streams.py --lineup build/release/bin/lineup [--streams 100] [--seconds 30]

The two kinds take turns, since together they would be twice as many. Every stream has a receiver on the loopback that
the system holds and nobody reads, and is a process of its own, as it would be in service."""

import argparse
import json
import os
import shlex
import socket
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass

from race import processor_seconds

PICTURE = "--ident blits --audio-codec ac3 --bitrate 3M"
FFMPEG = ("ffmpeg -nostdin -v error -re -stream_loop -1 -i {given} -c copy -f mpegts -muxrate 3000000 "
          "'udp://127.0.0.1:{port}?pkt_size=1316&bitrate=3000000'")
SIXTEEN = ("gst-launch-1.0 -q audiotestsrc is-live=true wave=sine freq=1000 volume=0.25 samplesperbuffer=48 "
           "! audio/x-raw,format=S24BE,rate=48000,channels=16,layout=interleaved,channel-mask=(bitmask)0x0 "
           "! rtpL24pay mtu=2400 min-ptime=1000000 max-ptime=1000000 ! udpsink host=127.0.0.1 port={port}")


@dataclass
class Contest:
    name: str
    ours: str
    theirs: str
    rival: str
    given: str
    share: float  # of the streams that were asked for


CONTESTS = (
    Contest("H.264 1080p25 and AC-3, BLITS", f"{{lineup}} send udp://127.0.0.1:{{port}} {PICTURE} --json", FFMPEG,
            "ffmpeg -re -stream_loop -1 -c copy", f"{{lineup}} send {{given}} {PICTURE} --for 134 --clock free -y -q", 1),
    Contest("L24, 16 channels, 1 ms",
            "{lineup} send 'rtp://127.0.0.1:{port}?mtu=9000' --format l24 --copies 8 --json", SIXTEEN,
            "GStreamer rtpL24pay", "", 0.5),
)


def resident_mebibytes(process):
    with open(f"/proc/{process}/statm", encoding="ascii") as file:
        return int(file.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") / 2**20


def late_of(outputs):
    """What our senders' last lines say of lateness: how many datagrams of how many, and the worst."""
    lines = [json.loads(output.strip().splitlines()[-1]) for output in outputs if output.strip()]
    return (sum(line["late"] for line in lines), sum(line["datagrams"] for line in lines),
            max((line["worstLateMs"] for line in lines), default=0))


class Streams:
    """So many processes of one command, each with its receiver, for as long as `with` lasts."""

    def __init__(self, command, count, **places):
        self.receivers = [socket.socket(socket.AF_INET, socket.SOCK_DGRAM) for _ in range(count)]
        self.outputs = [tempfile.TemporaryFile(mode="w+") for _ in range(count)]
        self.processes = []
        self.command, self.places = command, places

    def __enter__(self):
        for receiver, output in zip(self.receivers, self.outputs):
            receiver.bind(("127.0.0.1", 0))
            line = shlex.split(self.command.format(port=receiver.getsockname()[1], **self.places))
            self.processes.append(subprocess.Popen(line, stdin=subprocess.DEVNULL, stdout=output))
        return self

    def __exit__(self, *_):
        for process in self.processes:
            process.terminate()
        for process in self.processes:
            process.wait()
        for receiver in self.receivers:
            receiver.close()

    def taken(self, seconds):
        """Milliseconds of processor time that each took in a second."""
        ended = [process.args for process in self.processes if process.poll() is not None]
        if ended:
            raise RuntimeError(f"{len(ended)} streams ended by themselves: {shlex.join(ended[0])}")
        before = [processor_seconds(process.pid) for process in self.processes]
        start = time.perf_counter()
        time.sleep(seconds)
        after = [processor_seconds(process.pid) for process in self.processes]
        passed = time.perf_counter() - start
        return [1000 * (now - was) / passed for was, now in zip(before, after)]

    def said(self):
        for output in self.outputs:
            output.seek(0)
            yield output.read()


def run(command, count, options, **places):
    with Streams(command, count, **places) as streams:
        time.sleep(options.settle)
        taken = streams.taken(options.seconds)
        memory = statistics.mean(resident_mebibytes(process.pid) for process in streams.processes)
    return statistics.mean(taken), memory, list(streams.said())


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--lineup", required=True)
    parser.add_argument("--streams", type=int, default=100, help="half as many of L24 [100]")
    parser.add_argument("--seconds", type=float, default=30, help="that are measured [30]")
    parser.add_argument("--settle", type=float, default=15, help="before: beginning is not counted [15]")
    parser.add_argument("--only", default="", metavar="TEXT", help="what has TEXT in its name")
    options = parser.parse_args()
    lineup = os.path.abspath(options.lineup)
    print(f"{os.cpu_count()} processors, load {os.getloadavg()[0]:.1f} before; ms of processor a second and stream")
    with tempfile.TemporaryDirectory(prefix="lineup-streams-") as folder:
        for contest in CONTESTS:
            if options.only not in contest.name:
                continue
            count = max(1, round(options.streams * contest.share))
            places = {"lineup": lineup, "given": os.path.join(folder, "given.ts")}
            if contest.given:
                subprocess.run(shlex.split(contest.given.format(**places)), check=True)
            ours, our_memory, said = run(contest.ours, count, options, **places)
            theirs, their_memory, _ = run(contest.theirs, count, options, **places)
            late, datagrams, worst = late_of(said)
            print(f"{contest.name}, {count} streams: ours {ours:.2f} ms ({our_memory:.0f} MiB), {contest.rival} "
                  f"{theirs:.2f} ms ({their_memory:.0f} MiB), ratio {theirs / ours:.2f}; "
                  f"ours were late {late} times of {datagrams}, the worst {worst:.1f} ms", flush=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())
