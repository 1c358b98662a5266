"""Runs clang-tidy over sources, one process a file, and remembers by content what was found clean.

A source is clean again, and not looked at, while its own text, that of everything it includes, its command line, the rules
and the tool are those of a run that found nothing. What is remembered lies in the user's cache folder and serves every
clone: paths count from the root of the tree.
"""

import argparse
import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import subprocess
import sys

TIDY = "clang-tidy-16"
SCAN = "clang-scan-deps-16"


def memory_folder():
    cache = os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache")
    return pathlib.Path(cache) / "bars-and-tone" / "lint"


@functools.cache
def digest_of_file(path):
    with open(path, "rb") as file:
        return hashlib.file_digest(file, "sha256").hexdigest()


def included_files(commands, jobs):
    """For each source of the compilation database at `commands`: the files it is compiled from, itself among them."""
    rules = subprocess.run([SCAN, "-compilation-database", commands, "-j", str(jobs), "-format", "make"],
                           check=True, stdout=subprocess.PIPE, text=True).stdout
    files = {}
    for rule in rules.replace("\\\n", " ").splitlines():
        _, colon, names = rule.partition(": ")
        if colon:
            names = names.split()
            files[os.path.abspath(names[0])] = names
    return files


def rules_for(source, root):
    """The .clang-tidy files that decide about a source, nearest first."""
    folders = [folder for folder in source.parents if folder == root or root in folder.parents]
    return [folder / ".clang-tidy" for folder in folders if (folder / ".clang-tidy").exists()]


def key_of(entry, files, root, tool):
    """What names a run: its tool, its command line, its rules, and the text of every file that it reads."""
    source = pathlib.Path(entry["file"])
    key = hashlib.sha256()
    parts = [tool, entry["command"], *(digest_of_file(rules) for rules in rules_for(source, root))]
    for name in sorted(set(os.path.normpath(os.path.join(entry["directory"], name)) for name in files)):
        parts += [name, digest_of_file(name)]
    for part in parts:
        key.update(part.replace(f"{root}/", "").encode() + b"\0")
    return key.hexdigest()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=pathlib.Path, help="the build folder, with its compile_commands.json")
    parser.add_argument("--root", type=pathlib.Path, required=True, help="the root of the tree")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    arguments = parser.parse_args()

    commands = arguments.build / "compile_commands.json"
    entries = {entry["file"]: entry for entry in json.loads(commands.read_text())}
    sources = [line for line in sys.stdin.read().splitlines() if line in entries]
    files = included_files(commands, arguments.jobs) if sources else {}
    tool = subprocess.run([TIDY, "--version"], check=True, stdout=subprocess.PIPE, text=True).stdout
    memory = memory_folder()
    memory.mkdir(parents=True, exist_ok=True)

    def look_at(source):
        """What there is to say of a source, or None where that is known to be nothing."""
        # A source that the scan leaves out does not compile: clang-tidy says why.
        known = memory / key_of(entries[source], files[source], arguments.root, tool) if source in files else None
        if known is not None and known.exists():
            return None
        run = subprocess.run([TIDY, "--quiet", "-p", arguments.build, source], stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, text=True)
        if run.returncode != 0:
            return run.stdout
        if known is not None:
            known.touch()
        return ""

    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        found = list(pool.map(look_at, sources))
    findings = [text for text in found if text]
    for text in findings:
        print(text)
    print(f"   {len(sources)} files, {found.count(None)} of them known to be clean, {len(findings)} with findings",
          file=sys.stderr)
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
