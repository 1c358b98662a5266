"""Checks the pages of the source tree by themselves: check_links.py ROOT

Every link and picture leads to a file of the tree, every #anchor to a heading; every file in Docs/images is shown
somewhere; every page in Docs is in the index, Docs/README.md; every block says what it is; every path in code
letters exists. Links to other places are not followed."""

import fnmatch
import os
import re
import sys
import urllib.parse

import pages

IMAGES = "Docs/images/"
INDEX = "Docs/README.md"
SAMPLES = "Tests/Docs/samples/"  # pages that are wrong on purpose

# A path from the root in code letters: `include/lineup/Idents.h`, `Tests/Faults`, `Docs/*.md`.
PATH = re.compile(r"^(?:Apps|Benchmarks|Bridges|Docs|Host|Packaging|Resources|Src|Tests)/[\w./*+-]+$")


def is_elsewhere(target):
    return re.match(r"^[a-z][a-z0-9+.-]*:", target) is not None


class Tree:
    """The files of a source tree and its pages."""

    def __init__(self, root):
        self.files = {path for path in pages.files_of(root) if not path.startswith(SAMPLES)}
        self.folders = {os.path.dirname(path) for path in self.files}
        for folder in list(self.folders):
            while folder:
                folder = os.path.dirname(folder)
                self.folders.add(folder)
        self.pages = {path: pages.read(root, path) for path in sorted(self.files) if path.endswith(".md")}
        self.linked = {}  # path: the pages that link to it

    def has(self, path):
        return path in self.files or path in self.folders or bool(fnmatch.filter(self.files, path))

    def has_such(self, path):
        """The same for a path with a name in capitals that stands for any: Tests/Fuzz/seeds/TARGET."""
        return self.has(path) or self.has(re.sub(r"(?<=/)[A-Z]+(?=[/.]|$)", "*", path))


def link_problem(tree, page, link):
    """What is wrong with a link, or None. Notes what it leads to."""
    target, _, anchor = link.target.partition("#")
    target = urllib.parse.unquote(target)
    path = os.path.normpath(os.path.join(os.path.dirname(page.path), target)) if target else page.path
    if target.startswith("/") or path.startswith(".."):
        return f"the link {link.target} leads out of the tree"
    if not tree.has(path):
        return f"the link {link.target} leads to nothing"
    tree.linked.setdefault(path, set()).add(page.path)
    if anchor and path in tree.pages and anchor not in tree.pages[path].anchors:
        return f"the link {link.target} leads to no heading of {path}"
    return None


def page_problems(tree, page):
    for line, sentence in page.problems:
        yield line, sentence
    for link in page.links:
        problem = None if is_elsewhere(link.target) else link_problem(tree, page, link)
        if problem:
            yield link.line, problem
    for line, code in page.code_spans:
        if PATH.match(code) and not tree.has_such(code.rstrip("/")):
            yield line, f"there is no {code}"


def problems(tree):
    for page in tree.pages.values():
        for line, sentence in sorted(page_problems(tree, page)):
            yield f"{page.path}:{line}: {sentence}"
    for path in sorted(tree.files):
        if path.startswith(IMAGES) and path not in tree.linked:
            yield f"{path}: no page shows it"
        is_page = path.endswith(".md") and os.path.dirname(path) == "Docs" and path != INDEX
        if is_page and INDEX not in tree.linked.get(path, ()):
            yield f"{INDEX}: the index does not have {path}"


def main():
    tree = Tree(sys.argv[1])
    found = list(problems(tree))
    for problem in found:
        print(problem, file=sys.stderr)
    links = [link.target for page in tree.pages.values() for link in page.links]
    elsewhere = sum(1 for target in links if is_elsewhere(target))
    print(f"{len(tree.pages)} pages, {len(links) - elsewhere} links within the tree, {elsewhere} to other places")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
