#!/usr/bin/env python3
"""check_bundle.py BUNDLE --processor NAME=MACOS... --version VERSION: whether a bundle is what a Mac's host loads.

NAME is a processor that it is for, and MACOS the oldest macOS there. Looks at BUNDLE with LLVM's tools, runs nothing of
it, and prints a line for each check: ok or failed, what was looked at, and what was seen. What the bundle may need is in
undefined-host.txt and undefined-system.txt. Ends with 1 when a check failed.
"""

import argparse
import pathlib
import plistlib
import re
import struct
import subprocess
import sys
import tempfile

import code_signature

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
    "LC_LOAD_DYLIB",
    "LC_FUNCTION_STARTS",
    "LC_DATA_IN_CODE",
}
# What differs by processor: a Mac with an ARM processor loads no executable without a signature.
COMMANDS_OF = {"x86_64": {"LC_VERSION_MIN_MACOSX"}, "arm64": {"LC_BUILD_VERSION", "LC_CODE_SIGNATURE"}}


def run(tool, *arguments):
    """What one of LLVM's tools prints, as lines."""
    command = [str(TOOLS / tool), *map(str, arguments)]
    return subprocess.run(command, check=True, capture_output=True, encoding="utf-8").stdout.splitlines()


def read_list(name, processor):
    """The lines of one of the lists of symbols that the processor needs, as tuples of their words."""
    lines = (HERE / name).read_text(encoding="utf-8").splitlines()
    entries = [tuple(line.split()) for line in lines if not line.startswith("#")]
    others = COMMANDS_OF.keys() - {processor}
    return {tuple(word for word in entry if word != processor) for entry in entries if entry[-1] not in others}


def short_name(library):
    """A library's name as nm writes it: libSystem of /usr/lib/libSystem.B.dylib."""
    return pathlib.PurePosixPath(library).name.partition(".")[0]


def difference(seen, wanted):
    """How two sets of words differ; nothing when they do not."""
    more = [f"not expected: {' '.join(item)}" for item in sorted(seen - wanted)]
    less = [f"missing: {' '.join(item)}" for item in sorted(wanted - seen)]
    return "; ".join(more + less)


def slices(data):
    """The executables in a file that may hold one for each of several processors."""
    if data[:4] != bytes.fromhex("cafebabe"):
        return [data]
    places = struct.iter_unpack(">5I", data[8 : 8 + 20 * struct.unpack_from(">I", data, 4)[0]])
    return [data[offset : offset + size] for _, _, offset, size, _ in places]


class Executable:
    """What the tools say of the bundle's executable for one processor."""

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


def check_processor(bundle, wanted):
    return bundle.executable.processor.lower() == wanted.processor, bundle.executable.processor


def check_exports(bundle, _wanted):
    loader, table = bundle.executable.exports()
    seen = " ".join(sorted(loader | table))
    return loader == EXPORTS and table == EXPORTS, seen or "none"


def check_host_symbols(bundle, wanted):
    wanted = read_list("undefined-host.txt", wanted.processor)
    seen = {(symbol,) for symbol, library in bundle.executable.undefined() if library is None}
    return seen == wanted, difference(seen, wanted) or f"the {len(seen)} of undefined-host.txt"


def check_system_symbols(bundle, wanted):
    needed = read_list("undefined-system.txt", wanted.processor)
    wanted = {(short_name(library), symbol) for library, symbol in needed}
    seen = {(library, symbol) for symbol, library in bundle.executable.undefined() if library is not None}
    return seen == wanted, difference(seen, wanted) or f"the {len(seen)} of undefined-system.txt"


def check_libraries(bundle, wanted):
    wanted = {(library,) for library, _ in read_list("undefined-system.txt", wanted.processor)}
    seen = {(library,) for library in bundle.executable.values("name")}
    return seen == wanted, difference(seen, wanted) or " ".join(sorted(library for library, in seen))


def check_commands(bundle, wanted):
    seen = {(command,) for command in bundle.executable.commands()}
    wanted = {(command,) for command in COMMANDS | COMMANDS_OF[wanted.processor]}
    return seen == wanted, difference(seen, wanted) or f"{len(bundle.executable.commands())} of {len(seen)} kinds"


def check_deployment_target(bundle, wanted):
    old_form = "LC_VERSION_MIN_MACOSX" in bundle.executable.commands()
    seen = bundle.executable.values("version" if old_form else "minos")
    return seen == [wanted.deployment_target], " ".join(seen) or "none"


def check_memory(bundle, _wanted):
    seen = bundle.executable.values("initprot")
    return bool(seen) and not any("w" in bits and "x" in bits for bits in seen), " ".join(seen)


def check_signature(bundle, _wanted):
    """Where there is one: the load commands say whether there must be."""
    try:
        return True, code_signature.verify(bundle.executable.path.read_bytes()) or "none"
    except (ValueError, struct.error) as error:
        return False, str(error)


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
    ("signature", check_signature),
    ("variables of a thread", check_thread_locals),
)
CHECKS_OF_FOLDER = (
    ("Info.plist", check_info),
    ("files", check_files),
)


class Bundle:
    """A bundle's folder, and its executables, which are laid out in the folder `apart`."""

    def __init__(self, folder, apart):
        self.contents = pathlib.Path(folder) / "Contents"
        self.executables = []
        for number, data in enumerate(slices((self.contents / "MacOS" / "BarsAndTone").read_bytes())):
            path = apart / str(number)
            path.write_bytes(data)
            self.executables.append(Executable(path))


class Report:
    """Prints a line for each check, and counts."""

    def __init__(self, wanted):
        self.wanted = wanted
        self.failed = 0
        self.all = 0

    def look(self, bundle, checks):
        for title, check in checks:
            self.line(title, *check(bundle, self.wanted))

    def line(self, title, holds, seen):
        self.all += 1
        self.failed += not holds
        print(f"{'ok    ' if holds else 'failed'}  {title:22} {seen}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("bundle", help="the bundle's folder")
    parser.add_argument("--processor", dest="processors", required=True, action="append", help="NAME=MACOS, as often as it takes")
    parser.add_argument("--identifier", required=True, help="the bundle's identifier")
    parser.add_argument("--version", required=True, help="the bundle's version")
    wanted = parser.parse_args()
    report = Report(wanted)
    with tempfile.TemporaryDirectory() as apart:
        try:
            bundle = Bundle(wanted.bundle, pathlib.Path(apart))
        except (OSError, subprocess.CalledProcessError, StopIteration, struct.error) as error:
            sys.exit(f"the executable cannot be read: {error}")
        count = len(bundle.executables)
        report.line("executables", count == len(wanted.processors), f"{count}")
        for words, bundle.executable in zip(wanted.processors, bundle.executables):
            wanted.processor, _, wanted.deployment_target = words.partition("=")
            report.look(bundle, CHECKS)
        report.look(bundle, CHECKS_OF_FOLDER)
    print(f"{report.all - report.failed} of {report.all} checks hold")
    sys.exit(1 if report.failed else 0)


if __name__ == "__main__":
    main()
