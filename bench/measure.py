#!/usr/bin/env python3
"""Runs the measurements of a build and prints their tables; bench/run builds and calls this.

measure.py <build folder> [section ...]   sections: frame growth size threads endtoend
measure.py <build folder> check           the ratios of frame and growth alone, for ./check

The exit status is 1 when a ratio of instructions passes its target.
"""

import argparse
import glob
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

ALONE_TARGET = 2.5  # src/ itself with a broker that does nothing
WHOLE_TARGET = 1.10  # the whole request with the embedded broker

# callgrind counts a string instruction once for each byte. The C library clears and copies long blocks with them,
# unless it is told to use its vector loops.
TUNABLES = "glibc.cpu.x86_rep_stosb_threshold=1000000000:glibc.cpu.x86_rep_movsb_threshold=1000000000"

results = {}
missed = []


def run(*command, **options):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE, **options).stdout


def table(headings, rows):
    cells = [headings] + [[f"{c:,}" if isinstance(c, int) else str(c) for c in row] for row in rows]
    widths = [max(len(row[i]) for row in cells) for i in range(len(headings))]
    for number, row in enumerate(cells):
        print("  ".join(c.ljust(w) if i == 0 else c.rjust(w) for i, (c, w) in enumerate(zip(row, widths))).rstrip())
        if number == 0:
            print("  ".join("-" * w for w in widths))
    print()


def ratio(value, base, target, what):
    """Text of a ratio, marked when it passes its target."""
    quotient = value / base
    if quotient > target:
        missed.append(f"{what}: {quotient:.3f}, target {target}")
    return f"{quotient:.3f}" + (" !" if quotient > target else "")


def instructions(program, *arguments):
    """Instructions by the name under which the program dumped them."""
    with tempfile.TemporaryDirectory() as folder:
        log = os.path.join(folder, "log")
        done = subprocess.run(
            ["valgrind", "--tool=callgrind", "--collect-atstart=no", f"--log-file={log}",
             f"--callgrind-out-file={folder}/out", program, *arguments],
            check=False,
            env=os.environ | {"GLIBC_TUNABLES": TUNABLES},
        )
        if done.returncode != 0:
            with open(log) as file:
                sys.exit(f"{program} failed\n" + file.read())
        counts = {}
        for dump in glob.glob(f"{folder}/out.*"):
            with open(dump) as file:
                text = file.read()
            name = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.MULTILINE)
            total = re.search(r"^(?:summary|totals): (\d+)", text, re.MULTILINE)
            if name and total:
                counts[name[1]] = int(total[1])
        return counts


# --- Frame cost


def frame(build, rows):
    """What the library's operations cost against those by hand."""
    program = f"{build}/bench/frame"
    folders = {"library": f"{build}/lib", "by hand": f"{build}/bench/by_hand"}
    calls = {side: run(program, "calls", folder, str(rows)) for side, folder in folders.items()}
    if calls["library"] != calls["by hand"]:
        sys.exit("the library and the classes by hand don't make the same calls: compare the output of 'frame calls'")
    counts = {side: instructions(program, "cost", folder, str(rows)) for side, folder in folders.items()}
    lines = []
    for name, library in counts["library"].items():
        by_hand = counts["by hand"][name]
        kind, cls, operation, objects, values = name.split()
        lines.append((cls, operation, kind, int(objects), int(values), library, by_hand))
    order = ["GI", "EI", "EIN"]
    classes = list(dict.fromkeys(re.findall(r"^--- (\w+)", calls["library"], re.MULTILINE)))
    lines.sort(key=lambda line: (line[2], classes.index(line[0]), order.index(line[1])))
    for kind, title, target in (
        ("alone", "src/ itself, with a broker that does nothing and without what runs in back ends", ALONE_TARGET),
        ("whole", "the whole request, with the embedded broker", WHOLE_TARGET),
    ):
        print(f"Frame cost, instructions of {title} ({rows} rows; target {target})\n")
        rows_of_table = []
        for cls, operation, line_kind, objects, values, library, by_hand in lines:
            if line_kind == kind:
                mark = ratio(library, by_hand, target, f"frame, {kind}, {cls} {operation}")
                rows_of_table.append([f"{cls} {operation}", objects, values, library, by_hand, mark,
                                      f"{library / values:.1f}", f"{by_hand / values:.1f}"])
        table(["", "objects", "values set", "library", "by hand", "ratio", "per value", "by hand"], rows_of_table)
    results["frame"] = [dict(zip(("class", "operation", "kind", "objects", "values", "library", "by_hand"), line))
                        for line in lines]


SECTIONS = {
    "frame": lambda build: frame(build, 100),
    "check": lambda build: frame(build, 20),
}


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("build")
    parser.add_argument("sections", nargs="*")
    parser.add_argument("--json", help="write the figures to this file")
    arguments = parser.parse_args()
    build = os.path.abspath(arguments.build)
    for section in arguments.sections or [name for name in SECTIONS if name != "check"]:
        if section not in SECTIONS:
            sys.exit(f"no section is called {section}; there are {', '.join(SECTIONS)}")
        SECTIONS[section](build)
    if arguments.json:
        with open(arguments.json, "w") as file:
            json.dump(results, file, indent=1)
    for line in missed:
        print(f"target missed: {line}", file=sys.stderr)
    return 1 if missed else 0


sys.exit(main())
