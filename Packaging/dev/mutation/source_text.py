"""What the finders of mistakes share: a mistake, and a look at C++ that clang-format has laid out, so that a comparison
stands between blanks, a template's brackets do not, and a body's end stands under its beginning."""

import re
from dataclasses import dataclass


@dataclass(frozen=True)
class Mistake:
    """In `file`, the text `before` at `offset` becomes `after`."""

    file: str
    offset: int
    before: str
    after: str
    kind: str
    line: int

    def apply(self, text):
        assert text.startswith(self.before, self.offset)
        return text[: self.offset] + self.after + text[self.offset + len(self.before) :]


def blanked(text):
    """The text with comments, strings, characters and the preprocessor's lines made blank, length for length."""
    pattern = re.compile(
        r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<![\w])\'(?:\\.|[^\'\\\n])+\''
        r"|^[ \t]*#(?:[^\n]*\\\n)*[^\n]*|\bstatic_assert\(.*?\);|\btemplate <[^\n]*",
        re.DOTALL | re.MULTILINE)
    return pattern.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), text)


OPENING, CLOSING = "([{", ")]}"


def end_of(code, opening):
    """Where the bracket that opens at `opening` closes, or None."""
    depth = 0
    for position in range(opening, len(code)):
        if code[position] in OPENING:
            depth += 1
        elif code[position] in CLOSING:
            depth -= 1
            if depth == 0:
                return position
    return None


def end_of_operand(code, position, stops):
    """Where what begins at `position` ends: before a bracket of those around it, a comma, the statement's end or one of
    the texts `stops`."""
    depth = 0
    for at in range(position, len(code)):
        if code[at] in OPENING:
            depth += 1
        elif code[at] in CLOSING:
            if depth == 0:
                return at
            depth -= 1
        elif depth == 0 and (code[at] in ",;" or any(code.startswith(stop, at) for stop in stops)):
            return at
    return len(code)


def beginning_of_operand(code, position, stops):
    """Where what ends at `position` begins, likewise."""
    depth = 0
    for at in range(position - 1, -1, -1):
        if code[at] in CLOSING:
            depth += 1
        elif code[at] in OPENING:
            if depth == 0:
                return at + 1
            depth -= 1
        elif depth == 0 and code[at] in ",;":
            return at + 1
        elif depth == 0:
            for stop in stops:
                if code.startswith(stop, at):
                    return at + len(stop)
    return 0


def parts_of(code, opening, closing):
    """[(begin, end)] of what stands between the commas of one bracket, blanks left out; None where a template's list
    of arguments makes that unclear."""
    parts, begin = [], opening + 1
    while begin <= closing:
        end = min(end_of_operand(code, begin, ()), closing)
        part = code[begin:end]
        if part.count("<") - part.count("<<") * 2 - part.count(" < ") - part.count("<=") != (
                part.count(">") - part.count("->") - part.count(">>") * 2 - part.count(" > ") - part.count(">=")):
            return None
        left = len(part) - len(part.lstrip())
        parts.append((begin + left, begin + len(part.rstrip())))
        begin = end + 1
    return parts
