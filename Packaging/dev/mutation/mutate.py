#!/usr/bin/env python3
"""Makes small mistakes in the sources, one after the other, and sees whether the tests notice.

Each mistake is made in a copy of the sources (build/mutation/source), built as ./dev test builds, and shown to the tests
that link or run what it becomes, until one of them fails; a test that takes five times its usual processor time, waits
without end or takes more and more memory has noticed too. What a mistake came to is a line in
build/mutation/results.jsonl, and no mistake is tried twice: a run that was stopped goes on where it was.
"""

import argparse
import hashlib
import math
import resource
import signal
import sys
import time
from collections import defaultdict
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).parent))
import tree  # noqa: E402
from areas import SOURCES, area_of  # noqa: E402
from mistakes import OF_TOKENS, mistakes_in  # noqa: E402
from names import Names  # noqa: E402
from results import Score, describe, keep, key_of, known_results  # noqa: E402
from tests import Tests  # noqa: E402

ROUND = 15  # mistakes that are tried file by file, so that few files are compiled twice
MOST_SECONDS = 30  # of tests that are asked about a mistake, the likely ones first; --again asks all
OF_HEADERS = 8  # one of so many mistakes in headers is drawn: much is compiled for each


def sources():
    """[(file, text)] of all that mistakes can be made in."""
    return [(str(path.relative_to(tree.ROOT)), path.read_text())
            for folder in SOURCES for path in sorted((tree.ROOT / folder).rglob("*")) if path.suffix in (".cpp", ".h")]


def collect(patterns):
    """[(key, mistake, text)] of all, or of the files whose path holds one of `patterns`."""
    texts = sources()
    names = Names(texts)
    return [(key_of(mistake, text), mistake, text) for file, text in texts
            if not patterns or any(pattern in file for pattern in patterns) for mistake in mistakes_in(file, text, names)]


def drawn(every, seed, whole):
    """In the order in which they are tried: of an area with four times as many, twice as many are drawn, and of one token
    as many as of meaning. An edit of the sources changes the order of few."""
    def chance(key, what):
        return int.from_bytes(hashlib.sha256(f"{seed}{what}{key}".encode()).digest()[:8])

    queues = defaultdict(list)
    for entry in sorted(every, key=lambda entry: chance(entry[0], "order")):
        key, mistake, _ = entry
        if whole or not mistake.file.endswith(".h") or chance(key, "header") % OF_HEADERS == 0:
            queues[mistake.kind in OF_TOKENS, area_of(mistake.file)].append(entry)
    size = defaultdict(int)
    for (_, area), queue in queues.items():
        size[area] += len(queue)
    order = [((place + 0.5) / math.sqrt(size[area]), which, entry)
             for (which, area), queue in queues.items() for place, entry in enumerate(queue)]
    return [entry for _, _, entry in sorted(order, key=lambda ranked: (ranked[0], ranked[1], ranked[2][0]))]


def try_out(mistake, text, tests, most, ask):
    """("survived" or "noticed" or "not compiled", by what), shown to tests until they have taken so many seconds."""
    path = tree.SOURCE / mistake.file
    taken, candidates = 0, [test for test in tests.that_may_notice(mistake.file) if ask in test.name]
    if candidates and not all((tree.BUILD / target).exists() for target in candidates[0].targets):
        tree.ninja(*candidates[0].targets)
    path.write_text(mistake.apply(text))
    for test in candidates:
        if tree.ninja(*test.targets, with_mistake=True).returncode != 0:
            return "not compiled", "the compiler"
        passed, why, case, seconds = tests.show(test, mistake.file)
        taken += seconds
        if passed:
            tests.passed(test, seconds)
        else:
            path.write_text(text)
            if tests.is_sound(test, case):
                return "noticed", f"{test.name} {why or case}".strip()
            path.write_text(mistake.apply(text))
        if taken > most:
            break
    return "survived", "" if candidates else "no test"


def try_all(todo, results, options):
    tree.HOME.mkdir(parents=True, exist_ok=True)
    changed = tree.copy_sources()
    tree.configure()
    tree.build_product()
    tests = Tests(results.values(), fresh=changed)
    end = time.monotonic() + 60 * options.minutes if options.minutes else None
    most = math.inf if options.again else MOST_SECONDS
    number = 0
    for begin in range(0, len(todo), ROUND):
        for key, mistake, text in sorted(todo[begin: begin + ROUND], key=lambda entry: (entry[1].file, entry[1].offset)):
            if end and time.monotonic() > end:
                return
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            try:
                outcome, by = try_out(mistake, text, tests, most, options.ask)
            finally:
                (tree.SOURCE / mistake.file).write_text(text)
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            seconds = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
            results[key] = {"key": key, "file": mistake.file, "line": mistake.line, "kind": mistake.kind,
                            "before": mistake.before, "after": mistake.after, "outcome": outcome, "by": by,
                            "seconds": round(seconds, 1), "seed": results.get(key, {}).get("seed", options.seed)}
            keep(results[key])
            if outcome == "noticed":
                tests.remember(mistake.file, by)
            number += 1
            print(f"{number}/{len(todo)} {seconds:.0f} s: {outcome} {by}: {describe(mistake, text)}", file=sys.stderr)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("files", nargs="*", help="only files whose path holds one of these")
    parser.add_argument("--sample", type=int, metavar="N", help="at most N mistakes, drawn from every area")
    parser.add_argument("--seed", type=int, default=1, help="draws others")
    parser.add_argument("--minutes", type=float, help="begin no other when so much time has passed")
    parser.add_argument("--again", action="store_true", help="try those that survived once more: the tests have grown")
    parser.add_argument("--ask", metavar="TEST", default="", help="ask those tests alone whose name holds this")
    parser.add_argument("--report", action="store_true", help="say what is known; try nothing")
    parser.add_argument("--page", action="store_true", help="write the score into Docs/mutation.md as well")
    options = parser.parse_args()

    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # with the source put right again
    every = collect(options.files)
    chosen = drawn(every, options.seed, whole=bool(options.files))[: options.sample]
    results = known_results()
    retried = "survived" if options.again else None
    if (options.report or options.again) and not options.sample:
        chosen = every
    todo = [entry for entry in chosen if results.get(entry[0], {}).get("outcome") == retried]
    if todo and not options.report:
        try_all(todo, results, options)
    score = Score(every, chosen, results)
    score.tell()
    if options.page:
        score.write_page()


if __name__ == "__main__":
    main()
