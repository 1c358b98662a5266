"""Mistakes of meaning: a check that is missing, two arguments the wrong way round, the neighbour of a constant."""

import re

from source_text import beginning_of_operand, end_of, end_of_operand, parts_of
from tokens import STATEMENT, rows

IF = re.compile(r"^( *)(\} else )?if \(", re.MULTILINE)
FOR_END = re.compile(r"\bfor \([^;\n]*; [^;\n]*? (?:<|!=) ([^;\n]+);")
LEAVES = re.compile(r"(return|throw|continue|break)\b[^{}]*;$")
CALL = re.compile(r"(?<![\w~])([\w:]+(?:<[^<>\n]*>)?)(?=\()")
NO_CALL = {"if", "for", "while", "switch", "catch", "sizeof", "decltype", "noexcept", "alignas", "defined", "operator"}
EITHER_WAY = re.compile(r"std::(min|max|hypot|gcd|lcm)\b")  # say the same of arguments in any order
DECLARED = re.compile(r"(^|[\w>\]][&*]* )[\w:<>]+[&*]* [&*]*\w+( = .*)?$")
RETURN = re.compile(r"^ +return ([^;\n]+);$", re.MULTILINE)
NOTHING_ELSE = {"{}", "true", "false", "nullptr", "0", "0.0", '""', "*this", "std::nullopt", "{};", "0U"}
CHAIN = re.compile(r"(?<= )(&&|\|\||\|)(?=[ \n])")
LOOSER = {"&&": ("&&", "||", "? ", ": ", "= "), "||": ("||", "? ", ": ", "= "), "|": ("|", "&", "? ", ": ", "= ", "<", ">")}
CATCH = re.compile(r"\} catch \([^\n]*\) \{\n")
CHOICE = re.compile(r" \? ")
WORDS = {
    "std::min": "std::max", "std::max": "std::min", "floor": "ceil", "ceil": "floor", "llround": "trunc",
    "any_of": "all_of", "all_of": "any_of", "none_of": "any_of", "lower_bound": "upper_bound",
    "upper_bound": "lower_bound", "emplace_front": "emplace_back",
}
WORD = re.compile(r"(?<![\w:])(std::min|std::max)\b|(?<=[.:])(" + "|".join(w for w in WORDS if ":" not in w) + r")\b")
MEMBERS = {}
for one, two in (("front", "back"), ("num", "den"), ("width", "height"), ("first", "second"), ("left", "right"),
                 ("top", "bottom"), ("start", "end"), ("min", "max"), ("x", "y"), ("begin", "end")):
    MEMBERS.setdefault(one, two)
    MEMBERS.setdefault(two, one)
MEMBER = re.compile(r"(?<=[\w)\]][.])(" + "|".join(MEMBERS) + r")\b")
VARIABLE = re.compile(r"(?<![\w.:>])[A-Za-z_]\w*\b(?![(:])")
QUALIFIED = re.compile(r"\b(\w+)::(\w+)\b")
NAME = re.compile(r"(?<![\w:.])k[A-Z]\w*\b")


def conditions(code):
    """(indent, is it an else, condition's begin and end) of every if."""
    for match in IF.finditer(code):
        opening = match.end() - 1
        closing = end_of(code, opening)
        if closing is not None and code.startswith(") {\n", closing):
            yield match, opening + 1, closing


def lost_guards(text, code):
    """An if that only leaves is left out."""
    for match, _, closing in conditions(code):
        end = re.compile(rf"^{match[1]}\}}(.*)\n", re.MULTILINE).search(code, closing)
        body = code[closing + 4: end.start()].strip() if end else ""
        if end and not end[1].strip() and not match[2] and body.count("\n") < 4 and LEAVES.search(body):
            yield "guard left out", match.start(), text[match.start(): end.end()], ""


def inverted_branches(text, code):
    for _, begin, end in conditions(code):
        begin = code.rfind("; ", begin, end) + 2 if "; " in code[begin:end] else begin
        condition = code[begin:end]
        if " = " in condition or re.fullmatch(r"!?[\w.:>-]*|[^&|]* [!=]= [^&|]*", condition):
            if " = " in condition or condition.startswith("!") or re.search(r" [!=]= ", condition):
                continue  # with one token less it is the same mistake
        yield "condition inverted", begin, text[begin:end], f"!({text[begin:end]})"
    for match in CHOICE.finditer(code):
        middle = end_of_operand(code, match.end(), (" : ", "\n"))
        if code.startswith(" : ", middle):
            end = end_of_operand(code, middle + 3, ("\n",))
            yes, no = text[match.end(): middle], text[middle + 3: end]
            if yes != no and " ? " not in no:
                yield "condition inverted", match.end(), f"{yes} : {no}", f"{no} : {yes}"


def swapped_arguments(text, code):
    for match in CALL.finditer(code):
        closing = end_of(code, match.end())
        if match[1] in NO_CALL or EITHER_WAY.match(match[1]) or closing is None or code[match.end() + 1: closing].count("\n") > 4:
            continue
        arguments = parts_of(code, match.end(), closing)
        if arguments is None or any(DECLARED.search(code[a:b]) for a, b in arguments):
            continue
        for (a, b), (c, d) in zip(arguments, arguments[1:]):
            one, two = text[a:b], text[c:d]
            # Texts and lambdas do not change places with anything.
            if one != two and one and two and not re.search(r'^"|\n|^\[|^$', f"{one}\n{two}".replace("\n", " ", 1)) and (
                    not two.startswith(('"', "["))):
                yield "arguments swapped", a, text[a:d], two + text[b:c] + one


def swapped_statements(text, code):
    found = list(STATEMENT.finditer(code))
    for first, second in zip(found, found[1:]):
        one, two = text[first.start(): first.end()], text[second.start(): second.end()]
        indents = {len(line) - len(line.lstrip()) for line in (one, two)}
        # What has nothing in common may stand either way round, and so may two assignments, and two properties of a
        # widget.
        properties = [re.match(r" *(\w+)(?:\.|->)set\w+\(", line) for line in (one, two)]
        if all(properties) and properties[0][1] == properties[1][1]:
            continue
        shared = set(VARIABLE.findall(first.group())) & set(VARIABLE.findall(second.group()))
        if first.end() + 1 == second.start() and len(indents) == 1 and shared and not (" = " in one and " = " in two):
            yield "statements swapped", first.start(), f"{one}\n{two}", f"{two}\n{one}"


def neighbours(text, code, names):
    for match in QUALIFIED.finditer(code):
        other = names.enumerators.get(match[1], {}).get(match[2])
        line = code[code.rfind("\n", 0, match.start()) + 1: match.start()]
        if other and not re.search(r"case |\benum ", line):
            yield "neighbour taken", match.start(2), match[2], other
    here = names.neighbours_in(text)
    for match in NAME.finditer(code):
        other = here.get(match.group())
        line = code[code.rfind("\n", 0, match.start()) + 1: match.start()]
        if other and not re.search(r"constexpr|case |\benum |^ +$", line) and not code.startswith("::", match.end()):
            yield "neighbour taken", match.start(), match.group(), other


def lost_operands(text, code):
    for match in CHAIN.finditer(code):
        kind = "flag left out" if match.group() == "|" else "condition left out"
        stops = LOOSER[match.group()]
        end = end_of_operand(code, match.end() + 1, tuple(f" {stop}" for stop in stops))
        if "\n" not in code[match.start(): end].strip():
            yield kind, match.start() - 1, text[match.start() - 1: end], ""
        begin = beginning_of_operand(code, match.start() - 1, tuple(f"{s} " for s in stops if s[-1] != " ") + ("return ", "? ", " : ", " = "))
        if "\n" not in code[begin: match.end()] and begin < match.start() - 1:
            yield kind, begin, text[begin: match.end() + 1], ""


def meaning_mistakes(text, code, names):
    """(kind, offset, before, after) of every one."""
    for finder in (lost_guards, inverted_branches, swapped_arguments, swapped_statements, lost_operands):
        yield from finder(text, code)
    yield from neighbours(text, code, names)
    for row in rows(code):
        yield "row left out", row.start(), text[row.start(): row.end()] + "\n", ""
    for match in FOR_END.finditer(code):
        yield "loop ends early", match.start(1), match[1], f"{match[1]} - 1"
    for match in RETURN.finditer(code):
        if match[1].strip() not in NOTHING_ELSE:
            yield "nothing returned", match.start(1), text[match.start(1): match.end(1)], "{}"
    for match in CATCH.finditer(code):
        end = end_of(code, match.end() - 2)
        body = text[match.end(): end]
        if body.strip() != "throw;":
            yield "catch lost", match.end(), body, "throw;\n"
    for match in WORD.finditer(code):
        yield "another function", match.start(), match.group(), WORDS[match.group()]
    for match in MEMBER.finditer(code):
        yield "another member", match.start(), match.group(), MEMBERS[match.group()]
