#!/usr/bin/env python3
"""uncovered.py ROOT FOLDER PERCENT LINES BRANCHES: what the tests reach of a folder.

LINES is llvm-cov's export in lcov's format, BRANCHES its export as JSON. Prints a row for each file, then each line
that was never run and each condition that never came out one of its two ways. Branches are the conditions written in
the source, without those that the compiler adds for exceptions. A condition in a template, or in a file that is
compiled several times, counts once, as reached when any copy was. Ends with 1 when lines or branches are below PERCENT.
"""

import collections
import json
import os
import sys

BRANCH = 4  # llvm-cov's number for a region that is a condition


def read_lines(path):
    """{file: {line: how often it was run}}"""
    files = collections.defaultdict(dict)
    name = None
    with open(path, encoding="utf-8") as text:
        for entry in text:
            key, _, value = entry.strip().partition(":")
            if key == "SF":
                name = value
            elif key == "DA":
                line, count = value.split(",")[:2]
                files[name][int(line)] = max(int(count), files[name].get(int(line), 0))
    return files


def read_branches(path):
    """{file: {(line, column, last line, last column): [times true, times false]}}"""
    files = collections.defaultdict(lambda: collections.defaultdict(lambda: [0, 0]))
    with open(path, encoding="utf-8") as text:
        export = json.load(text)["data"][0]
    for file in export["files"]:
        for *place, true, false, _file, _expanded, kind in file["branches"]:
            if kind == BRANCH:
                counts = files[file["filename"]][tuple(place)]
                counts[0] += true
                counts[1] += false
    return files


def source(path, line):
    with open(path, encoding="utf-8") as text:
        return text.read().splitlines()[line - 1].strip()


def percent(reached, total):
    return 100.0 * reached / total if total else 100.0


def main():
    root, folder, least, lines_path, branches_path = sys.argv[1:]
    lines = read_lines(lines_path)
    branches = read_branches(branches_path)
    totals = [0, 0, 0, 0]
    missing = []
    print(f"{'lines':>14} {'branches':>20}")
    for path in sorted(lines):
        name = os.path.relpath(path, root)
        counts = lines[path]
        sides = [(place, side, count) for place, pair in branches[path].items() for side, count in zip(("true", "false"), pair)]
        row = [sum(c > 0 for c in counts.values()), len(counts), sum(c > 0 for *_, c in sides), len(sides)]
        totals = [a + b for a, b in zip(totals, row)]
        print("{:>5}/{:<5} {:5.1f}".format(row[0], row[1], percent(row[0], row[1])),
              "{:>5}/{:<5} {:5.1f}".format(row[2], row[3], percent(row[2], row[3])), name)
        for line in sorted(line for line, count in counts.items() if count == 0):
            missing.append(f"{name}:{line}: never run: {source(path, line)}")
        for (line, *_), side, count in sorted(sides):
            if count == 0 and counts.get(line, 0) > 0:
                missing.append(f"{name}:{line}: never {side}: {source(path, line)}")
    reached = percent(totals[0], totals[1]), percent(totals[2], totals[3])
    print("\n".join(missing))
    print(f"{folder}: {reached[0]:.1f} % of {totals[1]} lines, {reached[1]:.1f} % of {totals[3]} branches "
          f"(at least {least} %)")
    return 0 if min(reached) >= float(least) else 1


if __name__ == "__main__":
    sys.exit(main())
