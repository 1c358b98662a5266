"""Every mistake that can be made in a C++ file, found by its text."""

from meaning import meaning_mistakes
from source_text import Mistake, blanked
from tokens import token_mistakes

# Those that change one token, statement or row; the others change what is meant.
OF_TOKENS = {"operator", "number", "step", "sign", "truth", "statement left out", "rows swapped"}


def mistakes_in(file, text, names):
    """Every mistake, in the order of the text; one that two ways lead to, once."""
    code = blanked(text)
    found = {}
    for finder in (token_mistakes(text, code), meaning_mistakes(text, code, names)):
        for kind, offset, before, after in finder:
            changed = (text[:offset] + after + text[offset + len(before):])
            mistake = Mistake(file, offset, before, after, kind, text.count("\n", 0, offset) + 1)
            if changed != text:
                found.setdefault(hash(changed), mistake)
    return sorted(found.values(), key=lambda mistake: (mistake.offset, mistake.after))
