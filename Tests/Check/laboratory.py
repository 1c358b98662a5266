#!/usr/bin/env python3
"""A laboratory of damages: line-ups are damaged in known ways, and what `lineup check` names is held against it.

Cases are drawn from their numbers, so that each can be looked at by itself: laboratory.py --lineup PROGRAM --case N"""

import argparse
import json
import multiprocessing
import os
import subprocess
import sys
import tempfile

import cases
import judge
from workshop import Workshop

CHUNK = 10  # cases of a worker's turn
RIGHT_AT_LEAST = 0.999


def check(lineup, paths, arguments):
    """A report for each path."""
    done = subprocess.run([lineup, "check", "--json", *arguments, *paths], capture_output=True, check=False)
    if done.returncode not in (0, 1, 3):
        raise RuntimeError(f"lineup check: exit status {done.returncode}: {done.stderr.decode()}")
    return [json.loads(line) for line in done.stdout.splitlines()]


def judge_cases(work):
    lineup, folder, numbers = work
    workshop = Workshop(lineup, folder)
    groups = {}
    for number in numbers:
        case = cases.draw(number)
        groups.setdefault(tuple(case.draft.arguments), []).append((case, workshop.make(case)))
    outcomes = []
    for arguments, group in groups.items():
        reports = check(lineup, [path for _, path in group], arguments)
        outcomes += [judge.outcome_of(case, report) for (case, _), report in zip(group, reports, strict=True)]
        for _, path in group:
            os.remove(path)
    return outcomes


def run_cases(options, folder, numbers):
    chunks = [(options.lineup, folder, numbers[i:i + CHUNK]) for i in range(0, len(numbers), CHUNK)]
    outcomes = []
    with multiprocessing.Pool(options.jobs) as pool:
        for some in pool.imap(judge_cases, chunks):
            outcomes += some
            if sys.stderr.isatty():
                print(f"\r{len(outcomes)} of {len(numbers)}", end="", file=sys.stderr, flush=True)
    return sorted(outcomes, key=lambda outcome: outcome.number)


def show_wrong(outcomes):
    for outcome in outcomes:
        if not outcome.right:
            print(f"case {outcome.number} ({', '.join(outcome.families)}; {outcome.chain}): due {outcome.expected}, "
                  f"{outcome.verdict} {outcome.got}")


def show_case(options, folder):
    case = cases.draw(options.case)
    print("\n".join(case.told()))
    path = Workshop(options.lineup, folder).make(case)
    report = check(options.lineup, [path], case.draft.arguments)[0]
    outcome = judge.outcome_of(case, report)
    print(f"due: {outcome.expected}\ngot: {outcome.verdict} {outcome.got}\n" + "\n".join(outcome.texts))
    if options.keep:
        os.replace(path, options.keep)
    return 0 if outcome.right else 1


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n", maxsplit=1)[0])
    parser.add_argument("--lineup", required=True, help="the program")
    parser.add_argument("--cases", type=int, default=200, help="how many [200]")
    parser.add_argument("--first", type=int, default=0, help="the first one's number")
    parser.add_argument("--not-yet", action="store_true", help="families that the check does not look for yet")
    parser.add_argument("--case", type=int, help="this one alone, with all that was done")
    parser.add_argument("--keep", metavar="FILE", help="with --case: keep the recording")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    options = parser.parse_args()
    memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    with tempfile.TemporaryDirectory(prefix="lineup-laboratory-", dir=memory) as folder:
        if options.case is not None:
            return show_case(options, folder)
        first = options.first + (cases.NOT_YET_FROM if options.not_yet else 0)
        outcomes = run_cases(options, folder, range(first, first + options.cases))
    show_wrong(outcomes)
    print(judge.matrix(outcomes))
    score = judge.score(outcomes)
    print(", ".join(f"{name} {count}" for name, count in score.items()))
    enough = score["right"] >= RIGHT_AT_LEAST * score["told"] and score["undamaged wrong"] == 0
    return 0 if enough or options.not_yet else 1


if __name__ == "__main__":
    sys.exit(main())
