"""Enumerations and packed records, out of the headers that both sides of the importer interface are compiled with.

A name is `enum NAME`, `record NAME` or `settings-record`. What a field or a value means is the comment beside it."""

import os
import re

from markdown import table

SELECTORS = "Host/Interface/Importer/ImportSelectors.h"
RECORDS = "Host/Interface/Importer/ImportRecords.h"
SETTINGS = "Src/BarsAndToneImporter/BarsAndToneInfo.h"

# Bytes of a type, and what the pages call it.
TYPES = {
    "std::uint8_t": (1, "u8"),
    "char": (1, "char"),
    "std::int16_t": (2, "i16"),
    "std::uint16_t": (2, "u16"),
    "std::int32_t": (4, "i32"),
    "std::uint32_t": (4, "u32"),
    "std::int64_t": (8, "i64"),
    "float": (4, "f32"),
    "vexel": (8, "`vexel`"),
    "void*": (8, "pointer"),
    "float**": (8, "`float**`"),
    "IdentifierFormat": (4, "u32"),
}

FIELD = re.compile(r"^    (?P<type>[\w:]+\*{0,2}) (?P<name>\w+)(?:\[(?P<count>\d+)\])?(?: = (?P<value>[^;]+))?;"
                   r"(?:\s*///< (?P<note>.+))?$")
VALUE = re.compile(r"^    (?P<name>k?\w+) = (?P<value>-?\w+),(?:\s*///< (?P<note>.+))?$")


def body(text, head):
    """The lines between the braces that follow `head`."""
    start = text.index(head)
    return text[text.index("{", start) + 1:text.index("\n};", start)].split("\n")


def enum_rows(text, name):
    found = [VALUE.match(line) for line in body(text, f"enum {name} ")]
    return [(match["value"], f"`{match['name']}`", match["note"] or "") for match in found if match]


class Field:
    def __init__(self, offset, match):
        self.offset = offset
        self.name, self.value, self.note = match["name"], match["value"], match["note"] or ""
        size, self.type = TYPES[match["type"]]
        count = int(match["count"] or 1)
        self.size = size * count
        if match["count"]:
            self.type = f"{self.type}[{count}]"


def fields(text, name):
    """The fields of a packed record; ValueError when an offset is not the one that the header asserts."""
    found, offset = [], 0
    for line in body(text, f"struct {name} "):
        match = FIELD.match(line)
        if match:
            found.append(Field(offset, match))
            offset += found[-1].size
        elif line.strip() and not line.strip().startswith("//"):
            raise ValueError(f"cannot read the field of {name}: {line}")
    asserted = dict(re.findall(rf"static_assert\(offsetof\({name}, (\w+)\) == (\d+)\)", text))
    for field in found:
        if field.name in asserted and int(asserted[field.name]) != field.offset:
            raise ValueError(f"{name}.{field.name} is at {field.offset}, not at {asserted[field.name]}")
    return found, offset


class Maker:
    def __init__(self, root):
        self.root = root

    def text(self, path):
        with open(os.path.join(self.root, path), encoding="utf-8") as file:
            return file.read()

    def enum(self, name):
        return table(("value", "name", "meaning"), enum_rows(self.text(SELECTORS), name))

    def record(self, name):
        found, size = fields(self.text(RECORDS), name)
        rows = [(field.offset, field.size, field.type, f"`{field.name}`", field.note) for field in found
                if not field.name.startswith("reserved")]
        return table(("offset", "bytes", "type", "field", ""), rows) + ["", f"{size} bytes in all."]

    def settings_record(self):
        text = self.text(SETTINGS)
        constants = dict(re.findall(r"constexpr std::uint32_t (\w+) = (\d+);", text))
        constants.update({name.strip("`"): value for value, name, _ in enum_rows(text, "IdentifierFormat")})
        found, _ = fields(text, "BarsAndToneInfo")
        rows = [(field.offset, field.size, field.type, f"`{field.name}`",
                 constants.get(field.value, field.value.removesuffix("F").removesuffix(".0")), field.note)
                for field in found]
        return table(("offset", "bytes", "type", "field", "unless set", "meaning"), rows)

    def make(self, name):
        if name == "settings-record":
            return self.settings_record()
        if name == "identifier-formats":
            return table(("value", "name", "sequence"), enum_rows(self.text(SETTINGS), "IdentifierFormat"))
        what, which = name.split()
        return {"enum": self.enum, "record": self.record}[what](which)
