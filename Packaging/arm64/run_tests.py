"""Runs the tests of a build for 64-bit ARM that can run emulated, all but those that left_out.py names.

usage: run_tests.py [CTEST ARGUMENTS...]

Run it from the root of the tree, below emulated.sh. Prints what is left out and why, with the number of tests, and then
what ctest prints of the others. A row of the table that fits none of the build's tests is an error.
"""
import json
import re
import subprocess
import sys
import tempfile

from left_out import LEFT_OUT

CTEST = ("ctest", "--preset", "arm64-tests")


def choose(names, rows):
    """The numbers of the tests that run, from 1 as ctest counts, and for each row how many it fits and how many run."""
    fits = [0] * len(rows)
    runs = [0] * len(rows)
    chosen = []
    for number, name in enumerate(names, 1):
        row = next((i for i, row in enumerate(rows) if re.fullmatch(row.names, name)), None)
        if row is not None:
            fits[row] += 1
            if rows[row].one_of == 0 or (fits[row] - 1) % rows[row].one_of != 0:
                continue
            runs[row] += 1
        chosen.append(number)
    return chosen, list(zip(fits, runs))


def told(rows, counts):
    """A line for each row that leaves tests out: how many, and why."""
    for row, (fits, runs) in zip(rows, counts):
        if fits > runs:
            yield f"skipped: {fits - runs} of {fits} of {row.names}: {row.reason}"


def listed(arguments):
    """The names of the tests that the arguments choose, in the order of their numbers."""
    listing = subprocess.run([*CTEST, *arguments, "--show-only=json-v1"], check=True, stdout=subprocess.PIPE)
    return [test["name"] for test in json.loads(listing.stdout)["tests"]]


def main(arguments):
    _, counts = choose(listed([]), LEFT_OUT)
    idle = [row.names for row, (fits, _) in zip(LEFT_OUT, counts) if fits == 0]
    if idle:
        sys.exit(f"run_tests.py: left_out.py has rows that fit no test: {' '.join(idle)}")
    names = listed(arguments)
    chosen, counts = choose(names, LEFT_OUT)
    for line in told(LEFT_OUT, counts):
        print(line)
    print(f"{len(chosen)} of {len(names)} tests run", flush=True)
    # The numbers count what the arguments choose.
    with tempfile.NamedTemporaryFile("w") as numbers:
        numbers.write(",".join(map(str, (0, 0, 0, *chosen))) + "\n")  # without its end ctest loses the last
        numbers.flush()
        sys.exit(subprocess.run([*CTEST, *arguments, "-I", numbers.name]).returncode)


if __name__ == "__main__":
    main(sys.argv[1:])
