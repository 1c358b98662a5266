"""What each mistake came to: lines of build/mutation/results.jsonl, and the score by area."""

import hashlib
import json
from collections import Counter

import tree
from areas import area_of

RESULTS = tree.HOME / "results.jsonl"
PAGE = tree.ROOT / "Docs" / "mutation.md"
BEGIN, END = "<!-- score: begin -->", "<!-- score: end -->"
AROUND = 3  # lines before and after that a mistake is known again by


def key_of(mistake, text):
    """Stays the same while the lines around it do."""
    lines = text.splitlines()
    around = "\n".join(lines[max(0, mistake.line - 1 - AROUND): mistake.line + AROUND])
    column = mistake.offset - text.rfind("\n", 0, mistake.offset)
    whole = f"{mistake.file}\0{around}\0{column}\0{mistake.before}\0{mistake.after}"
    return hashlib.sha256(whole.encode()).hexdigest()[:16]


def known_results():
    if not RESULTS.exists():
        return {}
    return {entry["key"]: entry for entry in map(json.loads, RESULTS.read_text().splitlines())}


def keep(entry):
    with RESULTS.open("a", encoding="utf-8") as file:
        file.write(json.dumps(entry) + "\n")


def describe(mistake, text):
    line = text.splitlines()[mistake.line - 1].strip()
    before, after = (" ".join(part.split()) for part in (mistake.before, mistake.after))
    return f"{mistake.file}:{mistake.line}: {mistake.kind}: {before} -> {after}   in   {line}"


def percent(part, whole):
    return f"{100 * part / whole:.1f} %" if whole else "-"


class Score:
    """Of the drawn mistakes, by area; `every` are all that can be made, as (key, mistake, text)."""

    def __init__(self, every, drawn, results):
        self.can = Counter(area_of(mistake.file) for _, mistake, _ in every)
        self.outcomes = {area: Counter() for area in sorted(self.can)}
        self.survivors, self.seconds, self.seeds = [], 0.0, set()
        for key, mistake, text in drawn:
            entry = results.get(key)
            if entry:
                self.outcomes[area_of(mistake.file)][entry["outcome"]] += 1
                self.seconds += entry["seconds"]
                self.seeds.add(entry["seed"])
                if entry["outcome"] == "survived":
                    self.survivors.append((mistake, text))

    def rows(self):
        """(area, can be made, tried, noticed, survived, did not compile), of those that were tried."""
        for area, count in self.outcomes.items():
            tried = count["noticed"] + count["survived"]
            if tried:
                yield area, self.can[area], tried, count["noticed"], count["survived"], count["not compiled"]

    def table(self):
        lines = ["| | can be made | tried | noticed | survived | score |", "| --- | --- | --- | --- | --- | --- |"]
        rows = list(self.rows())
        for area, can, tried, noticed, survived, _ in rows:
            lines.append(f"| `{area}` | {can} | {tried} | {noticed} | {survived} | {percent(noticed, tried)} |")
        sums = [sum(row[column] for row in rows) for column in range(1, 6)]
        lines.append(f"| all | {sums[0]} | {sums[1]} | {sums[2]} | {sums[3]} | {percent(sums[2], sums[1])} |")
        # Small areas are drawn from more than their share.
        weighed = sum(can * noticed / tried for _, can, tried, noticed, _, _ in rows)
        return "\n".join(lines), percent(weighed, sums[0]), sums[4]

    def tell(self):
        for mistake, text in self.survivors:
            print("survived:", describe(mistake, text))
        table, weighed, not_compiled = self.table()
        print(table)
        print(f"Weighed by what can be made in each area: {weighed}. {not_compiled} more did not compile. "
              f"{self.seconds:.0f} s of processor time.")

    def write_page(self):
        table, weighed, not_compiled = self.table()
        seeds = f"Seed{'s'[: len(self.seeds) - 1]} {', '.join(map(str, sorted(self.seeds)))}"
        said = (f"{BEGIN}\n\n{table}\n\n{seeds}. Weighed by what can be made in each area: {weighed}. "
                f"{not_compiled} more did not compile and do not count.\n\n{END}")
        page = PAGE.read_text(encoding="utf-8")
        before, _, rest = page.partition(BEGIN)
        PAGE.write_text(before + said + rest.partition(END)[2], encoding="utf-8")
