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
import statistics
import subprocess
import sys
import tempfile

import layers

ALONE_TARGET = 2.5  # src/ itself with a broker that does nothing
WHOLE_TARGET = 1.10  # the whole request with the embedded broker
GROWTH_TARGET = 1.1
SIZE_TARGET = 400_000
THREADS_TARGET = 1.9

# callgrind counts a string instruction once for each byte. The C library clears and copies long blocks with them,
# unless it is told to use its vector loops.
TUNABLES = "glibc.cpu.x86_rep_stosb_threshold=1000000000:glibc.cpu.x86_rep_movsb_threshold=1000000000"

MARGIN = 1.03  # of a ratio in ./check: other processors and C libraries take other vector loops

results = {}
missed = []
margin = 1


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
    limit = target * margin
    if quotient > limit:
        missed.append(f"{what}: {quotient:.3f}, target {target}" + (f", limit {limit:.3f}" if limit > target else ""))
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
    run(program, "compare", *folders.values())
    calls = run(program, "calls", folders["library"], str(rows))
    counts = {side: instructions(program, "cost", folder, str(rows)) for side, folder in folders.items()}
    lines = []
    for name, library in counts["library"].items():
        by_hand = counts["by hand"][name]
        kind, cls, operation, objects, values = name.split()
        lines.append((cls, operation, kind, int(objects), int(values), library, by_hand))
    order = ["GI", "EI", "EIN"]
    classes = list(dict.fromkeys(re.findall(r"^--- (\w+)", calls, re.MULTILINE)))
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


# --- Growth

ROWS = (100, 1000, 10000, 100000)


def timed(build, pattern, library=None, repetitions=1):
    """Median real time in nanoseconds, operations per second and processor time in nanoseconds, by the name of the
    benchmark."""
    program = f"{build}/bench/{'mixed' if pattern.startswith('AllClasses') else 'timed'}"
    environment = os.environ | {"VCH_BENCH_LIBRARY": library or f"{build}/lib"}
    output = run(program, f"--benchmark_filter={pattern}", "--benchmark_format=json",
                 f"--benchmark_repetitions={repetitions}", env=environment, stderr=subprocess.DEVNULL)
    found = {}
    for line in json.loads(output)["benchmarks"]:
        if line["run_type"] == "aggregate" if repetitions > 1 else True:
            if line.get("aggregate_name", "median") == "median":
                unit = {"ns": 1, "us": 1e3, "ms": 1e6}[line["time_unit"]]
                found[line["run_name"]] = (line["real_time"] * unit, line.get("items_per_second", 0),
                                           line["cpu_time"] * unit)
    return found


def growth(build, rows=ROWS):
    """What an instance costs among few and among very many."""
    counts = instructions(f"{build}/bench/frame", "grow", f"{build}/lib", *map(str, rows))
    names = list(dict.fromkeys(tuple(name.split()[:2]) for name in counts))
    timing = len(rows) > 2
    times = {side: timed(build, "Grow/", folder, 3)
             for side, folder in (("library", f"{build}/lib"), ("by hand", f"{build}/bench/by_hand"))} if timing else {}
    print(f"Growth, for each instance; the ratio is that of the most instances to those at {rows[-3 if timing else 0]:,}"
          f" (target {GROWTH_TARGET})\n")
    lines = []
    for cls, operation in sorted(names, key=lambda name: (name[0], name[1])):
        def add(what, values, checked):
            quotient = ratio(values[-1], values[-3 if timing else 0], GROWTH_TARGET,
                             f"growth, {cls} {operation}, {what}") if checked else f"{values[-1] / values[-3]:.3f}"
            lines.append([f"{cls} {operation}", what] + [f"{value:,.1f}" for value in values] + [quotient])
            results.setdefault("growth", []).append(
                {"class": cls, "operation": operation, "what": what, "rows": rows, "each": values})

        add("instructions", [counts[f"{cls} {operation} {count}"] / count for count in rows], True)
        memory = [int(run(f"{build}/bench/rows_memory", f"{build}/lib", cls, operation, str(count))) / count
                  for count in rows]
        add("bytes of heap", memory, True)
        for side, found in times.items():
            add(f"nanoseconds, {side}", [found[f"Grow/{cls}/{operation}/{count}"][0] / count for count in rows], False)
    table(["", "for each"] + [f"{count:,}" for count in rows] + ["ratio"], lines)


# --- Size


def sections_of(library, strip):
    text, data, bss = map(int, run("size", library).splitlines()[1].split()[:3])
    relocations = sum(map(int, re.findall(r"contains (\d+) entr", run("readelf", "--relocs", "--wide", library))))
    exported = len(run("nm", "-D", "--defined-only", library).splitlines())
    stripped = library + ".stripped"
    run(strip, "-o", stripped, library)
    return text, data, bss, relocations, exported, os.path.getsize(stripped)


def build_library(source, folder, *options):
    """Builds the class library alone, with other options."""
    run("cmake", "-S", source, "-B", folder, "-G", "Ninja", "-DVCH_BUILD_TREE=ON", "-DCMAKE_BUILD_TYPE=MinSizeRel",
        *options)
    run("cmake", "--build", folder, "--target", "VendorClassHelper")
    return f"{folder}/lib/libVendorClassHelper.so"


def largest_locals(source, folder):
    """The functions with the largest frames, as the compiler tells them."""
    build_library(source, folder, "-DCMAKE_CXX_FLAGS=-fstack-usage")
    frames = []
    for file in glob.glob(f"{folder}/src/**/*.su", recursive=True):
        with open(file) as lines:
            for line in lines:
                place, size, _ = line.rstrip("\n").split("\t")
                frames.append((int(size), re.sub(r"^.*?:\d+:\d+:", "", place).split("(")[0], os.path.basename(file)))
    return sorted(frames, reverse=True)


def size(build):
    source = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    folder = f"{build}/bench/sizes"
    rows = []
    toolchain = f"-DCMAKE_TOOLCHAIN_FILE={source}/cmake/arm-linux-gnueabihf.cmake"
    run(f"{source}/cmake/arm-sysroot")
    for processor, strip, options in (("x86-64", "strip", []), ("arm", "arm-linux-gnueabihf-strip", [toolchain])):
        for level in ("-Os", "-O2"):
            library = build_library(source, f"{folder}/{processor}{level}",
                                    f"-DCMAKE_CXX_FLAGS_MINSIZEREL={level} -DNDEBUG -Wno-error=array-bounds"
                                    " -Wno-error=stringop-overread", *options)
            rows.append([f"{processor} {level}", *sections_of(library, strip)])
    print(f"Size of the class library in bytes (target: {SIZE_TARGET:,} stripped, x86-64 -Os, with all classes)\n")
    table(["", "text", "data", "bss", "relocations", "exported", "stripped"], rows)
    if rows[0][-1] > SIZE_TARGET:
        missed.append(f"size: {rows[0][-1]}, target {SIZE_TARGET}")
    results["size"] = rows

    opened = [int(run(f"{build}/bench/first_answer", f"{build}/lib")) for _ in range(21)]
    print(f"From dlopen to the first answer over prepared back ends: {sorted(opened)[10] / 1000:,.0f} microseconds"
          " (median of 21)\n")
    results["first answer, nanoseconds"] = sorted(opened)[10]

    with store(build):
        lines = [line.split() for line in run(f"{build}/bench/class_memory").splitlines()]
    print("High-water marks of a request that enumerates the class, in bytes: heap of the class library, and stack of"
          " the thread with broker, stand-ins and store\n")
    table(["", "instances", "heap", "stack"], [[name, int(n), int(heap), int(stack)] for name, n, heap, stack in lines])
    results["high water"] = lines
    frames = largest_locals(source, f"{folder}/stack-usage")[:8]
    print("The largest frames of the class library's functions, in bytes\n")
    table(["", "frame"], [[f"{name} ({file})", frame_size] for frame_size, name, file in frames])
    results["frames"] = frames


# --- Threads


class store:
    """A store of the sample server, for as long as it is needed."""

    def __init__(self, build):
        self.build = build

    def __enter__(self):
        self.folder = tempfile.mkdtemp(dir="/dev/shm")
        os.environ["VCH_STORE"] = f"{self.folder}/store.db"
        run(f"{self.build}/bin/vch", "sp", "create")

    def __exit__(self, *_):
        del os.environ["VCH_STORE"]
        shutil.rmtree(self.folder)


def threads(build):
    """Operations per second of one and of two threads, in turn and each in a process of its own: in one process the
    rate of the second run differs by a fifth from process to process."""
    print(f"Threads, enumerations per second, median of 9 (target {THREADS_TARGET})\n")
    rows = []
    with store(build):
        for pattern, what in (("Mix", "measured classes, prepared back ends"),
                              ("AllClasses", "all classes, stand-ins")):
            runs = {1: [], 2: []}
            for _ in range(9):
                for number, found in runs.items():
                    found.extend(timed(build, f"{pattern}/.*threads:{number}$").values())
            one, two = (tuple(map(statistics.median, zip(*found))) for found in runs.values())
            rows.append([what, f"{one[1]:,.0f}", f"{two[1]:,.0f}", f"{two[1] / one[1]:.2f}", f"{two[2] / one[2]:.2f}"])
            results.setdefault("threads", []).append({"load": what, "one": one[1], "two": two[1],
                                                      "processor time": two[2] / one[2]})
    table(["", "one thread", "two", "ratio", "processor time of each"], rows)
    load = os.getloadavg()[0]
    print(f"The load of the machine was {load:.1f} on {os.cpu_count()} processors: above the threads of this, the ratio"
          " says little.\n")


# --- End to end


def endtoend(build):
    requests = (["gi", 'RegisteredProfile.InstanceID="MARLOVEN:Profile:DSP1004:1.0.0"'], ["ei", "BaseServer"],
                ["ei", "TemperatureSensor"])
    columns = []
    with store(build), tempfile.TemporaryDirectory() as folder:
        for number, request in enumerate(requests):
            out = f"{folder}/{number}"
            run("valgrind", "-q", "--tool=callgrind", f"--callgrind-out-file={out}", f"{build}/bin/vch", *request,
                env=os.environ | {"GLIBC_TUNABLES": TUNABLES})
            columns.append(layers.shares(out))
    print("End to end, instructions of one request as a process, by layer\n")
    rows = []
    for index in range(len(columns[0][1])):
        row = [columns[0][1][index][0]]
        for total, costs in columns:
            row += [costs[index][1], f"{100 * costs[index][1] / total:.1f} %"]
        rows.append(row)
    rows.append(["all"] + [cell for total, _ in columns for cell in (total, "")])
    headings = [cell for request in requests for cell in (" ".join(request).split(".")[0], "share")]
    table([""] + headings, rows)
    results["end to end"] = {" ".join(request): costs for request, (_, costs) in zip(requests, columns)}


def check(build):
    global margin
    margin = MARGIN
    frame(build, 20)
    growth(build, (100, 1000))


SECTIONS = {"frame": lambda build: frame(build, 100), "growth": growth, "size": size, "threads": threads,
            "endtoend": endtoend, "check": check}


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
