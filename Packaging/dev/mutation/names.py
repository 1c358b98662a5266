"""Enumerators and constants, and which stands beside which."""

import re

from source_text import blanked

ENUM = re.compile(r"\benum (?:class |struct )?(\w+)?(?: : [\w:]+)? \{([^{}]*)\}")
CONSTANT = re.compile(r"^ *(?:inline |static )*constexpr ([\w:<>, ]+?) (k[A-Z]\w*)(?: = |\{)[^;]*;", re.MULTILINE)


def in_a_circle(group):
    return {one: other for one, other in zip(group, group[1:] + group[:1]) if one != other}


def constants_in(code):
    """{constant: the one of the same type on the next line; of the last, the first}"""
    found, group, last = {}, [], None
    for match in CONSTANT.finditer(code):
        if last and (match[1] != last[1] or match.start() != last.end() + 1):
            found |= in_a_circle(group)
            group = []
        group.append(match[2])
        last = match
    return found | in_a_circle(group)


class Names:
    """Those of all sources, given as (file, text)."""

    def __init__(self, sources):
        self.enumerators, self.loose, self.constants = {}, {}, {}
        for file, text in sources:
            code = blanked(text)
            for match in ENUM.finditer(code):
                group = [part.split("=")[0].strip() for part in match[2].split(",")]
                group = [name for name in group if re.fullmatch(r"\w+", name)]
                self.enumerators[match[1] or file] = in_a_circle(group)
                self.loose |= in_a_circle(group)
            if file.endswith(".h"):
                self.constants |= constants_in(code)

    def neighbours_in(self, text):
        """{constant or enumerator without its type's name: its neighbour}, as this file sees them."""
        return self.loose | self.constants | constants_in(blanked(text))
