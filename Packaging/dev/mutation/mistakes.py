"""The small mistakes that can be made in a C++ file, found by its text: the layout is clang-format's, so a comparison
stands between blanks and a template's brackets do not."""

import re
from dataclasses import dataclass


@dataclass(frozen=True)
class Mistake:
    """In `file`, the text `before` at `offset` becomes `after`."""

    file: str
    offset: int
    before: str
    after: str
    line: int

    def apply(self, text):
        assert text.startswith(self.before, self.offset)
        return text[: self.offset] + self.after + text[self.offset + len(self.before) :]


# What an operator between two blanks is mistaken for.
BINARY = {
    "<": ["<=", ">="], "<=": ["<", ">"], ">": [">=", "<="], ">=": [">", "<"], "==": ["!="], "!=": ["=="],
    "+": ["-"], "-": ["+"], "*": ["/"], "/": ["*"], "%": ["*"],
    "&&": ["||"], "||": ["&&"], "&": ["|"], "|": ["&"], "^": ["&"], "<<": [">>"], ">>": ["<<"],
    "+=": ["-="], "-=": ["+="], "*=": ["/="], "/=": ["*="], "|=": ["&="], "&=": ["|="],
}

NUMBER = re.compile(r"(?<![\w.'])(0[xX][0-9a-fA-F']+|\d[\d']*\.?[\d']*(?:[eE][+-]?\d+)?|\.\d+)([uUlLfFzZ]*)(?![\w.])")
OPERATOR = re.compile(r"(?<= )(<<|>>|<=|>=|==|!=|&&|\|\||\+=|-=|\*=|/=|\|=|&=|[<>+\-*/%&|^])(?= |\n)")
STEP = re.compile(r"\+\+|--")
NOT = re.compile(r"!(?=[\w(:])")
MINUS = re.compile(r"(?<=[(,={\[] )-(?=[\w.(])|(?<=[({\[])-(?=[\w.(])|(?<=return )-(?=[\w.(])")
TRUTH = re.compile(r"\b(true|false)\b")

# A row of a table, or an entry on a line of its own.
ROW = re.compile(r"^ +(\{.*\}|[\w:.\"-]+),?[ ]*$", re.MULTILINE)

# A call or an assignment that is a statement of its own, on one line. A declaration has a blank before its name.
STATEMENT = re.compile(
    r"(?<=[;{}:]\n) +(?!return\b|break\b|continue\b|throw\b)(?:[\w:.>\[\]()*]|-(?=>))+?(?:\(.*\)| [+\-*/|&]?= .*);$",
    re.MULTILINE)


def blanked(text):
    """The text with comments, strings, characters and the preprocessor's lines made blank, length for length."""
    pattern = re.compile(
        r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|(?<![\w])\'(?:\\.|[^\'\\\n])+\'|^[ \t]*#(?:[^\n]*\\\n)*[^\n]*'
        r"|\bstatic_assert\(.*?\);|\btemplate <[^\n]*",
        re.DOTALL | re.MULTILINE)
    return pattern.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), text)


def other_numbers(number, suffix):
    plain = number.replace("'", "")
    if re.search(r"[.]|[eE]", plain) and not plain.lower().startswith("0x"):
        value = float(plain)
        return [repr(value * 2 if value else 1.0) + suffix, repr(value + 1.0) + suffix]
    value = int(plain, 0) if not re.fullmatch(r"0\d+", plain) else int(plain, 8)
    return [str(value + 1) + suffix] + ([str(value - 1) + suffix] if value > 0 else [])


def swapped_rows(code, text):
    """Pairs of neighbouring rows that change places: (offset, before, after)."""
    rows = [match for match in ROW.finditer(code) if match.group().strip().strip(",")]
    for first, second in zip(rows, rows[1:]):
        if first.end() + 1 != second.start():
            continue
        one, two = (text[row.start(): row.end()].split("//")[0].strip().rstrip(",") for row in (first, second))
        before = text[first.start(): second.end()]
        if one != two and "//" not in before:
            ending = "," if before.rstrip().endswith(",") else ""
            indent = re.match(r" *", before).group()
            yield first.start(), before, f"{indent}{two},\n{indent}{one}{ending}"


def mistakes_in(file, text):
    """Every mistake, in the order of the text."""
    code = blanked(text)
    found = []

    def add(offset, before, after):
        found.append(Mistake(file, offset, before, after, text.count("\n", 0, offset) + 1))

    for match in OPERATOR.finditer(code):
        for other in BINARY[match.group()]:
            add(match.start(), match.group(), other)
    for match in NUMBER.finditer(code):
        for other in other_numbers(*match.groups()):
            add(match.start(), match.group(), other)
    for match in STEP.finditer(code):
        add(match.start(), match.group(), "--" if match.group() == "++" else "++")
    for pattern in (NOT, MINUS):
        for match in pattern.finditer(code):
            add(match.start(), match.group(), "")
    for match in TRUTH.finditer(code):
        add(match.start(), match.group(), "false" if match.group() == "true" else "true")
    for match in STATEMENT.finditer(code):
        add(match.start(), text[match.start(): match.end()], "")
    for offset, before, after in swapped_rows(code, text):
        add(offset, before, after)
    return sorted(set(found), key=lambda mistake: (mistake.offset, mistake.after))
