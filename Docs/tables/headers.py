"""Enumerations and packed records, as the compiler lays them out; what a field or a value means is the comment beside it.

A name is `enum NAME`, `record NAME`, `settings-record` or `identifier-formats`."""

import json
import os
import re
import subprocess

from markdown import table

HEADERS = ("Host/Interface/Importer/ImportSelectors.h", "Host/Interface/Importer/ImportRecords.h",
           "Src/BarsAndToneImporter/SettingsRecord.h")


def notes(text, of):
    """{name: the comment beside it} of a struct or enum."""
    body = re.search(rf"(?ms)^(?:struct|enum) {of} .*?^\}};", text)
    if body is None:
        raise ValueError(f"no header has {of}")
    return dict(re.findall(r"(\w+)(?:\[\d+\])?(?: = [^;,]+)?[;,]\s*///< (.+)", body[0]))


class Maker:
    def __init__(self, root, build):
        self.text = ""
        for path in HEADERS:
            with open(os.path.join(root, path), encoding="utf-8") as file:
                self.text += file.read()
        self.program = os.path.join(build, "tests", "record_layouts")
        self.known = None

    def layouts(self):
        if self.known is None:
            self.known = json.loads(subprocess.run([self.program], check=True, capture_output=True).stdout)
        return self.known

    def enum(self, name, last_head="meaning"):
        meaning = notes(self.text, name)
        rows = [(each["value"], f"`{each['name']}`", meaning.get(each["name"], ""))
                for each in self.layouts()["enums"][name]]
        return table(("value", "name", last_head), rows)

    def field_rows(self, name):
        """The fields of a record that have a meaning here: (field, row), its meaning last."""
        meaning = notes(self.text, name)
        return [(field, (field["offset"], field["bytes"], field["type"], f"`{field['name']}`",
                         meaning.get(field["name"], "")))
                for field in self.layouts()["records"][name]["fields"] if not field["name"].startswith("reserved")]

    def record(self, name):
        rows = [row for _, row in self.field_rows(name)]
        size = self.layouts()["records"][name]["bytes"]
        return table(("offset", "bytes", "type", "field", ""), rows) + ["", f"{size} bytes in all."]

    def settings_record(self):
        rows = [(*row[:-1], f"{field['value']:g}", row[-1]) for field, row in self.field_rows("BarsAndToneInfo")]
        return table(("offset", "bytes", "type", "field", "unless set", "meaning"), rows)

    def make(self, name):
        if name == "settings-record":
            return self.settings_record()
        if name == "identifier-formats":
            return self.enum("IdentifierFormat", "sequence")
        what, which = name.split()
        return {"enum": self.enum, "record": self.record}[what](which)
