#!/usr/bin/env python3
"""test_check_bundle.py BUNDLE FAULTS CHECK...: that the command CHECK passes BUNDLE, and fails each wrong copy of it by
the right line. FAULTS is a folder of executables that are linked wrongly."""

import pathlib
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

BUNDLE, FAULTS = map(pathlib.Path, sys.argv[1:3])
CHECK = sys.argv[3:]
IS_ARM = any(word.startswith("arm64=") for word in CHECK)
# There the pages are signed: who patches one is seen by that too.
SIGNED = ("signature",) if IS_ARM else ()

PROCESSOR_AT = 4
KIND_AT = 12
PROTECTION_OF_TEXT_AT = 32 + 60  # behind the file's header, in the first segment's command


class CheckBundle(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.bundle = pathlib.Path(folder.name) / "Copy.bundle"
        shutil.copytree(BUNDLE, self.bundle)
        self.contents = self.bundle / "Contents"
        self.executable = self.contents / "MacOS" / "BarsAndTone"

    def check(self):
        """The lines that failed, by their titles, and how the command ended."""
        result = subprocess.run([*CHECK, str(self.bundle)], capture_output=True, encoding="utf-8", check=False)
        lines = [line for line in result.stdout.splitlines() if line.startswith("failed")]
        return {line[8:30].strip(): line[31:] for line in lines}, result.returncode

    def expect(self, *titles):
        """Just these checks fail. Gives what they saw."""
        failures, code = self.check()
        self.assertEqual(sorted(failures), sorted(titles))
        self.assertEqual(code, 1)
        return failures

    def link(self, fault):
        shutil.copy(FAULTS / fault, self.executable)

    def patch(self, offset, number):
        """Another number at `offset` of the executable."""
        data = bytearray(self.executable.read_bytes())
        struct.pack_into("<I", data, offset, number)
        self.executable.write_bytes(data)

    def edit_info(self, old, new):
        info = self.contents / "Info.plist"
        text = info.read_text(encoding="utf-8")
        self.assertIn(old, text)
        info.write_text(text.replace(old, new), encoding="utf-8")

    def test_the_bundle_passes(self):
        self.assertEqual(self.check(), ({}, 0))

    def test_a_library_is_no_bundle(self):
        self.link("AnotherKind")
        self.assertEqual(self.expect("kind of file", "load commands", "libraries")["kind of file"], "DYLIB")

    def test_another_kind_of_file_is_seen(self):
        self.patch(KIND_AT, 2)
        self.assertEqual(self.expect("kind of file", *SIGNED)["kind of file"], "EXECUTE")

    def test_another_processor_is_seen(self):
        number, name = (0x01000007, "X86_64") if IS_ARM else (0x0100000C, "ARM64")
        self.patch(PROCESSOR_AT, number)
        self.assertEqual(self.expect("processor", *SIGNED)["processor"], name)

    def test_a_part_for_another_processor_is_seen(self):
        data = self.executable.read_bytes()
        head = struct.pack(">2I", 0xCAFEBABE, 2) + 2 * struct.pack(">5I", 0x01000007, 3, 4096, len(data), 12)
        self.executable.write_bytes(head.ljust(4096, b"\0") + data)
        self.assertEqual(self.expect("executables"), {"executables": "2"})

    @unittest.skipUnless(IS_ARM, "nothing is signed")
    def test_changed_code_under_a_signature_is_seen(self):
        self.patch(0x8000, 0xD503201F)
        self.assertEqual(self.expect("signature"), {"signature": "page 8 has another sum"})

    def test_another_export_is_seen(self):
        self.link("AnotherExport")
        self.assertIn("_anotherExport", self.expect("exported symbols")["exported symbols"])

    def test_another_service_is_seen(self):
        self.link("AnotherService")
        seen = self.expect("symbols of the host")["symbols of the host"]
        self.assertEqual(seen, "not expected: _anotherService")

    def test_another_call_to_the_system_is_seen(self):
        self.link("AnotherCall")
        seen = self.expect("symbols of the system")["symbols of the system"]
        self.assertEqual(seen, "not expected: libSystem _getenv")

    def test_a_call_that_is_not_made_any_more_is_seen(self):
        self.link("AMissingCall")
        seen = self.expect("symbols of the system")["symbols of the system"]
        self.assertEqual(seen, "missing: libSystem _log10")

    def test_another_library_is_seen(self):
        self.link("AnotherLibrary")
        self.assertEqual(self.expect("libraries")["libraries"], "not expected: /usr/lib/libanother.dylib")

    def test_a_run_path_is_seen(self):
        self.link("ARunPath")
        self.assertEqual(self.expect("load commands")["load commands"], "not expected: LC_RPATH")

    def test_a_later_macos_is_seen(self):
        self.link("ALaterSystem")
        form = () if IS_ARM else ("load commands",)
        self.assertEqual(self.expect("oldest macOS", *form)["oldest macOS"], "11.1")

    def test_writable_code_is_seen(self):
        self.patch(PROTECTION_OF_TEXT_AT, 7)
        seen = self.expect("protection of memory", *SIGNED)["protection of memory"]
        self.assertEqual(seen, "rwx rw- rw- r--" if IS_ARM else "rwx rw- r--")

    def test_a_variable_of_a_thread_is_seen(self):
        self.link("AThreadLocal")
        self.assertIn("__thread_vars", self.expect("variables of a thread", "symbols of the system")["variables of a thread"])

    def test_another_executable_in_the_description_is_seen(self):
        self.edit_info("<string>BarsAndTone</string>", "<string>BarsAndTune</string>")
        self.assertIn("BarsAndTune", self.expect("Info.plist")["Info.plist"])

    def test_another_identifier_is_seen(self):
        self.edit_info("importer</string>", "exporter</string>")
        self.assertIn("exporter", self.expect("Info.plist")["Info.plist"])

    def test_a_broken_description_is_seen(self):
        self.edit_info("</dict>", "")
        self.assertIn("no property list", self.expect("Info.plist")["Info.plist"])

    def test_a_missing_layout_is_seen(self):
        (self.contents / "Resources" / "ToneSettingsDialog.tarn").unlink()
        self.assertEqual(self.expect("files")["files"], "missing: Resources/ToneSettingsDialog.tarn")

    def test_what_is_no_executable_is_refused(self):
        self.executable.write_text("#!/bin/sh\n", encoding="utf-8")
        self.assertEqual(self.check(), ({}, 1))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
