#!/usr/bin/env python3
"""What packages are made of: a list in SPDX 2.3 of their files, and of every library that these are linked to, load by way
of others, or were compiled with, each with its version and licence. The same packages give the same list.

usage: materials.py --build FOLDER --out FILE PACKAGE.deb...
"""
import argparse
import datetime
import hashlib
import json
import os
import pathlib
import re
import tempfile
import uuid

import licences
import system

OURS = "MIT"
NOTICE_ASKED_FOR = {"MIT", "BSD-2-Clause", "BSD-3-Clause", "X11", "ISC"}


def identity(*parts):
    return "SPDXRef-" + re.sub(r"[^A-Za-z0-9.-]", "-", "-".join(parts))


def digest(path, kind):
    return hashlib.new(kind, path.read_bytes()).hexdigest()


class Document:
    def __init__(self):
        self.packages, self.files, self.relations, self.licences = {}, [], set(), {}

    def relate(self, one, kind, other, comment=""):
        self.relations.add((one, kind, other, comment))

    def add_deb(self, deb, root):
        """One of our packages with its files; returns its identity and those of its ELF files by path."""
        name, version = (system.run("dpkg-deb", "-f", str(deb), field).strip() for field in ("Package", "Version"))
        own, sums, programs = identity("Package", name), [], {}
        system.run("dpkg-deb", "--extract", str(deb), str(root))
        listing = system.run("sh", "-c", f"dpkg-deb --fsys-tarfile '{deb}' | tar -t").split("\n")
        for path in sorted(entry for entry in listing if entry and not entry.endswith("/")):
            file = root / path
            if file.is_symlink():
                continue
            sums.append(digest(file, "sha1"))
            self.files.append({
                "SPDXID": identity("File", name, path[2:]), "fileName": path, "licenseConcluded": OURS,
                "copyrightText": "NOASSERTION",
                "checksums": [{"algorithm": kind.upper(), "checksumValue": digest(file, kind)}
                              for kind in ("sha1", "sha256")]})
            self.relate(own, "CONTAINS", self.files[-1]["SPDXID"])
            if file.read_bytes()[:4] == b"\x7fELF":
                programs[file] = self.files[-1]["SPDXID"]
        self.packages[own] = {
            "name": name, "versionInfo": version, "packageFileName": deb.name, "downloadLocation": "NOASSERTION",
            "filesAnalyzed": True, "licenseConcluded": OURS, "licenseDeclared": OURS, "copyrightText": "NOASSERTION",
            "packageVerificationCode":
                {"packageVerificationCodeValue": hashlib.sha1("".join(sorted(sums)).encode()).hexdigest()},
            "checksums": [{"algorithm": "SHA256", "checksumValue": digest(deb, "sha256")}]}
        self.relate("SPDXRef-DOCUMENT", "DESCRIBES", own)
        return own, programs

    def add_system(self, package, facts, is_compiled_in):
        version, source, homepage = facts
        own = identity("Debian", package)
        licence = licences.Licence(package, source)
        self.licences.update(licence.texts)
        entry = self.packages.setdefault(own, {
            "name": package.split(":")[0], "versionInfo": version, "supplier": "Organization: Debian",
            "downloadLocation": f"https://snapshot.debian.org/package/{source}/", "filesAnalyzed": False,
            "licenseConcluded": "NOASSERTION", "licenseDeclared": licence.expression, "copyrightText": "NOASSERTION",
            "comment": f"Debian source package {source}; its licences: {licences.copyright_file(package)}"})
        if licence.why_not:
            entry["licenseComments"] = licence.why_not
        if homepage:
            entry["homepage"] = homepage
        file = licences.copyright_file(package)
        if is_compiled_in and licence.expression in NOTICE_ASKED_FOR and file.exists():
            entry["attributionTexts"] = [file.read_text(errors="replace")]
        return own

    def text(self, name, created):
        body = {
            "packages": [{"SPDXID": own, **self.packages[own]} for own in sorted(self.packages)],
            "files": sorted(self.files, key=lambda file: file["SPDXID"]),
            "relationships": [{"spdxElementId": one, "relationshipType": kind, "relatedSpdxElement": other,
                               **({"comment": comment} if comment else {})}
                              for one, kind, other, comment in sorted(self.relations)],
            "hasExtractedLicensingInfos": [{"licenseId": reference, "name": name, "extractedText": text}
                                           for reference, (name, text) in sorted(self.licences.items())]}
        namespace = uuid.uuid5(uuid.NAMESPACE_OID, json.dumps(body, sort_keys=True))
        head = {
            "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT", "name": name,
            "documentNamespace": f"urn:uuid:{namespace}",
            "creationInfo": {"created": created, "creators": ["Tool: materials.py"]}}
        return json.dumps({**head, **body}, indent=1, ensure_ascii=False) + "\n"


def make(build, debs, created):
    document = Document()
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder).resolve()
        ours, programs = {}, {}
        for deb in debs:
            own, elves = document.add_deb(deb, root)
            programs.update({file: (own, identity_) for file, identity_ in elves.items()})
            ours.update({file: own for file in elves})
        links = {file: (system.needed(file), system.loaded(file)) for file in programs}
        foreign = {path for _, found in links.values() for path in found.values() if not path.is_relative_to(root)}
        compiled = system.headers(build)
        owner = system.owners(foreign | {pathlib.Path(header) for header in compiled})
        facts = system.facts(set(owner.values()))
        for file, (names, found) in links.items():
            own, identity_ = programs[file]
            for name, path in found.items():
                if path.is_relative_to(root):
                    if name in names:
                        document.relate(identity_, "DYNAMIC_LINK", ours[path.resolve()])
                    continue
                other = document.add_system(owner[path], facts[owner[path]], False)
                if name in names:
                    document.relate(identity_, "DYNAMIC_LINK", other, name)
                else:
                    document.relate(own, "DEPENDS_ON", other, "loaded by a library that it is linked to")
        for package in {owner[path] for path in owner if str(path) in compiled}:
            other = document.add_system(package, facts[package], True)
            for own in set(ours.values()):
                document.relate(other, "BUILD_DEPENDENCY_OF", own, "headers that are compiled in")
    return document.text("-".join(debs[0].stem.split("_")[1:2] or ["packages"]), created)


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--out", type=pathlib.Path, required=True)
    parser.add_argument("debs", type=pathlib.Path, nargs="+")
    arguments = parser.parse_args()
    moment = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)
    text = make(arguments.build, sorted(arguments.debs), moment.strftime("%Y-%m-%dT%H:%M:%SZ"))
    arguments.out.write_text(text)


if __name__ == "__main__":
    main()
