#!/usr/bin/env python3
"""Makes small mistakes in Src, one after the other, and sees whether the tests of Src notice.

Each mistake is made in a copy of the sources (build/mutation/source), compiled without optimisation, and run against
the programs of Tests/Src until one of them fails; a program that takes ten times its usual processor time has noticed
too. What a mistake came to is a line in build/mutation/results.jsonl, and no mistake is tried twice: a run that was
stopped goes on where it was.
"""

import argparse
import hashlib
import json
import os
import random
import resource
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).parent))
from mistakes import mistakes_in  # noqa: E402

ROOT = Path(__file__).resolve().parents[3]
HOME = ROOT / "build" / "mutation"
SOURCE = HOME / "source"
BUILD = HOME / "build"
RESULTS = HOME / "results.jsonl"
USUAL = HOME / "usual.json"
# Tests of these folders reach no other folder of Src than themselves and those named.
REACHED = {
    "Src/VectorPrimitives": ["Src/VectorPrimitives"],
    "Src/ToneGenerator": ["Src/ToneGenerator", "Src/VectorPrimitives"],
    "Src/ToneSettingsDialog": ["Src/ToneSettingsDialog", "Src/BarsAndToneImporter"],
}
SLOWER = 10  # than usual: caught in a loop
LEAST_SECONDS = 10
MOST_BYTES = 64 << 30  # the tests of the largest buffers reserve much and touch little


def quietly(*command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False, **options)


def ninja(*targets):
    # A mistake that makes the compiler work without end is one that it noticed.
    return quietly("ninja", "-j1", "-C", BUILD, *targets)


def copy_sources():
    """What git would keep, copied where it differs, so that only what changed is compiled again."""
    listed = quietly("git", "-C", ROOT, "ls-files", "-co", "--exclude-standard").stdout.splitlines()
    for name in listed:
        origin, copy = ROOT / name, SOURCE / name
        if not origin.is_file():
            continue
        if not copy.exists() or origin.read_bytes() != copy.read_bytes():
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(origin, copy)
            copy.chmod(origin.stat().st_mode)
    for copy in [path for path in SOURCE.rglob("*") if path.is_file()]:
        if str(copy.relative_to(SOURCE)) not in set(listed):
            copy.unlink()


def configure():
    result = quietly("cmake", "-S", SOURCE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=",
                     "-DCMAKE_CXX_FLAGS=-O1", "-DLINEUP_TESTS=ON", "-DLINEUP_DESKTOP=OFF")
    if result.returncode != 0:
        sys.exit(result.stdout)


def programs():
    """{test program of Src: the folder whose tests it holds}"""
    shown = json.loads(quietly("ctest", "--show-only=json-v1", cwd=BUILD).stdout)
    found = {}
    for test in shown["tests"]:
        folder = next((p["value"] for p in test.get("properties", []) if p["name"] == "WORKING_DIRECTORY"), "")
        folder = os.path.relpath(folder, BUILD)
        if folder.startswith("Tests/Src/") and test.get("command", [""])[0].startswith(str(BUILD / "tests")):
            found[os.path.relpath(test["command"][0], BUILD)] = folder.removeprefix("Tests/")
    return found


def build_everything():
    """All programs of Src's tests, once without a mistake."""
    targets = [line.split(":")[0] for line in quietly("ninja", "-C", BUILD, "-t", "targets", "all").stdout.splitlines()]
    wanted = [t for t in targets if t.startswith("tests/") and "/" not in t[6:]]
    sources = set()
    for folder in (SOURCE / "Tests/Src").rglob("CMakeLists.txt"):
        sources.update(word for word in folder.read_text().replace("(", " ").split() if word.endswith("_tests"))
    wanted = [t for t in wanted if t[6:].removesuffix("_bundled") in sources]
    result = ninja(*wanted)
    if result.returncode != 0:
        sys.exit(result.stdout)


def run(program, seconds):
    """(passed, processor seconds)"""
    def limit():
        resource.setrlimit(resource.RLIMIT_CPU, (int(seconds), int(seconds) + 1))
        resource.setrlimit(resource.RLIMIT_AS, (MOST_BYTES, MOST_BYTES))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    try:
        result = subprocess.run([BUILD / program, "--gtest_fail_fast", "--gtest_brief=1"], stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL, preexec_fn=limit, timeout=60 * seconds, check=False)
        passed = result.returncode == 0
    except subprocess.TimeoutExpired:  # waits for something that never comes
        passed = False
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return passed, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def measure(found):
    """{program: its processor seconds without a mistake}, measured once."""
    usual = json.loads(USUAL.read_text()) if USUAL.exists() else {}
    for program in set(found) - set(usual):
        passed, usual[program] = run(program, 600)
        if not passed:
            sys.exit(f"{program} fails without any mistake")
        USUAL.write_text(json.dumps(usual))
    return usual


def in_order(file, found, usual):
    """The programs that can notice, the most likely ones first: those of the same folder, the quick ones of them first."""
    folder = os.path.dirname(file)
    reaching = [program for program in found if folder in REACHED.get(found[program], [folder])]
    return sorted(reaching, key=lambda program: (found[program] != folder, usual[program]))


def try_out(mistake, text, found, usual):
    """("survived" or "noticed" or "not compiled", by what)"""
    path = SOURCE / mistake.file
    try:
        path.write_text(mistake.apply(text))
        for program in in_order(mistake.file, found, usual):
            if ninja(program).returncode != 0:
                return "not compiled", "the compiler"
            if not run(program, max(LEAST_SECONDS, SLOWER * usual[program]))[0]:
                return "noticed", program
        return "survived", ""
    finally:
        path.write_text(text)


def key_of(mistake, text):
    whole = f"{mistake.file}\0{hashlib.sha256(text.encode()).hexdigest()}\0{mistake.offset}\0{mistake.after}"
    return hashlib.sha256(whole.encode()).hexdigest()[:16]


def known_results():
    if not RESULTS.exists():
        return {}
    return {entry["key"]: entry for entry in map(json.loads, RESULTS.read_text().splitlines())}


def collect(patterns):
    """[(key, mistake, text)] of all of Src, or of the files whose path holds one of `patterns`."""
    chosen = []
    for path in sorted((ROOT / "Src").rglob("*")):
        name = str(path.relative_to(ROOT))
        if path.suffix in (".cpp", ".h") and (not patterns or any(pattern in name for pattern in patterns)):
            text = path.read_text()
            chosen += [(key_of(mistake, text), mistake, text) for mistake in mistakes_in(name, text)]
    return chosen


def describe(mistake, text):
    line = text.splitlines()[mistake.line - 1].strip()
    return f"{mistake.file}:{mistake.line}: {' '.join(mistake.before.split())} -> {' '.join(mistake.after.split())}   in   {line}"


def report(chosen, results):
    counts = {"noticed": 0, "survived": 0, "not compiled": 0}
    for key, mistake, text in chosen:
        if key in results:
            counts[results[key]["outcome"]] += 1
            if results[key]["outcome"] == "survived":
                print("survived:", describe(mistake, text))
    tried = counts["noticed"] + counts["survived"]
    if tried:
        print(f"{tried} mistakes tried of {len(chosen)} that can be made: {counts['noticed']} noticed, "
              f"{counts['survived']} survived ({100 * counts['survived'] / tried:.1f} %); "
              f"{counts['not compiled']} more did not compile")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("files", nargs="*", help="only files whose path holds one of these")
    parser.add_argument("--sample", type=int, metavar="N", help="at most N mistakes, drawn at random")
    parser.add_argument("--seed", type=int, default=1, help="draws others")
    parser.add_argument("--minutes", type=float, help="begin no other when so much time has passed")
    parser.add_argument("--again", action="store_true", help="try those that survived once more: the tests have grown")
    parser.add_argument("--report", action="store_true", help="say what is known; try nothing")
    options = parser.parse_args()

    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # with the source put right again
    chosen = collect(options.files)
    random.Random(options.seed).shuffle(chosen)  # a larger sample of the same seed holds the smaller one
    chosen = chosen[: options.sample]
    results = known_results()
    if options.again:
        results = {key: entry for key, entry in results.items() if entry["outcome"] != "survived"}
    todo = [entry for entry in chosen if entry[0] not in results]
    if todo and not options.report:
        end = time.monotonic() + 60 * options.minutes if options.minutes else None
        copy_sources()
        configure()
        build_everything()
        found = programs()
        usual = measure(found)
        with RESULTS.open("a") as log:
            for number, (key, mistake, text) in enumerate(todo, 1):
                if end and time.monotonic() > end:
                    break
                outcome, by = try_out(mistake, text, found, usual)
                results[key] = {"key": key, "file": mistake.file, "line": mistake.line, "before": mistake.before,
                                "after": mistake.after, "outcome": outcome, "by": by}
                log.write(json.dumps(results[key]) + "\n")
                log.flush()
                print(f"{number}/{len(todo)} {outcome} {by}: {describe(mistake, text)}", file=sys.stderr)
    report(chosen, results)


if __name__ == "__main__":
    main()
