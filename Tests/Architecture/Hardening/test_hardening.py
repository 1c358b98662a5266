"""Every finding is made where its cause is. CXX compiles for PROCESSOR; COMMANDS lists how the build's files are
compiled."""
import json
import os
import pathlib
import subprocess
import tempfile
import unittest

import elf
import hardening

SOURCE = """
#include <cstdio>
extern "C" [[gnu::visibility("default")]] int Say(int number) {
    char copy[64];
    std::snprintf(copy, sizeof copy, "%d", number);
    return std::puts(copy);
}
"""
IS_X86_64 = os.environ["PROCESSOR"] == "x86_64"
COMPILE = ["-O2", "-fPIC", "-fstack-protector-strong", "-fstack-clash-protection", "-U_FORTIFY_SOURCE",
           "-D_FORTIFY_SOURCE=2"]
LINK = ["-shared", "-Wl,-z,relro", "-Wl,-z,now", "-Wl,-rpath,$ORIGIN/../lib"]
if IS_X86_64:
    COMPILE += ["-fcf-protection"]
    LINK += ["-Wl,-z,shstk", "-Wl,-z,ibtplt"]

# What is asked of the compiler beside, or instead ("-old=new"), and what is found then.
CASES = [
    ([], []),
    (["-fno-stack-protector"], ["has no stack protector"]),
    (["-D_FORTIFY_SOURCE=2=-DNONE"], ["calls snprintf unfortified"]),
    (["-Wl,-z,norelro"], ["leaves its relocations writable (RELRO)"]),
    (["-Wl,-z,lazy"], ["is bound lazily (BIND_NOW)"]),
    (["-Wl,-z,execstack"], ["has a stack that can be executed"]),
    (["-Wl,--disable-new-dtags"], ["has an RPATH, which nobody can override"]),
    (["-Wl,-rpath,/opt/lib"], ["looks for libraries in /opt/lib"]),
    (["-Wl,-rpath,$ORIGIN/../../lib"], ["looks for libraries out of its tree, in $ORIGIN/../../lib"]),
    (["-shared=-no-pie", "-DPROGRAM", "-fPIC=-fno-pie"], ["is no position-independent code"]),
]
if IS_X86_64:
    CASES += [
        (["-fcf-protection=none"], ["has no landing place for branches at Say (ENDBR64)"]),
        (["-Wl,-z,shstk=-DNONE"], ["is not marked for the shadow stack (SHSTK)"]),
    ]


class Hardening(unittest.TestCase):
    def built(self, changes, look):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            (root / "bin").mkdir()
            (root / "a.cpp").write_text(SOURCE + ("int main() { return Say(1); }" if "-DPROGRAM" in changes else ""))
            options = COMPILE + LINK
            for change in changes:
                old = next((option for option in options if change.startswith(option + "=-")), None)
                if old is None:
                    options.append(change)
                else:
                    options[options.index(old)] = change[len(old) + 1:]
            command = [os.environ["CXX"], *options, "a.cpp", "-o", "bin/a"]
            subprocess.run(command, cwd=root, check=True, stderr=subprocess.DEVNULL)
            return look(root / "bin/a", root)

    def test_each_lack_is_found_and_nothing_else(self):
        for changes, expected in CASES:
            with self.subTest(changes=changes):
                self.assertEqual(self.built(changes, hardening.faults), expected)

    def test_what_no_linker_makes_unless_forced_is_found_too(self):
        file = self.built([], lambda path, root: elf.Elf(path))
        self.assertEqual(list(hardening.segment_faults(file)), [])
        file.segments = [(kind, flags | elf.WRITE, *rest) for kind, flags, *rest in file.segments]
        file.dynamic[elf.TEXT_RELOCATIONS] = [0]
        self.assertEqual(list(hardening.segment_faults(file)),
                         ["has memory that can be written and executed", "relocates its code"])

    def test_every_file_of_the_build_is_compiled_with_what_leaves_no_trace_in_it(self):
        for entry in json.loads(pathlib.Path(os.environ["COMMANDS"]).read_text()):
            for option in ("-fstack-clash-protection", "-fstack-protector-strong", "-D_FORTIFY_SOURCE=2"):
                self.assertIn(option, entry["command"], entry["file"])


if __name__ == "__main__":
    unittest.main()
