"""Runs the commands of a page and compares what they print: run_page.py [--update] PAGE...

Blocks run in the page's order, each in a bash of its own, all of a page in one empty folder. The command `lineup`
is the one that is being tested; $SOURCE is the source tree, $BUNDLE the plug-in, $INCLUDE
the folder of the headers that plug-ins and hosts are written with. A block that names a file
becomes that file when its turn comes. A command that fails fails the page.

An output block is what the block above it prints, standard error included, line by line. In it `...` stands for any
text within a line, and alone on a line for any lines. --update writes what was printed into the page."""

import argparse
import difflib
import os
import re
import subprocess
import sys
import tempfile

import pages

SECONDS = 600  # that a block may take, on a machine that is busy with other things


def environment(options, folder):
    return {
        **os.environ,
        "PATH": os.path.dirname(options.lineup) + os.pathsep + os.environ["PATH"],
        "HOME": folder,
        "LC_ALL": "C.UTF-8",
        "TZ": "UTC",
        "SOURCE": options.source,
        "BUNDLE": options.bundle,
        "INCLUDE": os.path.join(os.path.dirname(options.bundle), "include"),
    }


def pattern(lines):
    """What the lines of an output block stand for, as a regular expression."""
    parts = []
    for line in lines:
        if line.strip() == "...":
            parts.append(r"(?:.*\n)*?")
        else:
            parts.append(".*?".join(re.escape(piece) for piece in line.rstrip().split("...")) + r"\n")
    return "".join(parts)


def tidy(text):
    """Without blanks at the ends of lines, and of a progress bar's line only what is seen last."""
    lines = [line.split("\r")[-1].rstrip() for line in text.split("\n")]
    while lines and not lines[-1]:
        lines.pop()
    return lines


def first_difference(expected, printed):
    """The index of the first expected line that is not what was printed; None when all is."""
    text = "".join(line + "\n" for line in printed)
    if re.fullmatch(pattern(expected), text):
        return None
    for count in range(len(expected), 0, -1):
        if re.match(pattern(expected[:count]), text):
            return count  # those are right; what comes after them is not
    return 0


class Run:
    """One page's commands."""

    def __init__(self, options, page, folder):
        self.options = options
        self.page = page
        self.folder = folder
        self.failures = []
        self.blocks = 0
        self.outputs = 0
        self.updates = []  # (block, lines)

    def fail(self, line, sentence):
        self.failures.append(f"{self.page.path}:{line}: {sentence}")

    def write(self, block):
        target = os.path.normpath(os.path.join(self.folder, block.file))
        if not target.startswith(self.folder + os.sep):
            self.fail(block.line - 1, f"the file {block.file} would lie outside the page's folder")
            return
        os.makedirs(os.path.dirname(target), exist_ok=True)
        with open(target, "w", encoding="utf-8") as file:
            file.write(block.text)

    def execute(self, block):
        """What the block printed; None when it failed."""
        self.blocks += 1
        script = "set -eu -o pipefail\n" + block.text
        try:
            done = subprocess.run(["bash", "-c", script], cwd=self.folder, env=environment(self.options, self.folder),
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                  timeout=SECONDS, check=False)
        except subprocess.TimeoutExpired:
            self.fail(block.line, f"the commands take more than {SECONDS} s")
            return None
        text = done.stdout.decode("utf-8", errors="replace")
        if done.returncode != 0:
            self.fail(block.line, f"the commands end with status {done.returncode}:\n{text}")
            return None
        return tidy(text)

    def compare(self, block, printed):
        self.outputs += 1
        wrong = first_difference(tidy(block.text), printed)
        if wrong is None:
            return
        if self.options.update:
            self.updates.append((block, printed))
            return
        diff = difflib.unified_diff(tidy(block.text), printed, "on the page", "printed", lineterm="")
        self.fail(block.line + wrong, "this is not what is printed:\n" + "\n".join(diff))

    def all(self):
        printed = None
        for block in self.page.blocks:
            if block.file:
                self.write(block)
            elif block.kind == "sh":
                printed = self.execute(block)
                if printed is None:
                    return
                continue
            elif block.kind == "output":
                if printed is None:
                    self.fail(block.line, "an output block that does not follow a block of commands")
                else:
                    self.compare(block, printed)
            printed = None


def update(root, path, updates):
    name = os.path.join(root, path)
    with open(name, encoding="utf-8") as file:
        lines = file.read().split("\n")
    for block, printed in reversed(updates):
        lines[block.line - 1:block.line - 1 + len(block.lines)] = printed
    with open(name, "w", encoding="utf-8") as file:
        file.write("\n".join(lines))


def run(options, path):
    page = pages.read(options.source, path)
    with tempfile.TemporaryDirectory() as folder:
        result = Run(options, page, os.path.realpath(folder))
        result.all()
    if result.updates:
        update(options.source, path, result.updates)
    return result


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--source", required=True, help="the source tree")
    parser.add_argument("--lineup", required=True, help="the program")
    parser.add_argument("--bundle", required=True, help="the plug-in")
    parser.add_argument("--update", action="store_true", help="write what was printed into the page")
    parser.add_argument("pages", nargs="+", metavar="PAGE")
    options = parser.parse_args()
    failures = []
    for path in options.pages:
        result = run(options, path)
        failures += result.failures
        print(f"{path}: {result.blocks} blocks run, {result.outputs} outputs compared")
    for failure in failures:
        print(failure, file=sys.stderr)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
