"""Holds the lines that no test reaches against the list of those that none can reach: unreached.py COVERAGE.json LIST.

COVERAGE.json is gcovr's. In the list a comment says why, and lines "PATH: SOURCE LINE" follow, up to an empty line. Ends with 1
for a line that is not in the list, and for one in the list that a test reaches or that is no more.
"""

import collections
import json
import sys


def source_lines(path):
    with open(path, encoding="utf-8") as file:
        return file.read().split("\n")


def unreached(report):
    with open(report, encoding="utf-8") as file:
        files = json.load(file)["files"]
    for entry in files:
        source = source_lines(entry["file"])
        for line in entry["lines"]:
            if line["count"] == 0 and not line.get("gcovr/noncode"):
                yield f"{entry['file']}: {source[line['line_number'] - 1].strip()}", line["line_number"]


def listed(path):
    why = None
    for line in source_lines(path):
        if line.startswith("#"):
            why = line
        elif not line:
            why = None
        elif why:
            yield line
        else:
            sys.exit(f"{path}: nothing says why: {line}")


def main():
    report, path = sys.argv[1:]
    known = collections.Counter(listed(path))
    new = []
    for line, number in unreached(report):
        if known[line] > 0:
            known[line] -= 1
        else:
            new.append(f"{line}    (line {number})")
    stale = [line for line, count in known.items() if count > 0]
    for line in new:
        print(f"no test reaches  {line}", file=sys.stderr)
    for line in stale:
        print(f"needs no place in {path}  {line}", file=sys.stderr)
    sys.exit(1 if new or stale else 0)


if __name__ == "__main__":
    main()
