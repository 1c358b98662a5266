"""Says of programs and libraries what they lack that a distribution asks for.

usage: hardening.py [--root FOLDER] [--marks-branches] FILE-OR-FOLDER...

Folders stand for every ELF file below them. Ends with 1, and a line a finding, when something lacks.
--root FOLDER        run paths may not lead out of this one
--marks-branches     the files are to be marked for branch tracking: the system's own start-up files are
"""
import argparse
import os
import pathlib
import sys

import elf

# Formatted printing is checked where it is fortified, but for "%s" into enough room. (vsnprintf is not in the list: the
# C++ library takes its address for std::to_string.) Copies are checked where the compiler knows how much room there is.
PRINTING = {"printf", "fprintf", "vfprintf", "sprintf", "vsprintf", "snprintf", "dprintf", "syslog"}


def segment_faults(file):
    if file.kind != elf.SHARED_OBJECT:
        yield "is no position-independent code"
    elif file.of_kind(elf.INTERPRETER) and not file.flag(elf.FLAGS_1, elf.PIE):
        yield "is no position-independent program"
    stacks = file.of_kind(elf.STACK)
    if len(stacks) != 1 or stacks[0][1] & elf.EXECUTE:
        yield "has a stack that can be executed"
    if any(flags & elf.EXECUTE and flags & elf.WRITE for _, flags, _, _, _ in file.of_kind(elf.LOAD)):
        yield "has memory that can be written and executed"
    if not file.of_kind(elf.RELRO):
        yield "leaves its relocations writable (RELRO)"
    if not (file.flag(elf.FLAGS, elf.BIND_NOW) or file.flag(elf.FLAGS_1, elf.NOW)):
        yield "is bound lazily (BIND_NOW)"
    if elf.TEXT_RELOCATIONS in file.dynamic:
        yield "relocates its code"


def call_faults(file):
    taken = {name for name, place in file.symbols() if place is None}
    if "__stack_chk_fail" not in taken:
        yield "has no stack protector"
    for name in sorted(taken & PRINTING):
        yield f"calls {name} unfortified"


def processor_faults(file, marks_branches):
    if file.machine != elf.X86_64:
        return
    if not file.features() & elf.SHADOW_STACK:
        yield "is not marked for the shadow stack (SHSTK)"
    if marks_branches and not file.features() & elf.BRANCHES:
        yield "is not marked for branch tracking (IBT)"
    for name, place in file.symbols():
        # The linker's own, for the start-up files.
        if place is not None and name not in ("_init", "_fini") and file.data[place:place + 4] != elf.ENDBR64:
            yield f"has no landing place for branches at {name} (ENDBR64)"


def path_faults(file, path, root):
    if elf.RUN_PATH_OLD in file.dynamic:
        yield "has an RPATH, which nobody can override"
    for entry in (part for text in file.texts(elf.RUN_PATH) for part in text.split(":")):
        if entry != "$ORIGIN" and not entry.startswith("$ORIGIN/"):
            yield f"looks for libraries in {entry or 'the current folder'}"
        elif root is not None:
            leads_to = os.path.normpath(entry.replace("$ORIGIN", str(path.parent.absolute())))
            if not pathlib.Path(leads_to).is_relative_to(root.absolute()):
                yield f"looks for libraries out of its tree, in {entry}"


def faults(path, root=None, marks_branches=False):
    """What `path` lacks, a sentence's end each."""
    file = elf.Elf(path)
    return [*segment_faults(file), *call_faults(file), *processor_faults(file, marks_branches),
            *path_faults(file, path, root)]


def elf_files(paths):
    for path in paths:
        for file in sorted(path.rglob("*")) if path.is_dir() else [path]:
            if file.is_file() and not file.is_symlink() and file.open("rb").read(4) == b"\x7fELF":
                yield file


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--root", type=pathlib.Path)
    parser.add_argument("--marks-branches", action="store_true")
    parser.add_argument("paths", type=pathlib.Path, nargs="+")
    arguments = parser.parse_args()
    files = list(elf_files(arguments.paths))
    if not files:
        sys.exit("there is no ELF file to look at")
    found = [f"{file} {fault}" for file in files
             for fault in faults(file, arguments.root, arguments.marks_branches)]
    print("\n".join([*found, f"{len(files)} files, {len(found)} findings"]))
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
