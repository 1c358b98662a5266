"""The list of what the packages are made of. PACKAGES is the folder with the packages, the list and the sums."""
import hashlib
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

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

    def test_says_the_licence_of_all_that_is_linked_or_compiled_in(self):
        used = {other for _, kind, other in self.relations if kind == "DYNAMIC_LINK"}
        used |= {one for one, kind, _ in self.relations if kind == "BUILD_DEPENDENCY_OF"}
        names = {self.packages[one]["name"] for one in used}
        self.assertLessEqual({"libavcodec59", "libqt6core6", "libmlt7", "libgstreamer1.0-0", "libcli11-dev",
                              "nlohmann-json3-dev"}, names)
        for one in used:
            self.assertNotIn(self.packages[one]["licenseDeclared"], ("", "NOASSERTION"), self.packages[one]["name"])

    def test_debians_names_of_licences_are_understood(self):
        for text, expected in (("Expat", "MIT"), ("LGPL-2.1+", "LGPL-2.1-or-later"), ("GPL-3", "GPL-3.0-only"),
                               ("LGPL-3 or GPL-2", "LGPL-3.0-only OR GPL-2.0-only"), ("my own", None)):
            self.assertEqual(licences.expression(text), expected)


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
