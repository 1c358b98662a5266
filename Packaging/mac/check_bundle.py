#!/usr/bin/env python3
"""check_bundle.py BUNDLE --deployment-target VERSION --version VERSION: whether a bundle is what a Mac's host loads.

Looks at BUNDLE with LLVM's tools, runs nothing of it, and prints a line for each check: ok or failed, what was looked
at, and what was seen. What the bundle may need is in undefined-host.txt and undefined-system.txt. Ends with 1 when a
check failed.
"""

import argparse
import pathlib
import plistlib
import re
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
TOOLS = pathlib.Path("/usr/lib/llvm-16/bin")

EXPORTS = {"_xImportEntry"}
LANGUAGES = ("de", "es", "fr", "ja")
FILES = {
    "Info.plist",
    "MacOS/BarsAndTone",
    "Resources/ToneSettingsDialog.tarn",
    "Resources/ToneSettingsWithIdentifiersDialog.tarn",
    *(f"Resources/locale/{language}/LC_MESSAGES/BarsAndTone.mo" for language in LANGUAGES),
}
COMMANDS = {
    "LC_SEGMENT_64",
    "LC_DYLD_INFO_ONLY",
    "LC_SYMTAB",
    "LC_DYSYMTAB",
    "LC_UUID",
    "LC_VERSION_MIN_MACOSX",
    "LC_LOAD_DYLIB",
    "LC_FUNCTION_STARTS",
    "LC_DATA_IN_CODE",
}


def run(tool, *arguments):
    """What one of LLVM's tools prints, as lines."""
    command = [str(TOOLS / tool), *map(str, arguments)]
    return subprocess.run(command, check=True, capture_output=True, encoding="utf-8").stdout.splitlines()


def read_list(name):
    """The lines of one of the lists of symbols, as tuples of their words."""
    lines = (HERE / name).read_text(encoding="utf-8").splitlines()
    return {tuple(line.split()) for line in lines if not line.startswith("#")}


def short_name(library):
    """A library's name as nm writes it: libSystem of /usr/lib/libSystem.B.dylib."""
    return pathlib.PurePosixPath(library).name.partition(".")[0]


def difference(seen, wanted):
    """How two sets of words differ; nothing when they do not."""
    more = [f"not expected: {' '.join(item)}" for item in sorted(seen - wanted)]
    less = [f"missing: {' '.join(item)}" for item in sorted(wanted - seen)]
    return "; ".join(more + less)


class Executable:
    """What the tools say of the bundle's executable."""

    def __init__(self, path):
        self.path = path
        self.headers = run("llvm-objdump", "--macho", "--private-headers", path)
        magic = next(number for number, line in enumerate(self.headers) if "magic" in line.split())
        self.processor, _, _, self.kind = self.headers[magic + 1].split()[1:5]

    def values(self, key):
        """What stands behind `key` in the load commands, in order."""
        pattern = re.compile(rf"\s*{re.escape(key)} (.*?)( \(offset \d+\))?$")
        return [match[1] for match in map(pattern.match, self.headers) if match]

    def commands(self):
        return self.values("cmd")

    def undefined(self):
        """(symbol, library) of each symbol that it needs; no library where it looks in the process."""
        symbols = set()
        for line in run("llvm-nm", "-u", "-m", self.path):
            match = re.fullmatch(r"\s*\(undefined\) (?:weak )?external (\S+) \((.*)\)", line)
            place = match[2].removeprefix("from ")
            symbols.add((match[1], None if place == "dynamically looked up" else place))
        return symbols

    def exports(self):
        """The symbols that it offers: those for the loader and those that its table of symbols calls external."""
        trie = run("llvm-objdump", "--macho", "--exports-trie", self.path)
        loader = {line.split()[1] for line in trie if line.startswith("0x")}
        table = set(run("llvm-nm", "--defined-only", "--extern-only", "--format=just-symbols", self.path))
        return loader, table


# --- checks: each gives whether it holds, and what was seen ----------------------------------------------


def check_kind(bundle, _wanted):
    return bundle.executable.kind == "BUNDLE", bundle.executable.kind


def check_processor(bundle, _wanted):
    return bundle.executable.processor == "X86_64", bundle.executable.processor


def check_exports(bundle, _wanted):
    loader, table = bundle.executable.exports()
    seen = " ".join(sorted(loader | table))
    return loader == EXPORTS and table == EXPORTS, seen or "none"


def check_host_symbols(bundle, _wanted):
    wanted = read_list("undefined-host.txt")
    seen = {(symbol,) for symbol, library in bundle.executable.undefined() if library is None}
    return seen == wanted, difference(seen, wanted) or f"the {len(seen)} of undefined-host.txt"


def check_system_symbols(bundle, _wanted):
    wanted = {(short_name(library), symbol) for library, symbol in read_list("undefined-system.txt")}
    seen = {(library, symbol) for symbol, library in bundle.executable.undefined() if library is not None}
    return seen == wanted, difference(seen, wanted) or f"the {len(seen)} of undefined-system.txt"


def check_libraries(bundle, _wanted):
    wanted = {(library,) for library, _ in read_list("undefined-system.txt")}
    seen = {(library,) for library in bundle.executable.values("name")}
    return seen == wanted, difference(seen, wanted) or " ".join(sorted(library for library, in seen))


def check_commands(bundle, _wanted):
    seen = {(command,) for command in bundle.executable.commands()}
    wanted = {(command,) for command in COMMANDS}
    return seen == wanted, difference(seen, wanted) or f"{len(bundle.executable.commands())} of {len(seen)} kinds"


def check_deployment_target(bundle, wanted):
    old_form = "LC_VERSION_MIN_MACOSX" in bundle.executable.commands()
    seen = bundle.executable.values("version" if old_form else "minos")
    return seen == [wanted.deployment_target], " ".join(seen) or "none"


def check_memory(bundle, _wanted):
    seen = bundle.executable.values("initprot")
    return bool(seen) and not any("w" in bits and "x" in bits for bits in seen), " ".join(seen)


def check_thread_locals(bundle, _wanted):
    seen = sorted({name for name in bundle.executable.values("sectname") if name.startswith("__thread")})
    return not seen, " ".join(seen) or "none"


def check_info(bundle, wanted):
    try:
        info = plistlib.loads((bundle.contents / "Info.plist").read_bytes(), fmt=plistlib.FMT_XML)
    except Exception as error:  # the reader raises whatever its parser does
        return False, f"no property list: {error}"
    executable = info.get("CFBundleExecutable", "")
    if not executable or not (bundle.contents / "MacOS" / executable).is_file():
        return False, f"CFBundleExecutable names no file: {executable!r}"
    expected = {
        "CFBundleIdentifier": wanted.identifier,
        "CFBundlePackageType": "BNDL",
        "CFBundleShortVersionString": wanted.version,
        "CFBundleVersion": wanted.version,
    }
    seen = {(key, str(info.get(key))) for key in expected}
    problems = difference(seen, set(expected.items()))
    return not problems, problems or f"{executable}, {wanted.identifier}, version {wanted.version}"


def check_files(bundle, _wanted):
    seen = {(str(path.relative_to(bundle.contents)),) for path in bundle.contents.rglob("*") if not path.is_dir()}
    wanted = {(file,) for file in FILES}
    return seen == wanted, difference(seen, wanted) or f"{len(seen)} files"


CHECKS = (
    ("kind of file", check_kind),
    ("processor", check_processor),
    ("exported symbols", check_exports),
    ("symbols of the host", check_host_symbols),
    ("symbols of the system", check_system_symbols),
    ("libraries", check_libraries),
    ("load commands", check_commands),
    ("oldest macOS", check_deployment_target),
    ("protection of memory", check_memory),
    ("variables of a thread", check_thread_locals),
    ("Info.plist", check_info),
    ("files", check_files),
)


class Bundle:
    def __init__(self, folder):
        self.contents = pathlib.Path(folder) / "Contents"
        self.executable = Executable(self.contents / "MacOS" / "BarsAndTone")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("bundle", help="the bundle's folder")
    parser.add_argument("--deployment-target", required=True, help="the oldest macOS that it is for")
    parser.add_argument("--identifier", required=True, help="the bundle's identifier")
    parser.add_argument("--version", required=True, help="the bundle's version")
    wanted = parser.parse_args()
    try:
        bundle = Bundle(wanted.bundle)
    except (OSError, subprocess.CalledProcessError, StopIteration) as error:
        sys.exit(f"the executable cannot be read: {error}")
    failed = 0
    for title, check in CHECKS:
        holds, seen = check(bundle, wanted)
        failed += not holds
        print(f"{'ok    ' if holds else 'failed'}  {title:22} {seen}")
    print(f"{len(CHECKS) - failed} of {len(CHECKS)} checks hold")
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
