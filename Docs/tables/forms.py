"""The controls and texts of the dialog's layout scripts, and what the host allows in one: `form-controls`,
`form-texts`, `popup-items`, `form-limits`."""

import glob
import os
import re
import xml.etree.ElementTree as ElementTree

from markdown import table

NAMES = "Src/ToneSettingsDialog/LayoutNames.h"
ITEMS = "Src/ToneSettingsDialog/IdentifierFormatItems.h"
LIMITS = "Host/Desktop/FormCheck.h"
LIMIT_TEXTS = {
    "kLargestFormBytes": "bytes of a script",
    "kDeepestFormElement": "elements in one another",
    "kMostFormElements": "elements",
    "kMostFormCells": "rows or columns of a layout or a table",
}
LISTS = {"kStereoIdentifierFormats": "stereo", "k51IdentifierFormats": "5.1"}
MARK = "✓"


class Maker:
    def __init__(self, root):
        self.root = root
        self.forms = {}
        for path in sorted(glob.glob(os.path.join(root, "Resources", "*.tarn"))):
            self.forms[os.path.basename(path).removesuffix(".tarn")] = ElementTree.parse(path).getroot()

    def text(self, path):
        with open(os.path.join(self.root, path), encoding="utf-8") as file:
            return file.read()

    def sought(self):
        """The names that the dialog looks up."""
        return re.findall(r"string_view k\w+ID = \"(\w+)\";", self.text(NAMES))

    def controls(self):
        """Those that the dialog looks up, in the order of their names' list."""
        rows = []
        for name in self.sought():
            found = {form: root.find(f".//widget[@name='{name}']") for form, root in self.forms.items()}
            kinds = {widget.get("class") for widget in found.values() if widget is not None}
            rows.append((f"`{name}`", ", ".join(f"`{kind}`" for kind in sorted(kinds)),
                         *(MARK if found[form] is not None else "" for form in self.forms)))
        return table(("name", "class", *(f"`{form}`" for form in self.forms)), rows)

    def texts(self):
        """Every localisation key of the forms, without what they share, and its default text."""
        keys = {}
        for form, root in self.forms.items():
            for string in root.iter("string"):
                if (string.text or "").startswith("$$$/"):
                    keys.setdefault(string.text, []).append(form)
        rows = []
        for key, used in keys.items():
            path, text = key.split("=", 1)
            rows.append((f"`{path.rsplit('/', 1)[1]}`", text, *(MARK if form in used else "" for form in self.forms)))
        return table(("end of the key", "default text", *(f"`{form}`" for form in self.forms)), rows)

    def items(self):
        """What the plug-in puts into the popup, by the layout of the clip."""
        rows = []
        for array, layout in LISTS.items():
            part = self.text(ITEMS).split(f"{array} = ")[1].split("}};")[0]
            rows += [(layout, f"`{key}`", text, f"`{value}`")
                     for key, text, value in re.findall(r"/(\w+)=([^\"]+)\", (\w+)\}", part)]
        return table(("clip", "end of the key", "default text", "`identifierFormat`"), rows)

    def limits(self):
        found = dict(re.findall(r"constexpr \w+ (\w+) = (\d+(?: << \d+)?);", self.text(LIMITS)))
        def value(text):
            base, _, shift = text.partition(" << ")
            return int(base) << int(shift or 0)
        return table(("at most", ""), [(value(found[name]), text) for name, text in LIMIT_TEXTS.items()])

    def make(self, name):
        return {"form-controls": self.controls, "form-texts": self.texts, "popup-items": self.items,
                "form-limits": self.limits}[name]()
