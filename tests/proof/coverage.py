"""Compares what the tests left uncovered with the list of it, and prints the figures.

coverage.py BUILD LIST: BUILD holds coverage.json and coverage.lcov, both made by llvm-cov. A row of
LIST is FILE<TAB>LINE<TAB>WHAT<TAB>REASON. LINE is the text of the line, so that a row outlives edits
elsewhere in the file; WHAT is what was never seen there, as this program prints it.
"""

import collections
import json
import os
import sys

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))

Missing = collections.namedtuple("Missing", "file line text what")


def name_of(path):
    return os.path.relpath(os.path.realpath(path), ROOT)


class Sources:
    """The lines of the library's files."""

    def __init__(self):
        self._lines = {}

    def lines(self, name):
        if name not in self._lines:
            with open(os.path.join(ROOT, name), encoding="utf-8") as file:
                self._lines[name] = file.read().split("\n")
        return self._lines[name]

    def between(self, name, first_line, first_column, last_line, last_column):
        lines = self.lines(name)[first_line - 1 : last_line]
        lines[-1] = lines[-1][: last_column - 1]
        lines[0] = lines[0][first_column - 1 :]
        return " ".join(" ".join(lines).split())


def read_lines(path):
    """How often each line was executed, by file and number."""
    counts = {}
    with open(path, encoding="utf-8") as file:
        for row in file:
            kind, _, rest = row.strip().partition(":")
            if kind == "SF":
                name = name_of(rest)
            elif kind == "DA":
                number, count = rest.split(",")[:2]
                counts[name, int(number)] = int(count)
    return counts


def read_branches(data):
    """How often each condition was true and false, by file and place. A template has its branches once
    for each of its instances: they are counted as one."""
    counts = collections.defaultdict(lambda: [0, 0])
    for file in data["files"]:
        for branch in file["branches"]:
            both = counts[(name_of(file["filename"]), *branch[:4])]
            both[0] += branch[4]
            both[1] += branch[5]
    return counts


def read_decisions(data):
    """For each condition of each decision, whether it was seen to decide alone, by file and place. That
    is so when one instance of a template shows it."""
    decisions = {}
    for file in data["files"]:
        for record in file["mcdc_records"]:
            key = (name_of(file["filename"]), *record[:4])
            shown = decisions.get(key, [False] * len(record[-1]))
            decisions[key] = [a or b for a, b in zip(shown, record[-1])]
    return decisions


def compiler_lines(data, sources):
    """The lines of functions that run in the compiler alone. They are counted as never executed."""
    lines = set()
    for function in data["functions"]:
        name = name_of(function["filenames"][0])
        first, last = function["regions"][0][0], function["regions"][0][2]
        text = sources.lines(name)
        declared = first - 1
        while declared > 0 and text[declared - 1].rstrip()[-1:] not in ("", ";", "}", "{", ":"):
            declared -= 1
        if "consteval" in " ".join(text[declared:first]).split():
            lines.update((name, number) for number in range(first, last + 1))
    return lines


def percent(covered, count):
    """Cut and not rounded, so that 100 is all of them."""
    return f"{covered * 10000 // count / 100:.2f} %"


def find_missing(build):
    """What is not covered; prints the figures, and fails when too little is covered, listed or not."""
    sources = Sources()
    with open(os.path.join(build, "coverage.json"), encoding="utf-8") as file:
        data = json.load(file)["data"][0]
    excluded = compiler_lines(data, sources)
    lines = read_lines(os.path.join(build, "coverage.lcov"))
    lines = {place: count for place, count in lines.items() if place not in excluded}
    branches = {k: v for k, v in read_branches(data).items() if k[:2] not in excluded}
    decisions = {k: v for k, v in read_decisions(data).items() if k[:2] not in excluded}

    def at(name, number, what):
        return Missing(name, number, sources.lines(name)[number - 1].strip(), what)

    never_run = [at(*place, "not executed") for place, count in lines.items() if count == 0]
    sides = [
        at(name, place[0], f"never {word}: {sources.between(name, *place)}")
        for (name, *place), counts in branches.items()
        for word, count in zip(("true", "false"), counts)
        if count == 0
    ]
    undecided = [
        at(name, place[0], f"never decides: condition {index + 1}")
        for (name, *place), shown in decisions.items()
        for index, is_shown in enumerate(shown)
        if not is_shown
    ]
    for what, least, count, missing in (
        ("lines executed", 100, len(lines), never_run),
        ("branches taken", 99, 2 * len(branches), sides),
        ("conditions that decide (MC/DC)", 98, sum(map(len, decisions.values())), undecided),
    ):
        covered = count - len(missing)
        if count == 0 or covered * 100 < least * count:
            for each in missing:
                print(f"{each.file}:{each.line}: {each.what}")
            sys.exit(f"coverage.py: {what}: {covered} of {count}, less than {least} %")
        print(f"figure: {what}\t{covered} of {count}, {percent(covered, count)}")
    return sorted(never_run + sides + undecided)


def main():
    build, list_path = sys.argv[1:]
    missing = find_missing(build)
    with open(list_path, encoding="utf-8") as file:
        rows = [row.rstrip("\n").split("\t") for row in file if not row.startswith("#")]
    status = 0
    for row in rows:
        if len(row) != 4 or not all(row):
            print(f"{list_path}: not FILE, LINE, WHAT and REASON: {row}")
            status = 1
    listed = collections.Counter(tuple(row[:3]) for row in rows)
    found = collections.Counter((each.file, each.text, each.what) for each in missing)
    for each in missing:
        if found[each.file, each.text, each.what] > listed[each.file, each.text, each.what]:
            print(f"{each.file}:{each.line}: {each.what}")
            print("\t".join((each.file, each.text, each.what, "REASON")))
            status = 1
    for row in sorted(listed - found):
        print(f"{list_path}: is covered, or gone: {' | '.join(row)}")
        status = 1
    print(f"figure: listed as uncovered, each with its reason\t{len(rows)}")
    sys.exit(status)


main()
