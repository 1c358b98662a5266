"""The tests of the build: a program of tests is run as one, others as ctest runs them."""

import json
import os
import re
from collections import Counter
from dataclasses import dataclass, field
from pathlib import Path

import tree
import watched
from areas import test_folders

SLOWER = 5  # than usual: caught in a loop
LEAST_SECONDS = 10
UNKNOWN_SECONDS = 240  # for a test that was not run before
LONG_SECONDS = 2  # of a program whose likely tests run first, alone
# What takes minutes, needs a display, or asks nothing of the programs.
LEFT_OUT = re.compile(r"_on_a_display$|LongRun|^Docs\.(Links|Checks)|^Packages?\.")
NOT_BUILT = "_NOT_BUILT"  # how ctest calls a program of tests that is built when it is asked

FAILED = re.compile(rb"^\[  FAILED  \] ([\w./]+)", re.MULTILINE)


@dataclass
class Test:
    name: str
    command: list
    folder: str  # where it runs
    home: str  # Tests/...: where its sources are
    targets: tuple  # what must be built for it
    environment: dict
    inputs: set = field(default_factory=set)

    def names(self):
        """The subjects that its files are named after."""
        return {Path(name).stem.removesuffix("Test") for name in self.inputs if name.startswith("Tests/")}


def targets_of(command):
    """The programs of the build that a command names; the command line program where it names a script alone."""
    inside = re.compile(re.escape(f"{tree.BUILD}/") + r"((?:bin|fuzz|tests)/\S+)")
    return tuple(match[1] for match in map(inside.fullmatch, command) if match) or ("bin/lineup", "tests/card_patches")


def found_tests():
    found = {}
    for test in tree.listed_tests():
        command = test.get("command", [])
        properties = {entry["name"]: entry["value"] for entry in test.get("properties", [])}
        if test["name"].endswith(NOT_BUILT):
            command = [str(tree.BUILD / "tests" / test["name"].removesuffix(NOT_BUILT))]
        if not command or LEFT_OUT.search(test["name"]):
            continue
        targets = targets_of(command)
        is_program = command[0] == str(tree.BUILD / targets[0]) and targets[0].startswith("tests/")
        name = targets[0] if is_program else test["name"]
        if name in found:
            continue
        if is_program:
            command = [command[0], "--gtest_fail_fast", "--gtest_brief=1"]
        folder = properties.get("WORKING_DIRECTORY", str(tree.BUILD))
        home = os.path.relpath(folder, tree.BUILD if folder.startswith(str(tree.BUILD)) else tree.SOURCE)
        environment = dict(text.split("=", 1) for text in properties.get("ENVIRONMENT", []))
        found[name] = Test(name, command, folder, home, targets, environment)
    inputs = {target: tree.inputs_of(target) for target in {one for test in found.values() for one in test.targets}}
    for test in found.values():
        test.inputs = set().union(*(inputs[target] for target in test.targets))
    return list(found.values())


def only(case):
    return [f"--gtest_filter={case}"] if case else []


class Tests:
    """Those of the build, with the processor time that each usually takes and what they noticed before."""

    def __init__(self, results, fresh):
        self.usual_file = tree.HOME / "usual.json"
        known = json.loads(self.usual_file.read_text()) if self.usual_file.exists() else {"usual": {}, "sound": []}
        self.usual = known["usual"]
        self.sound = set() if fresh else set(known["sound"])  # seen to pass, as the sources are now
        self.broken = set()  # fail without any mistake
        self.noticed = Counter()
        self.cases = {}
        for entry in results:
            if entry["outcome"] == "noticed":
                self.remember(entry["file"], entry["by"])
        self.objects = tree.objects_by_file()
        self.all = found_tests()
        for test in self.all:  # sources that are compiled several at once are named by their objects alone, or their unit
            test.inputs |= tree.sources_of_units(target.removeprefix("tests/") for target in test.targets)
            test.inputs |= {file for file, objects in self.objects.items()
                            if file.startswith("Tests/") and not test.inputs.isdisjoint(objects)}

    def remember(self, file, by):
        name, _, case = by.partition(" ")
        for place in (file, os.path.dirname(file)):
            self.noticed[place, name] += 1
            if case and " " not in case:
                self.cases.setdefault((place, name), Counter())[case] += 1

    def reach(self, test, file):
        return file in test.inputs or not test.inputs.isdisjoint(self.objects.get(file, ()))

    def that_may_notice(self, file):
        """Those that link or run what the file becomes, the most likely first."""
        folders = test_folders(file)
        chosen = [test for test in self.all if test.name not in self.broken and self.reach(test, file)
                  and any(f"{test.home}/".startswith(f"{folder}/") for folder in folders)]
        return sorted(chosen, key=lambda test: self.likelihood(test, file))

    def likelihood(self, test, file):
        folder = os.path.dirname(file)
        near = len(os.path.commonprefix([f"Tests/{folder}/".split("/"), f"{test.home}/".split("/")]))
        return (-self.noticed[file, test.name], Path(file).stem not in test.names(), -near,
                -self.noticed[folder, test.name], self.usual.get(test.name, 0))

    def passed(self, test, seconds):
        self.usual[test.name] = round(seconds, 3)
        self.trust(test.name)

    def trust(self, name):
        self.sound.add(name)
        self.usual_file.write_text(json.dumps({"usual": self.usual, "sound": sorted(self.sound)}, indent=1))

    def is_sound(self, test, case):
        """Whether it, or its one case that failed, passes without a mistake; asked once, with the sources put right."""
        name = f"{test.name} {case}".strip()
        if test.name not in self.sound and name not in self.sound:
            built = tree.ninja(*test.targets)
            if built.returncode == 0 and self.run(test, 1200, *only(case)).passed:
                self.trust(name)
            else:
                print(f"{name} fails without any mistake and is left out; see {self.log()}")
                self.broken.add(test.name)
        return test.name not in self.broken

    def log(self):
        return tree.HOME / "output.txt"

    def run(self, test, seconds, *arguments):
        return watched.run(test.command + list(arguments), seconds, test.folder, tree.HOME / "tmp", test.environment,
                           self.log())

    def likely_cases(self, test, file):
        """Those of a program named for the file, and those that noticed most in it and in its folder."""
        noticed = [case for place in (file, os.path.dirname(file))
                   for case, _ in self.cases.get((place, test.name), Counter()).most_common(6)]
        return ":".join([f"*{Path(file).stem}*.*", *noticed])

    def show(self, test, file):
        """(does it pass, why not, the case that failed, its processor seconds) with a mistake in the file. What failed must fail twice: it
        may have been disturbed."""
        usual = self.usual.get(test.name)
        seconds = max(LEAST_SECONDS, SLOWER * usual) if usual is not None else UNKNOWN_SECONDS
        is_program = test.name.startswith("tests/")
        if is_program and (usual is None or usual > LONG_SECONDS):
            first = self.run(test, seconds, f"--gtest_filter={self.likely_cases(test, file)}")
            if not first.passed and self.fails_again(test, seconds, first):
                return False, first.why, self.what_failed(), first.seconds
        outcome = self.run(test, seconds)
        if not outcome.passed and not self.fails_again(test, seconds, outcome):
            outcome = self.run(test, seconds)
        return outcome.passed, outcome.why, self.what_failed(), outcome.seconds

    def fails_again(self, test, seconds, outcome):
        if outcome.why:  # no other process makes it crash, or take processor time or memory
            return True
        return not self.run(test, seconds, *only(self.what_failed())).passed

    def what_failed(self):
        match = FAILED.search(self.log().read_bytes())
        return match[1].decode() if match else ""
