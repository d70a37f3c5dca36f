"""Ratios, growth and pictures of what bench/run has measured.

    report.py RESULTS [--page FILE.md]

RESULTS is a folder of JSON files of Google Benchmark. Prints the ratios, writes ratios.json and the pictures there; with --page
a page with the same, and the pictures into the folder of the page's name.
"""

import glob
import json
import os
import shutil
import subprocess
import sys

MB = 1_000_000
NANOSECONDS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}

# What is compared: the work, ours, the other's, the other, and the greatest ratio that we allow ourselves.
ROWS = [
    ("parse and visit every node, 1 MB", "parseAndVisit/1000000", "bareParseAndVisit/1000000", "libxml2", 1.6),
    ("parse and visit every node, 10 MB", "parseAndVisit/10000000", "bareParseAndVisit/10000000", "libxml2", 1.6),
    ("free a document, 1 MB", "freeDocument/1000000", "bareFreeDocument/1000000", "libxml2", 2.4),
    ("free a document, 10 MB", "freeDocument/10000000", "bareFreeDocument/10000000", "libxml2", 2.4),
    ("memory of tree and wrappers, 10 MB", "memory/10000000:bytes", "bareMemory/10000000:bytes", "libxml2", 1.45),
    ("100,000 elements made, inserted, removed, with events", "smallElements/100000", "bareSmallElements/100000", "libxml2", 4),
    ("1,000,000 attributes set and got, with events", "attributes/1000000", "bareAttributes/1000000", "libxml2", 4),
    ("serialise, 10 MB", "serialise/10000000", "bareSerialise/10000000", "libxml2", 1.2),
    ("stream out, 50 MB", "streamOut/50000000", "bareStreamOut/50000000", "libxml2", 1.2),
    ("stream in, 50 MB", "streamIn/50000000", "bareStreamIn/50000000", "libxml2", 1.2),
    ("edit of a text of 1,000 characters, no range", "editText/0", "bareEditText", "libxml2 and a string", 3),
    ("parse a sheet of 100 rules", "parseSheet/100", "litehtmlParseSheet/100", "litehtml", 2.5),
    ("parse a sheet of 1,000 rules", "parseSheet/1000", "litehtmlParseSheet/1000", "litehtml", 2.5),
    ("resolve every element, 10 rules", "resolveEveryElement/10", "litehtmlResolveEveryElement/10", "litehtml", 0.3),
    ("resolve every element, 100 rules", "resolveEveryElement/100", "litehtmlResolveEveryElement/100", "litehtml", 0.3),
    ("resolve every element, 1,000 rules", "resolveEveryElement/1000", "litehtmlResolveEveryElement/1000", "litehtml", 0.3),
    ("styled text to HTML, 4,000 runs", "textToHTML/4000", "qtTextToHTML/4000", "Qt", 10),
]

# The same work by others, as ratios to libxml2 alone.
PEERS = [
    ("parse and visit, 10 MB", "ParseAndVisit/10000000", "bareParseAndVisit/10000000"),
    ("free, 10 MB", "FreeDocument/10000000", "bareFreeDocument/10000000"),
    ("memory, 10 MB", "Memory/10000000:bytes", "bareMemory/10000000:bytes"),
    ("elements (theirs without events)", "SmallElements/100000", "bareSmallElements/100000"),
    ("attributes (theirs without events)", "Attributes/1000000", "bareAttributes/1000000"),
]


def read(folder):
    """The least time of each benchmark in nanoseconds, and its counters: {"parse/10": 5.0, "memory/10:bytes": 7.0}."""
    values, machine = {}, None
    for path in sorted(glob.glob(os.path.join(folder, "Bench*.json")) + glob.glob(os.path.join(folder, "Peer*.json"))):
        with open(path) as file:
            measured = json.load(file)
        machine = measured["context"]
        for run in measured["benchmarks"]:
            if run["run_type"] != "iteration":
                continue
            name = "/".join(part for part in run["run_name"].split("/") if part != "manual_time" and ":" not in part)
            time = run["real_time"] * NANOSECONDS[run["time_unit"]]
            values[name] = min(time, values.get(name, time))
            for counter, value in run.items():
                if counter in ("bytes", "nodes", "styles", "fonts", "boxes", "elements"):
                    values[f"{name}:{counter}"] = value
    return values, machine


def ratio(values, ours, other):
    return values[ours] / values[other] if ours in values and other in values else None


def growth(values):
    """Slopes and ratios of growth, as lines of text with their number and the limit."""

    def per(name, first, last, unit):
        return (values[f"{name}/{last}"] - values[f"{name}/{first}"]) / (last - first) / unit

    def at_both(name):
        return values[f"{name}/{50 * MB}"] / 50 / (values[f"{name}/{10 * MB}"] / 10)

    lines = [
        (f"cost of a megabyte at 50 MB over that at 10 MB, {work}", at_both(name), at_both(bare), 1.25)
        for work, name, bare in [
            ("parse and visit", "parseAndVisit", "bareParseAndVisit"),
            ("free", "freeDocument", "bareFreeDocument"),
            ("serialise", "serialise", "bareSerialise"),
        ]
    ]
    lines.append(("resolution with 1,000 rules over that with 10", values["resolveEveryElement/1000"] / values["resolveEveryElement/10"], None, 10))
    lines.append(("nanoseconds for each range, edit of a text", per("editText", 0, 1000, 1), None, 15))
    lines.append(("nanoseconds for each range, insertion or removal", per("insertAndRemove", 0, 1000, 2), None, None))
    lines.append(("milliseconds for each megabyte, parse and visit", per("parseAndVisit", 10 * MB, 50 * MB, 1) * MB / 1e6, None, None))
    lines.append(("microseconds for each rule, sheet read", per("parseSheet", 100, 1000, 1e3), None, None))
    return lines


def memory(values):
    nodes = values[f"memory/{10 * MB}:nodes"]
    wrappers = values[f"memory/{10 * MB}:bytes"] - values[f"bareMemory/{10 * MB}:bytes"]
    styles = values["memoryOfStyles/100:styles"]
    return [
        ("bytes beside libxml2's for each element and text, its attributes included", wrappers / nodes),
        ("bytes of a resolved style, with its share of fonts and boxes, 100 rules", values["memoryOfStyles/100:bytes"] / styles),
        ("fonts for each style", values["memoryOfStyles/100:fonts"] / styles),
        ("box records for each style", values["memoryOfStyles/100:boxes"] / styles),
    ]


def number(value):
    if value is None:
        return ""
    return f"{value:.3g}" if value < 100 else f"{value:,.0f}"


def duration(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{number(nanoseconds / size)} {unit}"
    return f"{number(nanoseconds)} ns"


def amount(values, name):
    if name not in values:
        return ""
    return f"{number(values[name] / 1e6)} MB" if name.endswith(":bytes") else duration(values[name])


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|" + "---|" * len(header)]
    return lines + ["| " + " | ".join(row) + " |" for row in rows]


def tables(values):
    """The tables of the page, and what missed its limit."""
    missed = []

    def judged(work, value, limit):
        if limit is not None and value is not None and value > limit:
            missed.append(work)
        return number(value)

    main = [
        (work, amount(values, ours), amount(values, other), who, judged(work, ratio(values, ours, other), limit), number(limit))
        for work, ours, other, who, limit in ROWS
        if other in values
    ]
    slopes = [(what, judged(what, value, limit), number(bare), number(limit)) for what, value, bare, limit in growth(values)]
    own = {"ParseAndVisit": "parseAndVisit", "FreeDocument": "freeDocument", "Memory": "memory", "SmallElements": "smallElements"}
    own["Attributes"] = "attributes"
    peers = []
    for work, name, bare in PEERS:
        first, rest = name.split("/")
        theirs = [number(ratio(values, peer + name, bare)) for peer in ("libxmlpp", "qt")]
        if any(theirs):
            peers.append((work, number(ratio(values, f"{own[first]}/{rest}", bare)), *theirs))
    lines = ["## Ratios", ""]
    lines += table(("Work", "libwq", "the other", "which is", "ratio", "at most"), main)
    lines += ["", "## Growth", ""]
    lines += table(("What", "libwq", "libxml2", "at most"), slopes)
    lines += ["", "## Memory", ""]
    lines += table(("What", "libwq"), [(what, number(value)) for what, value in memory(values)])
    if peers:
        lines += ["", "## Others at the same work", "", "As ratios to libxml2 alone."]
        lines += [""] + table(("Work", "libwq", "libxml++", "Qt"), peers)
    return lines, missed


PLOT = """
set terminal svg size 640,400 font "sans,12" background "white"
set output "{folder}/{name}.svg"
set key top left
set grid
set xlabel "{x}"
set ylabel "{y}"
set logscale {scale}
plot {curves}
"""


def plot(folder, name, x, y, scale, curves):
    """One picture; `curves` maps titles to lists of points."""
    drawn = []
    for index, (title, points) in enumerate(curves.items()):
        data = os.path.join(folder, f"{name}-{index}.dat")
        with open(data, "w") as file:
            file.writelines(f"{at} {value}\n" for at, value in points)
        drawn.append(f'"{data}" with linespoints lw 2 pt 7 ps 0.7 title "{title}"')
    script = PLOT.format(folder=folder, name=name, x=x, y=y, scale=scale, curves=", ".join(drawn))
    subprocess.run(["gnuplot"], input=script, text=True, check=True)
    return f"{name}.svg"


def pictures(values, folder):
    def points(name, scale, at=lambda count: count):
        prefix = name + "/"
        counts = sorted(int(key[len(prefix) :]) for key in values if key.startswith(prefix) and key[len(prefix) :].isdigit())
        return [(at(count), values[f"{name}/{count}"] / scale) for count in counts]

    def by_size(names):
        return {title: points(name, 1e6, lambda count: count / MB) for title, name in names.items()}

    def with_ranges(name):
        return points(name, 1e3, lambda count: count or 0.5)

    resolution = {"libwq": points("resolveEveryElement", 1e6)}
    if "litehtmlResolveEveryElement/10" in values:
        resolution["litehtml"] = points("litehtmlResolveEveryElement", 1e6)
    sizes = {"parse, libwq": "parseAndVisit", "parse, libxml2": "bareParseAndVisit", "free, libwq": "freeDocument", "free, libxml2": "bareFreeDocument"}
    return [
        (plot(folder, "documents", "megabytes", "milliseconds", "xy", by_size(sizes)), "Time by the size of the document"),
        (
            plot(folder, "ranges", "ranges on the document (0 stands at 0.5)", "microseconds", "xy", {"edit of a text": with_ranges("editText"), "insertion and removal": with_ranges("insertAndRemove")}),
            "Time of an edit by the number of ranges",
        ),
        (plot(folder, "rules", "rules", "milliseconds", "xy", resolution), "Time to resolve every element by the number of rules"),
    ]


INTRODUCTION = """# How fast it is

Written by `bench/run --page`, which measures the same work by this library and by others in the same run. Both sides stand in
`bench`; libxml2 alone is the same libxml2 without our hooks. Each number is the least of seven, since other work on a machine only
ever adds; a ratio still moves by some tenths from one run to the next. "At most" is the limit that we set ourselves.

The machine: {cores} cores of a virtual machine, {mhz} MHz, g++ of Debian 12 with `-O3`. The documents and sheets come from
`bench/Generator.h`; a sheet has twenty rules by name, and all others by classes, of which the document uses fifty.
"""

REMARKS = """
A stream is written from UTF-16, which takes a quarter more instructions. Serialising 50 MB costs more for a megabyte than 10 MB
does, with libxml2 alone as well. Memory beside libxml2's is that of the wrappers, 32 bytes for each element, text, attribute and
value, and of the names: each node has its own, where names from the dictionary of one document would keep a node from going to
another. The edit of a text is faster than the other's where the string is put together in one piece. litehtml leaves values as
text until an element has them. The texts of Qt are without paragraph styles.
"""


def write_page(path, lines, drawn, folder, machine):
    pictures_folder = os.path.splitext(path)[0]
    os.makedirs(pictures_folder, exist_ok=True)
    text = INTRODUCTION.format(cores=machine["num_cpus"], mhz=machine["mhz_per_cpu"]).splitlines() + [""] + lines
    text += REMARKS.splitlines() + ["", "## Pictures"]
    for file, caption in drawn:
        shutil.copy(os.path.join(folder, file), pictures_folder)
        text += ["", f"![{caption}]({os.path.basename(pictures_folder)}/{file})"]
    with open(path, "w") as page:
        page.write("\n".join(text) + "\n")


def main():
    folder = sys.argv[1]
    values, machine = read(folder)
    lines, missed = tables(values)
    print("\n".join(lines))
    with open(os.path.join(folder, "ratios.json"), "w") as file:
        json.dump({work: ratio(values, ours, other) for work, ours, other, _, _ in ROWS if other in values}, file, indent=2)
    drawn = pictures(values, folder)
    if "--page" in sys.argv:
        write_page(sys.argv[sys.argv.index("--page") + 1], lines, drawn, folder, machine)
    if missed:
        print("\nAbove the limit in this run: " + "; ".join(missed))


if __name__ == "__main__":
    main()
