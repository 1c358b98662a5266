"""The list of what the packages are made of. PACKAGES is the folder with the packages, the list and the sums."""
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import unittest.mock

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "Packaging/materials"))
import licences  # noqa: E402
import system  # noqa: E402

PACKAGES = pathlib.Path(os.environ["PACKAGES"])


class Materials(unittest.TestCase):
    def setUp(self):
        self.document = json.loads(next(PACKAGES.glob("*.spdx.json")).read_text())
        self.packages = {package["SPDXID"]: package for package in self.document["packages"]}
        self.relations = [(relation["spdxElementId"], relation["relationshipType"], relation["relatedSpdxElement"])
                          for relation in self.document["relationships"]]

    def test_has_what_the_format_asks_for(self):
        self.assertEqual(self.document["spdxVersion"], "SPDX-2.3")
        self.assertRegex(self.document["creationInfo"]["created"], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")
        known = {"SPDXRef-DOCUMENT", *self.packages, *(file["SPDXID"] for file in self.document["files"])}
        self.assertEqual(len(known), 1 + len(self.packages) + len(self.document["files"]))
        for one, _, other in self.relations:
            self.assertLessEqual({one, other}, known)
        for package in self.packages.values():
            self.assertTrue(package["name"] and package["versionInfo"] and package["downloadLocation"])

    def test_describes_each_package_by_its_sum(self):
        described = {self.packages[other]["packageFileName"]: self.packages[other]["checksums"][0]["checksumValue"]
                     for _, kind, other in self.relations if kind == "DESCRIBES"}
        self.assertEqual(described, {deb.name: hashlib.sha256(deb.read_bytes()).hexdigest()
                                     for deb in PACKAGES.glob("*.deb")})

    def test_names_every_library_that_a_file_is_linked_to(self):
        comments = {}
        for relation in self.document["relationships"]:
            if relation["relationshipType"] == "DYNAMIC_LINK":
                comments.setdefault(relation["spdxElementId"], set()).add(relation.get("comment"))
        names = {file["fileName"]: file["SPDXID"] for file in self.document["files"]}
        with tempfile.TemporaryDirectory() as folder:
            for deb in PACKAGES.glob("*.deb"):
                system.run("dpkg-deb", "--extract", str(deb), folder)
            for name, identity in names.items():
                file = pathlib.Path(folder, name)
                if file.read_bytes()[:4] == b"\x7fELF":
                    foreign = {library for library in system.needed(file) if not library.startswith(("liblineup", "libzel"))}
                    self.assertEqual(foreign, comments.get(identity, set()) - {None}, name)

    def test_lists_what_is_linked_and_what_is_compiled_in(self):
        used = {other for _, kind, other in self.relations if kind == "DYNAMIC_LINK"}
        used |= {one for one, kind, _ in self.relations if kind == "BUILD_DEPENDENCY_OF"}
        names = {self.packages[one]["name"] for one in used}
        self.assertLessEqual({"libavcodec59", "libqt6core6", "libmlt7", "libgstreamer1.0-0", "libcli11-dev",
                              "nlohmann-json3-dev"}, names)

    def test_says_a_licence_of_everything_and_has_the_text_of_those_without_a_known_name(self):
        texts = {info["licenseId"]: info["extractedText"] for info in self.document["hasExtractedLicensingInfos"]}
        declared = {package["name"]: package["licenseDeclared"] for package in self.packages.values()}
        self.assertEqual([name for name, licence in declared.items() if licence in ("", "NOASSERTION")], [])
        self.assertEqual({word for licence in declared.values() for word in re.findall(r"LicenseRef-[\w.-]+", licence)},
                         set(texts))
        for package in self.packages.values():
            if package["licenseDeclared"].endswith("-copyright"):
                file = licences.copyright_file(package["name"])
                self.assertIn(str(file), package["licenseComments"])
                self.assertEqual(texts[package["licenseDeclared"]], file.read_text(errors="replace"))


class Licences(unittest.TestCase):
    def test_debians_names_of_licences_are_understood(self):
        for text, expected in (("Expat", "MIT"), ("LGPL-2.1+", "LGPL-2.1-or-later"), ("GPL-3", "GPL-3.0-only"),
                               ("LGPL-3 or GPL-2", "LGPL-3.0-only OR GPL-2.0-only"), ("my own", None),
                               ("GPL-2 or AFL-2.1, and Expat", "(GPL-2.0-only OR AFL-2.1) AND MIT")):
            self.assertEqual(licences.expression(text), expected)

    def test_copyright_files_are_read_as_debian_writes_them(self):
        head, own = "Format: https://example.org\n\n", "\n\nFiles: debian/*\nLicense: GPL-3"
        for text, expected, texts, why_not in (
                (head + "Files:\n *\nLicense: Expat\n free" + own, "MIT", [], ""),
                (head + "Files: src/*\nLicense: Expat\n\nFiles: doc/*\nLicense: GPL-2 or ISC" + own,
                 "MIT AND (GPL-2.0-only OR ISC)", [], ""),
                (head + "Files: *\nLicense: Ours\n\nLicense: ours\n Do as\n .\n you like.", "LicenseRef-source-Ours",
                 [("Ours", "Do as\n\nyou like.")], ""),
                (head + "Files: *\nLicense: Ours", "LicenseRef-source-copyright",
                 [("source, all notices", head + "Files: *\nLicense: Ours")], "whose text it does not have: Ours"),
                (head + "Files: *\nLicense:\n free", "LicenseRef-source-copyright",
                 [("source, all notices", head + "Files: *\nLicense:\n free")], "without naming it"),
                ("It is free.", "LicenseRef-source-copyright", [("source, all notices", "It is free.")],
                 "written for people"),
                ("It is as\n  free as\nair.", "MIT", [], ""), ("", "NOASSERTION", [], "there is no ")):
            with tempfile.TemporaryDirectory() as folder:
                file = pathlib.Path(folder, "copyright")
                file.write_text(text)
                with unittest.mock.patch("licences.copyright_file", return_value=file), \
                        unittest.mock.patch("licences.READ_BY_PEOPLE", {"source": ("MIT", "as free as air")}):
                    licence = licences.Licence("package", "source")
            self.assertEqual((licence.expression, list(licence.texts.values())), (expected, texts))
            self.assertIn(why_not, licence.why_not)
            self.assertEqual(bool(why_not), bool(licence.why_not))


class Sums(unittest.TestCase):
    def test_can_be_signed_and_find_what_was_changed(self):
        with tempfile.TemporaryDirectory() as folder:
            run = lambda command: subprocess.run(["sh", "-ec", command], cwd=folder, capture_output=True,  # noqa: E731
                                                 env={**os.environ, "GNUPGHOME": folder + "/key"})
            made = run(f"mkdir -m 700 key && cp '{PACKAGES}'/*.deb '{PACKAGES}'/*.json '{PACKAGES}'/SHA256SUMS . && "
                       "gpg --batch --quiet --passphrase '' --quick-generate-key 'Test key' ed25519 sign 1d && "
                       "gpg --batch --quiet --armor --detach-sign SHA256SUMS && "
                       "gpg --verify SHA256SUMS.asc SHA256SUMS && sha256sum --check --strict SHA256SUMS; "
                       "gpgconf --kill all")
            self.assertEqual(made.returncode, 0, made.stderr)
            self.assertEqual(made.stdout.count(b": OK"), len(list(PACKAGES.glob("*.deb"))) + 1)
            self.assertNotEqual(run("echo >>\"$(ls *.json)\"; sha256sum --check --strict SHA256SUMS").returncode, 0)
            self.assertNotEqual(run("echo >>SHA256SUMS; gpg --verify SHA256SUMS.asc SHA256SUMS").returncode, 0)


if __name__ == "__main__":
    unittest.main()
