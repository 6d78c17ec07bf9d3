#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints how much of the library the tests run, and compares what they leave out with a list that says why.

    uncovered.py REPORT LIST [--write]

REPORT is gcovr's JSON. LIST has a row for each line with branches that are not taken; see the top of the list. A line
that never runs is not excused. With --write the list is made anew: known rows keep their counts and reasons.
"""
import collections
import json
import sys

UNSAID = "TO BE SAID"


def row(name, of):
    """
    >>> row("core", {"lines": 3, "run": 3, "branches": 1000, "taken": 999})
    'core       3 of 3 lines (100.0 %)         999 of 1000 branches (99.9 %)'
    """
    lines, branches = ratio(of["run"], of["lines"], "lines"), ratio(of["taken"], of["branches"], "branches")
    return f"{name:10} {lines:30} {branches}"


def ratio(part, whole, noun):
    """Never rounded up to 100 %.

    >>> ratio(9999, 10000, "lines"), ratio(0, 0, "lines")
    ('9999 of 10000 lines (99.9 %)', '0 of 0 lines (100.0 %)')
    """
    tenths = part * 1000 // whole if whole else 1000
    return f"{part} of {whole} {noun} ({tenths / 10} %)"


def examine(files, text_of):
    """Figures by folder, lines that never ran, and the number of branches not taken by (file, text of the line).

    >>> branches = [{"count": 2}, {"count": 0}]
    >>> lines = [{"line_number": 1, "count": 2, "branches": branches}, {"line_number": 2, "count": 0, "branches": []},
    ...          {"line_number": 3, "count": 0, "branches": [], "gcovr/noncode": True}]
    >>> folders, idle, missed = examine([{"file": "core/a.cpp", "lines": lines}], lambda file, number: f"line {number}")
    >>> dict(folders["core"]), idle, dict(missed)
    ({'lines': 2, 'run': 1, 'branches': 2, 'taken': 1}, ['core/a.cpp:2: line 2'], {('core/a.cpp', 'line 1'): 1})
    """
    folders, idle, missed = collections.defaultdict(collections.Counter), [], collections.Counter()
    for entry in files:
        file = entry["file"]
        for line in entry["lines"]:
            if line.get("gcovr/noncode") or line.get("gcovr/excluded"):
                continue
            text = text_of(file, line["line_number"])
            taken = sum(branch["count"] > 0 for branch in line["branches"])
            folders[file.split("/")[0]].update(
                lines=1, run=line["count"] > 0, branches=len(line["branches"]), taken=taken
            )
            if line["count"] == 0:
                idle.append(f"{file}:{line['line_number']}: {text}")
            if taken < len(line["branches"]):
                missed[file, text] += len(line["branches"]) - taken
    return folders, idle, missed


def read_rows(lines):
    """(file, text) -> count as written, reason.

    >>> read_rows(["# comment", "", "a.cpp | x = a | b; | 0-1 | depends on timing"])
    {('a.cpp', 'x = a | b;'): ('0-1', 'depends on timing')}
    """
    rows = {}
    for line in lines:
        if line.strip() and not line.startswith("#"):
            file, rest = line.rstrip("\n").split(" | ", 1)
            text, count, reason = rest.rsplit(" | ", 2)
            rows[file, text] = (count, reason)
    return rows


def allows(count, number):
    """
    >>> [allows("2", 1), allows("2", 2), allows("0-2", 0), allows("0-2", 2), allows("0-2", 3)]
    [False, True, True, True, False]
    """
    least, _, most = count.partition("-")
    return int(least) <= number <= int(most or least)


def compare(missed, rows):
    """What differs between the branches that are not taken and the list.

    >>> rows = {("a", "x"): ("1", "why"), ("a", "y"): ("1", UNSAID), ("a", "z"): ("0-1", "a race")}
    >>> for difference in compare({("a", "x"): 2, ("a", "y"): 1, ("a", "w"): 1}, rows): print(difference)
    a: 1 not taken, 0 in the list: w
    a: 2 not taken, 1 in the list: x
    a: no reason is given: y
    """
    differences = []
    for file, text in sorted(set(missed) | set(rows)):
        number = missed.get((file, text), 0)
        count, reason = rows.get((file, text), ("0", ""))
        if not allows(count, number):
            differences.append(f"{file}: {number} not taken, {count} in the list: {text}")
        elif reason == UNSAID:
            differences.append(f"{file}: no reason is given: {text}")
    return differences


def updated(missed, rows):
    """The rows as they have to be: those that still hold stay as they are.

    >>> rows = {("a", "x"): ("1", "why"), ("a", "y"): ("0-1", "a race"), ("a", "z"): ("2", "both")}
    >>> for key, row in sorted(updated({("a", "w"): 1, ("a", "z"): 3}, rows).items()): print(key, row)
    ('a', 'w') ('1', 'TO BE SAID')
    ('a', 'y') ('0-1', 'a race')
    ('a', 'z') ('3', 'both')
    """
    kept = {key: row for key, row in rows.items() if allows(row[0], missed.get(key, 0))}
    for key, number in missed.items():
        kept.setdefault(key, (str(number), rows.get(key, ("", UNSAID))[1]))
    return kept


def write_rows(path, head, rows):
    with open(path, "w", encoding="utf-8") as out:
        out.writelines(head)
        for (file, text), (count, reason) in sorted(rows.items()):
            out.write(f"{file} | {text} | {count} | {reason}\n")


def main(report, path, *options):
    with open(report, encoding="utf-8") as file:
        files = json.load(file)["files"]
    with open(path, encoding="utf-8") as file:
        lines = file.readlines()
    sources = {}

    def text_of(name, number):
        if name not in sources:
            with open(name, encoding="utf-8") as source:
                sources[name] = source.read().split("\n")
        return sources[name][number - 1].strip()

    folders, idle, missed = examine(files, text_of)
    rows = read_rows(lines)
    if "--write" in options:
        rows = updated(missed, rows)
        write_rows(path, [line for line in lines if line.startswith("#")], rows)
    for name in sorted(folders):
        print(row(name, folders[name]))
    print(row("in all", sum(folders.values(), collections.Counter())))
    problems = [f"never run: {line}" for line in idle] + compare(missed, rows)
    print("\n".join(problems + [f"coverage: {sum(missed.values())} branches not taken, {len(problems)} problems"]))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
