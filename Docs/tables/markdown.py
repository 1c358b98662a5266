"""Tables as Markdown, and where they stand on a page.

A table stands between `<!-- table: NAME -->` and `<!-- end of table -->`, each on a line of its own; what is between
them is made by Docs/make-tables."""

import re

PLACE = re.compile(r"(?m)^<!-- table: (?P<name>.+?) -->\n(?P<table>(?:.*\n)*?)<!-- end of table -->$")


def table(heads, rows):
    """Lines of a table with these column heads."""
    lines = ["| " + " | ".join(heads) + " |", "| " + " | ".join("---" for _ in heads) + " |"]
    lines += ["| " + " | ".join(str(cell) for cell in row) + " |" for row in rows]
    return lines


def names(page):
    return [place["name"] for place in PLACE.finditer(page)]


def fill(page, make):
    """The page with each table in its place; make(name) gives the lines. ValueError for a place without an end."""
    if page.count("<!-- table: ") != len(names(page)):
        raise ValueError("a table's place has no end: <!-- end of table -->")

    def put(place):
        lines = "\n".join(make(place["name"]))
        return f"<!-- table: {place['name']} -->\n\n{lines}\n\n<!-- end of table -->"
    return PLACE.sub(put, page)


def number(value, digits):
    """A number with a minus sign, never -0."""
    text = f"{value:.{digits}f}"
    return text.lstrip("-") if float(text) == 0 else text.replace("-", "−")
