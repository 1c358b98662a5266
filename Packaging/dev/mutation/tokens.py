"""Mistakes of one token, one statement or one row: a comparison with its border, a number one more, a call left out."""

import re

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


def other_numbers(number, suffix):
    plain = number.replace("'", "")
    if re.search(r"[.]|[eE]", plain) and not plain.lower().startswith("0x"):
        value = float(plain)
        return [repr(value * 2 if value else 1.0) + suffix, repr(value + 1.0) + suffix]
    value = int(plain, 0) if not re.fullmatch(r"0\d+", plain) else int(plain, 8)
    return [str(value + 1) + suffix] + ([str(value - 1) + suffix] if value > 0 else [])


def rows(code):
    return [match for match in ROW.finditer(code) if match.group().strip().strip(",")]


def swapped_rows(text, code):
    """Pairs of neighbouring rows that change places: (offset, before, after)."""
    found = rows(code)
    for first, second in zip(found, found[1:]):
        if first.end() + 1 != second.start():
            continue
        one, two = (text[row.start(): row.end()].split("//")[0].strip().rstrip(",") for row in (first, second))
        before = text[first.start(): second.end()]
        if one != two and "//" not in before:
            ending = "," if before.rstrip().endswith(",") else ""
            indent = re.match(r" *", before).group()
            yield first.start(), before, f"{indent}{two},\n{indent}{one}{ending}"


def token_mistakes(text, code):
    """(kind, offset, before, after) of every one."""
    for match in OPERATOR.finditer(code):
        for other in BINARY[match.group()]:
            yield "operator", match.start(), match.group(), other
    for match in NUMBER.finditer(code):
        for other in other_numbers(*match.groups()):
            yield "number", match.start(), match.group(), other
    for match in STEP.finditer(code):
        yield "step", match.start(), match.group(), "--" if match.group() == "++" else "++"
    for pattern in (NOT, MINUS):
        for match in pattern.finditer(code):
            yield "sign", match.start(), match.group(), ""
    for match in TRUTH.finditer(code):
        yield "truth", match.start(), match.group(), "false" if match.group() == "true" else "true"
    for match in STATEMENT.finditer(code):
        yield "statement left out", match.start(), text[match.start(): match.end()], ""
    for offset, before, after in swapped_rows(text, code):
        yield "rows swapped", offset, before, after
