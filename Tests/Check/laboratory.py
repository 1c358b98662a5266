#!/usr/bin/env python3
"""A laboratory of damages: line-ups are damaged in known ways, and what `lineup check` says is held against it.

Cases are drawn from their numbers, so that each can be looked at by itself: laboratory.py cases --case N"""

import argparse
import json
import multiprocessing
import os
import shutil
import subprocess
import sys
import tempfile

import cases
import damages
import figures
import judge
import orders
import other_sound
import page
import picture_page
import pictures
import reached
from workshop import Workshop

CHUNK = 10  # cases of a worker's turn
SEED = 1
EVERYTHING = {"cases": 2000, "orders": 720, "hours": 10.0, "pictures": 1000}


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
        groups.setdefault(tuple(case.draft.arguments), []).append((case, *workshop.make(case)))
    outcomes = []
    for arguments, group in groups.items():
        reports = check(lineup, [path for _, path, _ in group], arguments)
        outcomes += [judge.outcome_of(case, report, unknown)
                     for (case, _, unknown), report in zip(group, reports, strict=True)]
        for _, path, _ in group:
            os.remove(path)
    return outcomes


def run_cases(options, folder, pool):
    first = options.first + (cases.NOT_YET_FROM if options.not_yet else 0)
    numbers = range(first, first + options.cases)
    chunks = [(options.lineup, folder, numbers[i:i + CHUNK]) for i in range(0, len(numbers), CHUNK)]
    outcomes = []
    for some in pool.imap(judge_cases, chunks):
        outcomes += some
        if sys.stderr.isatty():
            print(f"\r{len(outcomes)} of {len(numbers)}", end="", file=sys.stderr, flush=True)
    return sorted(outcomes, key=lambda outcome: outcome.number)


def show_cases(options, folder, pool):
    if options.case is not None:
        return show_case(options, folder)
    if options.not_yet and not damages.NOT_YET:
        print("every family counts")
        return True
    outcomes = run_cases(options, folder, pool)
    for outcome in outcomes:
        if not outcome.right:
            print(f"case {outcome.number} ({', '.join(outcome.families)}; {outcome.chain}): due {outcome.expected}, "
                  f"{outcome.verdict} {outcome.got}")
    print(judge.matrix(outcomes))
    print(", ".join(f"{name} {count}" for name, count in judge.score(outcomes).items()))
    return options.not_yet or reached.holds(judge.score(outcomes), options.at_least)


def show_case(options, folder):
    case = cases.draw(options.case)
    print("\n".join(case.told()))
    path, unknown = Workshop(options.lineup, folder).make(case)
    report = check(options.lineup, [path], case.draft.arguments)[0]
    outcome = judge.outcome_of(case, report, unknown)
    if unknown:
        print(f"the codec does so by itself: {', '.join(unknown)}; left open")
    print(f"due: {outcome.expected}\ngot: {outcome.verdict} {outcome.got}\n" + "\n".join(outcome.texts))
    if options.keep:
        shutil.move(path, options.keep)
    return outcome.right


def show_figures(options, folder, pool):
    measured = figures.all_figures(options.lineup, folder, check, pool, SEED)
    print("\n".join([figures.HEAD, *(figure.row() for figure in measured)]))
    return all(figure.holds for figure in measured)


def show_orders(options, folder, pool):
    tallies = orders.all_orders(options.lineup, folder, check, pool, options.orders)
    print("\n".join([orders.HEAD, *(tally.row() for tally in tallies)]))
    print("\n".join(example for tally in tallies for example in tally.examples[:5]))
    return all(tally.holds for tally in tallies)


def show_other(options, folder, pool):
    heard = other_sound.all_sound(options.lineup, folder, check, pool, options.hours)
    print(other_sound.told(heard))
    return not any(found for _, _, found in heard)


def show_pictures(options, folder, pool):
    if options.case is not None:
        return pictures.show_one(options, folder)
    return pictures.show(options, folder, pool)


def write_page(options, folder, pool):
    """Everything, as a release has it; the page says what came of it."""
    outcomes = run_cases(options, folder, pool)
    measured = figures.all_figures(options.lineup, folder, check, pool, SEED)
    tallies = orders.all_orders(options.lineup, folder, check, pool, options.orders)
    heard = other_sound.all_sound(options.lineup, folder, check, pool, options.hours)
    seen = pictures.run_cases(options.lineup, folder, pool, range(options.pictures))
    rest = pictures.run_rest(options, folder, pool)
    command = (f"./dev laboratory all --cases {options.cases} --orders {options.orders} --hours {options.hours:g} "
               f"--pictures {options.pictures}")
    text = page.page(command, outcomes, measured, tallies, other_sound.told(heard))
    with open(options.page, "w", encoding="utf-8") as file:
        file.write(picture_page.put_into(text, picture_page.section(command, seen, rest)))
    right, _, wrong, _ = picture_page.score(seen)
    return (reached.holds(judge.score(outcomes)) and all(figure.holds for figure in measured)
            and all(tally.holds for tally in tallies) and not any(name for _, _, name in heard)
            and right >= reached.PICTURES_REACHED * len(seen) and not wrong and rest.holds)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n", maxsplit=1)[0])
    parser.add_argument("--lineup", required=True, help="the program")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    what = parser.add_subparsers(required=True, metavar="WHAT")
    some = what.add_parser("cases", help="damages, and what is named")
    some.add_argument("--cases", type=int, default=200, help="how many [200]")
    some.add_argument("--at-least", type=float, default=reached.REACHED, metavar="PART",
                      help=f"how many must be right [{reached.REACHED}]")
    some.add_argument("--first", type=int, default=0, help="the first one's number")
    some.add_argument("--not-yet", action="store_true", help="families that do not count yet")
    some.add_argument("--case", type=int, help="this one alone, with all that was done")
    some.add_argument("--keep", metavar="FILE", help="with --case: keep the recording")
    some.set_defaults(show=show_cases)
    what.add_parser("figures", help="errors of what is measured").set_defaults(show=show_figures)
    some = what.add_parser("orders", help="orders of six channels after a codec")
    some.add_argument("--orders", type=int, default=12, help="how many of the 720 of each sequence [12]")
    some.set_defaults(show=show_orders)
    some = what.add_parser("other-sound", help="sound that is no line-up")
    some.add_argument("--hours", type=float, default=0.14)
    some.set_defaults(show=show_other)
    some = what.add_parser("pictures", help="damaged pictures, and what is named")
    some.add_argument("--cases", type=int, default=200, help="how many [200]")
    some.add_argument("--at-least", type=float, default=reached.PICTURES_REACHED, metavar="PART",
                      help=f"how many must be right [{reached.PICTURES_REACHED}]")
    some.add_argument("--first", type=int, default=0, help="the first one's number")
    some.add_argument("--case", type=int, help="this one alone, with all that was done")
    some.add_argument("--keep", metavar="FILE", help="with --case: keep the recording")
    some.add_argument("--others", type=int, help="how many of those that are no card [all]")
    some.add_argument("--photographs", metavar="FOLDER", help="photographs to look at, which are no card either")
    some.add_argument("--oddities", action="store_true",
                      help="recordings of many kinds, and errors of what is measured, too")
    some.add_argument("--packages", action="store_true",
                      help="photographs and films of games out of Debian packages too, some minutes of them")
    some.add_argument("--page", help="the page whose section about pictures is to be written")
    some.set_defaults(show=show_pictures)
    some = what.add_parser("all", help="everything, and the page about it")
    for name, value in EVERYTHING.items():
        some.add_argument(f"--{name}", type=type(value), default=value, help=f"[{value}]")
    some.add_argument("--page", required=True, help="the page to write")
    some.set_defaults(show=write_page, first=0, not_yet=False, others=None, photographs=None,
                      packages=True, oddities=True)
    options = parser.parse_args()
    memory = "/dev/shm" if os.access("/dev/shm", os.W_OK) else None
    with tempfile.TemporaryDirectory(prefix="lineup-laboratory-", dir=memory) as folder:
        with multiprocessing.Pool(options.jobs) as pool:
            return 0 if options.show(options, folder, pool) else 1


if __name__ == "__main__":
    sys.exit(main())
