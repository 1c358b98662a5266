"""The pages of the documentation, taken apart: fenced blocks, headings, links.

A page is Markdown as GitHub shows it. What a fence says after its backticks is the block's kind and, after a
blank, the name of a file that the block becomes; KINDS is all there are."""

import dataclasses
import os
import re
import shutil
import subprocess

# Kind: what is done with it.
KINDS = {
    "sh": "run by bash, and must succeed",
    "output": "what the commands just above it print",
    "console": "for a person to type: it needs a display, a network, another machine or hours",
    "text": "shown as it is",
    "c++": "shown, or the file that it names",
    "json": "shown, or the file that it names",
    "cmake": "shown, or the file that it names",
    "python": "shown, or the file that it names",
    "xml": "shown, or the file that it names",
    "po": "shown, or the file that it names",
}

FENCE = re.compile(r"^(?P<indent> *)(?P<fence>`{3,}|~{3,})(?P<info>[^`]*)$")
HEADING = re.compile(r"^(#{1,6})\s+(.*?)\s*#*\s*$")
CODE_SPAN = re.compile(r"(?P<ticks>`+)(?P<code>.+?)(?P=ticks)(?!`)")
LINK = re.compile(r"!?\[(?:[^\]\[]|\[[^\]]*\])*\]\(\s*<?([^)\s>]+)>?(?:\s+[\"'][^)]*)?\)")
REFERENCE = re.compile(r"^ {0,3}\[[^\]]+\]:\s*<?(\S+?)>?\s*$")
HTML_LINK = re.compile(r"<(?:img|a)\b[^>]*?\b(?:src|href)=\"([^\"]*)\"")
LIST_ITEM = re.compile(r"^\s*([-*+]|\d+[.)])\s")


@dataclasses.dataclass
class Block:
    kind: str
    file: str  # the file that it becomes, or ""
    line: int  # of its first line inside the fence, counted from 1
    lines: list

    @property
    def text(self):
        return "".join(line + "\n" for line in self.lines)


@dataclasses.dataclass
class Link:
    target: str
    line: int


@dataclasses.dataclass
class Page:
    path: str
    blocks: list = dataclasses.field(default_factory=list)
    anchors: set = dataclasses.field(default_factory=set)
    links: list = dataclasses.field(default_factory=list)
    code_spans: list = dataclasses.field(default_factory=list)  # (line, text)
    problems: list = dataclasses.field(default_factory=list)  # (line, sentence)


def slug(heading, taken):
    """The anchor that a heading gets; `taken` counts those of the page so far."""
    text = re.sub(r"!?\[([^\]]*)\]\([^)]*\)", r"\1", heading)
    text = re.sub(r"[^\w\- ]", "", text.replace("`", "").lower()).replace(" ", "-")
    count = taken.get(text, 0)
    taken[text] = count + 1
    return text if count == 0 else f"{text}-{count}"


def _take_block(page, lines, at, fence):
    """The block whose fence is line `at`; returns the line after its end."""
    indent, ticks = len(fence["indent"]), fence["fence"]
    info = fence["info"].split()
    block = Block(info[0] if info else "", " ".join(info[1:]), at + 2, [])
    end = re.compile(r"^ *" + re.escape(ticks[0]) + "{" + str(len(ticks)) + r",}\s*$")
    here = at + 1
    while here < len(lines) and not end.match(lines[here]):
        line = lines[here]
        block.lines.append(line[min(indent, len(line) - len(line.lstrip(" "))):])
        here += 1
    if here == len(lines):
        page.problems.append((at + 1, "the fence is never closed"))
    if block.kind not in KINDS:
        kind = f"of the kind \"{block.kind}\"" if block.kind else "without a kind"
        page.problems.append((at + 1, f"a block {kind}; there are {', '.join(KINDS)}"))
    page.blocks.append(block)
    return here + 1


def _look_for_indented_code(page, lines, at):
    """Code that is only indented says nothing of whether it is run."""
    line = lines[at]
    if not line.startswith("    ") or (at > 0 and lines[at - 1].strip()):
        return
    for before in reversed(lines[:at]):
        if before.strip() and not before.startswith("    "):
            if not LIST_ITEM.match(before) and not before.startswith("  "):
                page.problems.append((at + 1, "code without a fence: put it between ``` and say its kind"))
            return


def parse(path, text):
    page = Page(path)
    lines = text.split("\n")
    taken = {}
    at = 0
    while at < len(lines):
        line = lines[at]
        fence = FENCE.match(line)
        if fence:
            at = _take_block(page, lines, at, fence)
            continue
        _look_for_indented_code(page, lines, at)
        heading = HEADING.match(line)
        if heading:
            page.anchors.add(slug(heading[2], taken))
        page.code_spans += [(at + 1, span["code"]) for span in CODE_SPAN.finditer(line)]
        prose = CODE_SPAN.sub(lambda span: "`" * len(span[0]), line)
        for pattern in (LINK, REFERENCE, HTML_LINK):
            page.links += [Link(found[1], at + 1) for found in pattern.finditer(prose)]
        at += 1
    return page


def read(root, path):
    with open(os.path.join(root, path), encoding="utf-8") as file:
        return parse(path, file.read())


def files_of(root):
    """The paths of all files of the source tree, without what is built."""
    listed = shutil.which("git") and subprocess.run(
        ["git", "-C", root, "ls-files", "--cached", "--others", "--exclude-standard"],
        capture_output=True, text=True, check=False)
    if listed and listed.returncode == 0:
        return sorted(path for path in set(listed.stdout.splitlines()) if os.path.exists(os.path.join(root, path)))
    found = []
    for folder, folders, names in os.walk(root):
        folders[:] = [name for name in folders if name not in (".git", "build")]
        found += [os.path.relpath(os.path.join(folder, name), root) for name in names]
    return sorted(found)
