#!/usr/bin/env python3
"""The symbols file of the package of the libraries: what they offer, and since which version, by which the packages of other
programs know the oldest version that they run with.

usage: symbols.py make   --template FILE --package NAME --version VERSION --out FILE LIBRARY...
       symbols.py update --template FILE --version VERSION LIBRARY...

make writes the control file of the package from the template, names every symbol that is new or gone, and then ends with 1.
update takes into the template what is new, as of the version, and drops what is gone. The template is configured by CMake;
both are given the libraries as they were built, and update the template as it lies in the source tree. A symbol of which the
product's own parts alone know is not listed: its version is this very build's, and so is what depends on it.
"""
import argparse
import os
import pathlib
import re
import subprocess
import sys
import tempfile

# Belongs to one processor's kernels.
ONE_PROCESSOR = re.compile(r"_(E9|repE9)$")


def run(*command, check=True, cwd=None):
    return subprocess.run(command, check=check, capture_output=True, text=True, cwd=cwd)


def soname(library):
    return re.search(r"\(SONAME\).*\[(.*)\]", run("env", "LC_ALL=C", "readelf", "--dynamic", library).stdout)[1]


def offered(library):
    """What a library offers to everybody, demangled: "name@VERSION" of those that are not the product's own parts'."""
    lines = run("nm", "--dynamic", "--defined-only", "--with-symbol-versions", library).stdout.splitlines()
    mangled = "\n".join(line.split()[2].replace("@@", "@") for line in lines)
    names = set(subprocess.run(["c++filt"], input=mangled, check=True, capture_output=True, text=True).stdout.splitlines())
    return {name if "@" in name else f"{name}@{name}" for name in names if "_PARTS_" not in name}


def line_of(symbol, version):
    name = symbol.rpartition("@")[0]
    if ONE_PROCESSOR.search(name):
        return f' (arch=amd64){symbol} {version}'
    return f' (c++)"{symbol}" {version}' if re.search(r"[ :(]", name) else f" {symbol} {version}"


def listed(text):
    """Library -> symbol -> version since when, and the lines that head it."""
    libraries, heads, current = {}, {}, None
    for line in text.splitlines():
        if line.startswith(("|", "*", " (symver", "#")):
            heads[current].append(line)
        elif line.startswith(" "):
            symbol, version = re.fullmatch(r' (?:\([^)]*\))?(?:"(.*)"|(\S+)) (\S+)', line).expand(r"\1\2\t\3").split("\t")
            libraries[current][symbol] = version
        else:
            current = line.split()[0]
            libraries[current], heads[current] = {}, [line]
    return libraries, heads


def make(arguments):
    known, _ = listed(arguments.template.read_text())
    faults = []
    for library in arguments.libraries:
        name = soname(library)
        found, promised = offered(library), set(known.get(name, {}))
        faults += [f"new in {name}: {symbol}" for symbol in sorted(found - promised)]
        faults += [f"gone from {name}: {symbol}" for symbol in sorted(promised - found)
                   if not ONE_PROCESSOR.search(symbol.rpartition("@")[0])]
    with tempfile.TemporaryDirectory() as folder:  # dpkg of Debian 13 looks into the control file of a source package
        control = pathlib.Path(folder, "debian", "control")
        control.parent.mkdir()
        control.write_text(f"Source: {arguments.package}\n\nPackage: {arguments.package}\nArchitecture: any\n")
        made = run("dpkg-gensymbols", "-q", "-c4", f"-p{arguments.package}", f"-v{arguments.version}",
                   f"-I{arguments.template.absolute()}", f"-O{arguments.out.absolute()}",
                   *(f"-e{os.path.abspath(library)}" for library in arguments.libraries), check=False, cwd=folder)
    if faults:
        faults.append("Packaging/debian/symbols.py update takes what is new, and drops what is gone.")
    elif made.returncode:
        faults.append(f"dpkg-gensymbols ended with {made.returncode}: {made.stderr}")
    print("\n".join(faults), end="\n" if faults else "")
    return 1 if faults else 0


def update(arguments):
    known, heads = listed(arguments.template.read_text())
    text = []
    for library in arguments.libraries:
        name = soname(library)
        soversion = name.rpartition(".so.")[2]
        templated = re.sub(rf"{re.escape(soversion)}$", "${LINEUP_SOVERSION}", name)
        since = known.get(templated, {})
        symbols = {re.sub(rf"_{re.escape(soversion)}\b", "_${LINEUP_SOVERSION}", symbol) for symbol in offered(library)}
        text += heads[templated] + [line_of(symbol, since.get(symbol, arguments.version)) for symbol in sorted(symbols)]
    arguments.template.write_text("\n".join(text) + "\n")
    return 0


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("act", choices=["make", "update"])
    parser.add_argument("--template", type=pathlib.Path, required=True)
    parser.add_argument("--package")
    parser.add_argument("--version", required=True)
    parser.add_argument("--out", type=pathlib.Path, default="/dev/null")
    parser.add_argument("libraries", nargs="+")
    arguments = parser.parse_args()
    return make(arguments) if arguments.act == "make" else update(arguments)


if __name__ == "__main__":
    sys.exit(main())
