"""The benchmarks: the micro benchmarks, and whole files against other programs. See Docs/speed.md."""

import argparse
import json
import os
import subprocess
import sys
import tempfile

import contests
from race import Runner

MICRO_REPORT = "micro.json"


def arguments():
    parser = argparse.ArgumentParser(
        prog="./dev bench", description="Every figure is a ratio measured in this run: above 1 we are the faster.")
    parser.add_argument("--programs", required=True, help=argparse.SUPPRESS)
    parser.add_argument("--lineup", required=True, help=argparse.SUPPRESS)
    parser.add_argument("--quick", action="store_true", help="less media and one round: a few minutes in all")
    parser.add_argument("--unscaled", action="store_true",
                        help="let rivals encode all of the media, however long it takes")
    parser.add_argument("--rounds", type=int, help="paired runs of each contest [3, quick: 1]")
    parser.add_argument("--only", metavar="TEXT", default="", help="what has TEXT in its name")
    parser.add_argument("--json", metavar="FILE", help="write all figures there too")
    parser.add_argument("--folder", metavar="FOLDER", help="where files are written [a folder in /tmp]")
    return parser.parse_known_args()


def machine():
    """What the figures were measured on."""
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        models = [line.partition(":")[2].strip() for line in file if line.startswith("model name")]
    return {"processor": models[0] if models else "unknown", "processors": len(os.sched_getaffinity(0))}


def figures_of(run):
    """A benchmark's name and counters, without what the library says of its own work."""
    return {key: value for key, value in run.items()
            if key in ("name", "real_time", "time_unit", "best_ns") or key.startswith(("vs_", "ms_"))}


def micro(options, rest):
    """The Google Benchmark programs; their own tables go to the terminal."""
    reports = {}
    for name in sorted(os.listdir(options.programs)):
        program = os.path.join(options.programs, name)
        if not (os.path.isfile(program) and os.access(program, os.X_OK) and options.only in name):
            continue
        print(f"== {name}", flush=True)
        with tempfile.TemporaryDirectory() as folder:
            report = os.path.join(folder, MICRO_REPORT)
            subprocess.run([program, f"--benchmark_out={report}", "--benchmark_out_format=json", *rest], check=True)
            with open(report, encoding="utf-8") as file:
                reports[name] = [figures_of(run) for run in json.load(file)["benchmarks"]]
    return reports


def show(row):
    unit = row.get("unit", "s")
    scaled = row.get("scaledFromSeconds")
    note = f"  (scaled up from {scaled} s of media)" if scaled else ""
    goal = f"goal {row['goal']}" if row["goal"] else ""
    processor = (f"processor {row['oursProcessor']:.3f} : {row['theirsProcessor']:.3f} s  "
                 if "oursProcessor" in row else "")
    print(f"{row['contest']:<26} {row['mediaSeconds']:>6g} s {row['ours']:>9.3f} {unit:<3} "
          f"{row['rival']:<16} {row['theirs']:>9.3f} {unit:<3} ratio {row['ratio']:>8.2f}  {processor}{goal}{note}",
          flush=True)


def side_by_side(options, folder):
    rounds = options.rounds or (1 if options.quick else 3)
    runner = Runner(os.path.abspath(options.lineup), folder, rounds, options.unscaled)
    start = Runner(runner.lineup, folder, max(rounds, 21), options.unscaled)  # short, so many
    rows = []

    def add(row):
        rows.append(row)
        show(row)

    print("== side by side: ours, theirs, theirs / ours", flush=True)
    for contest in (*contests.STARTS, *contests.SOUNDS, *contests.CHECKS, *contests.MOVIES):
        if options.only in contest.name:
            seconds = contest.quick_seconds if options.quick else contest.seconds
            for row in (start if contest in contests.STARTS else runner).race(contest, seconds):
                add(row)
    for name, command, shorter, longer, quick_longer, given in contests.MEMORY:
        if options.only in name:
            add(runner.memory(name, command, shorter, quick_longer if options.quick else longer, given))
    for name, ours, theirs, given, seconds, quick_seconds in contests.STREAMS:
        if options.only in name:
            add(runner.stream(name, ours, theirs, given, quick_seconds if options.quick else seconds))
    return rows


def main():
    options, rest = arguments()
    report = {"machine": machine(), "micro": micro(options, rest)}
    with tempfile.TemporaryDirectory(prefix="lineup-bench-", dir=options.folder) as folder:
        report["sideBySide"] = side_by_side(options, folder)
    if options.json:
        with open(options.json, "w", encoding="utf-8") as file:
            json.dump(report, file, indent=1)
    return 0


if __name__ == "__main__":
    sys.exit(main())
