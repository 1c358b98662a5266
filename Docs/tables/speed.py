"""The figures of the last whole run of the benchmarks, Docs/speed-figures.json: `speed-files`, `speed-starts`,
`speed-memory`, `speed-machine`, `speed-micro PROGRAM PREFIX COUNTER`."""

import json
import os
import re

from markdown import number, table

FIGURES = os.path.join("Docs", "speed-figures.json")
STARTS = "start: "
MEMORY = "memory: "
HEADS = {"vs_plain": "times as fast", "vs_memset": "times as fast", "ms_a_channel": "ms"}
GOAL = re.compile(r"(>=|<=) ([0-9.]+)")


def digits(value):
    """Decimals that show three figures."""
    return 0 if value >= 100 else 1 if value >= 10 else 2


def met(row):
    """Whether a row's ratio reaches its goal; None without a goal."""
    goal = GOAL.match(row["goal"])
    if not goal:
        return None
    return row["ratio"] >= float(goal[2]) if goal[1] == ">=" else row["ratio"] <= float(goal[2])


def rows_of(figures, kind):
    """The rows of starts, of memory, or of files: all the others."""
    others = tuple(prefix for prefix in (STARTS, MEMORY) if prefix != kind)
    return [row for row in figures["sideBySide"]
            if row["contest"].startswith(kind) and not row["contest"].startswith(others)]


class Maker:
    def __init__(self, root):
        with open(os.path.join(root, FIGURES), encoding="utf-8") as file:
            self.figures = json.load(file)

    def files(self):
        rows = []
        for row in rows_of(self.figures, ""):
            goal = row["goal"].replace(">= ", "") or "–"
            theirs = number(row["theirs"], 3) + (" (scaled)" if row["scaledFromSeconds"] else "")
            mark = {True: "", False: " (missed)", None: ""}[met(row)]
            rows.append((row["contest"], f"{row['mediaSeconds']:g} s", row["rival"], number(row["ours"], 3), theirs,
                         f"**{number(row['ratio'], digits(row['ratio']))}**", goal + mark))
        return table(("file", "media", "against", "ours, s", "theirs, s", "ratio", "goal"), rows)

    def starts(self):
        rows = [(row["contest"].removeprefix(STARTS), number(row["ours"] * 1000, 1), number(row["theirs"] * 1000, 1))
                for row in rows_of(self.figures, STARTS)]
        return table(("command", "ms", "`/bin/true`, ms"), rows)

    def memory(self):
        rows = [(row["contest"].removeprefix(MEMORY), row["rival"], number(row["theirs"], 1),
                 f"{row['mediaSeconds']:g} s", number(row["ours"], 1), number(row["ratio"], 2))
                for row in rows_of(self.figures, MEMORY)]
        return table(("file", "shorter", "peak, MiB", "longer", "peak, MiB", "ratio"), rows)

    def machine(self):
        machine = self.figures["machine"]
        rows = [("processor", machine["processor"]), ("processors in use", machine["processors"]),
                ("rounds", max(row["rounds"] for row in rows_of(self.figures, "")))]
        return table(("", ""), rows)

    def micro(self, program, prefix, counter):
        rows = []
        for run in self.figures["micro"][program]:
            name = run["name"].split("/iterations")[0]
            if name.startswith(prefix) and counter in run:
                rows.append((f"`{name.removeprefix(prefix)}`", number(run[counter], 3 if counter.startswith("ms") else digits(run[counter]))))
        if not rows:
            raise ValueError(f"no benchmark of {program} begins with {prefix} and has {counter}")
        return table(("", HEADS[counter]), rows)

    def make(self, name):
        word, *rest = name.split()
        return {"speed-files": self.files, "speed-starts": self.starts, "speed-memory": self.memory,
                "speed-machine": self.machine, "speed-micro": self.micro}[word](*rest)
