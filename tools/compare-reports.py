"""Compares two reports of fuzz/Report.cpp: compare-reports.py KIND WITH WITHOUT.

An input of which the first says that it ended the process is passed over. Prints how many were the same; ends with 1 if one is
not, or if none was left to compare.
"""

import sys


def inputs(path):
    with open(path, "rb") as file:
        parts = file.read().split(b"\x1e== ")[1:]
    return [part.split(b"\n", 1) for part in parts]


def main():
    kind, with_assertions, without = sys.argv[1:]
    compared = differing = 0
    first, second = inputs(with_assertions), inputs(without)
    if [name for name, _ in first] != [name for name, _ in second]:
        sys.exit(f"{kind}: the reports are not of the same inputs")
    for (name, report), (_, other) in zip(first, second):
        if report.endswith(b"ended\n"):
            continue
        compared += 1
        if report != other:
            differing += 1
            print(f"{kind}: {name.decode()} differs", file=sys.stderr)
    print(f"{kind}: {compared} of {len(first)} inputs are in the language, {compared - differing} of them the same in both builds")
    sys.exit(1 if differing or not compared else 0)


if __name__ == "__main__":
    main()
